// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

namespace tallowmere {

enum class CursorType
{
    normal,
    openHand,
    closedHand
};

/// Which cursor lies over the image: the open hand over any image, the closed hand while it is dragged.
///
/// At most one hand is out at a time, so the hand itself tells what is to be taken back. One thread.
class HandCursor final
{
public:
    [[nodiscard]] CursorType currentCursorType() const { return m_type; }
    [[nodiscard]] bool isPanning() const { return m_type == CursorType::closedHand; }

    /// The pointer moved, or what is shown changed. A drag keeps its hand.
    void update(bool hasImage)
    {
        if (!isPanning())
            m_type = hasImage ? CursorType::openHand : CursorType::normal;
    }
    void panStarted() { m_type = CursorType::closedHand; }
    /// Also without a drag: the pointer left, or a button was let go.
    void panEnded(bool hasImage)
    {
        if (hasImage)
            m_type = CursorType::openHand;
        else if (isPanning())
            m_type = CursorType::normal;
    }
    /// Another image is about to be shown: no hand, and no drag.
    void reset() { m_type = CursorType::normal; }

private:
    CursorType m_type = CursorType::normal;
};

} // namespace tallowmere
