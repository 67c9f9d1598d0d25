// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "platform/freedesktop/TrashInfo.h"

#include <gtest/gtest.h>

namespace tallowmere::test {
namespace {

const QDateTime kMoment(QDate(2026, 3, 9), QTime(7, 5, 2));

TEST(TrashInfo, hasTheLinesOfTheTrashSpecification)
{
    EXPECT_EQ(trashInfoText("/home/ann/a.jpg", kMoment),
              QByteArray("[Trash Info]\nPath=/home/ann/a.jpg\nDeletionDate=2026-03-09T07:05:02\n"));
}

TEST(TrashInfo, aRelativePathStaysRelative)
{
    EXPECT_EQ(trashInfoText("Photos/a.jpg", kMoment),
              QByteArray("[Trash Info]\nPath=Photos/a.jpg\nDeletionDate=2026-03-09T07:05:02\n"));
}

TEST(TrashInfo, everyByteThatIsNotUnreservedIsPercentEncodedButTheSlash)
{
    EXPECT_TRUE(trashInfoText("/a b/\xFFä%\n=.jpg", kMoment).contains("\nPath=/a%20b/%FF%C3%A4%25%0A%3D.jpg\n"));
}

TEST(NameInTrash, isTheFilesOwnAtFirstAndThenCounted)
{
    EXPECT_EQ(nameInTrash("a.b.jpg", 1, 200), QByteArray("a.b.jpg"));
    EXPECT_EQ(nameInTrash("a.b.jpg", 2, 200), QByteArray("a.b.2.jpg"));
    EXPECT_EQ(nameInTrash("a.b.jpg", 10, 200), QByteArray("a.b.10.jpg"));
}

TEST(NameInTrash, countsWithoutAnExtensionToo)
{
    EXPECT_EQ(nameInTrash("photo", 2, 200), QByteArray("photo.2"));
    EXPECT_EQ(nameInTrash(".jpg", 2, 200), QByteArray(".jpg.2"));
}

TEST(NameInTrash, isCutBeforeTheExtension)
{
    EXPECT_EQ(nameInTrash("abcdefgh.jpg", 1, 8), QByteArray("abcd.jpg"));
    EXPECT_EQ(nameInTrash("abcdefgh.jpg", 2, 8), QByteArray("ab.2.jpg"));
}

TEST(NameInTrash, isCutBetweenCharacters)
{
    EXPECT_EQ(nameInTrash("aää.jpg", 1, 8), QByteArray("aä.jpg"));
    EXPECT_EQ(nameInTrash("aäää.jpg", 1, 8), QByteArray("aä.jpg"));
}

TEST(NameInTrash, keepsWithinTheLimitWhateverTheBytes)
{
    EXPECT_EQ(nameInTrash(QByteArray(200, '\x80') + ".jpg", 1, 50).size(), 50);
    EXPECT_EQ(nameInTrash("a." + QByteArray(200, 'x'), 1, 50).size(), 50);
    EXPECT_LE(nameInTrash("a." + QByteArray(200, 'x'), 99, 50).size(), 50);
}

} // namespace
} // namespace tallowmere::test
