// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "tests/doubles/TestImages.h"
#include "tests/viewer/ApplicationFont.h"
#include "tests/viewer/ViewerFixture.h"
#include "viewer/Pill.h"
#include "viewer/rules/LabelColour.h"
#include "viewer/TagCircle.h"

#include <QAccessible>
#include <QTest>

#include <algorithm>

namespace tallowmere::test {
namespace {

using namespace Qt::Literals::StringLiterals;

class Overlays : public ViewerFixture
{
protected:
    Overlays()
    {
        settings.setShowFileTag(false);
        showOnly(true, false, false);
    }
    void showOnly(bool size, bool date, bool resolution)
    {
        settings.setShowFileSize(size);
        settings.setShowCreationDate(date);
        settings.setShowImageResolution(resolution);
    }
    void showNameIn(FileNameDisplayLocation location)
    {
        settings.setFileNameDisplayLocation(location);
        controller->updateFileNameDisplay(controller->currentFile());
    }
    /// Until nothing is left to be done in the background.
    void settle()
    {
        do {
            mainQueue.runAll();
            launcher.runAll();
        } while (mainQueue.waiting() > 0);
    }
    [[nodiscard]] std::ptrdiff_t launched(const char *label) const
    {
        return std::ranges::count_if(launcher.launched(), [&](const auto &each) { return each.label == label; });
    }
    [[nodiscard]] Pill *infoPill() const { return controller->view()->findChild<Pill *>(u"fileInfoPill"_s); }
    [[nodiscard]] Pill *namePill() const { return controller->view()->findChild<Pill *>(u"fileNamePill"_s); }
    [[nodiscard]] TagCircle *tagCircle() const { return controller->view()->findChild<TagCircle *>(); }
    [[nodiscard]] QColor standardColour(int number) const
    {
        const Color &color = standardLabelColours()[static_cast<std::size_t>(number) - 1];
        return QColor::fromRgbF(static_cast<float>(color.red), static_cast<float>(color.green),
                                static_cast<float>(color.blue));
    }
};

TEST_F(Overlays, allThreeInformationSettingsOffHideThePillAndStartNoBackgroundWork)
{
    showOnly(false, false, false);
    showWindow();
    open(cachedFile("a.jpg"));
    settle();
    EXPECT_TRUE(infoPill()->isHidden());
    EXPECT_EQ(launched("com.tallowmere.fileInfo"), 0);
    EXPECT_EQ(attributes.reads, 0);
}

TEST_F(Overlays, onlyTheCreationDateOnAFileSystemWithoutCreationDatesReadsUnknown)
{
    showOnly(false, true, false);
    showWindow();
    open(cachedFile("a.jpg"));
    settle();
    EXPECT_EQ(infoPill()->text(), u"Unknown"_s);
    EXPECT_TRUE(infoPill()->isVisible());
}

TEST_F(Overlays, theInformationIsJoinedInTheOrderSizeDateResolution)
{
    showOnly(true, true, true);
    attributes.stated = FileAttributes{.size = 2'000'000, .creationDate = {}};
    const FileURL file = folder.write("a.png", pngOf(40, 30, {0, 102, 153, 255}));
    open(file);
    settle();
    EXPECT_EQ(infoPill()->text(), u"2 MB • Unknown • 40×30"_s);
}

TEST_F(Overlays, anImageWithoutAResolutionLeavesThatItemOut)
{
    showOnly(true, true, true);
    open(cachedFile("a.jpg")); // no picture by its bytes
    settle();
    EXPECT_EQ(infoPill()->text(), u"2 MB • Unknown"_s);
}

TEST_F(Overlays, unreadableAttributesReadAsZeroBytesOfUnknownDate)
{
    showOnly(true, true, false);
    attributes.stated.reset();
    open(cachedFile("a.jpg"));
    settle();
    EXPECT_EQ(infoPill()->text(), u"Zero KB • Unknown"_s);
}

TEST_F(Overlays, aFileOfWhichNothingCanBeSaidHasNoPillAndNeverAnothersText)
{
    showWindow();
    open(cachedFile("a.jpg"));
    settle();
    ASSERT_TRUE(infoPill()->isVisible());
    showOnly(false, false, true); // which "x" does not have
    open(cachedFile("b.jpg"));
    settle();
    EXPECT_TRUE(infoPill()->isHidden());
    window->resize(700, 450);
    EXPECT_EQ(infoPill()->text(), QString());
}

TEST_F(Overlays, aResultIsAppliedWhenItArrivesAndNotBefore)
{
    showWindow();
    open(cachedFile("a.jpg"));
    EXPECT_EQ(infoPill()->text(), QString());
    launcher.runAll();
    EXPECT_EQ(infoPill()->text(), QString()) << "only on the main queue";
    mainQueue.runAll();
    EXPECT_EQ(infoPill()->text(), u"2 MB"_s);
    for (const auto &each : launcher.launched())
        EXPECT_EQ(each.quality, QualityOfService::userInitiated) << each.label;
}

TEST_F(Overlays, aResultThatOutlivesTheViewerReachesNobody)
{
    settings.setShowFileTag(true);
    open(cachedFile("a.jpg"));
    controller.reset();
    settle();
}

TEST_F(Overlays, thePillIsAsWideAsItsTextAndTheTagNeed)
{
    showWindow();
    open(cachedFile("a.jpg"));
    settle();
    EXPECT_DOUBLE_EQ(infoPill()->pillWidth(), 15 + infoPill()->textWidth() + 15);
    EXPECT_DOUBLE_EQ(infoPill()->textLeading(), 15);
    EXPECT_EQ(infoPill()->geometry().left(), 16);
    EXPECT_EQ(controller->view()->height() - infoPill()->geometry().bottom() - 1, 16);
    EXPECT_EQ(infoPill()->height(), 24);

    settings.setShowFileTag(true);
    labels.stated = {.number = 6, .colour = {}};
    controller->updateFileTag(controller->currentFile());
    settle();
    EXPECT_DOUBLE_EQ(infoPill()->pillWidth(), 26 + infoPill()->textWidth() + 15);
    EXPECT_DOUBLE_EQ(infoPill()->textLeading(), 26);
    EXPECT_EQ(tagCircle()->geometry(), QRect(8, 6, 12, 12));
    EXPECT_TRUE(tagCircle()->isVisible());
    EXPECT_EQ(tagCircle()->color(), standardColour(6));
    EXPECT_EQ(QAccessible::queryAccessibleInterface(tagCircle())->text(QAccessible::Name), u"Red"_s);

    labels.stated = {};
    controller->updateFileTag(controller->currentFile());
    settle();
    EXPECT_TRUE(tagCircle()->isHidden());
    EXPECT_DOUBLE_EQ(infoPill()->pillWidth(), 15 + infoPill()->textWidth() + 15);
}

TEST_F(Overlays, aLabelColourFarFromTheStandardOneIsShownAsItIsAndANearOneAsTheStandardOne)
{
    settings.setShowFileTag(true);
    labels.stated = {.number = 6, .colour = FileLabel::Rgb{0, 255, 255}};
    const FileURL file = cachedFile("a.jpg");
    open(file);
    settle();
    EXPECT_EQ(tagCircle()->color(), QColor(0, 255, 255));
    const QColor red = standardColour(6);
    labels.stated.colour =
        FileLabel::Rgb{static_cast<std::uint8_t>(red.red() - 10), static_cast<std::uint8_t>(red.green() + 10),
                       static_cast<std::uint8_t>(red.blue())};
    controller->updateFileTag(file);
    settle();
    EXPECT_EQ(tagCircle()->color(), red);
}

TEST_F(Overlays, withTheTagSwitchedOffNoLabelIsRead)
{
    labels.stated = {.number = 6, .colour = {}};
    open(cachedFile("a.jpg"));
    settle();
    EXPECT_EQ(labels.reads, 0);
    EXPECT_TRUE(tagCircle()->isHidden());
}

TEST_F(Overlays, aNameOfTenCharactersInTheCornerHasAPillOf150Points)
{
    showWindow();
    open(cachedFile("abcdef.jpg"));
    showNameIn(FileNameDisplayLocation::inCorner);
    EXPECT_TRUE(namePill()->isVisible());
    EXPECT_DOUBLE_EQ(namePill()->pillWidth(), 150);
    EXPECT_EQ(namePill()->shownText(), u"abcdef.jpg"_s);
    const QRect place = namePill()->geometry();
    EXPECT_EQ(controller->view()->width() - place.right() - 1, 16);
    EXPECT_EQ(controller->view()->height() - place.bottom() - 1, 16);
    EXPECT_EQ(window->windowTitle(), u"Tallowmere"_s);
}

TEST_F(Overlays, aVeryLongNameInTheCornerIs300PointsWideAndTruncatedInTheMiddle)
{
    showWindow();
    open(cachedFile("first-" + QByteArray(200, 'm') + "-last.jpg"));
    showNameIn(FileNameDisplayLocation::inCorner);
    EXPECT_DOUBLE_EQ(namePill()->pillWidth(), 300);
    const QString shown = namePill()->shownText();
    EXPECT_TRUE(shown.startsWith(u"first-"_s)) << shown.toStdString();
    EXPECT_TRUE(shown.endsWith(u"last.jpg"_s)) << shown.toStdString();
    EXPECT_TRUE(shown.contains(u'…'));
}

TEST_F(Overlays, inAWindowOf300PointsTheNameGivesWayToInformationOf200)
{
    showWindow();
    showNameIn(FileNameDisplayLocation::inCorner);
    open(cachedFile("a.jpg")); // the information has not arrived: its pill has its first width
    window->resize(300, 300);
    ASSERT_EQ(controller->view()->width(), 300);
    ASSERT_DOUBLE_EQ(infoPill()->pillWidth(), 200);
    EXPECT_TRUE(namePill()->isHidden());
    EXPECT_TRUE(infoPill()->isVisible());
    window->resize(231, 300); // 200 and 32 of margins are more than that
    EXPECT_TRUE(infoPill()->isHidden());
    window->resize(600, 300);
    EXPECT_TRUE(namePill()->isVisible());
    EXPECT_TRUE(infoPill()->isVisible());
}

TEST_F(Overlays, markupInANameIsShownAsText)
{
    showWindow();
    showNameIn(FileNameDisplayLocation::inCorner);
    open(cachedFile("<b>x&amp;.jpg"));
    EXPECT_EQ(namePill()->text(), u"<b>x&amp;.jpg"_s);
}

TEST_F(Overlays, aNameThatIsNoTextIsOneLineOfText)
{
    showNameIn(FileNameDisplayLocation::inCorner);
    open(cachedFile("\xe9t\xe9\n.jpg"));
    EXPECT_EQ(namePill()->text(), u"\uFFFDt\uFFFD .jpg"_s);
}

TEST_F(Overlays, theNamePillLeavesWithTheSetting)
{
    showWindow();
    showNameIn(FileNameDisplayLocation::inCorner);
    open(cachedFile("a.jpg"));
    ASSERT_TRUE(namePill()->isVisible());
    showNameIn(FileNameDisplayLocation::off);
    EXPECT_TRUE(namePill()->isHidden());
    EXPECT_EQ(window->windowTitle(), u"Tallowmere"_s);
}

TEST_F(Overlays, withoutAFileThereAreNoPills)
{
    showWindow();
    settings.setFileNameDisplayLocation(FileNameDisplayLocation::inCorner);
    controller->updateFileNameDisplay({});
    window->resize(640, 480);
    EXPECT_TRUE(infoPill()->isHidden());
    EXPECT_TRUE(namePill()->isHidden());
    controller->refreshFileInfo();
    EXPECT_TRUE(infoPill()->isHidden());
    EXPECT_EQ(launched("com.tallowmere.fileInfo"), 0);
}

TEST_F(Overlays, theIdleStateHidesEverythingAndEmptiesTheInformation)
{
    showWindow();
    settings.setShowFileTag(true);
    labels.stated = {.number = 2, .colour = {}};
    showNameIn(FileNameDisplayLocation::inCorner);
    open(cachedFile("a.jpg"));
    settle();
    ASSERT_TRUE(tagCircle()->isVisible());
    ASSERT_TRUE(namePill()->isVisible());
    controller->showIdleState();
    EXPECT_TRUE(infoPill()->isHidden());
    EXPECT_EQ(infoPill()->text(), QString());
    EXPECT_TRUE(namePill()->isHidden());
    EXPECT_TRUE(tagCircle()->isHidden());
}

TEST_F(Overlays, aResultThatArrivesInTheIdleStateShowsNoPill)
{
    showWindow();
    open(cachedFile("a.jpg"));
    launcher.runAll();
    controller->showIdleState();
    settle();
    window->resize(640, 480);
    EXPECT_TRUE(infoPill()->isHidden());
}

TEST_F(Overlays, theyAreThereWithThePictureThoughItsFolderIsListedLater)
{
    showWindow();
    settings.setFileNameDisplayLocation(FileNameDisplayLocation::inCorner);
    controller->openImage(cachedFile("a.jpg")); // the listing is still put off
    EXPECT_TRUE(namePill()->isVisible());
    settle();
    EXPECT_TRUE(namePill()->isVisible());
    EXPECT_TRUE(infoPill()->isVisible());
}

TEST_F(Overlays, theyGoWhenTheFolderCannotBeListed)
{
    showWindow();
    const FileURL gone = folder.at("missing/a.jpg");
    cache->insertImage(gone, imageOf(300, 200));
    settings.setFileNameDisplayLocation(FileNameDisplayLocation::inCorner);
    open(gone);
    settle();
    EXPECT_TRUE(infoPill()->isHidden());
    EXPECT_TRUE(namePill()->isHidden());
}

TEST_F(Overlays, refreshFollowsTheSettings)
{
    showWindow();
    open(cachedFile("a.jpg"));
    settle();
    showOnly(false, false, false);
    controller->refreshFileInfo();
    EXPECT_TRUE(infoPill()->isHidden());
    showOnly(false, true, false);
    controller->refreshFileInfo();
    settle();
    EXPECT_TRUE(infoPill()->isVisible());
    EXPECT_EQ(infoPill()->text(), u"Unknown"_s);
}

TEST_F(Overlays, aViewWithoutAreaIsSurvived)
{
    showWindow();
    showNameIn(FileNameDisplayLocation::inCorner);
    open(cachedFile("a.jpg"));
    controller->view()->resize(0, 0);
    controller->updateOverlayVisibility();
    settle();
    controller->view()->resize(1, 1);
    EXPECT_TRUE(namePill()->isHidden());
    EXPECT_TRUE(infoPill()->isHidden());
}

TEST_F(Overlays, theyLetTheMouseThrough)
{
    showWindow();
    showNameIn(FileNameDisplayLocation::inCorner);
    open(cachedFile("a.jpg"));
    settle();
    for (const Pill *pill : {infoPill(), namePill()}) {
        ASSERT_TRUE(pill->isVisible());
        EXPECT_EQ(controller->view()->childAt(pill->geometry().center()), imageView());
    }
}

TEST_F(Overlays, aScreenReaderFindsTheirTexts)
{
    showNameIn(FileNameDisplayLocation::inCorner);
    open(cachedFile("a.jpg"));
    settle();
    QAccessibleInterface *name = QAccessible::queryAccessibleInterface(namePill());
    ASSERT_TRUE(name);
    EXPECT_EQ(name->role(), QAccessible::StaticText);
    EXPECT_EQ(name->text(QAccessible::Name), u"a.jpg"_s);
    EXPECT_EQ(imageView()->imageDescription(), u"2 MB"_s);
}

TEST_F(Overlays, whatTheUserHasSwitchedOffIsNotReadOutEither)
{
    open(cachedFile("a.jpg"));
    settle();
    ASSERT_EQ(imageView()->imageDescription(), u"2 MB"_s);
    showOnly(false, false, false);
    controller->refreshFileInfo();
    settle();
    EXPECT_EQ(imageView()->imageDescription(), QString());
    showOnly(true, false, false);
    controller->refreshFileInfo();
    settle();
    EXPECT_EQ(imageView()->imageDescription(), u"2 MB"_s);
    controller->updateFileInfo(controller->currentFile());
    launcher.runAll();
    showOnly(false, false, false);
    controller->updateFileInfo(controller->currentFile());
    EXPECT_EQ(imageView()->imageDescription(), QString());
    settle();
    EXPECT_EQ(imageView()->imageDescription(), QString()) << "nor by an answer that comes late";
}

QList<QAccessible::Event> announced; // an update handler is a plain function

TEST_F(Overlays, nothingIsAnnouncedWhileNoScreenReaderRuns)
{
    ASSERT_FALSE(QAccessible::isActive());
    announced.clear();
    const auto before = QAccessible::installUpdateHandler([](QAccessibleEvent *event) { announced << event->type(); });
    imageView()->setImageName(u"a"_s);
    imageView()->setImageDescription(u"a"_s);
    infoPill()->setText(u"a"_s);
    tagCircle()->setLabelName(u"a"_s);
    QAccessible::installUpdateHandler(before);
    EXPECT_TRUE(announced.isEmpty());
}

TEST_F(Overlays, whatHasTheFocusIsReadOutAsThePictureOrAsHowToBegin)
{
    QAccessibleInterface *root = QAccessible::queryAccessibleInterface(controller->view());
    ASSERT_TRUE(root);
    EXPECT_TRUE(root->text(QAccessible::Name).contains(u"drop it here"_s));
    open(cachedFile("a.jpg"));
    settle();
    EXPECT_EQ(root->text(QAccessible::Name), u"a.jpg"_s);
    EXPECT_EQ(root->role(), QAccessible::Pane);
}

TEST_F(Overlays, theTagCircleNeverFloatsWithoutAPill)
{
    showOnly(false, false, true);
    settings.setShowFileTag(true);
    labels.stated = {.number = 6, .colour = {}};
    showWindow();
    open(cachedFile("a.jpg")); // whose header names no resolution
    settle();
    window->resize(700, 450);
    ASSERT_EQ(infoPill()->text(), QString());
    ASSERT_TRUE(tagCircle()->isVisible());
    const QPoint circle = tagCircle()->mapTo(controller->view(), tagCircle()->rect().center());
    const QImage seen = controller->view()->grab().toImage();
    const QRgb picture = seen.pixel(circle + QPoint(60, 0));
    EXPECT_NE(seen.pixel(circle - QPoint(10, 0)), picture);
    EXPECT_NE(seen.pixel(circle + QPoint(10, 0)), picture);
    EXPECT_EQ(seen.pixel(circle - QPoint(18, 0)), picture);
}

TEST_F(Overlays, whenTheUsersFontChangesThePillsFitTheirTextsAtOnce)
{
    const ApplicationFont font;
    font.setPointSize(10);
    settings.setShowFileTag(true);
    labels.stated = {.number = 6, .colour = {}};
    showWindow();
    showNameIn(FileNameDisplayLocation::inCorner);
    open(cachedFile("a name of some length.jpg"));
    settle();
    ASSERT_TRUE(namePill()->isVisible());
    const double infoWidth = infoPill()->pillWidth();
    const double nameWidth = namePill()->pillWidth();

    font.setPointSize(16);
    const auto bothWider = [&] { return infoPill()->pillWidth() > infoWidth && namePill()->pillWidth() > nameWidth; };
    ASSERT_TRUE(QTest::qWaitFor(bothWider, 30'000));
    EXPECT_DOUBLE_EQ(infoPill()->pillWidth(), 26 + infoPill()->textWidth() + 15);
    EXPECT_DOUBLE_EQ(namePill()->pillWidth(), 15 + namePill()->textWidth() + 15);
    for (const Pill *pill : {infoPill(), namePill()}) {
        EXPECT_GT(pill->height(), 24);
        EXPECT_EQ(pill->height(), pill->pillHeight());
        EXPECT_EQ(controller->view()->height() - pill->geometry().bottom() - 1, 16);
    }
    EXPECT_EQ(tagCircle()->geometry().center().y(), infoPill()->rect().center().y());

    font.setPointSize(10);
    EXPECT_TRUE(QTest::qWaitFor([&] { return infoPill()->pillWidth() == infoWidth; }, 30'000));
    EXPECT_EQ(infoPill()->height(), 24);
    EXPECT_EQ(tagCircle()->geometry(), QRect(8, 6, 12, 12));
}

} // namespace
} // namespace tallowmere::test
