// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "tests/settings/SettingsWindowFixture.h"

#include <QClipboard>
#include <QInputMethodEvent>
#include <QTest>

namespace tallowmere {
namespace {

using namespace Qt::Literals::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;

class PrefetchFields : public test::SettingsWindowFixture
{
protected:
    void SetUp() override { show(); }
    /// In place of what is there.
    static void type(QLineEdit *field, const QString &text)
    {
        field->setFocus();
        field->selectAll();
        QTest::keyClick(field, Qt::Key_Delete);
        QTest::keyClicks(field, text);
    }
    static void enter(QLineEdit *field, const QString &text)
    {
        type(field, text);
        QTest::keyClick(field, Qt::Key_Return);
    }
};

TEST_F(PrefetchFields, showTheCountsTheyWereGiven)
{
    EXPECT_EQ(before()->text(), u"2"_s);
    EXPECT_EQ(after()->text(), u"20"_s);
}

TEST_F(PrefetchFields, returnCommitsACount)
{
    enter(before(), u"7"_s);
    EXPECT_THAT(journal, ElementsAre("before 7"));
    enter(after(), u"100"_s);
    EXPECT_THAT(journal, ElementsAre("before 7", "after 100"));
    EXPECT_EQ(before()->text(), u"7"_s);
    EXPECT_EQ(after()->text(), u"100"_s);
}

TEST_F(PrefetchFields, theKeypadsEnterCommitsToo)
{
    type(before(), u"7"_s);
    QTest::keyClick(before(), Qt::Key_Enter, Qt::KeypadModifier);
    EXPECT_THAT(journal, ElementsAre("before 7"));
}

TEST_F(PrefetchFields, zeroIsACount)
{
    enter(before(), u"0"_s);
    EXPECT_THAT(journal, ElementsAre("before 0"));
    EXPECT_EQ(before()->text(), u"0"_s);
}

TEST_F(PrefetchFields, tooManyGiveWayToTheLastAcceptedCount)
{
    enter(before(), u"150"_s);
    EXPECT_EQ(before()->text(), u"2"_s);
    EXPECT_THAT(journal, IsEmpty());
    enter(before(), u"9"_s);
    enter(before(), u"101"_s);
    EXPECT_EQ(before()->text(), u"9"_s);
    EXPECT_THAT(journal, ElementsAre("before 9"));
}

TEST_F(PrefetchFields, anEmptyFieldGivesWayToTheLastAcceptedCount)
{
    enter(after(), u""_s);
    EXPECT_EQ(after()->text(), u"20"_s);
    EXPECT_THAT(journal, IsEmpty());
}

TEST_F(PrefetchFields, aTextPutThereWithoutTypingIsJudgedWhenCommitted)
{
    for (const auto &[text, shown] : {std::pair{u"-5"_s, u"2"_s}, {u"five"_s, u"2"_s}, {u"+5"_s, u"5"_s}}) {
        before()->setText(text);
        before()->setFocus();
        QTest::keyClick(before(), Qt::Key_Return);
        EXPECT_EQ(before()->text(), shown);
    }
    EXPECT_THAT(journal, ElementsAre("before 5"));
}

TEST_F(PrefetchFields, losingTheFocusCommits)
{
    type(before(), u"3"_s);
    EXPECT_THAT(journal, IsEmpty()) << "not while it is being typed";
    QTest::keyClick(before(), Qt::Key_Tab);
    EXPECT_THAT(journal, ElementsAre("before 3"));
    type(after(), u"500"_s);
    QTest::mouseClick(controller.get(), Qt::LeftButton, {}, QPoint(2, 2));
    EXPECT_FALSE(after()->hasFocus());
    EXPECT_EQ(after()->text(), u"20"_s);
    EXPECT_THAT(journal, ElementsAre("before 3"));
}

TEST_F(PrefetchFields, goingToAnotherWindowCommits)
{
    type(before(), u"3"_s);
    QWidget other;
    other.show();
    other.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&other, 30'000));
    EXPECT_THAT(journal, ElementsAre("before 3"));
}

TEST_F(PrefetchFields, closingTheWindowCommitsOnce)
{
    type(before(), u"3"_s);
    controller->close();
    QApplication::processEvents();
    EXPECT_THAT(journal, ElementsAre("before 3"));
}

TEST_F(PrefetchFields, endingTheProgramCommitsNothing)
{
    type(before(), u"3"_s);
    controller.reset();
    EXPECT_THAT(journal, IsEmpty());
}

TEST_F(PrefetchFields, theContextMenuIsNoLossOfTheFocus)
{
    type(before(), u"3"_s);
    QFocusEvent out(QEvent::FocusOut, Qt::PopupFocusReason);
    QApplication::sendEvent(before(), &out);
    EXPECT_THAT(journal, IsEmpty());
    EXPECT_EQ(before()->text(), u"3"_s);
}

TEST_F(PrefetchFields, aCountCommittedTwiceIsToldOfOnce)
{
    enter(before(), u"3"_s);
    QTest::keyClick(before(), Qt::Key_Return);
    QTest::keyClick(before(), Qt::Key_Tab);
    enter(before(), u"003"_s);
    EXPECT_THAT(journal, ElementsAre("before 3"));
    EXPECT_EQ(before()->text(), u"3"_s);
}

TEST_F(PrefetchFields, othersThanNumberCharactersVanishWhileTyping)
{
    type(before(), u"1a-+ ,.2"_s);
    EXPECT_EQ(before()->text(), u"12"_s);
    EXPECT_EQ(before()->cursorPosition(), 2);
}

TEST_F(PrefetchFields, theCursorStaysWhereItIsWhenACharacterVanishes)
{
    type(before(), u"12"_s);
    before()->setCursorPosition(1);
    QTest::keyClicks(before(), u"x"_s);
    EXPECT_EQ(before()->text(), u"12"_s);
    EXPECT_EQ(before()->cursorPosition(), 1);
    QTest::keyClicks(before(), u"x5"_s);
    EXPECT_EQ(before()->text(), u"152"_s);
    EXPECT_EQ(before()->cursorPosition(), 2);
}

TEST_F(PrefetchFields, aPastedTextIsCleaned)
{
    QGuiApplication::clipboard()->setText(u"about 4\n2 files"_s);
    before()->setFocus();
    before()->selectAll();
    QTest::keyClick(before(), Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(before()->text(), u"42"_s);
    EXPECT_EQ(before()->cursorPosition(), 2);
}

TEST_F(PrefetchFields, digitsOfOtherScriptsAreTakenFromAnInputMethod)
{
    before()->setFocus();
    before()->clear();
    QInputMethodEvent event;
    event.setCommitString(u"١x٢"_s);
    QApplication::sendEvent(before(), &event);
    EXPECT_EQ(before()->text(), u"١٢"_s);
    QTest::keyClick(before(), Qt::Key_Return);
    EXPECT_THAT(journal, ElementsAre("before 12"));
    EXPECT_EQ(before()->text(), u"12"_s);
}

TEST_F(PrefetchFields, holdTheLongestCountWithoutScrolling)
{
    const int text = before()->fontMetrics().horizontalAdvance(u"100"_s);
    EXPECT_GT(before()->width(), text + 8);
    EXPECT_LT(before()->width(), 4 * text);
}

TEST_F(PrefetchFields, refreshingLeavesWhatIsBeingTyped)
{
    type(before(), u"1"_s);
    controller->refreshControls();
    EXPECT_EQ(before()->text(), u"1"_s);
    EXPECT_THAT(journal, IsEmpty());
}

} // namespace
} // namespace tallowmere
