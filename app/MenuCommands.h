// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

class QAction;

namespace tallowmere {

/// The commands of the menu bar. Main thread. One that needs a viewer or a current file does nothing without it.
class MenuCommands
{
public:
    virtual ~MenuCommands() = default;

    virtual void showAbout() = 0;
    virtual void showSettings() = 0;
    virtual void openFile() = 0;
    virtual void showInFinder() = 0;
    virtual void moveToTrash() = 0;
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
    virtual void showKeyboardShortcuts() = 0;
    virtual void showManualPage() = 0;
    /// Ends the program at once.
    virtual void terminate() = 0;
    /// A menu is about to open, or a menu's key may come: the items on the current file are enabled when there is one.
    virtual void menuNeedsUpdate() = 0;
    /// The same for each item of a menu that is about to open. False ends the round over its items.
    virtual bool menuUpdateItem(QAction *item) = 0;
};

} // namespace tallowmere
