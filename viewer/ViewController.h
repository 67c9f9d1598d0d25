// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "imaging/Color.h"
#include "imaging/Image.h"
#include "settings/SettingsManager.h"
#include "support/FileURL.h"
#include "viewer/DraggingDestinationHandler.h"
#include "viewer/PanningHandler.h"
#include "viewer/rules/DragState.h"
#include "viewer/rules/HandCursor.h"
#include "viewer/rules/PanDrag.h"
#include "viewer/rules/ZoomMemory.h"
#include "viewer/rules/ZoomRule.h"
#include "viewer/UndoState.h"

#include <QColor>
#include <QObject>
#include <QPointer>
#include <QRectF>
#include <QSizeF>

#include <functional>
#include <memory>
#include <optional>

class QFileDialog;

namespace tallowmere {

class CopiesAhead;
class DeferredListing;
class DisplayPreparation;
class DraggableImageView;
class DraggableView;
class FileAttributesReader;
class FileLabelReader;
class FileListManager;
class FileRevealer;
class FolderAccess;
class IdleScreen;
class ImageCacheManager;
class ImageLoader;
class Launcher;
class MainQueue;
class ProgressSign;
class Pill;
class SecurityScope;
class Shell;
class TagCircle;
class TransparencyChecker;
class Trash;
class WindowFrame;
enum class KeyCommand;
struct ScreenArea;

/// Conducts what the viewer's window shows.
///
/// Main thread only. Its work is spread over one source file per concern. Background work holds it weakly; a result
/// that comes when the controller is gone is dropped.
class ViewController final : public QObject, public DraggingDestinationHandler, public KeyHandler, public PanningHandler
{
    Q_OBJECT

public:
    /// What the viewer works with; everything referred to outlives it.
    struct Surroundings
    {
        SettingsManager &settings;
        std::shared_ptr<ImageLoader> loader;
        std::shared_ptr<ImageCacheManager> cache;
        SecurityScope &scope;
        FolderAccess &folderAccess;
        FileRevealer &revealer;
        Trash &trash;
        const FileLabelReader &labelReader;
        const FileAttributesReader &attributesReader;
        MainQueue &mainQueue;
        Launcher &launcher;
        Shell &shell;
    };

    /// Made idle. Sets the preparation of the loader and of the cache, so make it before the first image is asked for.
    explicit ViewController(const Surroundings &surroundings);
    ~ViewController() override;

    /// The root view, to be made the window's central widget. The controller must die before that window.
    [[nodiscard]] DraggableView *view() const;

    /// Shows @p file, lists its folder and decodes the neighbours ahead. Ends the possibility of an undo.
    void openImage(const FileURL &file);
    /// Shows @p file: at once when it is cached, else as soon as it is decoded. Leaves the file list alone.
    void displayImage(const FileURL &file);
    /// No image, an empty list, the logo, a window of 600 x 400. A maximised or full-screen window keeps its frame.
    void showIdleState();
    /// No file has been shown since the beginning, or since the last showIdleState().
    [[nodiscard]] bool isIdle() const { return m_isIdle; }
    /// A modeless file dialog; the one that is open already comes forward instead.
    void showOpenPanel();
    /// One step towards the beginning of the list, which wraps around.
    void showEarlierInList();
    /// One step towards the end of the list, which wraps around.
    void showLaterInList();
    void revealCurrentFileInFinder();

    /// Empty when there is none.
    [[nodiscard]] FileURL currentFile() const;
    /// Null when none is shown.
    [[nodiscard]] ImagePtr currentImage() const;
    /// Up to date: a listing that was put off runs before this returns.
    [[nodiscard]] FileListManager &fileListManager() const;

    void applyBackgroundColor(const QColor &color);
    /// The palette's, under the appearance in force now.
    [[nodiscard]] QColor windowBackgroundColor() const;
    /// The average colour of @p file behind the image: from the cache, else computed from the image shown and
    /// applied when it arrives, provided automatic resizing is still on. Answers whether it was applied at once.
    bool applyAverageColorBackground(const FileURL &file);

