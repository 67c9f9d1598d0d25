// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "settings/SettingsManager.h"
#include "tests/doubles/MemoryDefaultsStore.h"
#include "tests/doubles/RecordingScope.h"
#include "tests/doubles/TestFolder.h"
#include "tests/doubles/TestImages.h"
#include "viewer/rules/FileInfoText.h"

#include <gtest/gtest.h>

namespace tallowmere {
namespace {

using namespace Qt::Literals::StringLiterals;

constexpr FileInfoSelection kEverything{.fileSize = true, .creationDate = true, .imageResolution = true};

/// Answers the same for every file and counts how often it was asked.
class FixedAttributes final : public FileAttributesReader
{
public:
    explicit FixedAttributes(std::optional<FileAttributes> attributes) : m_attributes(attributes) {}
    [[nodiscard]] std::optional<FileAttributes> attributes(const FileURL &) const override
    {
        ++asked;
        return m_attributes;
    }

    mutable int asked = 0;

private:
    const std::optional<FileAttributes> m_attributes;
};

TEST(FileInfoTexts, areJoinedInOrderByBullets)
{
    EXPECT_EQ((FileInfoTexts{u"2.4 MB"_s, u"Unknown"_s, u"1920×1080"_s}.joined()), u"2.4 MB • Unknown • 1920×1080"_s);
    EXPECT_EQ((FileInfoTexts{u"2.4 MB"_s, {}, u"1920×1080"_s}.joined()), u"2.4 MB • 1920×1080"_s);
    EXPECT_EQ((FileInfoTexts{{}, {}, u"1920×1080"_s}.joined()), u"1920×1080"_s);
    EXPECT_TRUE(FileInfoTexts{}.joined().isEmpty());
}

TEST(ResolutionText, hasATimesSignAndNoBlanksWhateverTheLocale)
{
    EXPECT_EQ(resolutionText({1920, 1080}), u"1920\u00D71080"_s);
    EXPECT_EQ(resolutionText({1, 65535}), u"1\u00D765535"_s);
}

TEST(FileInfo, ofAPictureThatReportsWidthZeroLeavesTheResolutionOutAndJoinsTheRest)
{
    EXPECT_EQ(resolutionText({0, 1080}), std::nullopt);
    EXPECT_EQ(resolutionText({1920, 0}), std::nullopt);

    const test::TestFolder folder;
    QByteArray png = test::pngOf(8, 8, {1, 2, 3, 255});
    png.replace(16, 4, QByteArray(4, '\0')); // the width in IHDR
    const FileURL file = folder.write("zero.png", png);
    const FixedAttributes attributes(FileAttributes{2'000'000, {}});
    NoSecurityScope scope;
    EXPECT_EQ(readFileInfo(file, kEverything, attributes, scope).joined(), u"2 MB • Unknown"_s);
}

TEST(FileInfo, onAFileSystemWithoutCreationDatesReadsUnknown)
{
    const FixedAttributes attributes(FileAttributes{1234, {}});
    NoSecurityScope scope;
    const FileInfoSelection dateOnly{.fileSize = false, .creationDate = true, .imageResolution = false};
    EXPECT_EQ(readFileInfo(FileURL::fromPath("/x.jpg"), dateOnly, attributes, scope).joined(), u"Unknown"_s);
}

TEST(FileInfo, withAllThreeOffAsksForNothing)
{
    const FileInfoSelection nothing;
    EXPECT_FALSE(nothing.any());
    const test::TestFolder folder;
    const FixedAttributes attributes(FileAttributes{1234, {}});
    NoSecurityScope scope;
    const FileURL file = folder.write("a.jpg", test::jpegOf(8, 8, {1, 2, 3, 255}));
    EXPECT_TRUE(readFileInfo(file, nothing, attributes, scope).joined().isEmpty());
    EXPECT_EQ(attributes.asked, 0);
}

TEST(FileInfo, selectionIsWhatTheSettingsSay)
{
    SettingsManager settings(std::make_unique<test::MemoryDefaultsStore>());
    const auto fresh = FileInfoSelection::of(settings);
    EXPECT_TRUE(fresh.fileSize);
    EXPECT_FALSE(fresh.creationDate);
    EXPECT_TRUE(fresh.imageResolution);

    settings.setShowFileSize(false);
    settings.setShowCreationDate(true);
    settings.setShowImageResolution(false);
    const auto changed = FileInfoSelection::of(settings);
    EXPECT_FALSE(changed.fileSize);
    EXPECT_TRUE(changed.creationDate);
    EXPECT_FALSE(changed.imageResolution);
    settings.setShowCreationDate(false);
    EXPECT_FALSE(FileInfoSelection::of(settings).any());
}

TEST(FileInfo, ofAFileWithoutAttributesCountsAsEmptyAndOfUnknownDate)
{
    const FixedAttributes none(std::nullopt);
    NoSecurityScope scope;
    const test::TestFolder folder;
    EXPECT_EQ(readFileInfo(folder.at("vanished.jpg"), kEverything, none, scope).joined(), u"Zero KB • Unknown"_s);
}

TEST(FileInfo, tellsTheStoredSizeAndIsReadUnderTheSandboxsPermission)
{
    const test::TestFolder folder;
    const FileURL file = folder.write("turned.jpg", test::jpegOf(40, 20, {1, 2, 3, 255}, 6));
    const FixedAttributes attributes(FileAttributes{999, {}});
    test::RecordingScope scope;
    const FileInfoSelection selection{.fileSize = true, .creationDate = false, .imageResolution = true};
    EXPECT_EQ(readFileInfo(file, selection, attributes, scope).joined(), u"999 bytes • 40×20"_s);
    EXPECT_EQ(scope.log(), (std::vector<QByteArray>{"start " + file.path(), "stop " + file.path()}));
}

} // namespace
} // namespace tallowmere
