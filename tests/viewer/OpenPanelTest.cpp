// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "viewer/OpenPanel.h"

#include "settings/SettingsManager.h"
#include "tests/doubles/MemoryDefaultsStore.h"

#include <gtest/gtest.h>

#include <fnmatch.h>

#include <algorithm>

namespace tallowmere {
namespace {

/// Whether a dialog that matches letter for letter lists @p name.
bool offers(const SettingsManager &settings, const char *name)
{
    const QString filter = openPanelNameFilter(settings);
    const qsizetype begin = filter.indexOf(QLatin1Char('(')) + 1;
    const QStringList patterns = filter.mid(begin, filter.size() - begin - 1).split(QLatin1Char(' '));
    return std::any_of(patterns.begin(), patterns.end(), [name](const QString &pattern) {
        return ::fnmatch(pattern.toLatin1().constData(), name, 0) == 0;
    });
}

TEST(OpenPanel, offersEveryFormatInAnyCase)
{
    const SettingsManager settings(std::make_unique<test::MemoryDefaultsStore>());
    for (const char *name : {"a.jpg", "a.JPG", "a.Jpg", "a.jPeG", "a.JPEG", "a.png", "a.Png", "a.WEBP", "a.WebP",
                             "a.avif", "a.Avif", "a.heic", "a.HEIC", "a.b.jpg"})
        EXPECT_TRUE(offers(settings, name)) << name;
    for (const char *name : {"a.heif", "a.gif", "a.jpgx", "jpg", "a.jpg.txt"})
        EXPECT_FALSE(offers(settings, name)) << name;
    EXPECT_TRUE(openPanelNameFilter(settings).startsWith(QStringLiteral("Images (*.jpg *.[jJ][pP][gG] *.jpeg ")))
        << openPanelNameFilter(settings).toStdString();
}

TEST(OpenPanel, offersOnlyJpegWhenAllElseIsSwitchedOff)
{
    SettingsManager settings(std::make_unique<test::MemoryDefaultsStore>());
    settings.setPngSupportEnabled(false);
    settings.setWebpSupportEnabled(false);
    settings.setAvifSupportEnabled(false);
    settings.setHeicSupportEnabled(false);
    EXPECT_EQ(openPanelNameFilter(settings), QStringLiteral("Images (*.jpg *.[jJ][pP][gG] *.jpeg *.[jJ][pP][eE][gG])"));
}

} // namespace
} // namespace tallowmere
