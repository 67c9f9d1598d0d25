// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "settings/SettingsManager.h"

#include "tests/doubles/MemoryDefaultsStore.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tallowmere {
namespace {

using namespace Qt::Literals::StringLiterals;
using test::MemoryDefaultsStore;
using testing::ElementsAre;

class Settings : public testing::Test
{
protected:
    Settings() : m_owned(std::make_unique<MemoryDefaultsStore>()), m_store(*m_owned), m_settings(std::move(m_owned)) {}

private:
    std::unique_ptr<MemoryDefaultsStore> m_owned;

protected:
    MemoryDefaultsStore &m_store;
    SettingsManager m_settings;
};

TEST_F(Settings, aFreshUserReadsTheDefaults)
{
    EXPECT_TRUE(m_settings.pngSupportEnabled());
    EXPECT_TRUE(m_settings.webpSupportEnabled());
    EXPECT_TRUE(m_settings.avifSupportEnabled());
    EXPECT_TRUE(m_settings.heicSupportEnabled());
    EXPECT_TRUE(m_settings.showFileSize());
    EXPECT_TRUE(m_settings.showImageResolution());
    EXPECT_FALSE(m_settings.showCreationDate());
    EXPECT_TRUE(m_settings.autoResizeToImageSize());
    EXPECT_TRUE(m_settings.autoResizeWithAnimation());
    EXPECT_EQ(m_settings.fileNameDisplayLocation(), FileNameDisplayLocation::inTitle);
    EXPECT_FALSE(m_settings.showFileTag());
    EXPECT_FALSE(m_settings.defaultFileAssociationsSet());
    EXPECT_EQ(m_settings.transparencyBackground(), TransparencyBackground::solidColor);
    EXPECT_FALSE(m_settings.useXPCService());
    EXPECT_THAT(m_settings.enabledImageExtensions(), ElementsAre("jpg", "jpeg", "png", "webp", "avif", "heic", "heif"));
}

TEST_F(Settings, readingADefaultWritesNothing)
{
    EXPECT_TRUE(m_settings.showFileSize());
    EXPECT_EQ(m_settings.enabledImageExtensions().size(), 7);
    EXPECT_TRUE(m_store.keys().isEmpty());
}

TEST_F(Settings, pngAndAvifSwitchedOffLeaveTheListWithoutThem)
{
    m_settings.setPngSupportEnabled(false);
    m_settings.setAvifSupportEnabled(false);
    EXPECT_THAT(m_settings.enabledImageExtensions(), ElementsAre("jpg", "jpeg", "webp", "heic", "heif"));
}

TEST_F(Settings, allFourSwitchedOffLeaveJpegAlone)
{
    m_settings.setPngSupportEnabled(false);
    m_settings.setWebpSupportEnabled(false);
    m_settings.setAvifSupportEnabled(false);
    m_settings.setHeicSupportEnabled(false);
    EXPECT_THAT(m_settings.enabledImageExtensions(), ElementsAre("jpg", "jpeg"));
}

TEST_F(Settings, extensionsAreReadAfreshOnEveryCall)
{
    EXPECT_EQ(m_settings.enabledImageExtensions().size(), 7);
    m_store.setBool("HEICSupportEnabled", false);
    EXPECT_THAT(m_settings.enabledImageExtensions(), ElementsAre("jpg", "jpeg", "png", "webp", "avif"));
}

TEST_F(Settings, aFileNameLocationInTheWrongCaseReadsAsInTitle)
{
    m_store.setString("FileNameDisplayLocation", u"InCorner"_s);
    EXPECT_EQ(m_settings.fileNameDisplayLocation(), FileNameDisplayLocation::inTitle);
    m_store.setString("FileNameDisplayLocation", u"off"_s);
    EXPECT_EQ(m_settings.fileNameDisplayLocation(), FileNameDisplayLocation::off);
    m_store.setString("FileNameDisplayLocation", u"inCorner"_s);
    EXPECT_EQ(m_settings.fileNameDisplayLocation(), FileNameDisplayLocation::inCorner);
}

TEST_F(Settings, anUnknownTransparencyBackgroundReadsAsSolidColor)
{
    m_store.setString("TransparencyBackground", u"checker"_s);
    EXPECT_EQ(m_settings.transparencyBackground(), TransparencyBackground::solidColor);
    m_store.setString("TransparencyBackground", u"checkers"_s);
    EXPECT_EQ(m_settings.transparencyBackground(), TransparencyBackground::checkers);
}

TEST_F(Settings, anUnknownStringIsNotRewritten)
{
    m_store.setString("FileNameDisplayLocation", u"somewhere"_s);
    EXPECT_EQ(m_settings.fileNameDisplayLocation(), FileNameDisplayLocation::inTitle);
    EXPECT_EQ(m_store.stringForKey("FileNameDisplayLocation"), u"somewhere"_s);
}

TEST_F(Settings, aStoredFalseBeatsTheDefaultOfTrue)
{
    m_settings.setShowFileSize(false);
    EXPECT_FALSE(m_settings.showFileSize());
}

TEST_F(Settings, creationDateReadsTheSameAbsentAndStoredFalse)
{
    EXPECT_FALSE(m_settings.showCreationDate());
    m_settings.setShowCreationDate(false);
    EXPECT_FALSE(m_settings.showCreationDate());
    m_settings.setShowCreationDate(true);
    EXPECT_TRUE(m_settings.showCreationDate());
}

TEST_F(Settings, aPresentValueThatIsNoBooleanReadsFalse)
{
    m_store.setString("ShowFileSize", u"perhaps"_s);
    EXPECT_FALSE(m_settings.showFileSize());
    m_store.setString("DefaultFileAssociationsSet", u"perhaps"_s);
    EXPECT_FALSE(m_settings.defaultFileAssociationsSet());
}

TEST_F(Settings, nothingIsRemembered)
{
    EXPECT_TRUE(m_settings.showFileSize());
    const int before = m_store.reads();
    EXPECT_TRUE(m_settings.showFileSize());
    EXPECT_GT(m_store.reads(), before);
}

struct Switch
{
    const char *key;
    bool (SettingsManager::*get)() const;
    void (SettingsManager::*set)(bool);
};

void PrintTo(const Switch &entry, std::ostream *stream)
{
    *stream << entry.key;
}

class BooleanSetting : public Settings, public testing::WithParamInterface<Switch>
{};

TEST_P(BooleanSetting, isStoredUnderItsExactKeyAndReadBack)
{
    const auto &[key, get, set] = GetParam();
    for (const bool value : {true, false, true}) {
        (m_settings.*set)(value);
        EXPECT_EQ((m_settings.*get)(), value);
        EXPECT_EQ(m_store.boolForKey(key), value);
    }
    EXPECT_THAT(m_store.keys(), ElementsAre(key));
}

#define ENTRY(key, get, set)                                                                                           \
    Switch                                                                                                             \
    {                                                                                                                  \
        key, &SettingsManager::get, &SettingsManager::set                                                              \
    }
INSTANTIATE_TEST_SUITE_P(
    All, BooleanSetting,
    testing::Values(ENTRY("PNGSupportEnabled", pngSupportEnabled, setPngSupportEnabled),
                    ENTRY("WebPSupportEnabled", webpSupportEnabled, setWebpSupportEnabled),
                    ENTRY("AVIFSupportEnabled", avifSupportEnabled, setAvifSupportEnabled),
                    ENTRY("HEICSupportEnabled", heicSupportEnabled, setHeicSupportEnabled),
                    ENTRY("ShowFileSize", showFileSize, setShowFileSize),
                    ENTRY("ShowImageResolution", showImageResolution, setShowImageResolution),
                    ENTRY("ShowCreationDate", showCreationDate, setShowCreationDate),
                    ENTRY("AutoResizeToImageSize", autoResizeToImageSize, setAutoResizeToImageSize),
                    ENTRY("AutoResizeWithAnimation", autoResizeWithAnimation, setAutoResizeWithAnimation),
                    ENTRY("ShowFileTag", showFileTag, setShowFileTag),
                    ENTRY("DefaultFileAssociationsSet", defaultFileAssociationsSet, setDefaultFileAssociationsSet),
                    ENTRY("UseXPCService", useXPCService, setUseXPCService)),
    [](const testing::TestParamInfo<Switch> &entry) { return std::string(entry.param.key); });
#undef ENTRY

TEST_F(Settings, enumerationsAreStoredUnderTheirExactKeysAsRawValues)
{
    m_settings.setFileNameDisplayLocation(FileNameDisplayLocation::inCorner);
    m_settings.setTransparencyBackground(TransparencyBackground::checkers);
    EXPECT_EQ(m_store.stringForKey("FileNameDisplayLocation"), u"inCorner"_s);
    EXPECT_EQ(m_store.stringForKey("TransparencyBackground"), u"checkers"_s);
    EXPECT_EQ(m_settings.fileNameDisplayLocation(), FileNameDisplayLocation::inCorner);
    EXPECT_EQ(m_settings.transparencyBackground(), TransparencyBackground::checkers);
}

TEST(SettingsEnumerations, listTheirCasesInOrderAndRoundTripByRawValue)
{
    EXPECT_THAT(
        kAllFileNameDisplayLocations,
        ElementsAre(FileNameDisplayLocation::inTitle, FileNameDisplayLocation::inCorner, FileNameDisplayLocation::off));
    EXPECT_THAT(kAllTransparencyBackgrounds,
                ElementsAre(TransparencyBackground::solidColor, TransparencyBackground::checkers));
    EXPECT_EQ(rawValue(FileNameDisplayLocation::inTitle), u"inTitle"_s);
    EXPECT_EQ(rawValue(FileNameDisplayLocation::off), u"off"_s);
    EXPECT_EQ(rawValue(TransparencyBackground::solidColor), u"solidColor"_s);
    for (const auto location : kAllFileNameDisplayLocations)
        EXPECT_EQ(fileNameDisplayLocationFrom(rawValue(location)), location);
    for (const auto background : kAllTransparencyBackgrounds)
        EXPECT_EQ(transparencyBackgroundFrom(rawValue(background)), background);
    for (const QString &text : {u""_s, u"intitle"_s, u"Off"_s, u" off"_s, u"solidColor "_s}) {
        EXPECT_FALSE(fileNameDisplayLocationFrom(text).has_value());
        EXPECT_FALSE(transparencyBackgroundFrom(text).has_value());
    }
}

} // namespace
} // namespace tallowmere
