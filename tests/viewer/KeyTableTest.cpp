// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "viewer/KeyTable.h"

#include <gtest/gtest.h>

#include <string>

namespace tallowmere {
namespace {

struct Row
{
    std::string name;
    KeyPress press;
    KeyCommand command;
};

class KeyTable : public ::testing::TestWithParam<Row>
{};

TEST_P(KeyTable, finds)
{
    EXPECT_EQ(keyCommandFor(GetParam().press), GetParam().command);
}

constexpr Qt::KeyboardModifiers kCtrl = Qt::ControlModifier;
constexpr Qt::KeyboardModifiers kCtrlShift = Qt::ControlModifier | Qt::ShiftModifier;
constexpr Qt::KeyboardModifiers kCtrlKeypad = Qt::ControlModifier | Qt::KeypadModifier;
constexpr int kCyrillicYa = 0x042f;

INSTANTIATE_TEST_SUITE_P(
    rows, KeyTable,
    ::testing::Values(
        Row{"hidesOnH", {Qt::Key_H, kCtrl, 0}, KeyCommand::hideApplication},
        Row{"shiftMakesItAnotherCharacter", {Qt::Key_H, kCtrlShift, 0}, KeyCommand::none},
        Row{"revealsOnReturn", {Qt::Key_Return, kCtrl, 0}, KeyCommand::revealInFileManager},
        Row{"leavesTheKeypadsEnterToTheMenu", {Qt::Key_Enter, kCtrlKeypad, 0}, KeyCommand::none},
        Row{"trashesOnBackspace", {Qt::Key_Backspace, kCtrl, 0}, KeyCommand::moveToTrash},
        Row{"forwardDeleteIsNoBackspace", {Qt::Key_Delete, kCtrl, 0}, KeyCommand::none},
        Row{"undoesOnZ", {Qt::Key_Z, kCtrl, 0}, KeyCommand::undoMoveToTrash},
        Row{"shiftZIsNotUndo", {Qt::Key_Z, kCtrlShift, 0}, KeyCommand::none},
        Row{"resetsZoomOn0", {Qt::Key_0, kCtrl, 0}, KeyCommand::resetZoom},
        Row{"zoomsInOnEqual", {Qt::Key_Equal, kCtrl, 0}, KeyCommand::zoomIn},
        Row{"shiftEqualCountsAsPlus", {Qt::Key_Equal, kCtrlShift, 0}, KeyCommand::zoomIn},
        Row{"zoomsInOnPlus", {Qt::Key_Plus, kCtrlShift, 0}, KeyCommand::zoomIn},
        Row{"plusOnAnotherKeyDoesNotZoom", {Qt::Key_Plus, kCtrlKeypad, 0}, KeyCommand::none},
        Row{"zoomsOutOnMinus", {Qt::Key_Minus, kCtrl, 0}, KeyCommand::zoomOut},
        Row{"theKeypadsMinusDoesNotZoom", {Qt::Key_Minus, kCtrlKeypad, 0}, KeyCommand::none},
        Row{"underscoreDoesNotZoom", {Qt::Key_Underscore, kCtrlShift, 0}, KeyCommand::none},
        Row{"smallOn1", {Qt::Key_1, kCtrl, 0}, KeyCommand::smallWindow},
        Row{"mediumOn2", {Qt::Key_2, kCtrl, 0}, KeyCommand::mediumWindow},
        Row{"largeOn3", {Qt::Key_3, kCtrl, 0}, KeyCommand::largeWindow},
        Row{"toImageOn4", {Qt::Key_4, kCtrl, 0}, KeyCommand::toggleFitToImage},
        Row{"digitsOfTheKeypadCount", {Qt::Key_1, kCtrlKeypad, 0}, KeyCommand::smallWindow},
        Row{"nothingOn5", {Qt::Key_5, kCtrl, 0}, KeyCommand::none},
        Row{"earlierOnRight", {Qt::Key_Right, Qt::NoModifier, 0}, KeyCommand::earlierInList},
        Row{"laterOnLeft", {Qt::Key_Left, Qt::NoModifier, 0}, KeyCommand::laterInList},
        Row{"ctrlRightStepsLikeThePlainArrow", {Qt::Key_Right, kCtrl, 0}, KeyCommand::earlierInList},
        Row{"ctrlLeftStepsLikeThePlainArrow", {Qt::Key_Left, kCtrl, 0}, KeyCommand::laterInList},
        Row{"otherModifiersAreNotLookedAt", {Qt::Key_Right, Qt::AltModifier, 0}, KeyCommand::earlierInList},
        Row{"metaIsNotControl", {Qt::Key_1, Qt::MetaModifier, 0}, KeyCommand::none},
        Row{"plainLettersAreNothing", {Qt::Key_Z, Qt::NoModifier, 0}, KeyCommand::none},
        Row{"plainDigitsAreNothing", {Qt::Key_1, Qt::NoModifier, 0}, KeyCommand::none},
        Row{"spaceIsNothing", {Qt::Key_Space, Qt::NoModifier, 0}, KeyCommand::none},
        Row{"escapeIsNothing", {Qt::Key_Escape, Qt::NoModifier, 0}, KeyCommand::none},
        Row{"plainReturnIsNothing", {Qt::Key_Return, Qt::NoModifier, 0}, KeyCommand::none},
        Row{"plainBackspaceIsNothing", {Qt::Key_Backspace, Qt::NoModifier, 0}, KeyCommand::none},
        Row{"findsTheLatinLetterByItsPlace", {kCyrillicYa, kCtrl, 52}, KeyCommand::undoMoveToTrash},
        Row{"withShiftToo", {kCyrillicYa, kCtrlShift, 52}, KeyCommand::none},
        Row{"aLetterOfTheLayoutGoesBeforeThePlace", {Qt::Key_Y, kCtrl, 52}, KeyCommand::none}),
    [](const auto &row) { return row.param.name; });

TEST(CharactersIgnoringModifiers, areLowerCaseUnlessShiftIsDown)
{
    EXPECT_EQ(charactersIgnoringModifiers({Qt::Key_Z, kCtrl, 0}), QStringLiteral("z"));
    EXPECT_EQ(charactersIgnoringModifiers({Qt::Key_Z, kCtrlShift, 0}), QStringLiteral("Z"));
    EXPECT_EQ(charactersIgnoringModifiers({Qt::Key_Equal, kCtrlShift, 0}), QStringLiteral("+"));
    EXPECT_EQ(charactersIgnoringModifiers({Qt::Key_F5, kCtrl, 0}), QString());
}

} // namespace
} // namespace tallowmere
