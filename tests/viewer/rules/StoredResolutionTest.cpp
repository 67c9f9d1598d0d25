// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "viewer/rules/StoredResolution.h"

#include "tests/doubles/TestFolder.h"
#include "tests/doubles/TestImages.h"

#include <gtest/gtest.h>

#include <sys/fsuid.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <string>

namespace tallowmere {
namespace {

using test::TestFolder;

constexpr PixelSize kSize{40, 20};

QByteArray jpeg()
{
    return test::jpegOf(40, 20, {10, 20, 30, 255});
}

/// The same picture after @p bytes of application data.
QByteArray jpegWithHeaderOf(qsizetype bytes)
{
    QByteArray file = jpeg();
    QByteArray segments;
    while (segments.size() < bytes) {
        segments.append("\xFF\xE5\xFF\xFF", 4); // APP5, 65,535 bytes with the length
        segments.append(QByteArray(65533, 'x'));
    }
    return file.insert(2, segments);
}

/// What this thread has read from files so far; nothing where the kernel does not count it.
std::optional<long long> bytesRead()
{
    std::ifstream counters("/proc/thread-self/io");
    std::string name;
    long long value = 0;
    if (counters >> name >> value && name == "rchar:")
        return value;
    return std::nullopt;
}

/// Takes root's right to read every file away from this thread.
class OrdinaryUser final
{
public:
    OrdinaryUser()
    {
        if (::geteuid() == 0)
            ::setfsuid(kNobody);
    }
    ~OrdinaryUser() { ::setfsuid(::geteuid()); }
    OrdinaryUser(const OrdinaryUser &) = delete;
    OrdinaryUser &operator=(const OrdinaryUser &) = delete;
    [[nodiscard]] static bool applies() { return ::setfsuid(static_cast<uid_t>(-1)) != 0; }

private:
    static constexpr uid_t kNobody = 65534;
};

TEST(StoredResolution, isThatOfTheHeaderForEveryFormatWeCanWrite)
{
    const TestFolder folder;
    EXPECT_EQ(storedResolution(folder.write("a.jpg", jpeg())), kSize);
    EXPECT_EQ(storedResolution(folder.write("a.png", test::pngOf(40, 20, {1, 2, 3, 255}))), kSize);
    EXPECT_EQ(storedResolution(folder.write("a.webp", test::webpOf(40, 20, {1, 2, 3, 255}))), kSize);
}

TEST(StoredResolution, isThatBeforeOrientation)
{
    const TestFolder folder;
    EXPECT_EQ(storedResolution(folder.write("a.jpg", test::jpegOf(40, 20, {1, 2, 3, 255}, 6))), kSize);
}

TEST(StoredResolution, goesByTheBytesNotByTheName)
{
    const TestFolder folder;
    EXPECT_EQ(storedResolution(folder.write("png.jpg", test::pngOf(40, 20, {1, 2, 3, 255}))), kSize);
}

TEST(StoredResolution, isFoundBehindALongHeader)
{
    const TestFolder folder;
    EXPECT_EQ(storedResolution(folder.write("a.jpg", jpegWithHeaderOf(200'000))), kSize);
    EXPECT_EQ(storedResolution(folder.write("b.jpg", jpegWithHeaderOf(3'000'000))), kSize);
}

TEST(StoredResolution, readsNoMoreOfALargeFileThanItsHead)
{
    const TestFolder folder;
    const FileURL file = folder.write("large.jpg", jpeg());
    ASSERT_EQ(::truncate(file.path().constData(), 64 << 20), 0);
    const auto before = bytesRead();
    EXPECT_EQ(storedResolution(file), kSize);
    const auto after = bytesRead();
    if (!before || !after)
        GTEST_SKIP() << "this kernel does not count what a thread reads";
    EXPECT_LT(*after - *before, 128 << 10);
}

TEST(StoredResolution, readsNoMoreThanTheHeadOfWhatIsNoPicture)
{
    const TestFolder folder;
    const FileURL file = folder.write("text.jpg", "just words");
    ASSERT_EQ(::truncate(file.path().constData(), 64 << 20), 0);
    const auto before = bytesRead();
    EXPECT_EQ(storedResolution(file), std::nullopt);
    const auto after = bytesRead();
    if (!before || !after)
        GTEST_SKIP() << "this kernel does not count what a thread reads";
    EXPECT_LT(*after - *before, 128 << 10);
}

TEST(StoredResolution, ofAHeaderThatNeverComesIsNone)
{
    const TestFolder folder;
    EXPECT_EQ(storedResolution(folder.write("cut.jpg", jpeg().first(4))), std::nullopt);
    EXPECT_EQ(storedResolution(folder.write("endless.jpg", jpegWithHeaderOf(2'000'000).first(1'900'000))),
              std::nullopt);
    EXPECT_EQ(storedResolution(folder.write("empty.jpg", QByteArray())), std::nullopt);
    EXPECT_EQ(storedResolution(folder.write("words.jpg", "no picture")), std::nullopt);
}

TEST(StoredResolution, ofAFifoIsNoneAndWaitsForNobody)
{
    const TestFolder folder;
    const FileURL fifo = folder.at("pipe.jpg");
    ASSERT_EQ(::mkfifo(fifo.path().constData(), 0600), 0);
    EXPECT_EQ(storedResolution(fifo), std::nullopt);
}

TEST(StoredResolution, ofAFolderNamedLikeAPictureIsNone)
{
    const TestFolder folder;
    EXPECT_EQ(storedResolution(folder.makeFolder("folder.jpg")), std::nullopt);
}

TEST(StoredResolution, ofAVanishedFileIsNone)
{
    const TestFolder folder;
    EXPECT_EQ(storedResolution(folder.at("vanished.jpg")), std::nullopt);
    EXPECT_EQ(storedResolution(FileURL()), std::nullopt);
}

TEST(StoredResolution, ofAFileThatMayNotBeReadIsNone)
{
    const TestFolder folder;
    const FileURL file = folder.write("secret.jpg", jpeg());
    ASSERT_EQ(::chmod(folder.path().constData(), 0755), 0);
    ASSERT_EQ(storedResolution(file), kSize);
    ASSERT_EQ(::chmod(file.path().constData(), 0), 0);
    const OrdinaryUser ordinary;
    if (!OrdinaryUser::applies())
        GTEST_SKIP() << "root can't give its rights up here";
    EXPECT_EQ(storedResolution(file), std::nullopt);
}

TEST(StoredResolution, followsALink)
{
    const TestFolder folder;
    const FileURL file = folder.write("a.jpg", jpeg());
    const FileURL link = folder.at("link.jpg");
    ASSERT_EQ(::symlink(file.path().constData(), link.path().constData()), 0);
    EXPECT_EQ(storedResolution(link), kSize);
    const FileURL loop = folder.at("loop.jpg");
    ASSERT_EQ(::symlink("loop.jpg", loop.path().constData()), 0);
    EXPECT_EQ(storedResolution(loop), std::nullopt);
}

} // namespace
} // namespace tallowmere