    /// @p file may be empty: no file.
    void updateFileNameDisplay(const FileURL &file);
    void updateWindowTitle(const FileURL &file);
    /// Reads what the pill is to say in the background and shows it when it arrives, whatever file is shown by then.
    void updateFileInfo(const FileURL &file);
    /// The settings have changed: the pill for the current file anew.
    void refreshFileInfo();
    void updateFileInfoPillWidth();
    /// Reads the label in the background. @p file may be empty: no file.
    void updateFileTag(const FileURL &file);
    /// Which of the pills fit into the view.
    void updateOverlayVisibility();
    void updateTransparencyBackground();

    /// The frame comes to lie in the middle of the screen's usable area; a window that is not yet there as soon as its
    /// decorations are known.
    void centreWindow();
    /// The frame gets this size in points and keeps its centre. Leaves a maximised or full-screen state first.
    void resizeWindow(bool animated, double width, double height);
    /// The screen's usable area less 40 points on every side. Leaves a maximised or full-screen state first.
    void resizeWindowToScreen(bool animated);
    /// The window takes the size of the image, as far as the screen allows, in the middle of the screen. A maximised
    /// or full-screen window keeps its frame. @p completion is not called when there is no window or no image.
    void fitWindowToImage(bool animated, std::function<void()> completion = {});
    /// Grows or shrinks the content, at most to the fitted size. Animated only if the settings allow it, too.
    void resizeWindowByFactor(bool animated, double factor);
    /// The content size in points that shows the image pixel for pixel, as far as the screen allows. Nothing
    /// without a window, an image with a bitmap or a screen.
    [[nodiscard]] std::optional<QSizeF> fittedImageSize();

    /// One step of 1.5, between 0.25 and 10. While the window follows the image, the window grows or shrinks first.
    void zoomIn();
    void zoomOut();
    void resetZoom();

    [[nodiscard]] bool shouldStartPanningAt(QPointF point) override;
    [[nodiscard]] bool isPanningAvailable() override;
    void handlePanStartAt(QPointF point) override;
    void handlePanMoveTo(QPointF point) override;
    void handlePanEnd() override;
    void handleCursorUpdate() override;
    void handleScrollWith(QPointF points) override;
    void handleMagnifyWith(double magnification) override;

    void keyDown(QKeyEvent *event) override;
    [[nodiscard]] DragOperation draggingEntered(const DraggingInfo &info) override;
    [[nodiscard]] DragOperation draggingUpdated(const DraggingInfo &info) override;
    bool performDragOperation(const DraggingInfo &info) override;
    void draggingExited() override;
    void handleDoubleClick(QMouseEvent *event) override;
    /// Key presses go to the view from now on. Nothing without a window.
    void makeFirstResponder();

    /// In the background; then the file that followed is shown. A failure is told in an alert. Nothing without a
    /// current file.
    void moveCurrentFileToTrash();
    /// Takes the last move back and shows the file. Once; nothing when there is none to take back.
    void undoMoveToTrash();
    [[nodiscard]] const std::optional<UndoState> &undoState() const;
    void setUndoState(std::optional<UndoState> state);

Q_SIGNALS:
    /// After every assignment to the undo state.
    void undoStateChanged();

private:
    void buildViews();
    void layOutSubviews();
    void buildOverlayViews();
    void layOutOverlays();
    [[nodiscard]] bool overlaysHaveFile() const;
    void applyFileInfo(const QString &text);
    void applyFileTagColor(const std::optional<Color> &color, const QString &name);

    void load(const FileURL &file, bool averageApplied);
    void showImage(const FileURL &file, const ImagePtr &image, bool averageApplied);
    void showAverageOf(const FileURL &file, const ImagePtr &image, bool wasApplied);
    void fitToNewImage(const FileURL &file, const ImagePtr &image);
    bool showPreview(const FileURL &file, const ImagePtr &image);
    [[nodiscard]] bool showsPreviewOf(const ImagePtr &image) const;
    void replacePreview(const FileURL &file, const ImagePtr &image, bool averageApplied);
    bool applyBackgroundFor(const FileURL &file);
    void computeAverageColor(const FileURL &file, const ImagePtr &image);
    void storeAverageColor(const FileURL &file, const ImagePtr &image, std::function<void(const Color &)> done);
    void prepareDraggedFile(const FileURL &file);
    void appearanceChanged();

