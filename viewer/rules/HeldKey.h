// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

#include <optional>
#include <utility>

namespace tallowmere {

/// Tells a key that is held down from one that is pressed anew.
///
/// X repeats a held key as a release and a press of the same moment. Qt tells that from a new press only when both
/// have arrived by the time it looks. Times are the window system's, in ms; 0 is unknown.
class HeldKey final
{
public:
    void released(int key, quint64 time) { m_release = {key, time}; }
    /// Whether the press continues an older one. Asking again for the same press gives the same answer.
    [[nodiscard]] bool isRepeat(int key, quint64 time)
    {
        if (m_release && m_release->first != key)
            m_release.reset(); // nobody holds a key down and presses another meanwhile
        return m_release && time != 0 && m_release->second == time;
    }

private:
    std::optional<std::pair<int, quint64>> m_release; ///< the last one, with its time
};

} // namespace tallowmere
