// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "tests/viewer/ViewerFixture.h"

#include <QApplication>
#include <QLabel>
#include <QMessageBox>
#include <QPointer>
#include <QSignalSpy>
#include <QTest>

#include <algorithm>
#include <cstdio>

namespace tallowmere::test {
namespace {

using namespace Qt::Literals::StringLiterals;

/// Over a Trash that is a folder beside the pictures.
class TrashViewer : public ViewerFixture
{
protected:
    TrashViewer()
    {
        folder.makeFolder("trash");
        trash.whenTrashing = [this](const FileURL &file) {
            trash.answer.succeeded = true;
            trash.answer.resultingURL = folder.at("trash").appending(file.lastPathComponent());
            move(file, trash.answer.resultingURL);
        };
        trash.whenRestoring = [this](const FileURL &from, const FileURL &to) { move(from, to); };
    }
    ~TrashViewer() override
    {
        for (QMessageBox *alert : alerts())
            delete alert;
    }

    static void move(const FileURL &from, const FileURL &to)
    {
        ASSERT_EQ(std::rename(from.path().constData(), to.path().constData()), 0);
    }
    void openAt(const QByteArray &name, const std::vector<QByteArray> &names)
    {
        fill(names);
        open(folder.at(name));
        settle();
        prefetchSync.runAll();
    }
    void fail(const QString &reason)
    {
        trash.whenTrashing = {};
        trash.answer = {false, {}, reason};
    }
    /// Whatever waits in the background, but nothing of what it posts.
    void runBackground() { launcher.runAll(); }
    void settle()
    {
        do {
            launcher.runAll();
            mainQueue.runAll();
        } while (mainQueue.waiting() > 0);
    }
    void moveToTrash()
    {
        controller->moveCurrentFileToTrash();
        settle();
    }
    void undo()
    {
        controller->undoMoveToTrash();
        settle();
    }
    [[nodiscard]] std::ptrdiff_t launched(const char *label) const
    {
        return std::ranges::count_if(launcher.launched(), [&](const auto &each) { return each.label == label; });
    }
    [[nodiscard]] static QList<QMessageBox *> alerts()
    {
        QList<QMessageBox *> found;
        for (QWidget *window : QApplication::topLevelWidgets()) {
            if (auto *box = qobject_cast<QMessageBox *>(window))
                found.append(box);
        }
        return found;
    }
    void expectAlert(const QString &message, const QString &reason)
    {
        ASSERT_EQ(alerts().size(), 1);
        const QMessageBox *alert = alerts().front();
        EXPECT_EQ(alert->text(), message);
        EXPECT_EQ(alert->informativeText(), reason);
        EXPECT_EQ(alert->icon(), QMessageBox::Warning);
        EXPECT_EQ(alert->standardButtons(), QMessageBox::Ok);
        EXPECT_EQ(alert->windowModality(), Qt::ApplicationModal);
        EXPECT_TRUE(alert->isVisible());
    }
    [[nodiscard]] QList<FileURL> list() const { return controller->fileListManager().fileURLs; }
};

TEST_F(TrashViewer, movingTheOnlyFileOfAFolderShowsTheIdleState)
{
    openAt("a.jpg", {"a.jpg"});
    window->resize(700, 500);
    moveToTrash();
    EXPECT_EQ(trash.trashed, std::vector{folder.at("a.jpg")});
    EXPECT_EQ(controller->currentImage(), nullptr);
    EXPECT_FALSE(idleScreen()->isHidden());
    EXPECT_TRUE(list().isEmpty());
    EXPECT_EQ(window->windowTitle(), u"Tallowmere"_s);
    EXPECT_TRUE(controller->undoState().has_value());
}

TEST_F(TrashViewer, movingTheLastFileOfTheListShowsTheNewLastFile)
{
    openAt("c.jpg", {"a.jpg", "b.jpg", "c.jpg"});
    moveToTrash();
    EXPECT_EQ(controller->currentFile(), folder.at("b.jpg"));
    EXPECT_EQ(controller->fileListManager().currentIndex, 1);
    EXPECT_TRUE(window->windowTitle().endsWith(u"b.jpg"_s));
}

TEST_F(TrashViewer, movingAMiddleFileShowsTheFileThatFollowedIt)
{
    openAt("b.jpg", {"a.jpg", "b.jpg", "c.jpg"});
    moveToTrash();
    EXPECT_EQ(controller->currentFile(), folder.at("c.jpg"));
    EXPECT_EQ(controller->fileListManager().currentIndex, 1);
    EXPECT_TRUE(window->windowTitle().endsWith(u"c.jpg"_s));
    EXPECT_EQ(prefetchSync.waiting(), 1U);
}

TEST_F(TrashViewer, theMoveRunsInTheBackgroundAtUserInitiatedQualityWithinTheScope)
{
    openAt("a.jpg", {"a.jpg", "b.jpg"});
    controller->moveCurrentFileToTrash();
    EXPECT_TRUE(trash.trashed.empty());
    const auto &last = launcher.launched().back();
    EXPECT_EQ(last.label, "com.tallowmere.trash");
    EXPECT_EQ(last.quality, QualityOfService::userInitiated);
    runBackground();
    EXPECT_EQ(trash.trashed.size(), 1U);
    EXPECT_EQ(scope.log().back(), "start " + folder.at("a.jpg").path());
    EXPECT_EQ(controller->currentFile(), folder.at("a.jpg"));
}

TEST_F(TrashViewer, theUndoStateComesFirstAndThenTheList)
{
    openAt("b.jpg", {"a.jpg", "b.jpg", "c.jpg"});
    controller->moveCurrentFileToTrash();
    runBackground();
    ASSERT_EQ(mainQueue.waiting(), 2U);
    const QSignalSpy changes(controller.get(), &ViewController::undoStateChanged);
    mainQueue.runNext();
    const UndoState expected{folder.at("b.jpg"), folder.at("trash").appending("b.jpg"), folder.url(), 1};
    EXPECT_EQ(controller->undoState(), expected);
    EXPECT_EQ(changes.size(), 1);
    EXPECT_EQ(list().size(), 3);
    mainQueue.runNext();
    EXPECT_EQ(list().size(), 2);
    EXPECT_EQ(changes.size(), 1);
}

TEST_F(TrashViewer, withoutAResultingPlaceTheUndoStateStaysAsItWas)
{
    openAt("a.jpg", {"a.jpg", "b.jpg", "c.jpg"});
    moveToTrash();
    const auto before = controller->undoState();
    const QSignalSpy changes(controller.get(), &ViewController::undoStateChanged);
    trash.whenTrashing = [this](const FileURL &file) {
        trash.answer = {true, {}, {}};
        folder.remove(file.lastPathComponent());
    };
    moveToTrash();
    EXPECT_EQ(controller->undoState(), before);
    EXPECT_EQ(changes.size(), 0);
    EXPECT_EQ(controller->currentFile(), folder.at("c.jpg"));
}

TEST_F(TrashViewer, aFailureIsToldAndChangesNothing)
{
    openAt("a.jpg", {"a.jpg", "b.jpg"});
    fail(u"The disk is <b>on fire</b>."_s);
    const auto image = controller->currentImage();
    moveToTrash();
    expectAlert(u"Failed to Move File to Trash"_s, u"The disk is <b>on fire</b>."_s);
    EXPECT_EQ(controller->currentFile(), folder.at("a.jpg"));
    EXPECT_EQ(controller->currentImage(), image);
    EXPECT_FALSE(controller->undoState().has_value());
}

TEST_F(TrashViewer, theTextsOfAnAlertArePlain)
{
    openAt("a.jpg", {"a.jpg"});
    fail(u"<b>x</b>"_s);
    moveToTrash();
    ASSERT_EQ(alerts().size(), 1);
    for (const char *name : {"qt_msgbox_label", "qt_msgbox_informativelabel"}) {
        const auto *label = alerts().front()->findChild<QLabel *>(QString::fromLatin1(name));
        ASSERT_NE(label, nullptr) << name;
        EXPECT_EQ(label->textFormat(), Qt::PlainText) << name;
    }
}

TEST_F(TrashViewer, anAlertKeepsNoQueueWaitingAndGoesForGood)
{
    openAt("a.jpg", {"a.jpg", "b.jpg"});
    fail(u"no"_s);
    moveToTrash();
    ASSERT_EQ(alerts().size(), 1);
    const QPointer<QMessageBox> alert = alerts().front();
    bool ran = false;
    mainQueue.async([&ran] { ran = true; });
    mainQueue.runAll();
    EXPECT_TRUE(ran);
    QTest::keyClick(alert.data(), Qt::Key_Return);
    EXPECT_TRUE(QTest::qWaitFor([&] { return alert.isNull(); }, 30'000));
}

TEST_F(TrashViewer, filesThatAppearedOrVanishedMeanwhileCount)
{
    openAt("b.jpg", {"a.jpg", "b.jpg", "d.jpg"});
    controller->moveCurrentFileToTrash();
    runBackground();
    (void)cachedFile("c.jpg");
    folder.remove("a.jpg");
    mainQueue.runAll();
    EXPECT_EQ(list(), (QList{folder.at("c.jpg"), folder.at("d.jpg")}));
    EXPECT_EQ(controller->currentFile(), folder.at("d.jpg"));
}

TEST_F(TrashViewer, aListThatIsEmptyMeanwhileShowsNothingNew)
{
    openAt("b.jpg", {"a.jpg", "b.jpg"});
    const auto image = controller->currentImage();
    controller->moveCurrentFileToTrash();
    runBackground();
    folder.remove("a.jpg");
    mainQueue.runAll();
    EXPECT_TRUE(list().isEmpty());
    EXPECT_EQ(controller->currentImage(), image);
}

TEST_F(TrashViewer, withoutACurrentFileNothingHappens)
{
    const auto before = launcher.launched().size();
    controller->moveCurrentFileToTrash();
    controller->undoMoveToTrash();
    EXPECT_EQ(launcher.launched().size(), before);
}

TEST_F(TrashViewer, aFileOnItsWayIsNotMovedAgainThoughAnotherArrives)
{
    openAt("a.jpg", {"a.jpg", "b.jpg", "c.jpg"});
    controller->moveCurrentFileToTrash();
    controller->showLaterInList();
    ASSERT_EQ(controller->currentFile(), folder.at("b.jpg"));
    controller->moveCurrentFileToTrash();
    launcher.runAll();
    mainQueue.runAll();
    EXPECT_EQ(trash.trashed, (std::vector{folder.at("a.jpg"), folder.at("b.jpg")}));
    EXPECT_TRUE(alerts().empty());
}

TEST_F(TrashViewer, aWindowClosedDuringTheMoveStaysEmpty)
{
    openAt("a.jpg", {"a.jpg", "b.jpg"});
    controller->moveCurrentFileToTrash();
    controller->showIdleState();
    settle();
    EXPECT_EQ(trash.trashed.size(), 1U);
    EXPECT_TRUE(controller->isIdle());
    EXPECT_TRUE(controller->currentFile().empty());
}

TEST_F(TrashViewer, aWindowClosedDuringTheUndoStaysEmptyButOneThatWasEmptyBeforeShowsTheFile)
{
    openAt("a.jpg", {"a.jpg", "b.jpg"});
    moveToTrash();
    controller->undoMoveToTrash();
    controller->showIdleState();
    settle();
    EXPECT_EQ(trash.restored.size(), 1U);
    EXPECT_TRUE(controller->isIdle());

    openAt("b.jpg", {"b.jpg"});
    moveToTrash();
    controller->showIdleState();
    undo();
    EXPECT_FALSE(controller->isIdle());
    EXPECT_EQ(controller->currentFile(), folder.at("b.jpg"));
}

TEST_F(TrashViewer, aSecondPressWhileTheFileIsOnItsWayDoesNothing)
{
    openAt("a.jpg", {"a.jpg", "b.jpg", "c.jpg"});
    controller->moveCurrentFileToTrash();
    controller->moveCurrentFileToTrash();
    settle();
    EXPECT_EQ(trash.trashed, std::vector{folder.at("a.jpg")});
    EXPECT_TRUE(alerts().isEmpty());
    moveToTrash();
    EXPECT_EQ(trash.trashed.back(), folder.at("b.jpg"));
}

TEST_F(TrashViewer, aFileThatCouldNotBeMovedCanBeTriedAgain)
{
    openAt("a.jpg", {"a.jpg"});
    fail(u"no"_s);
    moveToTrash();
    moveToTrash();
    EXPECT_EQ(trash.trashed.size(), 2U);
}

TEST_F(TrashViewer, ctrlBackspaceMovesAndCtrlZTakesBack)
{
    openAt("b.jpg", {"a.jpg", "b.jpg", "c.jpg"});
    press(Qt::Key_Backspace, Qt::ControlModifier);
    settle();
    EXPECT_EQ(trash.trashed.size(), 1U);
    press(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    press(Qt::Key_Z);
    press(Qt::Key_Backspace);
    settle();
    EXPECT_TRUE(trash.restored.empty());
    press(Qt::Key_Z, Qt::ControlModifier);
    settle();
    EXPECT_EQ(trash.restored.size(), 1U);
}

TEST_F(TrashViewer, anUndoBringsTheFileBackAndShowsIt)
{
    openAt("b.jpg", {"a.jpg", "b.jpg", "c.jpg"});
    moveToTrash();
    const QSignalSpy changes(controller.get(), &ViewController::undoStateChanged);
    undo();
    EXPECT_EQ(controller->currentFile(), folder.at("b.jpg"));
    EXPECT_EQ(controller->fileListManager().currentIndex, 1);
    EXPECT_EQ(list().size(), 3);
    EXPECT_FALSE(controller->undoState().has_value());
    EXPECT_EQ(changes.size(), 1);
    EXPECT_TRUE(alerts().isEmpty());
    EXPECT_EQ(launched("com.tallowmere.restore"), 1);
    undo();
    EXPECT_EQ(launched("com.tallowmere.restore"), 1);
}

TEST_F(TrashViewer, anUndoFromTheIdleStateShowsTheFileAgain)
{
    openAt("a.jpg", {"a.jpg"});
    moveToTrash();
    undo();
    EXPECT_EQ(controller->currentFile(), folder.at("a.jpg"));
    EXPECT_NE(controller->currentImage(), nullptr);
    EXPECT_TRUE(idleScreen()->isHidden());
}

TEST_F(TrashViewer, onlyTheMostRecentMoveIsTakenBack)
{
    openAt("a.jpg", {"a.jpg", "b.jpg", "c.jpg"});
    moveToTrash();
    moveToTrash();
    undo();
    undo();
    ASSERT_EQ(trash.restored.size(), 1U);
    EXPECT_EQ(trash.restored.front().second, folder.at("b.jpg"));
}

TEST_F(TrashViewer, aSecondUndoWhileTheFirstIsOnItsWayDoesNothing)
{
    openAt("a.jpg", {"a.jpg", "b.jpg"});
    moveToTrash();
    controller->undoMoveToTrash();
    controller->undoMoveToTrash();
    settle();
    EXPECT_EQ(trash.restored.size(), 1U);
    EXPECT_TRUE(alerts().isEmpty());
}

TEST_F(TrashViewer, anUndoWithTheOriginalPathOccupiedSaysSoAndForgetsTheUndo)
{
    openAt("a.jpg", {"a.jpg", "b.jpg"});
    moveToTrash();
    (void)folder.write("a.jpg", "restored by hand");
    undo();
    expectAlert(u"Cannot Undo"_s, u"A file already exists at the original location."_s);
    EXPECT_FALSE(controller->undoState().has_value());
    EXPECT_TRUE(trash.restored.empty());
    EXPECT_EQ(folder.read("a.jpg"), QByteArray("restored by hand"));
}

TEST_F(TrashViewer, anUndoAfterEmptyingTheTrashSaysSoAndForgetsTheUndo)
{
    openAt("a.jpg", {"a.jpg", "b.jpg"});
    moveToTrash();
    folder.remove("trash/a.jpg");
    undo();
    expectAlert(u"Cannot Undo"_s, u"The file is no longer available in Trash."_s);
    EXPECT_FALSE(controller->undoState().has_value());
    EXPECT_TRUE(trash.restored.empty());
}

TEST_F(TrashViewer, anUndoThatFailsSaysWhyAndForgetsTheUndo)
{
    openAt("a.jpg", {"a.jpg", "b.jpg"});
    moveToTrash();
    trash.whenRestoring = {};
    trash.restoreAnswer = u"The folder is gone."_s;
    undo();
    expectAlert(u"Failed to Restore File"_s, u"The folder is gone."_s);
    EXPECT_FALSE(controller->undoState().has_value());
    EXPECT_EQ(controller->currentFile(), folder.at("b.jpg"));
}

TEST_F(TrashViewer, openingAnotherFileInBetweenMakesAnUndoDoNothing)
{
    openAt("a.jpg", {"a.jpg", "b.jpg", "c.jpg"});
    moveToTrash();
    open(folder.at("c.jpg"));
    undo();
    EXPECT_TRUE(trash.restored.empty());
    EXPECT_EQ(controller->currentFile(), folder.at("c.jpg"));
}

TEST_F(TrashViewer, aRestoredFileThatTheListingLeavesOutIsOpened)
{
    settings.setPngSupportEnabled(true);
    openAt("a.png", {"a.png", "b.jpg"});
    moveToTrash();
    settings.setPngSupportEnabled(false);
    const QSignalSpy changes(controller.get(), &ViewController::undoStateChanged);
    undo();
    EXPECT_EQ(changes.size(), 2) << "cleared by the undo and by the opening";
    EXPECT_NE(controller->currentImage(), nullptr);
    EXPECT_TRUE(window->windowTitle().endsWith(u"a.png"_s));
    EXPECT_EQ(list(), QList{folder.at("b.jpg")});
}

TEST_F(TrashViewer, theRestoreRunsWithinTheScopeOfTheTrashedFile)
{
    openAt("a.jpg", {"a.jpg", "b.jpg"});
    moveToTrash();
    controller->undoMoveToTrash();
    EXPECT_EQ(launcher.launched().back().quality, QualityOfService::userInitiated);
    runBackground();
    EXPECT_EQ(scope.log().back(), "start " + folder.at("trash").appending("a.jpg").path());
    EXPECT_TRUE(controller->undoState().has_value());
}

TEST_F(TrashViewer, nothingIsMovedForAControllerThatIsGone)
{
    openAt("a.jpg", {"a.jpg", "b.jpg"});
    controller->moveCurrentFileToTrash();
    controller.reset();
    settle();
    EXPECT_TRUE(trash.trashed.empty());
}

TEST_F(TrashViewer, resultsForAControllerThatIsGoneAreDropped)
{
    openAt("a.jpg", {"a.jpg", "b.jpg"});
    fail(u"no"_s);
    controller->moveCurrentFileToTrash();
    runBackground();
    controller.reset();
    mainQueue.runAll();
    EXPECT_TRUE(alerts().isEmpty());
}

TEST_F(TrashViewer, theMenuLearnsThatThereIsNoFileAnyMore)
{
    openAt("a.jpg", {"a.jpg"});
    const int before = shell.menuRefreshes;
    moveToTrash();
    EXPECT_GT(shell.menuRefreshes, before);
}

} // namespace
} // namespace tallowmere::test
