// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "platform/freedesktop/MimeAppsRegistry.h"

#include "tests/doubles/OrdinaryUser.h"
#include "tests/doubles/ScopedEnvironment.h"
#include "tests/doubles/TestFolder.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

namespace tallowmere {

namespace {

using namespace tallowmere::test;
using Statuses = QList<DefaultHandlerRegistry::Status>;

const QByteArray kHandler = "org.example.Viewer";
const QByteArray kDesktopFile = "org.example.Viewer.desktop";
const QList<QByteArray> kAllTypes{"public.jpeg", "public.png",  "org.webmproject.webp",
                                  "public.avif", "public.heic", "public.heif"};
const QByteArray kAllMimeTypes = "image/jpeg;image/png;image/webp;image/avif;image/heic;image/heif;";
const QByteArray kWhole = "[Default Applications]\n"
                          "image/jpeg=org.example.Viewer.desktop\n"
                          "image/png=org.example.Viewer.desktop\n"
                          "image/webp=org.example.Viewer.desktop\n"
                          "image/avif=org.example.Viewer.desktop\n"
                          "image/heic=org.example.Viewer.desktop\n"
                          "image/heif=org.example.Viewer.desktop\n";

std::optional<QByteArray> desktopFileForPngOnly(const QByteArray &mimeType)
{
    return mimeType == "image/png" ? std::optional(kDesktopFile) : std::nullopt;
}

QByteArray desktopEntry(const QByteArray &mimeTypes)
{
    return "[Desktop Entry]\nType=Application\nName=Viewer\nExec=viewer %U\nMimeType=" + mimeTypes + "\n";
}

class MimeAppsRegistryTest : public testing::Test
{
protected:
    MimeAppsRegistryTest()
    {
        for (const char *name : {"config", "data", "data/applications", "system", "system/applications"})
            folder.makeFolder(name);
    }
    void install(const QByteArray &entry = desktopEntry(kAllMimeTypes), const QByteArray &where = "data")
    {
        folder.write(where + "/applications/" + kDesktopFile, entry);
    }
    Statuses registerAll() { return registry.setDefaultHandler(kAllTypes, kHandler); }
    [[nodiscard]] std::filesystem::path path(const char *name) const { return folder.at(name).path().toStdString(); }
    [[nodiscard]] mode_t modeOf(const char *name) const
    {
        struct stat status = {};
        return ::lstat(folder.at(name).path().constData(), &status) == 0 ? status.st_mode & 07777 : 0;
    }
    void expectNothingLeftBeside(const char *inFolder = "config") const
    {
        for (const auto &entry : std::filesystem::directory_iterator(path(inFolder)))
            EXPECT_EQ(entry.path().filename().string().find("tallowmere"), std::string::npos) << entry.path();
    }

    static Statuses all(DefaultHandlerRegistry::Status status) { return Statuses(kAllTypes.size(), status); }

