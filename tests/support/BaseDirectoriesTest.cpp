// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "support/BaseDirectories.h"

#include "tests/doubles/ScopedEnvironment.h"

#include <gtest/gtest.h>

#include <pwd.h>
#include <unistd.h>

namespace tallowmere {
namespace {

using test::ScopedEnvironment;

struct CleanEnvironment
{
    ScopedEnvironment home{"HOME", "/home/somebody"};
    ScopedEnvironment config{"XDG_CONFIG_HOME", std::nullopt};
    ScopedEnvironment data{"XDG_DATA_HOME", std::nullopt};
    ScopedEnvironment cache{"XDG_CACHE_HOME", std::nullopt};
    ScopedEnvironment configDirs{"XDG_CONFIG_DIRS", std::nullopt};
    ScopedEnvironment dataDirs{"XDG_DATA_DIRS", std::nullopt};
};

TEST(BaseDirectories, defaultsLieBelowHome)
{
    const CleanEnvironment clean;
    const auto found = BaseDirectories::fromEnvironment();
    EXPECT_EQ(found.home, "/home/somebody");
    EXPECT_EQ(found.config, "/home/somebody/.config");
    EXPECT_EQ(found.data, "/home/somebody/.local/share");
    EXPECT_EQ(found.cache, "/home/somebody/.cache");
    EXPECT_EQ(found.configDirs, QList<QByteArray>{"/etc/xdg"});
    EXPECT_EQ(found.dataDirs, (QList<QByteArray>{"/usr/local/share", "/usr/share"}));
}

TEST(BaseDirectories, theEnvironmentGoesFirst)
{
    const CleanEnvironment clean;
    const ScopedEnvironment config("XDG_CONFIG_HOME", "/c/");
    const ScopedEnvironment data("XDG_DATA_HOME", "/d");
    const ScopedEnvironment cache("XDG_CACHE_HOME", "/gr\xFC\xDF");
    const ScopedEnvironment dataDirs("XDG_DATA_DIRS", "/first/:relative::/second");
    const auto found = BaseDirectories::fromEnvironment();
    EXPECT_EQ(found.config, "/c");
    EXPECT_EQ(found.data, "/d");
    EXPECT_EQ(found.cache, "/gr\xFC\xDF");
    EXPECT_EQ(found.dataDirs, (QList<QByteArray>{"/first", "/second"}));
}

TEST(BaseDirectories, relativeAndEmptyVariablesAreIgnored)
{
    const CleanEnvironment clean;
    const ScopedEnvironment config("XDG_CONFIG_HOME", "relative");
    const ScopedEnvironment data("XDG_DATA_HOME", "");
    const auto found = BaseDirectories::fromEnvironment();
    EXPECT_EQ(found.config, "/home/somebody/.config");
    EXPECT_EQ(found.data, "/home/somebody/.local/share");
}

TEST(BaseDirectories, withoutHomeTheUserDatabaseTells)
{
    const CleanEnvironment clean;
    const ScopedEnvironment noHome("HOME", std::nullopt);
    const passwd *entry = ::getpwuid(::getuid());
    const QByteArray expected = entry && entry->pw_dir[0] == '/' ? QByteArray(entry->pw_dir) : QByteArray();
    const auto found = BaseDirectories::fromEnvironment();
    EXPECT_EQ(found.home, expected);
    EXPECT_EQ(found.config.isEmpty(), expected.isEmpty());
    EXPECT_TRUE(found.config.startsWith(expected));
}

// Run where the user has no entry in the database.
void exitAsUserWithoutEntry()
{
    constexpr uid_t kNobodyKnows = 3'999'999'999U;
    if (::setuid(kNobodyKnows) != 0)
        _exit(2);
    qunsetenv("HOME");
    qunsetenv("XDG_CONFIG_HOME");
    const auto found = BaseDirectories::fromEnvironment();
    _exit(found.home.isEmpty() && found.config.isEmpty() && found.data.isEmpty() && found.cache.isEmpty() ? 0 : 1);
}

TEST(BaseDirectories, withNothingAtAllFoldersAreEmpty)
{
    if (::getuid() != 0)
        GTEST_SKIP() << "only root can become a user without an entry";
    const CleanEnvironment clean;
    EXPECT_EXIT(exitAsUserWithoutEntry(), testing::ExitedWithCode(0), "");
}

} // namespace
} // namespace tallowmere
