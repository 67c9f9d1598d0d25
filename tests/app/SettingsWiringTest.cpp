// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "browsing/FileListManager.h"
#include "settings/SettingsViewController.h"
#include "tests/app/ApplicationFixture.h"
#include "tests/doubles/TestImages.h"
#include "viewer/Pill.h"
#include "viewer/TagCircle.h"
#include "viewer/TransparencyChecker.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QTest>

namespace tallowmere {

namespace {

using namespace tallowmere::test;
using namespace Qt::Literals::StringLiterals;

/// The Settings window's controls in use: what they do to the viewer, the menu and the cache.
class SettingsWiring : public ApplicationFixture
{
protected:
    void launchWithSettings()
    {
        launch();
        delegate->showSettings();
        settle();
    }
    template <typename Control>
    Control *control(const QString &name) const
    {
        auto *found = delegate->settingsViewController()->findChild<Control *>(name);
        EXPECT_NE(found, nullptr) << name.toStdString();
        return found;
    }
    void click(const QString &checkBox)
    {
        control<QCheckBox>(checkBox)->click();
        settle();
    }
    void choose(const QString &popup, int row)
    {
        control<QComboBox>(popup)->setCurrentIndex(row);
        settle();
    }
    void enter(const QString &field, const QString &text)
    {
        auto *edit = control<QLineEdit>(field);
        edit->selectAll();
        QTest::keyClicks(edit, text);
        QTest::keyClick(edit, Qt::Key_Return);
    }
    Pill *pill(const QString &name) const { return view()->findChild<Pill *>(name); }
    FileListManager &list() const { return delegate->viewController()->fileListManager(); }
};

} // namespace

TEST_F(SettingsWiring, turningPngSupportOffWhileAPngIsShownRebuildsTheListWithoutPngFiles)
{
    const FileURL png = folder.write("b.png", jpegOf(300, 200, {1, 2, 3, 255})); // told by its bytes
    photo("a.jpg");
    photo("c.jpg");
    launchWithSettings();
    open(png);
    ASSERT_EQ(list().fileURLs.size(), 3);
    click(u"pngSupportCheckbox"_s);
    EXPECT_FALSE(settings.pngSupportEnabled());
    EXPECT_EQ(list().fileURLs.size(), 2);
    EXPECT_FALSE(list().fileURLs.contains(png));
    click(u"pngSupportCheckbox"_s);
    EXPECT_EQ(list().fileURLs.size(), 3);
}

TEST_F(SettingsWiring, aChangedFormatRestartsPrefetchingAroundTheCurrentFile)
{
    settings.setPngSupportEnabled(false);
    const FileURL first = photo("a.jpg");
    const FileURL png = folder.write("b.png", jpegOf(300, 200, {1, 2, 3, 255}));
    launchWithSettings();
    open(first);
    settle();
    while (prefetchSync.waiting() > 0 || prefetches.waiting() > 0) {
        prefetchSync.runAll();
        prefetches.runAll();
        settle();
    }
    EXPECT_EQ(cache->imageCache.find(png), nullptr);
    click(u"pngSupportCheckbox"_s);
    while (prefetchSync.waiting() > 0 || prefetches.waiting() > 0) {
        prefetchSync.runAll();
        prefetches.runAll();
        settle();
    }
    EXPECT_NE(cache->imageCache.find(png), nullptr);
}

TEST_F(SettingsWiring, aChangedFormatWithNoFileOpenListsNothing)
{
    launchWithSettings();
    click(u"webpSupportCheckbox"_s);
    EXPECT_FALSE(settings.webpSupportEnabled());
    EXPECT_TRUE(list().fileURLs.isEmpty());
}

TEST_F(SettingsWiring, theInformationFollowsItsSwitchesAndTheMenuToo)
{
    settings.setShowImageResolution(false);
    launchWithSettings();
    open(photo("a.jpg", 320, 240));
    EXPECT_EQ(pill(u"fileInfoPill"_s)->text(), u"2 MB"_s);
    click(u"showImageResolutionCheckbox"_s);
    EXPECT_EQ(pill(u"fileInfoPill"_s)->text(), u"2 MB • 320×240"_s);
    EXPECT_TRUE(menu()->showImageResolutionMenuItem->isChecked());
    click(u"showImageResolutionCheckbox"_s);
    click(u"showFileSizeCheckbox"_s);
    EXPECT_FALSE(pill(u"fileInfoPill"_s)->isVisible());
    EXPECT_FALSE(menu()->showFileSizeMenuItem->isChecked());
}

TEST_F(SettingsWiring, theFileTagFollowsItsSwitchAndTheMenuToo)
{
    labels.stated = {.number = 3, .colour = {}};
    launchWithSettings();
    open(photo("a.jpg"));
    EXPECT_FALSE(view()->findChild<TagCircle *>()->isVisible());
    click(u"showFileTagCheckbox"_s);
    EXPECT_TRUE(view()->findChild<TagCircle *>()->isVisible());
    EXPECT_TRUE(menu()->showFileTagMenuItem->isChecked());
}

TEST_F(SettingsWiring, automaticResizingFitsTheWindowWithTheAverageColourAndOffRestoresTheBackground)
{
    launchWithSettings();
    open(photo("a.jpg", 320, 240));
    const QColor before = background();
    click(u"autoResizeToImageSizeCheckbox"_s);
    EXPECT_TRUE(menu()->autoResizeMenuItem->isChecked());
    EXPECT_TRUE(QTest::qWaitFor([this] { return view()->size() == QSize(320, 240); }, 30'000));
    EXPECT_NEAR(background().red(), 200, 6);
    click(u"autoResizeToImageSizeCheckbox"_s);
    EXPECT_FALSE(menu()->autoResizeMenuItem->isChecked());
    EXPECT_EQ(background(), before);
    EXPECT_EQ(view()->size(), QSize(320, 240));
}

TEST_F(SettingsWiring, theCheckerboardFollowsItsPopup)
{
    launchWithSettings();
    open(folder.write("a.png", pngOf(300, 200, {0, 0, 0, 0}, true)));
    const auto *board = view()->findChild<TransparencyChecker *>();
    EXPECT_FALSE(board->isVisible());
    choose(u"transparencyBackgroundPopup"_s, 1);
    EXPECT_TRUE(board->isVisible());
    choose(u"transparencyBackgroundPopup"_s, 0);
    EXPECT_FALSE(board->isVisible());
}

TEST_F(SettingsWiring, showFileNameInTheCornerEmptiesTheTitleAndShowsThePill)
{
    launchWithSettings();
    open(photo("a.jpg"));
    choose(u"fileNameDisplayLocationPopup"_s, 1);
    EXPECT_EQ(window()->windowTitle(), u"Tallowmere"_s);
    EXPECT_TRUE(pill(u"fileNamePill"_s)->isVisible());
    EXPECT_TRUE(menu()->fileNameInCornerMenuItem->isChecked());
    EXPECT_FALSE(menu()->fileNameInTitleMenuItem->isChecked());
}

TEST_F(SettingsWiring, thePrefetchCountsGoToTheCache)
{
    cache->prefetchBefore = 4;
    launchWithSettings();
    EXPECT_EQ(control<QLineEdit>(u"prefetchBeforeField"_s)->text(), u"4"_s);
    EXPECT_EQ(control<QLineEdit>(u"prefetchAfterField"_s)->text(), u"20"_s);
    enter(u"prefetchBeforeField"_s, u"0"_s);
    enter(u"prefetchAfterField"_s, u"100"_s);
    EXPECT_EQ(cache->prefetchBefore, 0);
    EXPECT_EQ(cache->prefetchAfter, 100);
    enter(u"prefetchBeforeField"_s, u"150"_s);
    EXPECT_EQ(control<QLineEdit>(u"prefetchBeforeField"_s)->text(), u"0"_s);
    EXPECT_EQ(cache->prefetchBefore, 0) << "the cache keeps its count";
}

TEST_F(SettingsWiring, aNewCountTakesEffectAtTheNextStep)
{
    const FileURL first = photo("a.jpg");
    const FileURL second = photo("b.jpg");
    const FileURL third = photo("c.jpg");
    cache->prefetchBefore = 0;
    cache->prefetchAfter = 0;
    launchWithSettings();
    open(first);
    prefetchSync.runAll();
    ASSERT_EQ(prefetches.waiting(), 0U);
    enter(u"prefetchAfterField"_s, u"2"_s);
    settle();
    prefetchSync.runAll();
    EXPECT_EQ(prefetches.waiting(), 0U) << "the same list and index: nothing new to do";
    delegate->viewController()->showLaterInList();
    settle();
    prefetchSync.runAll();
    EXPECT_EQ(prefetches.waiting(), 1U) << "the one after the second";
}

TEST_F(SettingsWiring, aToggleInTheMenuTicksTheBox)
{
    launchWithSettings();
    const auto *box = control<QCheckBox>(u"showFileSizeCheckbox"_s);
    const bool before = box->isChecked();
    menu()->showFileSizeMenuItem->trigger();
    EXPECT_EQ(box->isChecked(), !before);
    menu()->fileNameOffMenuItem->trigger();
    EXPECT_EQ(control<QComboBox>(u"fileNameDisplayLocationPopup"_s)->currentIndex(), 2);
}

} // namespace tallowmere
