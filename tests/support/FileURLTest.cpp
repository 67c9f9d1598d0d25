// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "support/FileURL.h"

#include <QSet>

#include <gtest/gtest.h>

#include <unistd.h>

#include <array>
#include <climits>

namespace tallowmere {
namespace {

FileURL url(const char *path)
{
    return FileURL::fromPath(path);
}

TEST(FileURL, anEmptyPathIsTheEmptyURL)
{
    EXPECT_TRUE(FileURL().empty());
    EXPECT_TRUE(FileURL::fromPath({}).empty());
    EXPECT_TRUE(FileURL().encoded().isEmpty());
    EXPECT_TRUE(FileURL().lastPathComponent().isEmpty());
    EXPECT_FALSE(url("/a").empty());
}

TEST(FileURL, resolvesDotsAndDoubledSlashesByText)
{
    EXPECT_EQ(url("/a//b/./c/../d.jpg").path(), "/a/b/d.jpg");
    EXPECT_EQ(url("/../..").path(), "/");
    EXPECT_EQ(url("//a/").path(), "/a");
    EXPECT_EQ(url("/a/...").path(), "/a/...");
}

TEST(FileURL, makesARelativePathAbsoluteAgainstTheWorkingDirectory)
{
    std::array<char, PATH_MAX> here{};
    ASSERT_NE(::getcwd(here.data(), here.size()), nullptr);
    EXPECT_EQ(url("x.jpg"), url(here.data()).appending("x.jpg"));
    EXPECT_EQ(url("./a/../x.jpg"), url(here.data()).appending("x.jpg"));
}

TEST(FileURL, keepsBytesThatAreNoText)
{
    const QByteArray latin1("/tmp/gr\xFC\xDF.jpg");
    EXPECT_EQ(FileURL::fromPath(latin1).path(), latin1);
    EXPECT_EQ(FileURL::fromPath(latin1).displayName(), QString::fromUtf8("gr\uFFFD\uFFFD.jpg"));
    EXPECT_EQ(FileURL::fromPath(latin1).encoded(), "file:///tmp/gr%FC%DF.jpg");
    EXPECT_EQ(FileURL::fromEncoded("file:///tmp/gr%FC%df.jpg"), FileURL::fromPath(latin1));
}

TEST(FileURL, encodesAllButUnreservedBytesAndSlashes)
{
    EXPECT_EQ(url("/a b/ü#?%'(1)-._~.JPG").encoded(), "file:///a%20b/%C3%BC%23%3F%25%27%281%29-._~.JPG");
}

TEST(FileURL, everyByteSurvivesEncodingAndDecoding)
{
    QByteArray name("/");
    for (int byte = 1; byte < 256; ++byte) {
        if (byte != '/')
            name.append(static_cast<char>(byte));
    }
    const FileURL all = FileURL::fromPath(name);
    EXPECT_EQ(FileURL::fromEncoded(all.encoded()), all);
}

TEST(FileURL, decodesTheFormsInUse)
{
    std::array<char, HOST_NAME_MAX + 1> own{};
    ASSERT_EQ(::gethostname(own.data(), HOST_NAME_MAX), 0);
    const FileURL file = url("/a/b c.jpg");
    EXPECT_EQ(FileURL::fromEncoded("file:///a/b%20c.jpg"), file);
    EXPECT_EQ(FileURL::fromEncoded("file://localhost/a/b%20c.jpg"), file);
    EXPECT_EQ(FileURL::fromEncoded("file://" + QByteArray(own.data()) + "/a/b%20c.jpg"), file);
    EXPECT_EQ(FileURL::fromEncoded("file:/a/b%20c.jpg"), file);
    EXPECT_EQ(FileURL::fromEncoded("FILE:///a/b c.jpg"), file);
    EXPECT_EQ(FileURL::fromEncoded("file:///a/x/../b%20c.jpg"), file);
    EXPECT_EQ(FileURL::fromEncoded("file:///a#1?.jpg"), url("/a#1?.jpg"));
}

TEST(FileURL, refusesWhatIsNoFileOfThisMachine)
{
    for (const char *refused : {"", "file:", "file://", "/a.jpg", "a.jpg", "http://localhost/a.jpg", "trash:///a.jpg",
                                "mtp://x/a.jpg", "file:a.jpg", "file://elsewhere.example/a.jpg", "file://host",
                                "file:///a%2", "file:///a%", "file:///%zz", "file:///a%00.jpg"})
        EXPECT_FALSE(FileURL::fromEncoded(refused).has_value()) << refused;
}

TEST(FileURL, splitsOffNameFolderAndExtension)
{
    const FileURL file = url("/photos/Holiday.2024.JPeG");
    EXPECT_EQ(file.lastPathComponent(), "Holiday.2024.JPeG");
    EXPECT_EQ(file.displayName(), QString::fromUtf8("Holiday.2024.JPeG"));
    EXPECT_EQ(file.lowercasedPathExtension(), "jpeg");
    EXPECT_EQ(file.deletingLastPathComponent(), url("/photos"));
    EXPECT_EQ(url("/photos").deletingLastPathComponent(), url("/"));
    EXPECT_EQ(url("/").deletingLastPathComponent(), url("/"));
    EXPECT_EQ(url("/").lastPathComponent(), "/");
    EXPECT_EQ(url("/").appending("a.jpg"), url("/a.jpg"));
    EXPECT_EQ(url("/photos").appending("a.jpg"), url("/photos/a.jpg"));
}

TEST(FileURL, aNameWithoutADotHasNoExtensionWhateverItsFolderIsCalled)
{
    EXPECT_EQ(url("/set.jpg/readme").lowercasedPathExtension(), "");
    EXPECT_EQ(url("/a/trailing.").lowercasedPathExtension(), "");
    EXPECT_EQ(FileURL::lowercasedPathExtension("A.b.PNG"), "png");
    EXPECT_EQ(FileURL::lowercasedPathExtension(""), "");
}

TEST(FileURL, equalBytesAreEqualURLs)
{
    EXPECT_EQ(url("/a/b"), url("/a//b"));
    EXPECT_NE(url("/a/b"), url("/a/B"));
    EXPECT_EQ((QSet<FileURL>{url("/a"), url("/a"), url("/b")}.size()), 2);
    EXPECT_EQ(std::hash<FileURL>()(url("/a")), std::hash<FileURL>()(url("/./a")));
}

} // namespace
} // namespace tallowmere
