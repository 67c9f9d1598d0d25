// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "tests/doubles/TestImages.h"
#include "tests/viewer/ViewerFixture.h"
#include "viewer/NonInteractiveImageView.h"
#include "viewer/Pill.h"

#include <QApplication>
#include <QDragEnterEvent>
#include <QDragLeaveEvent>
#include <QDropEvent>
#include <QMimeData>
#include <QTest>

namespace tallowmere::test {
namespace {

using namespace Qt::Literals::StringLiterals;

/// What another program offers: bytes, which it counts handing over.
class Offered final : public QMimeData
{
public:
    explicit Offered(QByteArray uriList) : m_uriList(std::move(uriList)) {}

    [[nodiscard]] bool hasFormat(const QString &format) const override { return formats().contains(format); }
    [[nodiscard]] QStringList formats() const override { return {u"text/uri-list"_s}; }
    mutable int transfers = 0;

protected:
    QVariant retrieveData(const QString &format, QMetaType) const override
    {
        ++transfers;
        return hasFormat(format) ? QVariant(m_uriList) : QVariant();
    }

private:
    const QByteArray m_uriList;
};

class Drag : public ViewerFixture
{
protected:
    Drag()
    {
        settings.setShowFileSize(false);
        settings.setShowImageResolution(false);
    }
    ~Drag() override
    {
        // Qt remembers where a drag is: it must not outlive the view.
        if (controller)
            leave();
    }

    void offer(const QList<QByteArray> &uris) { m_offered = std::make_unique<Offered>(uris.join("\r\n") + "\r\n"); }
    void offer(const FileURL &file) { offer(QList{file.encoded()}); }