    TestFolder folder;
    ScopedEnvironment config{"XDG_CONFIG_HOME", folder.at("config").path()};
    ScopedEnvironment data{"XDG_DATA_HOME", folder.at("data").path()};
    ScopedEnvironment system{"XDG_DATA_DIRS", folder.at("system").path()};
    MimeAppsRegistry registry{desktopFileForPngOnly};
};

} // namespace

TEST_F(MimeAppsRegistryTest, makesTheHandlerTheDefaultOfAllTypes)
{
    install();
    EXPECT_EQ(registerAll(), all(0));
    EXPECT_EQ(folder.read("config/mimeapps.list"), kWhole);
    expectNothingLeftBeside();
}

TEST_F(MimeAppsRegistryTest, anApplicationThatIsNotInstalledIsNotFound)
{
    EXPECT_EQ(registerAll(), all(-10814));
    EXPECT_TRUE(std::filesystem::is_empty(path("config")));
}

TEST_F(MimeAppsRegistryTest, aTypeThatTheApplicationDoesNotListIsNotRegistered)
{
    install(desktopEntry("image/jpeg;image/heif"));
    EXPECT_EQ(registerAll(), (Statuses{0, -10814, -10814, -10814, -10814, 0}));
    EXPECT_EQ(folder.read("config/mimeapps.list"),
              "[Default Applications]\nimage/jpeg=org.example.Viewer.desktop\nimage/heif=org.example.Viewer.desktop\n");
}

TEST_F(MimeAppsRegistryTest, anUnknownTypeIsAnInvalidParameter)
{
    install();
    EXPECT_EQ(registry.setDefaultHandler({"public.tiff", "public.png", ""}, kHandler), (Statuses{-50, 0, -50}));
}

TEST_F(MimeAppsRegistryTest, aSystemWideApplicationIsFound)
{
    install(desktopEntry(kAllMimeTypes), "system");
    EXPECT_EQ(registerAll(), all(0));
}

TEST_F(MimeAppsRegistryTest, theUsersDesktopFileHidesTheSystems)
{
    install(desktopEntry(kAllMimeTypes), "system");
    install(desktopEntry(kAllMimeTypes) + "Hidden=true\n");
    EXPECT_EQ(registerAll(), all(-10814));
    install(desktopEntry("image/png;"));
    EXPECT_EQ(registerAll(), (Statuses{-10814, 0, -10814, -10814, -10814, -10814}));
}

TEST_F(MimeAppsRegistryTest, aDesktopFileThatIsNoneIsNotFound)
{
    for (const char *text : {"", "rubbish", "[Desktop Entry]\nType=Link\nMimeType=image/png\n",
                             "[Other]\nType=Application\nMimeType=image/png\n",
                             "[Desktop Entry]\nType=Application\nMimeType=image/png\nrubbish\n"}) {
        install(text);
        EXPECT_EQ(registerAll(), all(-10814)) << text;
    }
}

TEST_F(MimeAppsRegistryTest, aSecondTimeTheFileIsNotTouched)
{
    install();
    EXPECT_EQ(registerAll(), all(0));
    const auto inode = [this] {
        struct stat status = {};
        ::stat(path("config/mimeapps.list").c_str(), &status);
        return status.st_ino;
    };
    const auto before = inode();
    std::filesystem::permissions(path("config/mimeapps.list"), std::filesystem::perms{0444});
    EXPECT_EQ(registerAll(), all(0));
    EXPECT_EQ(inode(), before);
}

TEST_F(MimeAppsRegistryTest, theModeOfTheFileIsKept)
{
    install();
    folder.write("config/mimeapps.list", "# mine\n");
    std::filesystem::permissions(path("config/mimeapps.list"), std::filesystem::perms{0640});
    EXPECT_EQ(registerAll(), all(0));
    EXPECT_EQ(modeOf("config/mimeapps.list"), 0640U);
    EXPECT_EQ(folder.read("config/mimeapps.list"), "# mine\n\n" + kWhole);
}

TEST_F(MimeAppsRegistryTest, aNewFileHasTheModeThatTheUserGivesToFiles)
{
    install();
    const mode_t before = ::umask(027);
    EXPECT_EQ(registerAll(), all(0));
    ::umask(before);
    EXPECT_EQ(modeOf("config/mimeapps.list"), 0640U);
}

TEST_F(MimeAppsRegistryTest, aMissingConfigurationFolderIsMadeForTheUserAlone)
{
    install();
    const ScopedEnvironment deep("XDG_CONFIG_HOME", folder.at("new/config").path());
    EXPECT_EQ(registerAll(), all(0));
    EXPECT_EQ(folder.read("new/config/mimeapps.list"), kWhole);
    EXPECT_EQ(modeOf("new/config"), 0700U);
}

TEST_F(MimeAppsRegistryTest, aFolderThatCannotBeMadeIsAnUnknownError)
{
    install();
    const ScopedEnvironment below("XDG_CONFIG_HOME", folder.write("file").path() + "/config");
    EXPECT_EQ(registerAll(), all(-10817));
}

TEST_F(MimeAppsRegistryTest, aLinkedFileIsWrittenWhereItLies)
{
    install();
    folder.makeFolder("dotfiles");
    folder.write("dotfiles/mine", "# mine\n");
    std::filesystem::create_symlink("second", path("config/mimeapps.list"));
    std::filesystem::create_symlink("../dotfiles/mine", path("config/second"));
    EXPECT_EQ(registerAll(), all(0));
    EXPECT_TRUE(std::filesystem::is_symlink(path("config/mimeapps.list")));
    EXPECT_TRUE(std::filesystem::is_symlink(path("config/second")));
    EXPECT_FALSE(std::filesystem::is_symlink(path("dotfiles/mine")));
    EXPECT_EQ(folder.read("dotfiles/mine"), "# mine\n\n" + kWhole);
    expectNothingLeftBeside("dotfiles");
}

TEST_F(MimeAppsRegistryTest, aDanglingLinkGetsItsFile)
{
    install();
    folder.makeFolder("dotfiles");
    std::filesystem::create_symlink(path("dotfiles/mine"), path("config/mimeapps.list"));
    EXPECT_EQ(registerAll(), all(0));
    EXPECT_TRUE(std::filesystem::is_symlink(path("config/mimeapps.list")));
    EXPECT_EQ(folder.read("dotfiles/mine"), kWhole);
}

TEST_F(MimeAppsRegistryTest, aLinkIntoAMissingFolderIsLeftAlone)
{
    install();
    std::filesystem::create_symlink(path("unmounted/mine"), path("config/mimeapps.list"));
    EXPECT_EQ(registerAll(), all(-10817));
    EXPECT_FALSE(std::filesystem::exists(path("unmounted")));
}

TEST_F(MimeAppsRegistryTest, linksInACircleAreAnUnknownError)
{
    install();
    std::filesystem::create_symlink("b", path("config/mimeapps.list"));
    std::filesystem::create_symlink("mimeapps.list", path("config/b"));
    EXPECT_EQ(registerAll(), all(-10817));
    EXPECT_TRUE(std::filesystem::is_symlink(path("config/mimeapps.list")));
}

TEST_F(MimeAppsRegistryTest, aWriteProtectedFileStaysAsItIsEvenForRoot)
{
    install();
    folder.write("config/mimeapps.list", "# mine\n");
    std::filesystem::permissions(path("config/mimeapps.list"), std::filesystem::perms{0444});
    EXPECT_EQ(registerAll(), all(-10817));
    EXPECT_EQ(folder.read("config/mimeapps.list"), "# mine\n");
    expectNothingLeftBeside();
}

TEST_F(MimeAppsRegistryTest, aFileThatCannotBeReadStaysAsItIs)
{
    install();
    folder.write("config/mimeapps.list", "# mine\n");
    std::filesystem::permissions(path("config/mimeapps.list"), std::filesystem::perms{0200});
    const auto asOrdinaryUser = [this] {
        becomeOrdinaryUser();
        _exit(registerAll() == all(-10817) ? 0 : 1);
    };
    EXPECT_EXIT(asOrdinaryUser(), testing::ExitedWithCode(0), "");
    std::filesystem::permissions(path("config/mimeapps.list"), std::filesystem::perms{0600});
    EXPECT_EQ(folder.read("config/mimeapps.list"), "# mine\n");
}

TEST_F(MimeAppsRegistryTest, inAReadOnlyFolderTheFileStaysAsItIs)
{
    install();
    folder.write("config/mimeapps.list", "# mine\n");
    std::filesystem::permissions(path("config"), std::filesystem::perms{0500});
    const auto asOrdinaryUser = [this] {
        becomeOrdinaryUser();
        _exit(registerAll() == all(-10817) ? 0 : 1);
    };
    EXPECT_EXIT(asOrdinaryUser(), testing::ExitedWithCode(0), "");
    std::filesystem::permissions(path("config"), std::filesystem::perms{0700});
    EXPECT_EQ(folder.read("config/mimeapps.list"), "# mine\n");
    expectNothingLeftBeside();
}

TEST_F(MimeAppsRegistryTest, whatIsNoRegularFileIsAnUnknownError)
{
    install();
    folder.makeFolder("config/mimeapps.list");
    EXPECT_EQ(registerAll(), all(-10817));
    std::filesystem::remove(path("config/mimeapps.list"));
    ASSERT_EQ(::mkfifo(path("config/mimeapps.list").c_str(), 0600), 0);
    EXPECT_EQ(registerAll(), all(-10817));
    EXPECT_TRUE(std::filesystem::is_fifo(path("config/mimeapps.list")));
}

TEST_F(MimeAppsRegistryTest, anAbsurdlyLargeFileIsRefused)
{
    install();
    folder.write("config/mimeapps.list", "# mine\n");
    constexpr off_t kSize = (off_t{64} << 20) + 1;
    ASSERT_EQ(::truncate(path("config/mimeapps.list").c_str(), kSize), 0);
    EXPECT_EQ(registerAll(), all(-10817));
    EXPECT_EQ(std::filesystem::file_size(path("config/mimeapps.list")), kSize);
}

TEST_F(MimeAppsRegistryTest, aFileOfTenMegabytesIsEditedLikeAnyOther)
{
    install();
    const QByteArray list =
        "[Default Applications]\n" + QByteArray("text/x-some-type=some-application.desktop;\n").repeated(250'000);
    folder.write("config/mimeapps.list", list);
    EXPECT_EQ(registerAll(), all(0));
    EXPECT_EQ(folder.read("config/mimeapps.list"), list + kWhole.sliced(kWhole.indexOf('\n') + 1));
}

TEST_F(MimeAppsRegistryTest, theHandlerIsTheDesktopFilesNameWithoutItsEnding)
{
    EXPECT_EQ(registry.defaultHandler("public.png"), kHandler);
    EXPECT_EQ(registry.defaultHandler("public.jpeg"), std::nullopt);
    EXPECT_EQ(registry.defaultHandler("public.tiff"), std::nullopt);
}

} // namespace tallowmere
