// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

namespace tallowmere {

/// The commands of the menu bar. Main thread. One that needs a viewer or a current file does nothing without it.
class MenuCommands
{
public:
    virtual ~MenuCommands() = default;

    virtual void openFile() = 0;
    virtual void showInFinder() = 0;
    virtual void toggleShowFileSize() = 0;
    virtual void toggleShowCreationDate() = 0;
    virtual void toggleShowImageResolution() = 0;
    virtual void toggleShowFileTag() = 0;
    virtual void toggleAutoResizeToImageSize() = 0;
    virtual void setFileNameDisplayInTitle() = 0;
    virtual void setFileNameDisplayInCorner() = 0;
    virtual void setFileNameDisplayOff() = 0;
    virtual void closeWindow() = 0;
    virtual void resizeWindowSmall() = 0;
    virtual void resizeWindowMedium() = 0;
    virtual void resizeWindowLarge() = 0;
    /// "Fit to Image": switches automatic resizing on or off.
    virtual void resizeWindowToImage() = 0;
    /// Ends the program at once.
    virtual void terminate() = 0;
    /// The items on the current file are enabled when there is one.
    virtual void menuNeedsUpdate() = 0;
};

} // namespace tallowmere
