// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "tests/doubles/CapturedOutput.h"
#include "tests/doubles/TestImages.h"
#include "tests/viewer/ViewerFixture.h"

#include <QAccessible>
#include <QFileDialog>
#include <QLabel>
#include <QSignalSpy>
#include <QTest>

namespace tallowmere::test {
namespace {

using OpenAndDisplay = ViewerFixture;

TEST_F(OpenAndDisplay, showsTheImageAndAsksForAccessWhenTheFolderCannotBeListed)
{
    const FileURL file = folder.at("missing").appending("a.jpg");
    const ImagePtr image = imageOf(30, 20);
    cache->insertImage(file, image);
    CapturedOutput output;
    open(file);

    EXPECT_EQ(controller->currentImage(), image);
    EXPECT_NE(
        output.text().indexOf("⚠️ Warning: Failed to load file list from directory containing: " + file.path() +
                              "\n   Arrow key navigation may not work. Requesting folder access...\n"),
        -1)
        << output.text().toStdString();
    ASSERT_EQ(folderAccess.asked, std::vector{folder.at("missing")});

    folder.makeFolder("missing");
    folder.write("missing/a.jpg");
    folder.write("missing/b.jpg");
    folderAccess.answers.front()(true);
    EXPECT_NE(output.text().indexOf("✅ Folder access granted. Reloading file list...\n"
                                    "✅ Successfully loaded 2 files after folder access grant\n"),
              -1)
        << output.text().toStdString();
    EXPECT_EQ(controller->currentFile(), file);
    EXPECT_EQ(prefetchSync.waiting(), 1U);
    EXPECT_EQ(controller->currentImage(), image);
}

TEST_F(OpenAndDisplay, staysWithoutAListWhenAccessIsGrantedInVain)
{
    const FileURL file = folder.at("missing").appending("a.jpg");
    cache->insertImage(file, imageOf(30, 20));
    CapturedOutput output;
    open(file);
    folderAccess.answers.front()(true);
    EXPECT_TRUE(output.text().endsWith("⚠️ Still failed to load file list after folder access grant\n"))
        << output.text().toStdString();
    EXPECT_EQ(prefetchSync.waiting(), 0U);
}

TEST_F(OpenAndDisplay, saysSoWhenAccessIsRefused)
{
    const FileURL file = folder.at("missing").appending("a.jpg");
    cache->insertImage(file, imageOf(30, 20));
    CapturedOutput output;
    open(file);
    folderAccess.answers.front()(false);
    EXPECT_TRUE(output.text().endsWith("ℹ️ Folder access not granted. Navigation between images will not work.\n"));
    EXPECT_TRUE(controller->fileListManager().fileURLs.isEmpty());
}

TEST_F(OpenAndDisplay, ignoresAnAnswerAboutAccessAfterItsOwnEnd)
{
    const FileURL file = folder.at("missing").appending("a.jpg");
    cache->insertImage(file, imageOf(30, 20));
    open(file);
    controller.reset();
    CapturedOutput output;
    folderAccess.answers.front()(true);
    EXPECT_EQ(output.text(), QByteArray());
}

TEST_F(OpenAndDisplay, ignoresAnAnswerAboutAccessInTheIdleState)
{
    const FileURL file = folder.at("missing").appending("a.jpg");
    cache->insertImage(file, imageOf(30, 20));
    open(file);
    controller->showIdleState();
    folder.makeFolder("missing");
    folder.write("missing/a.jpg");
    CapturedOutput output;
    folderAccess.answers.front()(true);
    EXPECT_EQ(output.text(), QByteArray());
    EXPECT_TRUE(controller->currentFile().empty()) << "no command may act on a file that is not shown";
}

TEST_F(OpenAndDisplay, thePanelThatIsOpenFollowsAChangeOfTheFormats)
{
    showWindow();
    controller->showOpenPanel();
    auto *panel = window->findChild<QFileDialog *>();
    ASSERT_NE(panel, nullptr);
    ASSERT_TRUE(panel->nameFilters().join(QChar()).contains(QStringLiteral("*.png")));
    settings.setPngSupportEnabled(false);
    controller->showOpenPanel();
    EXPECT_EQ(window->findChildren<QFileDialog *>().size(), 1);
    EXPECT_FALSE(panel->nameFilters().join(QChar()).contains(QStringLiteral("*.png")));
    EXPECT_TRUE(panel->nameFilters().join(QChar()).contains(QStringLiteral("*.jpg")));
    panel->close();
}

TEST_F(OpenAndDisplay, countsTheFilesOfTheFolderAndPrefetchesAroundTheOneOpened)
{
    fill({"a.jpg", "b.jpg", "c.jpg"});
    CapturedOutput output;
    open(folder.at("b.jpg"));
    EXPECT_EQ(output.text(), QByteArray("✅ Successfully loaded 3 files from directory\n"));
    EXPECT_EQ(controller->fileListManager().currentIndex, 1);
    EXPECT_EQ(prefetchSync.waiting(), 1U);
}

TEST_F(OpenAndDisplay, openingAnyFileEndsAPendingUndoAndSaysSo)
{
    const FileURL file = cachedFile("a.jpg");
    controller->setUndoState(UndoState{folder.at("x.jpg"), folder.at("trash/x.jpg"), folder.url(), 3});
    const QSignalSpy said(controller.get(), &ViewController::undoStateChanged);
    controller->openImage(file);
    EXPECT_EQ(controller->undoState(), std::nullopt);
    EXPECT_EQ(said.count(), 1);
    controller->openImage(file);
    EXPECT_EQ(said.count(), 2) << "also when there was nothing to undo";
}

TEST_F(OpenAndDisplay, rightArrowAtTheFirstFileShowsTheLast)
{
    fill({"a.jpg", "b.jpg", "c.jpg"});
    open(folder.at("a.jpg"));
    press(Qt::Key_Right);
    EXPECT_EQ(controller->currentFile(), folder.at("c.jpg"));
    EXPECT_EQ(controller->currentImage(), cache->imageCache.find(folder.at("c.jpg")));
}

TEST_F(OpenAndDisplay, leftArrowAtTheLastFileShowsTheFirst)
{
    fill({"a.jpg", "b.jpg", "c.jpg"});
    open(folder.at("c.jpg"));
    press(Qt::Key_Left);
    EXPECT_EQ(controller->currentFile(), folder.at("a.jpg"));
    EXPECT_EQ(controller->fileListManager().currentIndex, 0);
}

TEST_F(OpenAndDisplay, rightArrowElsewhereShowsTheFileBefore)
{
    fill({"a.jpg", "b.jpg", "c.jpg"});
    open(folder.at("c.jpg"));
    prefetchSync.runAll();
    press(Qt::Key_Right);
    EXPECT_EQ(controller->currentFile(), folder.at("b.jpg"));
    EXPECT_EQ(controller->currentImage(), cache->imageCache.find(folder.at("b.jpg")));
    EXPECT_EQ(prefetchSync.waiting(), 1U) << "each step prefetches anew";
}

TEST_F(OpenAndDisplay, arrowKeysDoNothingWithAnEmptyList)
{
    const FileURL file = folder.at("missing").appending("a.jpg");
    const ImagePtr image = imageOf(30, 20);
    cache->insertImage(file, image);
    open(file);
    press(Qt::Key_Left);
    press(Qt::Key_Right);
    EXPECT_EQ(controller->currentImage(), image);
    EXPECT_EQ(controller->fileListManager().currentIndex, 0);
    EXPECT_EQ(prefetchSync.waiting(), 0U);
}

TEST_F(OpenAndDisplay, anArrowKeyBeforeTheListingStepsAsIfTheListWereThere)
{
    fill({"a.jpg", "b.jpg", "c.jpg"});
    controller->openImage(folder.at("b.jpg"));
    press(Qt::Key_Left);
    EXPECT_EQ(controller->currentFile(), folder.at("c.jpg"));
    mainQueue.runAll();
    EXPECT_EQ(controller->currentFile(), folder.at("c.jpg")) << "the listing does not come a second time";
}

TEST_F(OpenAndDisplay, theCurrentFileIsKnownAsSoonAsAFileIsOpened)
{
    const FileURL file = cachedFile("a.jpg");
    controller->openImage(file);
    EXPECT_EQ(controller->currentFile(), file);
}

TEST_F(OpenAndDisplay, aPictureThatIsReadyIsPaintedBeforeTheFolderIsListed)
{
    const FileURL file = cachedFile("a.jpg");
    showWindow();
    mainQueue.runAll();
    bool listedBeforePainting = true;
    const CapturedOutput output;
    QObject::connect(imageView(), &DraggableImageView::imagePainted, imageView(),
                     [&] { listedBeforePainting = output.text().contains("Successfully loaded"); });
    controller->openImage(file);
    EXPECT_TRUE(imageView()->hasPaintedImage());
    EXPECT_FALSE(listedBeforePainting);
    EXPECT_EQ(output.text(), QByteArray());
    mainQueue.runAll();
    EXPECT_EQ(output.text(), QByteArray("✅ Successfully loaded 1 files from directory\n"));
}

TEST_F(OpenAndDisplay, aDecodeThatTakesLongDoesNotKeepTheListingAway)
{
    const FileURL file = folder.write("a.jpg");
    showWindow();
    const CapturedOutput output;
    controller->openImage(file);
    EXPECT_TRUE(QTest::qWaitFor([&] { return output.text().contains("Successfully loaded 1 files"); }, 30'000));
}

TEST_F(OpenAndDisplay, aFileThatIsNotCachedComesWhenItIsDecoded)
{
    const FileURL file = folder.write("a.png", pngOf(40, 30, {200, 100, 50, 255}));
    const FileURL other = cachedFile("b.jpg");
    controller->displayImage(other);
    controller->displayImage(file);
    EXPECT_EQ(controller->currentImage(), nullptr) << "the old image does not stand in for it";
    EXPECT_FALSE(idleScreen()->isVisibleTo(controller->view()));
    launcher.runAll();
    mainQueue.runAll();
    ASSERT_NE(controller->currentImage(), nullptr);
    EXPECT_EQ(controller->currentImage()->size(), QSizeF(40, 30));
}

TEST_F(OpenAndDisplay, aLoadThatEndsAfterTheUserHasMovedOnStillSetsItsImage)
{
    const FileURL slow = folder.write("slow.png", pngOf(40, 30, {200, 100, 50, 255}));
    const FileURL other = cachedFile("b.jpg");
    controller->displayImage(slow);
    controller->displayImage(other);
    launcher.runAll();
    mainQueue.runAll();
    EXPECT_EQ(controller->currentImage(), cache->imageCache.find(slow));
}

TEST_F(OpenAndDisplay, aFileThatIsNoPictureLeavesTheViewEmptyAndIsListedAllTheSame)
{
    const FileURL file = folder.write("a.jpg", "no picture");
    controller->openImage(file);
    launcher.runAll();
    mainQueue.runAll();
    EXPECT_EQ(controller->currentImage(), nullptr);
    EXPECT_FALSE(idleScreen()->isVisibleTo(controller->view()));
    EXPECT_EQ(controller->currentFile(), file);
}

TEST_F(OpenAndDisplay, aLoadThatEndsAfterTheControllerDoesNothing)
{
    controller->displayImage(folder.write("a.png", pngOf(40, 30, {200, 100, 50, 255})));
    controller.reset();
    launcher.runAll();
    mainQueue.runAll();
    EXPECT_TRUE(cache->imageCache.contains(folder.at("a.png"))) << "the decode still fills the cache";
}

TEST_F(OpenAndDisplay, keysReachTheViewerOnceAFileIsOpened)
{
    showWindow();
    window->activateWindow();
    controller->view()->clearFocus();
    controller->openImage(cachedFile("a.jpg"));
    EXPECT_NE(window->focusWidget(), controller->view());
    mainQueue.runAll();
    EXPECT_EQ(window->focusWidget(), controller->view());
}

TEST_F(OpenAndDisplay, theViewTakesTheKeysWhenItAppears)
{
    showWindow();
    EXPECT_EQ(window->focusWidget(), controller->view());
}

TEST_F(OpenAndDisplay, showsTheLogoAndTheInstructionAtFirst)
{
    showWindow();
    EXPECT_TRUE(idleScreen()->isVisible());
    EXPECT_EQ(idleScreen()->instructionLabel()->text(),
              QStringLiteral("Double-click an image in Finder to open, or drop it here"));
    EXPECT_TRUE(idleScreen()->instructionLabel()->isVisible());
    EXPECT_EQ(controller->currentImage(), nullptr);
    EXPECT_TRUE(controller->currentFile().empty());
}

TEST_F(OpenAndDisplay, returnsToTheIdleState)
{
    fill({"a.jpg", "b.jpg"});
    open(folder.at("b.jpg"));
    window->resize(900, 700);
    controller->applyBackgroundColor(Qt::red);
    controller->showIdleState();

    EXPECT_EQ(controller->currentImage(), nullptr);
    EXPECT_TRUE(idleScreen()->isVisibleTo(controller->view()));
    EXPECT_TRUE(controller->fileListManager().fileURLs.isEmpty());
    EXPECT_EQ(controller->fileListManager().currentIndex, 0);
    EXPECT_EQ(window->windowTitle(), QStringLiteral("Tallowmere"));
    EXPECT_EQ(imageView()->imageName(), QString());
    EXPECT_EQ(imageView()->backgroundColor(), controller->windowBackgroundColor());
    EXPECT_EQ(frame().size(), QSizeF(600, 400));
}

TEST_F(OpenAndDisplay, theImageAreaIsAGraphicNamedAfterTheFile)
{
    open(cachedFile("holiday.jpg"));
    QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(imageView());
    ASSERT_NE(accessible, nullptr);
    EXPECT_EQ(accessible->role(), QAccessible::Graphic);
    EXPECT_EQ(accessible->text(QAccessible::Name), QStringLiteral("holiday.jpg"));
}

} // namespace
} // namespace tallowmere::test
