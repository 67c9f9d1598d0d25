// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "tests/app/ApplicationFixture.h"
#include "tests/doubles/ScopedEnvironment.h"

#include <QApplication>
#include <QMenuBar>
#include <QScreen>
#include <QTest>

namespace tallowmere {

namespace {

using namespace tallowmere::test;
using namespace Qt::Literals::StringLiterals;
using Kind = ApplicationRequest::Kind;

class Lifecycle : public ApplicationFixture
{};

/// Puts the application's palette back at the end.
class PaletteChange final
{
public:
    explicit PaletteChange(const QColor &window)
    {
        QPalette palette = m_old;
        palette.setColor(QPalette::Window, window);
        QApplication::setPalette(palette);
    }
    ~PaletteChange() { QApplication::setPalette(m_old); }
    PaletteChange(const PaletteChange &) = delete;
    PaletteChange &operator=(const PaletteChange &) = delete;

private:
    const QPalette m_old = QApplication::palette();
};

} // namespace

TEST_F(Lifecycle, launchWithoutAFileShowsTheEmptyViewerCentredWithAContentOf600By400)
{
    launch();
    EXPECT_TRUE(window()->isVisible());
    EXPECT_TRUE(showsIdleScreen());
    EXPECT_EQ(window()->windowTitle(), u"Tallowmere"_s);
    EXPECT_EQ(view()->size(), QSize(600, 400));
    const QPoint offset = window()->frameGeometry().center() - window()->screen()->availableGeometry().center();
    EXPECT_LE(offset.manhattanLength(), 2) << "half a point is lost to rounding in either direction";
}

TEST_F(Lifecycle, theMenuBarTakesNothingFromTheContent)
{
    launch();
    EXPECT_GT(window()->height(), 400);
    EXPECT_EQ(window()->width(), 600);
}

TEST_F(Lifecycle, launchByOpeningAPngWithPngSwitchedOffRefusesTheFileButShowsTheWindow)
{
    settings.setPngSupportEnabled(false);
    const FileURL png = folder.write("a.png");
    EXPECT_FALSE(delegate->applicationOpenFile(png));
    EXPECT_EQ(window(), nullptr);
    launch();
    EXPECT_TRUE(window()->isVisible());
    EXPECT_TRUE(showsIdleScreen());
}

TEST_F(Lifecycle, openingThreeFilesAtOnceOpensOnlyTheFirstInTheList)
{
    launch();
    const QList<FileURL> files{photo("b.jpg"), photo("a.jpg"), photo("c.jpg")};
    delegate->applicationOpenFiles(files);
    settle();
    EXPECT_EQ(delegate->viewController()->currentFile(), files.first());
    EXPECT_EQ(window()->windowTitle(), u"Tallowmere • b.jpg"_s);
}

TEST_F(Lifecycle, aRefusedFirstFileLetsNoOtherTakeItsPlace)
{
    launch();
    delegate->applicationOpenFiles({folder.write("notes.txt"), photo("a.jpg")});
    settle();
    EXPECT_TRUE(window()->isVisible());
    EXPECT_TRUE(showsIdleScreen());
    EXPECT_TRUE(delegate->viewController()->currentFile().empty());
}

TEST_F(Lifecycle, openingSeveralShowsTheWindowEvenWhenThereIsNothingToOpen)
{
    delegate->applicationOpenFiles({});
    ASSERT_NE(window(), nullptr);
    EXPECT_TRUE(window()->isVisible());
    EXPECT_TRUE(showsIdleScreen());
}

TEST_F(Lifecycle, anUpperCaseExtensionIsAccepted)
{
    launch();
    const FileURL file = photo("A.JPG");
    EXPECT_TRUE(delegate->applicationOpenFile(file));
    settle();
    EXPECT_EQ(delegate->viewController()->currentFile(), file);
}

TEST_F(Lifecycle, aNameThatIsNoTextIsOpenedAndShown)
{
    launch();
    const FileURL file = photo("\xe9t\xe9 #%\n.jpg");
    EXPECT_TRUE(delegate->applicationOpenFile(file));
    settle();
    EXPECT_EQ(delegate->viewController()->currentFile(), file);
    EXPECT_TRUE(window()->windowTitle().contains(u"t\uFFFD #%"_s)) << window()->windowTitle().toStdString();
}

TEST_F(Lifecycle, accessToTheFileIsStartedAndStoppedInPairs)
{
    launch();
    const FileURL file = photo("a.jpg");
    delegate->applicationOpenFile(file);
    delegate->applicationOpenFiles({file});
    settle();
    const auto log = scope.log();
    EXPECT_EQ(std::count(log.begin(), log.end(), "start " + file.path()),
              std::count(log.begin(), log.end(), "stop " + file.path()));
    EXPECT_GE(std::count(log.begin(), log.end(), "start " + file.path()), 2);
}

TEST_F(Lifecycle, closingAndReopeningShowsTheSameWindowEmptyWithAFrameOf600By400)
{
    launch();
    open(photo("a.jpg"));
    window()->resize(700, 500);
    MainWindow *const before = window();

    window()->close();
    settle();
    EXPECT_FALSE(window()->isVisible());
    EXPECT_FALSE(QApplication::quitOnLastWindowClosed());

    EXPECT_TRUE(delegate->applicationShouldHandleReopen(false));
    settle();
    EXPECT_EQ(window(), before);
    EXPECT_TRUE(window()->isVisible());
    EXPECT_TRUE(showsIdleScreen());
    EXPECT_EQ(delegate->viewController()->currentImage(), nullptr);
    EXPECT_TRUE(delegate->viewController()->currentFile().empty());
    EXPECT_EQ(window()->windowTitle(), u"Tallowmere"_s);
    EXPECT_TRUE(frameBecomes({600, 400}));
}

TEST_F(Lifecycle, aWindowClosedWhileMaximisedComesBackAsAnOrdinaryOne)
{
    launch();
    window()->showMaximized();
    ASSERT_TRUE(QTest::qWaitFor([this] { return window()->isMaximized(); }, 30'000));
    window()->close();
    settle();
    delegate->applicationShouldHandleReopen(false);
    EXPECT_FALSE(window()->isMaximized());
    EXPECT_TRUE(frameBecomes({600, 400}));
}

TEST_F(Lifecycle, reopeningWithAVisibleWindowDoesNothing)
{
    EXPECT_TRUE(delegate->applicationShouldHandleReopen(true));
    EXPECT_EQ(window(), nullptr);
    EXPECT_TRUE(delegate->applicationShouldHandleReopen(false));
    ASSERT_NE(window(), nullptr);
    EXPECT_TRUE(window()->isVisible());
}

TEST_F(Lifecycle, aRefusedFileLeavesAClosedWindowClosed)
{
    launch();
    window()->close();
    settle();
    EXPECT_FALSE(delegate->applicationOpenFile(folder.write("notes.txt")));
    settle();
    EXPECT_FALSE(window()->isVisible());
}

TEST_F(Lifecycle, aFileBringsAClosedWindowBack)
{
    launch();
    window()->close();
    settle();
    EXPECT_TRUE(delegate->applicationOpenFile(photo("a.jpg")));
    settle();
    EXPECT_TRUE(window()->isVisible());
    EXPECT_FALSE(showsIdleScreen());
}

TEST_F(Lifecycle, aFileBringsAMinimisedWindowBack)
{
    launch();
    window()->showMinimized();
    delegate->applicationOpenFile(photo("a.jpg"));
    EXPECT_FALSE(window()->isMinimized());
}

TEST_F(Lifecycle, aChangeOfThePaletteReachesWindowAndViewer)
{
    launch();
    const QColor dark(20, 30, 40);
    const PaletteChange change(dark);
    QCoreApplication::processEvents();
    settle();
    EXPECT_EQ(window()->palette().color(QPalette::Window), dark);
    EXPECT_EQ(background(), dark);
}

TEST_F(Lifecycle, theDesktopsLeaveToComeForwardIsNotSpentOnARefusedFile)
{
    launch();
    const ScopedEnvironment noToken("XDG_ACTIVATION_TOKEN", std::nullopt);
    delegate->handle({ApplicationRequest::Kind::openFile, {folder.write("notes.txt")}, "token"});
    EXPECT_FALSE(qEnvironmentVariableIsSet("XDG_ACTIVATION_TOKEN"));
    delegate->handle({ApplicationRequest::Kind::openFile, {photo("a.jpg")}, "token"});
    EXPECT_EQ(qgetenv("XDG_ACTIVATION_TOKEN"), "token");
}

TEST_F(Lifecycle, aPaletteOfTheSameWindowColourLeavesTheBackgroundAlone)
{
    launch();
    const QColor average(1, 2, 3);
    delegate->viewController()->applyBackgroundColor(average);
    QPalette accented = QApplication::palette();
    const QPalette before = accented;
    accented.setColor(QPalette::Highlight, QColor(200, 30, 100));
    QApplication::setPalette(accented);
    QCoreApplication::processEvents();
    settle();
    EXPECT_EQ(background(), average);
    QApplication::setPalette(before);
}

TEST_F(Lifecycle, theRefreshAfterAChangeOfThePaletteIsPosted)
{
    launch();
    const QColor before = background();
    const PaletteChange change(QColor(20, 30, 40));
    EXPECT_EQ(background(), before);
    EXPECT_GE(mainQueue.waiting(), 1U);
}

TEST_F(Lifecycle, aPostedRefreshOutlivesTheDelegate)
{
    launch();
    const PaletteChange change(QColor(20, 30, 40));
    delegate.reset();
    mainQueue.runAll(); // reaches nobody
}

TEST_F(Lifecycle, keysGoToTheViewerAfterLaunchAndWheneverTheWindowBecomesActive)
{
    launch();
    EXPECT_EQ(QApplication::focusWidget(), view());
    window()->menuBar()->setFocus();
    QEvent activate(QEvent::WindowActivate);
    QCoreApplication::sendEvent(window(), &activate);
    settle();
    EXPECT_EQ(QApplication::focusWidget(), view());
}

TEST_F(Lifecycle, hidingTheApplicationMinimisesItsWindows)
{
    launch();
    delegate->hideApplication();
    EXPECT_TRUE(window()->isMinimized());
}

TEST_F(Lifecycle, aRequestForOneFileIsRefusedInSilenceAndOneForSeveralIsNot)
{
    launch();
    window()->close();
    settle();
    const FileURL notes = folder.write("notes.txt");
    delegate->handle({Kind::openFile, {notes}, {}});
    EXPECT_FALSE(window()->isVisible());
    delegate->handle({Kind::openFiles, {notes}, {}});
    EXPECT_TRUE(window()->isVisible());
}

TEST_F(Lifecycle, aRequestToComeForwardShowsAClosedAndAMinimisedWindow)
{
    launch();
    window()->close();
    settle();
    delegate->handle({Kind::reopen, {}, {}});
    EXPECT_TRUE(window()->isVisible());
    window()->showMinimized();
    delegate->handle({Kind::reopen, {}, {}});
    EXPECT_FALSE(window()->isMinimized());
}

TEST_F(Lifecycle, aRequestToComeForwardKeepsTheImage)
{
    launch();
    const FileURL file = photo("a.jpg");
    open(file);
    delegate->handle({Kind::reopen, {}, {}});
    settle();
    EXPECT_EQ(delegate->viewController()->currentFile(), file);
}

TEST_F(Lifecycle, aRequestToQuitEndsTheEventLoop)
{
    launch();
    QMetaObject::invokeMethod(
        qApp,
        [this] {
        delegate->handle({Kind::quit, {}, {}});
        },
        Qt::QueuedConnection);
    EXPECT_EQ(QApplication::exec(), 0);
}

} // namespace tallowmere