    /// Whether a drop here would be taken; the events go the way Qt's own do, from @p target to its parents.
    bool enter(QWidget *target, Qt::DropActions actions = Qt::CopyAction | Qt::MoveAction | Qt::LinkAction)
    {
        QDragEnterEvent event(target->rect().center(), actions, m_offered.get(), Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(target, &event);
        m_action = event.dropAction();
        return event.isAccepted();
    }
    bool move()
    {
        QDragMoveEvent event({10, 10}, Qt::CopyAction | Qt::MoveAction, m_offered.get(), Qt::LeftButton,
                             Qt::NoModifier);
        QCoreApplication::sendEvent(controller->view(), &event);
        return event.isAccepted();
    }
    bool drop()
    {
        QDropEvent event({10, 10}, Qt::CopyAction | Qt::MoveAction, m_offered.get(), Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(controller->view(), &event);
        m_action = event.dropAction();
        return event.isAccepted();
    }
    void leave()
    {
        QDragLeaveEvent event;
        QCoreApplication::sendEvent(controller->view(), &event);
    }
    void settle()
    {
        do {
            mainQueue.runAll();
            launcher.runAll();
        } while (mainQueue.waiting() > 0);
    }
    FileURL photo(const QByteArray &name) { return folder.write(name, jpegOf(60, 40, {200, 100, 50, 255})); }

    std::unique_ptr<Offered> m_offered;
    Qt::DropAction m_action = Qt::IgnoreAction;
};

TEST_F(Drag, anUpperCasePngIsAcceptedWhilePngIsOnAndRefusedWhenOff)
{
    offer(folder.at("A.PNG"));
    EXPECT_TRUE(enter(controller->view()));
    EXPECT_EQ(m_action, Qt::CopyAction);
    leave();
    settings.setPngSupportEnabled(false);
    EXPECT_FALSE(enter(controller->view()));
}

TEST_F(Drag, ofATextFileTogetherWithAJpegIsAcceptedAndOpensTheJpeg)
{
    const FileURL jpeg = photo("b.jpg");
    offer({folder.write("a.txt").encoded(), jpeg.encoded()});
    EXPECT_TRUE(enter(controller->view()));
    EXPECT_TRUE(move());
    EXPECT_TRUE(drop());
    settle();
    EXPECT_EQ(controller->currentFile(), jpeg);
    EXPECT_TRUE(controller->currentImage());
}

TEST_F(Drag, overTheIdleScreenAndLeavingBringsItBackInAWindowOf600By400)
{
    showWindow();
    window->resize(700, 500);
    offer(photo("a.jpg"));
    EXPECT_TRUE(enter(controller->view()));
    EXPECT_FALSE(idleScreen()->isVisible());
    leave();
    EXPECT_TRUE(idleScreen()->isVisible());
    EXPECT_TRUE(QTest::qWaitFor([this] { return frame().size() == QSizeF(600, 400); }, 30'000));
}

TEST_F(Drag, overAShownImageAndLeavingChangesNothing)
{
    showWindow();
    const FileURL shown = cachedFile("shown.jpg");
    open(shown);
    settle();
    const QRectF before = frame();
    offer(photo("other.jpg"));
    EXPECT_TRUE(enter(controller->view()));
    leave();
    settle();
    EXPECT_EQ(controller->currentFile(), shown);
    EXPECT_TRUE(controller->currentImage());
    EXPECT_FALSE(idleScreen()->isVisible());
    EXPECT_EQ(frame(), before);
}

TEST_F(Drag, onTheNamePillAndOnTheLogoReachesTheRootView)
{
    showWindow();
    auto *logo = controller->view()->findChild<NonInteractiveImageView *>();
    ASSERT_TRUE(logo);
    const FileURL first = photo("first.jpg");
    offer(first);
    EXPECT_TRUE(enter(logo));
    EXPECT_TRUE(drop());
    settle();
    EXPECT_EQ(controller->currentFile(), first);

    settings.setFileNameDisplayLocation(FileNameDisplayLocation::inCorner);
    controller->updateFileNameDisplay(first);
    auto *pill = controller->view()->findChild<Pill *>(u"fileNamePill"_s);
    ASSERT_TRUE(pill->isVisible());
    const FileURL second = photo("second.jpg");
    offer(second);
    EXPECT_TRUE(enter(pill));
    EXPECT_TRUE(drop());
    settle();
    EXPECT_EQ(controller->currentFile(), second);
}

/// Qt tells a view that the drag has left when it comes over another one that takes drops: there must be no other.
TEST_F(Drag, nothingThatLiesOnTheRootViewTakesPartInDrags)
{
    EXPECT_TRUE(controller->view()->acceptDrops());
    for (const QWidget *each : controller->view()->findChildren<QWidget *>())
        EXPECT_FALSE(each->acceptDrops()) << each->metaObject()->className();
}

TEST_F(Drag, withoutAcceptableFilesIsRefusedAndHidesNothing)
{
    showWindow();
    offer({"http://example.org/a.jpg", "trash:///a.jpg", folder.at("a.txt").encoded(), folder.url().encoded()});
    EXPECT_FALSE(enter(controller->view()));
    EXPECT_FALSE(drop());
    EXPECT_TRUE(idleScreen()->isVisible());
    offer(QList<QByteArray>{});
    EXPECT_FALSE(enter(controller->view()));
}

TEST_F(Drag, aNameThatIsNoTextIsOpened)
{
    const FileURL file = photo("\xe9t\xe9 #%.jpg");
    offer(file);
    EXPECT_TRUE(enter(controller->view()));
    EXPECT_TRUE(drop());
    settle();
    EXPECT_EQ(controller->currentFile(), file);
    EXPECT_TRUE(controller->currentImage());
}

TEST_F(Drag, isAskedForItsFilesOnceHoweverOftenItMoves)
{
    QList<QByteArray> uris(10'000, folder.at("notes.txt").encoded());
    uris.append(photo("last.jpg").encoded());
    offer(uris);
    EXPECT_TRUE(enter(controller->view()));
    for (int i = 0; i < 100; ++i)
        EXPECT_TRUE(move());
    EXPECT_EQ(m_offered->transfers, 1);
}

TEST_F(Drag, decodesTheFileAndItsAverageColourWhileItHovers)
{
    const FileURL file = photo("a.jpg");
    offer(file);
    EXPECT_TRUE(enter(controller->view()));
    EXPECT_TRUE(move());
    EXPECT_EQ(launcher.launched().size(), 1U) << "once, however often it moves";
    EXPECT_EQ(launcher.launched().front().quality, QualityOfService::userInitiated);
    settle();
    EXPECT_TRUE(cache->imageCache.contains(file));
    EXPECT_TRUE(cache->averageColorCache.contains(file));
    EXPECT_FALSE(controller->currentImage()) << "only ahead";

    settings.setAutoResizeToImageSize(true);
    EXPECT_TRUE(drop());
    EXPECT_TRUE(controller->currentImage()) << "at once";
    EXPECT_NEAR(imageView()->backgroundColor().red(), 200, 6) << "with its background";
}

TEST_F(Drag, ofAFileThatIsNoPictureIsTakenAndShowsNothing)
{
    showWindow();
    offer(folder.makeFolder("folder.jpg"));
    EXPECT_TRUE(enter(controller->view()));
    settle();
    EXPECT_TRUE(drop());
    settle();
    EXPECT_FALSE(controller->currentImage());
    EXPECT_FALSE(idleScreen()->isVisible());
}

TEST_F(Drag, ofAFileThatVanishedIsSurvived)
{
    const FileURL file = photo("a.jpg");
    offer(file);
    EXPECT_TRUE(enter(controller->view()));
    folder.remove("a.jpg");
    settle();
    EXPECT_TRUE(drop());
    settle();
    EXPECT_FALSE(controller->currentImage());
}

TEST_F(Drag, aFileOpenedByOtherMeansWhileItHoversStays)
{
    showWindow();
    offer(photo("a.jpg"));
    EXPECT_TRUE(enter(controller->view()));
    const FileURL other = cachedFile("other.jpg");
    open(other);
    leave();
    EXPECT_EQ(controller->currentFile(), other);
    EXPECT_FALSE(idleScreen()->isVisible());
}

TEST_F(Drag, aFileOpenedByOtherMeansStaysEvenBeforeThereIsAListOrAPicture)
{
    showWindow();
    offer(photo("a.jpg"));
    EXPECT_TRUE(enter(controller->view()));
    const FileURL other = folder.at("vanished/other.jpg"); // in a folder that cannot be listed
    controller->openImage(other);
    ASSERT_TRUE(controller->currentFile().empty());
    ASSERT_FALSE(controller->currentImage());
    const QString title = window->windowTitle();
    leave();
    EXPECT_FALSE(controller->isIdle());
    EXPECT_FALSE(idleScreen()->isVisible());
    EXPECT_EQ(window->windowTitle(), title);
}

TEST_F(Drag, overAMaximisedIdleWindowAndLeavingKeepsItMaximised)
{
    showWindow();
    window->showMaximized();
    ASSERT_TRUE(QTest::qWaitFor([&] { return window->isMaximized() && window->width() > 700; }, 30'000));
    const QRectF before = frame();
    offer(photo("a.jpg"));
    EXPECT_TRUE(enter(controller->view()));
    EXPECT_FALSE(idleScreen()->isVisible());
    leave();
    EXPECT_TRUE(idleScreen()->isVisible());
    EXPECT_TRUE(window->isMaximized());
    EXPECT_EQ(frame(), before);
}

TEST_F(Drag, hasLeftWhenTheMouseMovesOnWithoutIt)
{
    showWindow();
    offer(photo("a.jpg"));
    EXPECT_TRUE(enter(controller->view()));
    ASSERT_FALSE(idleScreen()->isVisible());
    int at = 0;
    const auto moveMouse = [&] { QTest::mouseMove(window.get(), QPoint(100 + ++at % 100, 150)); };
    moveMouse();
    EXPECT_FALSE(idleScreen()->isVisible()) << "it may be on its way to being dropped";
    EXPECT_TRUE(QTest::qWaitFor(
        [&] {
        moveMouse();
        return idleScreen()->isVisible();
        },
        30'000));
    EXPECT_TRUE(controller->isIdle());
}

TEST_F(Drag, afterTheMouseMovedWithoutOneIsAskedForItsOwnFiles)
{
    showWindow();
    offer(photo("first.jpg"));
    EXPECT_TRUE(enter(controller->view()));
    QTest::mouseMove(window.get(), QPoint(100, 150));
    QTest::mouseMove(window.get(), QPoint(110, 150));
    QCoreApplication::processEvents();
    // The program of the first has died; Qt reports the second as a move of the first.
    const FileURL second = photo("second.jpg");
    offer(second);
    EXPECT_TRUE(move());
    EXPECT_TRUE(drop());
    settle();
    EXPECT_EQ(controller->currentFile(), second);
}

TEST_F(Drag, aPreparationThatOutlivesTheViewerReachesNobody)
{
    offer(photo("a.jpg"));
    EXPECT_TRUE(enter(controller->view()));
    leave();
    controller.reset();
    settle();
}

TEST_F(Drag, withoutADelegateIsRefused)
{
    DraggableView view;
    offer(photo("a.jpg"));
    EXPECT_FALSE(enter(&view));
    QDropEvent event({10, 10}, Qt::CopyAction, m_offered.get(), Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&view, &event);
    EXPECT_FALSE(event.isAccepted());
}

} // namespace
} // namespace tallowmere::test
