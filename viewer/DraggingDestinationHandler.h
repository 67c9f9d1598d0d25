// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

class QKeyEvent;
class QMouseEvent;

namespace tallowmere {

/// What the views hand on to the object that decides. Main thread; views don't own it.
class DraggingDestinationHandler
{
public:
    virtual ~DraggingDestinationHandler() = default;
    /// A left button went down for the second time in a row.
    virtual void handleDoubleClick(QMouseEvent *event) = 0;
};

/// Where key presses go. One that it does not want it ignores, so that the window gets it.
class KeyHandler
{
public:
    virtual ~KeyHandler() = default;
    virtual void keyDown(QKeyEvent *event) = 0;
};

} // namespace tallowmere
