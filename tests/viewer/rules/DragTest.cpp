// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "viewer/rules/DraggingInfo.h"
#include "viewer/rules/DragState.h"

#include <gtest/gtest.h>

namespace tallowmere {
namespace {

const QList<QByteArray> kAll{"jpg", "jpeg", "png", "webp", "avif", "heic", "heif"};
const QList<QByteArray> kWithoutPng{"jpg", "jpeg", "webp", "avif", "heic", "heif"};
const FileURL kPhoto = FileURL::fromPath("/p/a.jpg");
const FileURL kOther = FileURL::fromPath("/p/b.png");

QByteArray firstPath(const QByteArray &uriList, const QList<QByteArray> &extensions = kAll)
{
    return DraggingInfo(uriList).firstAcceptableFile(extensions).value_or(FileURL()).path();
}

TEST(DraggingInfo, acceptsPngInCapitalsWhilePngIsOnAndRefusesItWhenOff)
{
    EXPECT_EQ(firstPath("file:///p/A.PNG\r\n"), "/p/A.PNG");
    EXPECT_EQ(firstPath("file:///p/A.PNG\r\n", kWithoutPng), "");
}

TEST(DraggingInfo, ofATextFileTogetherWithAJpegGivesTheJpeg)
{
    EXPECT_EQ(firstPath("file:///p/notes.txt\r\nfile:///p/a.jpg\r\n"), "/p/a.jpg");
}

TEST(DraggingInfo, ofSeveralPicturesGivesTheFirst)
{
    EXPECT_EQ(firstPath("file:///p/b.png\r\nfile:///p/a.jpg\r\n"), "/p/b.png");
}

TEST(DraggingInfo, passesOverWhatIsNoLocalFile)
{
    EXPECT_EQ(firstPath("https://example.org/a.jpg\r\ntrash:///a.jpg\r\nfile://elsewhere/p/a.jpg\r\n"), "");
    EXPECT_EQ(firstPath("a.jpg\r\n/p/a.jpg\r\nfile:a.jpg\r\nfile:///broken%zz.jpg\r\nfile:///zero%00.jpg"), "");
    EXPECT_EQ(firstPath("https://example.org/a.jpg\r\nfile:///p/a.jpg"), "/p/a.jpg");
}

TEST(DraggingInfo, understandsEveryWayToEndALine)
{
    EXPECT_EQ(firstPath("file:///p/a.jpg"), "/p/a.jpg");
    EXPECT_EQ(firstPath("file:///p/a.jpg\n"), "/p/a.jpg");
    EXPECT_EQ(firstPath("\r\n\r\n# a comment.jpg\r\n  file:///p/a.jpg  \r\n"), "/p/a.jpg");
    EXPECT_EQ(firstPath(QByteArray("file:///p/a.jpg\0", 16)), "/p/a.jpg");
    EXPECT_EQ(firstPath(""), "");
    EXPECT_EQ(firstPath("\r\n"), "");
}

TEST(DraggingInfo, keepsTheBytesOfANameThatIsNoText)
{
    EXPECT_EQ(firstPath("file:///p/%E9.jpg"), "/p/\xE9.jpg");
}

TEST(DraggingInfo, judgesAFolderByItsNameToo)
{
    EXPECT_EQ(firstPath("file:///p/album.jpg/\r\n"), "/p/album.jpg");
}

TEST(DraggingInfo, refusesNamesWithoutAnAcceptedExtension)
{
    EXPECT_EQ(firstPath("file:///p/jpg\r\nfile:///p/a.jpg.txt\r\nfile:///p/a.\r\nfile:///p.jpg/a"), "");
}

TEST(DraggingInfo, answersAnewWhenTheFormatsChangedDuringTheDrag)
{
    const DraggingInfo info("file:///p/b.png\r\nfile:///p/a.jpg\r\n");
    EXPECT_EQ(info.firstAcceptableFile(kAll), kOther);
    EXPECT_EQ(info.firstAcceptableFile(kAll), kOther);
    EXPECT_EQ(info.firstAcceptableFile(kWithoutPng), kPhoto);
    EXPECT_EQ(info.firstAcceptableFile({}), std::nullopt);
    EXPECT_EQ(info.firstAcceptableFile(kAll), kOther);
}

TEST(DraggingInfo, findsTheOnePictureAmongTenThousandFiles)
{
    QByteArray list;
    for (int i = 0; i < 10'000; ++i)
        list.append("file:///p/" + QByteArray::number(i) + ".txt\r\n");
    list.append("file:///p/a.jpg\r\n");
    EXPECT_EQ(firstPath(list), "/p/a.jpg");
}

TEST(DragState, aDragWithoutAcceptableFilesIsRefusedAndChangesNothing)
{
    DragState state;
    const auto hover = state.hovered(std::nullopt, false, true);
    EXPECT_EQ(hover.operation, DragOperation::none);
    EXPECT_FALSE(hover.hidesIdleScreen);
    EXPECT_FALSE(hover.prepare);
    EXPECT_FALSE(state.draggedFileURL());
    EXPECT_FALSE(state.exited());
}

TEST(DragState, overTheIdleScreenAndLeavingReturnsToIt)
{
    DragState state;
    const auto hover = state.hovered(kPhoto, false, true);
    EXPECT_EQ(hover.operation, DragOperation::copy);
    EXPECT_TRUE(hover.hidesIdleScreen);
    EXPECT_EQ(hover.prepare, kPhoto);
    EXPECT_EQ(state.draggedFileURL(), kPhoto);
    EXPECT_TRUE(state.exited());
    EXPECT_FALSE(state.draggedFileURL());
    EXPECT_FALSE(state.exited()); // leaving twice returns once
}

TEST(DragState, overAShownImageAndLeavingChangesNothing)
{
    DragState state;
    EXPECT_EQ(state.hovered(kPhoto, true, false).operation, DragOperation::copy);
    EXPECT_FALSE(state.exited());
}

TEST(DragState, neverReturnsToTheIdleStateWhileAFileIsCurrent)
{
    DragState state;
    EXPECT_TRUE(state.hovered(kPhoto, true, true).hidesIdleScreen);
    EXPECT_FALSE(state.exited());
}

TEST(DragState, movingOnWithTheSameFileDoesNoMoreThanAccept)
{
    DragState state;
    EXPECT_TRUE(state.hovered(kPhoto, false, true).prepare);
    const auto again = state.hovered(kPhoto, false, false);
    EXPECT_EQ(again.operation, DragOperation::copy);
    EXPECT_FALSE(again.hidesIdleScreen);
    EXPECT_FALSE(again.prepare);
    EXPECT_TRUE(state.exited()); // the logo was visible when the drag arrived
}

TEST(DragState, anotherFileIsPreparedAndRemembersThatTheLogoWasHidden)
{
    DragState state;
    EXPECT_EQ(state.hovered(kPhoto, false, true).prepare, kPhoto);
    EXPECT_EQ(state.hovered(kOther, false, false).prepare, kOther);
    EXPECT_TRUE(state.exited());
}

TEST(DragState, aDropOpensTheFileAndTheLeaveThatFollowsChangesNothing)
{
    DragState state;
    EXPECT_TRUE(state.hovered(kPhoto, false, true).hidesIdleScreen);
    EXPECT_EQ(state.dropped(kPhoto), kPhoto);
    EXPECT_FALSE(state.draggedFileURL());
    EXPECT_FALSE(state.exited());
}

TEST(DragState, aDropThatIsRefusedKeepsTheDrag)
{
    DragState state;
    EXPECT_TRUE(state.hovered(kPhoto, false, true).hidesIdleScreen);
    EXPECT_EQ(state.dropped(std::nullopt), std::nullopt);
    EXPECT_TRUE(state.exited());
}

TEST(DragState, theSameFileDraggedASecondTimeIsPreparedAgain)
{
    DragState state;
    EXPECT_TRUE(state.hovered(kPhoto, false, true).prepare);
    EXPECT_TRUE(state.exited());
    EXPECT_TRUE(state.hovered(kPhoto, false, true).prepare);
}

} // namespace
} // namespace tallowmere
