// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "viewer/rules/DraggingInfo.h"
#include "viewer/rules/DragState.h"

#include <gtest/gtest.h>

#include <random>

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

TEST(DraggingInfo, looksBehindPercentCodesAndEmptyEnds)
{
    EXPECT_EQ(firstPath("file:///p/a%2Ejpg"), "/p/a.jpg");
    EXPECT_EQ(firstPath("file:///p/a%2EJP%47"), "/p/a.JPG");
    EXPECT_EQ(firstPath("file:///p/a.txt%2Ejpg"), "/p/a.txt.jpg");
    EXPECT_EQ(firstPath("file:///p/a.txt%2Fb.jpg"), "/p/a.txt/b.jpg");
    EXPECT_EQ(firstPath("file:///p/a.txt%2F%2E%2E%2Fb%2Ejpg"), "/p/b.jpg");
    EXPECT_EQ(firstPath("file:///p/album.jpg/b/.."), "/p/album.jpg");
    EXPECT_EQ(firstPath("file:///p/album.jpg/."), "/p/album.jpg");
    EXPECT_EQ(firstPath("file:///p/album.jpg//"), "/p/album.jpg");
    EXPECT_EQ(firstPath("file:///p/a.jpg/.."), "");
    EXPECT_EQ(firstPath("file:///p/a.jpg%2Etxt"), "");
    EXPECT_EQ(firstPath("file:///p/my%20notes.txt"), "");
    EXPECT_EQ(firstPath("file:///p/my%20photo.HEIC"), "/p/my photo.HEIC");
}

std::optional<FileURL> readInFull(const QByteArray &line, const QList<QByteArray> &extensions)
{
    auto file = FileURL::fromEncoded(line);
    return file && extensions.contains(file->lowercasedPathExtension()) ? file : std::nullopt;
}

TEST(DraggingInfo, answersAsIfEveryLineWereReadInFull)
{
    const QList<QByteArray> pieces{"a",   "jpg", "JpG",    "png",  "txt",  ".",     "..",    "/",
                                   "%2E", "%2F", "%2e%2E", "%6A",  "%20",  "%00",   "%z",    "%",
                                   "?",   "#",   ":",      " x",   "\xE9", "%E9",   ".j",    "pg",
                                   "/.",  "/..", "p%67",   ".jpg", ".txt", ".jpg/", "jpg%2F"};
    const QList<QList<QByteArray>> enabled{kAll, kWithoutPng, {}, {QByteArray()}, {"JPG"}};
    std::mt19937 random(20260102);
    std::uniform_int_distribution<qsizetype> piece(0, pieces.size() - 1);
    std::uniform_int_distribution<int> length(1, 7);
    int accepted = 0;
    for (int round = 0; round < 50'000; ++round) {
        QByteArray line(round % 16 == 0 ? "" : "file:///p/");
        for (int left = length(random); left > 0; --left)
            line += pieces.at(piece(random));
        line = line.trimmed();
        for (const auto &extensions : enabled) {
            const auto file = DraggingInfo(line + "\r\n").firstAcceptableFile(extensions);
            ASSERT_EQ(file, line.startsWith('#') ? std::nullopt : readInFull(line, extensions)) << line.toStdString();
            accepted += file.has_value();
        }
    }
    EXPECT_GT(accepted, 1000) << "too few of the lines meant anything";
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
    EXPECT_FALSE(state.exited());
}

TEST(DragState, overTheIdleScreenAndLeavingReturnsToIt)
{
    DragState state;
    const auto hover = state.hovered(kPhoto, false, true);
    EXPECT_EQ(hover.operation, DragOperation::copy);
    EXPECT_TRUE(hover.hidesIdleScreen);
    EXPECT_EQ(hover.prepare, kPhoto);
    EXPECT_TRUE(state.exited());
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
    EXPECT_EQ(state.dropped(kPhoto), kPhoto);
    EXPECT_TRUE(state.hovered(kPhoto, true, false).prepare);
}

} // namespace
} // namespace tallowmere
