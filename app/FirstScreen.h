// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "imaging/pixels/PixelSize.h"

#include <future>

namespace tallowmere {

/// How large the screen is, for a picture that is being decoded before the window system is connected.
class FirstScreen final
{
public:
    /// The most device pixels that a picture of size @p full can take on the screen; empty when there is no telling. An
    /// X server is asked at once, in a connection of its own (under 1 ms); elsewhere this waits for the toolkit. Any
    /// thread.
    [[nodiscard]] PixelSize mostFor(PixelSize full) const;
    /// Main thread, once: the application object is there and knows.
    void toolkitIsThere();

private:
    std::promise<PixelSize> m_promise;
    const std::shared_future<PixelSize> m_toolkits = m_promise.get_future().share();
};

} // namespace tallowmere
