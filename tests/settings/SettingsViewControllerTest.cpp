// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "settings/SettingsViewController.h"

#include "tests/settings/SettingsWindowFixture.h"

#include <QAccessible>
#include <QComboBox>
#include <QGroupBox>
#include <QKeyEvent>
#include <QTest>

#include <algorithm>

namespace tallowmere {
namespace {

using namespace Qt::Literals::StringLiterals;
using test::SettingsWindowFixture;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

struct SwitchCase
{
    const char *checkbox;
    std::string key;
    bool first;
    /// What is said once it is off, and on again.
    std::string off;
    std::string on;
};

void PrintTo(const SwitchCase &each, std::ostream *stream)
{
    *stream << each.checkbox;
}

const std::vector<SwitchCase> kSwitches{
    {"pngSupportCheckbox", "PNGSupportEnabled", true, "formats", "formats"},
    {"webpSupportCheckbox", "WebPSupportEnabled", true, "formats", "formats"},
    {"avifSupportCheckbox", "AVIFSupportEnabled", true, "formats", "formats"},
    {"heicSupportCheckbox", "HEICSupportEnabled", true, "formats", "formats"},
    {"showFileSizeCheckbox", "ShowFileSize", true, "file info", "file info"},
    {"showCreationDateCheckbox", "ShowCreationDate", false, "file info", "file info"},
    {"showImageResolutionCheckbox", "ShowImageResolution", true, "file info", "file info"},
    {"showFileTagCheckbox", "ShowFileTag", false, "file tag", "file tag"},
    {"autoResizeToImageSizeCheckbox", "AutoResizeToImageSize", true, "auto-resize off", "auto-resize on"},
    {"autoResizeWithAnimationCheckbox", "AutoResizeWithAnimation", true, "animation", "animation"},
    {"useXPCServiceCheckbox", "UseXPCService", false, "", ""},
};

} // namespace

class SettingsSwitch : public SettingsWindowFixture, public testing::WithParamInterface<SwitchCase>
{
protected:
    /// First the write, then the news, and nothing else.
    static std::vector<std::string> journalOf(const SwitchCase &each, bool on)
    {
        std::vector<std::string> lines{each.key + (on ? "=true" : "=false")};
        if (const std::string &news = on ? each.on : each.off; !news.empty())
            lines.push_back(news);
        return lines;
    }
};

TEST_P(SettingsSwitch, writesItsSettingOnceAndThenSaysSo)
{
    const SwitchCase &each = GetParam();
    show();
    ASSERT_EQ(checkbox(each.checkbox)->isChecked(), each.first);
    for (const bool on : {!each.first, each.first}) {
        journal.clear();
        QTest::mouseClick(checkbox(each.checkbox), Qt::LeftButton, {},
                          QPoint(8, checkbox(each.checkbox)->height() / 2));
        EXPECT_EQ(checkbox(each.checkbox)->isChecked(), on);
        EXPECT_EQ(journal, journalOf(each, on));
    }
}

TEST_P(SettingsSwitch, isTurnedBySpaceAndByAssistiveTechnology)
{
    const SwitchCase &each = GetParam();
    show();
    checkbox(each.checkbox)->setFocus();
    QTest::keyClick(checkbox(each.checkbox), Qt::Key_Space);
    EXPECT_EQ(journal, journalOf(each, !each.first));
    journal.clear();
    QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(checkbox(each.checkbox));
    ASSERT_TRUE(accessible && accessible->actionInterface());
    accessible->actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
    EXPECT_EQ(journal, journalOf(each, each.first));
}

TEST_P(SettingsSwitch, followsItsSettingSilently)
{
    const SwitchCase &each = GetParam();
    show();
    store.setString(each.key.c_str(), each.first ? u"false"_s : u"true"_s);
    journal.clear();
    controller->refreshControls();
    EXPECT_EQ(checkbox(each.checkbox)->isChecked(), !each.first);
    EXPECT_THAT(journal, IsEmpty());
}

TEST_P(SettingsSwitch, readsATextThatIsNoBooleanAsOff)
{
    const SwitchCase &each = GetParam();
    store.setString(each.key.c_str(), u"@Invalid(\x1)maybe"_s);
    show();
    EXPECT_FALSE(checkbox(each.checkbox)->isChecked());
    controller->refreshControls();
    EXPECT_FALSE(checkbox(each.checkbox)->isChecked());
}

INSTANTIATE_TEST_SUITE_P(Each, SettingsSwitch, testing::ValuesIn(kSwitches),
                         [](const auto &each) { return std::string(each.param.checkbox); });

namespace {

/// A field in brackets, a popup with all its rows.
std::string textOf(const QWidget *control)
{
    if (const auto *field = qobject_cast<const QLineEdit *>(control))
        return '[' + field->text().toStdString() + ']';
    if (const auto *popup = qobject_cast<const QComboBox *>(control)) {
        QStringList rows;
        for (int row = 0; row < popup->count(); ++row)
            rows << popup->itemText(row);
        return rows.join(u'|').toStdString();
    }
    return control->property("text").toString().toStdString();
}

class SettingsWindow : public SettingsWindowFixture
{};

TEST_F(SettingsWindow, theControlsStandInThreeGroupsInTheirOrder)
{
    show();
    std::vector<std::string> lines;
    for (const QGroupBox *group : groups()) {
        lines.push_back(group->title().toStdString());
        for (const QWidget *control : controlsOf(group))
            lines.push_back("  " + textOf(control));
    }
    EXPECT_THAT(lines, ElementsAre("Prefetching", "  Files before:", "  [2]", "  Files after:", "  [20]",
                                   "  Keep the app in memory for instant loading",
                                   "  Prefetching loads images in advance for smoother navigation", "File Formats",
                                   "  Support PNG", "  Support WebP", "  Support AVIF", "  Support HEIC", "Display",
                                   "  Show file size", "  Show creation date", "  Show image resolution",
                                   "  Show file tag", "  Auto-resize window to image size", "  With animation",
                                   "  Show file name at:", "  in the title|in the corner|off",
                                   "  Show transparency as:", "  solid color|checkers"));
}

TEST_F(SettingsWindow, tabGoesThroughTheControlsInTheirOrder)
{
    show();
    QStringList order;
    for (int i = 0; i < 15; ++i) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        order << QApplication::focusWidget()->objectName();
    }
    EXPECT_EQ(order.join(u' ').toStdString(),
              "prefetchBeforeField prefetchAfterField useXPCServiceCheckbox pngSupportCheckbox webpSupportCheckbox "
              "avifSupportCheckbox heicSupportCheckbox showFileSizeCheckbox showCreationDateCheckbox "
              "showImageResolutionCheckbox showFileTagCheckbox autoResizeToImageSizeCheckbox "
              "autoResizeWithAnimationCheckbox fileNameDisplayLocationPopup transparencyBackgroundPopup");
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    EXPECT_EQ(QApplication::focusWidget()->objectName(), u"prefetchBeforeField"_s) << "round, without a stop between";
}

TEST_F(SettingsWindow, assistiveTechnologyKnowsTheControlsByTheirLabels)
{
    show();
    const auto labelsOf = [this](const char *control) {
        std::vector<std::string> names;
        for (const auto &[label, relation] :
             QAccessible::queryAccessibleInterface(widget<QWidget>(control))->relations(QAccessible::Label))
            names.push_back(label->text(QAccessible::Name).toStdString());
        return names;
    };
    EXPECT_THAT(labelsOf("prefetchBeforeField"), Contains("Files before:"));
    EXPECT_THAT(labelsOf("prefetchAfterField"), Contains("Files after:"));
    EXPECT_THAT(labelsOf("fileNameDisplayLocationPopup"), Contains("Show file name at:"));
    EXPECT_THAT(labelsOf("transparencyBackgroundPopup"), Contains("Show transparency as:"));
    const auto nameOf = [](QWidget *control) {
        return QAccessible::queryAccessibleInterface(control)->text(QAccessible::Name).toStdString();
    };
    EXPECT_EQ(nameOf(before()), "Files before:");
    EXPECT_EQ(nameOf(checkbox("pngSupportCheckbox")), "Support PNG");
    EXPECT_EQ(nameOf(widget<QGroupBox>("displayGroupBox")), "Display");
    EXPECT_EQ(nameOf(controller.get()), "Settings");
}

TEST_F(SettingsWindow, theLocationOfTheFileNameIsWrittenOnceAndThenToldOf)
{
    show();
    QComboBox *popup = widget<QComboBox>("fileNameDisplayLocationPopup");
    popup->setFocus();
    for (const char *rawValue : {"inCorner", "off"}) {
        journal.clear();
        QTest::keyClick(popup, Qt::Key_Down);
        EXPECT_THAT(journal, ElementsAre(std::string("FileNameDisplayLocation=") + rawValue, "file name"));
    }
    journal.clear();
    QTest::keyClick(popup, Qt::Key_Down);
    EXPECT_THAT(journal, IsEmpty()) << "there is no row below";
    QTest::keyClick(popup, Qt::Key_Home);
    EXPECT_THAT(journal, ElementsAre("FileNameDisplayLocation=inTitle", "file name"));
}

TEST_F(SettingsWindow, theTransparencyIsWrittenOnceAndThenToldOf)
{
    show();
    QComboBox *popup = widget<QComboBox>("transparencyBackgroundPopup");
    popup->setFocus();
    QTest::keyClick(popup, Qt::Key_Down);
    EXPECT_THAT(journal, ElementsAre("TransparencyBackground=checkers", "transparency"));
    journal.clear();
    QTest::keyClick(popup, Qt::Key_Up);
    EXPECT_THAT(journal, ElementsAre("TransparencyBackground=solidColor", "transparency"));
}

TEST_F(SettingsWindow, thePopupsFollowTheirSettingsSilently)
{
    show();
    store.setString("FileNameDisplayLocation", u"off"_s);
    store.setString("TransparencyBackground", u"checkers"_s);
    journal.clear();
    controller->refreshControls();
    EXPECT_EQ(widget<QComboBox>("fileNameDisplayLocationPopup")->currentText(), u"off"_s);
    EXPECT_EQ(widget<QComboBox>("transparencyBackgroundPopup")->currentText(), u"checkers"_s);
    EXPECT_THAT(journal, IsEmpty());
}

TEST_F(SettingsWindow, unknownTextsShowTheDefaultsAndStayUntouched)
{
    store.setString("FileNameDisplayLocation", u"InCorner"_s);
    store.setString("TransparencyBackground", u"checker"_s);
    journal.clear();
    show();
    controller->refreshControls();
    EXPECT_EQ(widget<QComboBox>("fileNameDisplayLocationPopup")->currentText(), u"in the title"_s);
    EXPECT_EQ(widget<QComboBox>("transparencyBackgroundPopup")->currentText(), u"solid color"_s);
    EXPECT_THAT(journal, IsEmpty());
    EXPECT_EQ(store.stringForKey("FileNameDisplayLocation"), u"InCorner"_s);
}

TEST_F(SettingsWindow, showingAndClosingWritesNothing)
{
    show();
    controller->close();
    EXPECT_THAT(journal, IsEmpty());
}

TEST_F(SettingsWindow, theViewIsFirstResponderWhenItAppears)
{
    show();
    EXPECT_TRUE(controller->hasFocus());
    before()->setFocus();
    controller->makeFirstResponder();
    EXPECT_TRUE(controller->hasFocus());
    before()->setFocus();
    controller->close();
    show();
    EXPECT_TRUE(controller->hasFocus());
}

TEST_F(SettingsWindow, controlWClosesTheWindowFromEveryControl)
{
    for (const char *control : {"", "prefetchAfterField", "pngSupportCheckbox", "transparencyBackgroundPopup"}) {
        show();
        if (*control)
            widget<QWidget>(control)->setFocus();
        // With the text that a window system sends along.
        QTest::sendKeyEvent(QTest::Click, QApplication::focusWidget(), Qt::Key_W, u"\x17"_s, Qt::ControlModifier);
        EXPECT_FALSE(controller->isVisible()) << control;
    }
}

TEST_F(SettingsWindow, everyOtherKeyGoesToTheBaseClass)
{
    show();
    for (const auto &[key, modifiers] : {std::pair{Qt::Key_W, Qt::KeyboardModifiers()},
                                         {Qt::Key_W, Qt::ControlModifier | Qt::ShiftModifier},
                                         {Qt::Key_W, Qt::ControlModifier | Qt::AltModifier},
                                         {Qt::Key_Q, Qt::KeyboardModifiers(Qt::ControlModifier)},
                                         {Qt::Key_Escape, Qt::KeyboardModifiers()},
                                         {Qt::Key_Return, Qt::KeyboardModifiers()}}) {
        QKeyEvent press(QEvent::KeyPress, key, modifiers);
        QApplication::sendEvent(controller.get(), &press);
        EXPECT_FALSE(press.isAccepted()) << key; // the base class makes nothing of it
        EXPECT_TRUE(controller->isVisible()) << key;
    }
    EXPECT_THAT(journal, IsEmpty());
}

} // namespace
} // namespace tallowmere
