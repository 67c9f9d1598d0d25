// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "tests/app/MenuFixture.h"
#include "viewer/Pill.h"
#include "viewer/TagCircle.h"

#include <QAction>
#include <QApplication>
#include <QDialog>
#include <QFileDialog>
#include <QTest>

namespace tallowmere {

using namespace tallowmere::test;

class MenuCommand : public MenuFixture
{};

TEST_F(MenuCommand, eachDisplayToggleWritesItsSettingAndMarksItsItem)
{
    struct Toggle
    {
        QAction *MainMenu::*item;
        bool (SettingsManager::*read)() const;
    };
    const Toggle toggles[] = {
        {&MainMenu::showFileSizeMenuItem, &SettingsManager::showFileSize},
        {&MainMenu::showCreationDateMenuItem, &SettingsManager::showCreationDate},
        {&MainMenu::showImageResolutionMenuItem, &SettingsManager::showImageResolution},
        {&MainMenu::showFileTagMenuItem, &SettingsManager::showFileTag},
    };
    launch();
    for (const Toggle &toggle : toggles) {
        QAction *const item = menu()->*toggle.item;
        const bool before = (settings.*toggle.read)();
        EXPECT_EQ(item->isChecked(), before) << item->text().toStdString();
        item->trigger();
        EXPECT_EQ((settings.*toggle.read)(), !before) << item->text().toStdString();
        EXPECT_EQ(item->isChecked(), !before) << item->text().toStdString();
        item->trigger();
        EXPECT_EQ((settings.*toggle.read)(), before) << item->text().toStdString();
        EXPECT_EQ(item->isChecked(), before) << item->text().toStdString();
        EXPECT_TRUE(item->isEnabled());
    }
}

TEST_F(MenuCommand, theInformationFollowsItsTogglesAtOnce)
{
    settings.setShowImageResolution(false);
    launch();
    open(photo("a.jpg", 320, 240));
    const Pill *pill = view()->findChild<Pill *>(u"fileInfoPill"_s);
    ASSERT_NE(pill, nullptr);
    EXPECT_TRUE(pill->isVisible());
    EXPECT_EQ(pill->text(), u"2 MB"_s);
    menu()->showCreationDateMenuItem->trigger();
    menu()->showImageResolutionMenuItem->trigger();
    settle();
    EXPECT_EQ(pill->text(), u"2 MB • Unknown • 320×240"_s);
    for (QAction *item :
         {menu()->showFileSizeMenuItem, menu()->showCreationDateMenuItem, menu()->showImageResolutionMenuItem})
        item->trigger();
    EXPECT_FALSE(pill->isVisible());
    settle();
    EXPECT_FALSE(pill->isVisible());
}

TEST_F(MenuCommand, theFileTagFollowsItsToggleAtOnce)
{
    labels.stated = {.number = 3, .colour = {}};
    launch();
    open(photo("a.jpg"));
    const TagCircle *circle = view()->findChild<TagCircle *>();
    ASSERT_NE(circle, nullptr);
    EXPECT_FALSE(circle->isVisible());
    menu()->showFileTagMenuItem->trigger();
    settle();
    EXPECT_TRUE(circle->isVisible());
    menu()->showFileTagMenuItem->trigger();
    EXPECT_FALSE(circle->isVisible());
}

TEST_F(MenuCommand, inTheCornerShowsTheNameThere)
{
    launch();
    open(photo("a.jpg"));
    const Pill *pill = view()->findChild<Pill *>(u"fileNamePill"_s);
    ASSERT_NE(pill, nullptr);
    EXPECT_FALSE(pill->isVisible());
    menu()->fileNameInCornerMenuItem->trigger();
    EXPECT_TRUE(pill->isVisible());
    EXPECT_EQ(pill->text(), u"a.jpg"_s);
    EXPECT_EQ(window()->windowTitle(), u"Tallowmere"_s);
    menu()->fileNameOffMenuItem->trigger();
    EXPECT_FALSE(pill->isVisible());
}

TEST_F(MenuCommand, theFileNameLeavesAndEntersTheTitleAtOnce)
{
    launch();
    open(photo("a.jpg"));
    menu()->fileNameOffMenuItem->trigger();
    EXPECT_EQ(window()->windowTitle(), u"Tallowmere"_s);
    menu()->fileNameInTitleMenuItem->trigger();
    EXPECT_EQ(window()->windowTitle(), u"Tallowmere • a.jpg"_s);
}

TEST_F(MenuCommand, fitToImageTwiceInARowSwitchesAutomaticResizingOnAndOff)
{
    launch();
    open(photo("a.jpg", 300, 200));
    press(Qt::Key_4);
    EXPECT_TRUE(settings.autoResizeToImageSize());
    EXPECT_TRUE(menu()->autoResizeMenuItem->isChecked());
    EXPECT_EQ(sizeMarks(), (std::vector<bool>{false, false, false, true}));
    EXPECT_TRUE(QTest::qWaitFor([this] { return view()->size() == QSize(300, 200); }, 30'000));

    window()->resize(500, 450);
    press(Qt::Key_4);
    EXPECT_FALSE(settings.autoResizeToImageSize());
    EXPECT_FALSE(menu()->autoResizeMenuItem->isChecked());
    EXPECT_EQ(sizeMarks(), (std::vector<bool>{false, false, false, false}));
    EXPECT_EQ(window()->size(), QSize(500, 450)); // not resized
    EXPECT_EQ(background(), systemBackground());
}

TEST_F(MenuCommand, fitToImageGivesTheViewerTheAverageColour)
{
    launch();
    open(photo("a.jpg"));
    EXPECT_EQ(background(), systemBackground());
    menu()->resizeToImageMenuItem->trigger();
    settle();
    EXPECT_NEAR(background().red(), 200, 6);
    EXPECT_NEAR(background().green(), 100, 6);
    EXPECT_NEAR(background().blue(), 50, 6);
}

TEST_F(MenuCommand, anAverageColourThatComesTooLateIsNotShown)
{
    launch();
    open(photo("a.jpg"));
    menu()->resizeToImageMenuItem->trigger();
    menu()->resizeToImageMenuItem->trigger(); // off before the computation has begun
    settle();
    EXPECT_EQ(background(), systemBackground());
}

TEST_F(MenuCommand, smallWindowEndsAutomaticResizingAndGivesAFrameOf600By400)
{
    settings.setAutoResizeToImageSize(true);
    launch();
    open(photo("a.jpg", 300, 200));
    press(Qt::Key_1);
    EXPECT_FALSE(settings.autoResizeToImageSize());
    EXPECT_FALSE(menu()->autoResizeMenuItem->isChecked());
    EXPECT_EQ(sizeMarks(), (std::vector<bool>{true, false, false, false}));
    EXPECT_TRUE(frameBecomes({600, 400}));
    EXPECT_EQ(background(), systemBackground());
}

TEST_F(MenuCommand, mediumWindowKeepsTheCentre)
{
    launch();
    press(Qt::Key_1);
    ASSERT_TRUE(frameBecomes({600, 400}));
    const QPoint centre = window()->frameGeometry().center();
    menu()->resizeMediumMenuItem->trigger();
    EXPECT_TRUE(frameBecomes({900, 600}));
    EXPECT_LE((window()->frameGeometry().center() - centre).manhattanLength(), 2);
    EXPECT_EQ(sizeMarks(), (std::vector<bool>{false, true, false, false}));
}

TEST_F(MenuCommand, largeWindowLeaves40PointsOfTheScreenOnEverySide)
{
    launch();
    press(Qt::Key_3);
    EXPECT_TRUE(frameBecomes(window()->screen()->availableGeometry().adjusted(40, 40, -40, -40).size()));
    EXPECT_EQ(sizeMarks(), (std::vector<bool>{false, false, true, false}));
}

TEST_F(MenuCommand, aSizeChosenTwiceStaysMarked)
{
    launch();
    menu()->resizeSmallMenuItem->trigger();
    menu()->resizeSmallMenuItem->trigger();
    EXPECT_EQ(sizeMarks(), (std::vector<bool>{true, false, false, false}));
}

TEST_F(MenuCommand, aRefreshLeavesTheMarksOfTheSizesAlone)
{
    launch();
    menu()->resizeSmallMenuItem->trigger();
    delegate->refreshMenuItems();
    EXPECT_EQ(sizeMarks(), (std::vector<bool>{true, false, false, false}));
}

TEST_F(MenuCommand, autoResizeSwitchedOnFitsTheWindowAndSwitchedOffRestoresTheBackground)
{
    launch();
    open(photo("a.jpg", 320, 240));
    menu()->autoResizeMenuItem->trigger();
    settle();
    EXPECT_TRUE(settings.autoResizeToImageSize());
    EXPECT_TRUE(menu()->autoResizeMenuItem->isChecked());
    EXPECT_TRUE(QTest::qWaitFor([this] { return view()->size() == QSize(320, 240); }, 30'000));
    EXPECT_NE(background(), systemBackground());

    menu()->autoResizeMenuItem->trigger();
    EXPECT_FALSE(settings.autoResizeToImageSize());
    EXPECT_FALSE(menu()->autoResizeMenuItem->isChecked());
    EXPECT_EQ(background(), systemBackground());
    EXPECT_EQ(view()->size(), QSize(320, 240));
}

TEST_F(MenuCommand, autoResizeWithoutAnImageOnlyChangesTheSetting)
{
    launch();
    const QRect before = window()->geometry();
    menu()->autoResizeMenuItem->trigger();
    settle();
    EXPECT_TRUE(settings.autoResizeToImageSize());
    EXPECT_EQ(window()->geometry(), before);
}

TEST_F(MenuCommand, commandsWithoutAViewerDoNothing)
{
    delegate->openFile();
    delegate->showInFinder();
    delegate->moveToTrash();
    delegate->showKeyboardShortcuts();
    delegate->closeWindow();
    delegate->resizeWindowSmall();
    delegate->resizeWindowMedium();
    delegate->resizeWindowLarge();
    delegate->setFileNameDisplayInCorner();
    delegate->toggleShowFileSize();
    delegate->toggleShowCreationDate();
    delegate->toggleShowImageResolution();
    delegate->toggleShowFileTag();
    delegate->toggleAutoResizeToImageSize();
    EXPECT_TRUE(settings.autoResizeToImageSize()); // the setting itself needs none
    delegate->resizeWindowToImage();
    EXPECT_FALSE(settings.autoResizeToImageSize());
    EXPECT_EQ(window(), nullptr);
}

TEST_F(MenuCommand, closeWindowHidesTheViewerAndResetsIt)
{
    launch();
    open(photo("a.jpg"));
    press(Qt::Key_W);
    EXPECT_FALSE(window()->isVisible());
    EXPECT_TRUE(delegate->viewController()->currentFile().empty());
}

TEST_F(MenuCommand, closeWindowWithAnotherWindowInFrontClosesThatOne)
{
    launch();
    QDialog other(window());
    other.show();
    other.activateWindow();
    ASSERT_TRUE(QTest::qWaitFor([&other] { return QApplication::activeWindow() == &other; }, 30'000));
    QTest::keyClick(other.windowHandle(), Qt::Key_W, Qt::ControlModifier);
    EXPECT_FALSE(other.isVisible());
    EXPECT_TRUE(window()->isVisible());
}

TEST_F(MenuCommand, quitEndsTheEventLoop)
{
    launch();
    QMetaObject::invokeMethod(
        qApp, [this] { press(Qt::Key_Q); }, Qt::QueuedConnection);
    EXPECT_EQ(QApplication::exec(), 0);
}

TEST_F(MenuCommand, withAllFourFormatsOffTheOpenPanelOffersJpegOnly)
{
    settings.setPngSupportEnabled(false);
    settings.setWebpSupportEnabled(false);
    settings.setAvifSupportEnabled(false);
    settings.setHeicSupportEnabled(false);
    launch();
    press(Qt::Key_O);
    auto *panel = window()->findChild<QFileDialog *>();
    ASSERT_NE(panel, nullptr);
    const QString filters = (panel->nameFilters() + panel->mimeTypeFilters()).join(u' ');
    EXPECT_TRUE(filters.contains(u"*.jpg"_s)) << filters.toStdString();
    for (const QString &other : {u"png"_s, u"webp"_s, u"avif"_s, u"heic"_s, u"heif"_s})
        EXPECT_FALSE(filters.contains(other)) << filters.toStdString();
    EXPECT_FALSE(panel->isModal());
    panel->close();
}

} // namespace tallowmere
