// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "platform/freedesktop/XdgTagLabel.h"

#include "tests/doubles/TestFolder.h"

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <cerrno>
#include <random>

namespace tallowmere {
namespace {

using Rgb = FileLabel::Rgb;

TEST(XdgTags, knowTheSevenLabelsByName)
{
    EXPECT_EQ(labelFromXdgTags("Gray").number, 1);
    EXPECT_EQ(labelFromXdgTags("Green").number, 2);
    EXPECT_EQ(labelFromXdgTags("Purple").number, 3);
    EXPECT_EQ(labelFromXdgTags("Blue").number, 4);
    EXPECT_EQ(labelFromXdgTags("Yellow").number, 5);
    EXPECT_EQ(labelFromXdgTags("Red").number, 6);
    EXPECT_EQ(labelFromXdgTags("Orange").number, 7);
}

TEST(XdgTags, ignoreCaseAndBlanks)
{
    EXPECT_EQ(labelFromXdgTags("RED").number, 6);
    EXPECT_EQ(labelFromXdgTags("holiday,  oRaNgE\t").number, 7);
}

TEST(XdgTags, giveTheFirstLabelAmongOthers)
{
    EXPECT_EQ(labelFromXdgTags("holiday,blue,red"), (FileLabel{4, std::nullopt}));
    EXPECT_EQ(labelFromXdgTags("blueish,reddish,infrared"), FileLabel{});
    EXPECT_EQ(labelFromXdgTags("dark blue"), FileLabel{});
}

TEST(XdgTags, giveTheFilesOwnColour)
{
    EXPECT_EQ(labelFromXdgTags("#ff8001"), (FileLabel{0, Rgb{0xff, 0x80, 0x01}}));
    EXPECT_EQ(labelFromXdgTags("red, #FF80aB ,#000000"), (FileLabel{6, Rgb{0xff, 0x80, 0xab}}));
}

TEST(XdgTags, passOverWhatIsNoColour)
{
    for (const char *tag : {"#", "#ff80", "#ff80011", "#ff800g", "#-f8001", "#+f8001", "# f8001", "#0xf801", "ff8001",
                            "##ff800", "#ff 001"})
        EXPECT_EQ(labelFromXdgTags(tag), FileLabel{}) << tag;
}

TEST(XdgTags, surviveWhatIsNoList)
{
    EXPECT_EQ(labelFromXdgTags(""), FileLabel{});
    EXPECT_EQ(labelFromXdgTags(",,, ,"), FileLabel{});
    EXPECT_EQ(labelFromXdgTags(",,red"), (FileLabel{6, std::nullopt}));
    EXPECT_EQ(labelFromXdgTags("\xff\xfe,red,\xc3"), (FileLabel{6, std::nullopt}));
    EXPECT_EQ(labelFromXdgTags(QByteArrayView("red\0,blue", 9)), (FileLabel{4, std::nullopt}));
    EXPECT_EQ(labelFromXdgTags(QByteArray(65536, ',')), FileLabel{});
    EXPECT_EQ(labelFromXdgTags(QByteArray(65536, '#')), FileLabel{});
}

TEST(XdgTags, ofRandomBytesNeverGiveANumberOutOfRange)
{
    std::mt19937 random(6);
    constexpr char kAlphabet[] = "#0fredblugy, ,\0\xff";
    std::uniform_int_distribution<std::size_t> letters(0, sizeof kAlphabet - 2);
    for (int i = 0; i < 5000; ++i) {
        QByteArray tags;
        for (int length = i % 40; length > 0; --length)
            tags.append(kAlphabet[letters(random)]);
        const int number = labelFromXdgTags(tags).number;
        ASSERT_GE(number, 0);
        ASSERT_LE(number, 7);
    }
}

TEST(XdgTagLabelReader, readsTheTagsOfAFileAndOfALinkToIt)
{
    const test::TestFolder folder;
    const FileURL file = folder.write("a.jpg");
    const QByteArray tags = "holiday,green,#102030";
    const auto size = static_cast<std::size_t>(tags.size());
    if (::setxattr(file.path().constData(), "user.xdg.tags", tags.constData(), size, 0) != 0) {
        ASSERT_EQ(errno, ENOTSUP);
        GTEST_SKIP() << "the temporary folder's file system keeps no extended attributes";
    }
    const XdgTagLabelReader reader;
    const FileLabel expected{2, Rgb{0x10, 0x20, 0x30}};
    EXPECT_EQ(reader.label(file), expected);

    const FileURL link = folder.at("link.jpg");
    ASSERT_EQ(::symlink(file.path().constData(), link.path().constData()), 0);
    EXPECT_EQ(reader.label(link), expected);

    const FileURL renamed = folder.at("b.jpg");
    ASSERT_EQ(::rename(file.path().constData(), renamed.path().constData()), 0);
    EXPECT_EQ(reader.label(renamed), expected);
}

TEST(XdgTagLabelReader, givesNoLabelForWhatHasNoneOrCannotBeRead)
{
    const test::TestFolder folder;
    const FileURL fifo = folder.at("pipe.jpg");
    ASSERT_EQ(::mkfifo(fifo.path().constData(), 0600), 0);
    const XdgTagLabelReader reader;
    EXPECT_EQ(reader.label(folder.write("a.jpg")), FileLabel{});
    EXPECT_EQ(reader.label(folder.at("vanished.jpg")), FileLabel{});
    EXPECT_EQ(reader.label(fifo), FileLabel{});
    EXPECT_EQ(reader.label(folder.url()), FileLabel{});
    EXPECT_EQ(reader.label(FileURL()), FileLabel{});
    EXPECT_EQ(reader.label(FileURL::fromPath("/proc/self/status")), FileLabel{});
}

} // namespace
} // namespace tallowmere
