// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "viewer/rules/DragState.h"

class QKeyEvent;
class QMouseEvent;

namespace tallowmere {

class DraggingInfo;

/// What the views hand on to the object that decides. Main thread; views don't own it.
class DraggingDestinationHandler
{
public:
    virtual ~DraggingDestinationHandler() = default;
    /// A drag came over the view, and it moved there. The answer is what a drop would do.
    [[nodiscard]] virtual DragOperation draggingEntered(const DraggingInfo &info) = 0;
    [[nodiscard]] virtual DragOperation draggingUpdated(const DraggingInfo &info) = 0;
    /// The drop. False: not taken.
    virtual bool performDragOperation(const DraggingInfo &info) = 0;
    /// The drag left without a drop.
    virtual void draggingExited() = 0;
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