    void listFolderOf(const FileURL &file);
    [[nodiscard]] bool listAround(const FileURL &file, QByteArrayView ending);
    void folderAccessAnswered(const FileURL &file, bool granted);
    void prefetchAroundCurrentFile();
    void listingMayStart();
    void step(FileURL (FileListManager::*move)());
    void prepareNeighbours();

    bool perform(KeyCommand command);
    void switchAutoResizeOff();

    /// Where a file was that is being moved to the Trash.
    struct TrashedEntry
    {
        FileURL directory;
        qint64 index = 0;
        bool wasOnly = false;
        bool wasLast = false;
    };
    void updateListAfterMove(const TrashedEntry &entry);
    void showEntry(qint64 index);
    void showRestoredFile(const UndoState &state);

    [[nodiscard]] ZoomMemory::Key zoomKey();
    [[nodiscard]] double currentZoomScale();
    void setZoomScale(double zoom);
    [[nodiscard]] QPointF currentPanOffset();
    void setPanOffset(QPointF offset);
    [[nodiscard]] QPointF clampPanOffset(QPointF offset, double zoom) const;
    void panTo(QPointF offset);
    void changeZoom(double zoom);
    void perform(const ZoomRule::Change &change);
    [[nodiscard]] std::optional<double> windowRatio();
    void applyZoom(const ImagePtr &image);
    void reapplyZoom();
    [[nodiscard]] std::function<void()> zoomReapplication();
    void applyZoomTransform(double zoom);
    void resetZoomTransform();
    void forgetZoomForCurrentFile();
    void resetZoomAfterAutoResize(const FileURL &file);
    void updateCursor();
    void showHandCursor();

    [[nodiscard]] QWidget *window() const;
    [[nodiscard]] std::optional<ScreenArea> screenArea() const;
    [[nodiscard]] QSizeF frameExtra();
    [[nodiscard]] std::function<std::optional<QRectF>()>
    centredFrameRule(std::function<std::optional<QSizeF>()> contentSize);
    [[nodiscard]] WindowFrame *windowFrame();
    [[nodiscard]] QSizeF contentSizeAtDestination();
    void takeIdleSize();
    void updateDisplayTarget();

    const Surroundings m_with;
    const std::unique_ptr<FileListManager> m_fileListManager;
    const std::unique_ptr<DeferredListing> m_deferredListing;
    const std::shared_ptr<DisplayPreparation> m_preparation;
    const std::unique_ptr<CopiesAhead> m_copiesAhead;

    DraggableView *m_view = nullptr;           ///< ours until it is put into a window, and ours to delete even then
    DraggableImageView *m_imageView = nullptr; ///< lives in m_view, as does the next
    IdleScreen *m_idleScreen = nullptr;
    ProgressSign *m_progressSign = nullptr;
    TransparencyChecker *m_transparencyCheckerView = nullptr;
    Pill *m_fileInfoPill = nullptr;
    Pill *m_fileNamePill = nullptr;
    TagCircle *m_fileTagCircle = nullptr;
    DragState m_dragState;
    QPointer<WindowFrame> m_windowFrame;
    QPointer<QFileDialog> m_openPanel;

    bool m_isIdle = true;
    ZoomMemory m_zoomMemory;
    int m_displays = 0;      ///< begun so far
    int m_arrived = 0;       ///< the latest of them whose whole picture has come
    FileURL m_displayedFile; ///< by the latest
    PanDrag m_panDrag;       ///< means something while the hand is closed
    HandCursor m_handCursor;

    std::optional<UndoState> m_undoState;
    bool m_isUndoing = false;
    QList<FileURL> m_filesBeingTrashed;
    QColor m_resolvedWindowColor;
    FileURL m_lastOpened;
};

} // namespace tallowmere
