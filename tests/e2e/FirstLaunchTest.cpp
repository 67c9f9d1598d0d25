// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "tests/e2e/E2ETest.h"

#include <array>

namespace tallowmere {

namespace fs = std::filesystem;

namespace {

constexpr std::array kTypes{"public.jpeg", "public.png",  "org.webmproject.webp",
                            "public.avif", "public.heic", "public.heif"};
constexpr std::array kMimeTypes{"image/jpeg", "image/png", "image/webp", "image/avif", "image/heic", "image/heif"};
constexpr const char *kDesktopFile = "app.tallowmere.Tallowmere.desktop";

const std::string kFirstLine = "🔧 Attempting to set default file associations on first launch...\n";
const std::string kInstructions = "\n"
                                  "ℹ️  To manually set Tallowmere as default:\n"
                                  "   1. Right-click any JPG/PNG/WebP file in Finder\n"
                                  "   2. Select 'Get Info'\n"
                                  "   3. Expand 'Open with:' section\n"
                                  "   4. Select 'Tallowmere' from the dropdown\n"
                                  "   5. Click 'Change All...' button\n"
                                  "\n";

std::string verification(const std::string &jpeg, const std::string &png, const std::string &webp)
{
    return "📋 Verification after setting associations:\n   JPEG: " + jpeg + "\n   PNG: " + png + "\n   WebP: " + webp +
           "\n";
}

std::string allSucceeded()
{
    std::string lines = kFirstLine;
    for (const char *type : kTypes)
        lines.append("✅ Successfully set default handler for ").append(type).append("\n");
    return lines + "✅ All file associations set successfully (6/6)\n";
}

std::string allFailed(const std::string &why)
{
    std::string lines = kFirstLine;
    for (const char *type : kTypes)
        lines.append("❌ Failed to set default handler for ").append(type).append("\n   Error code: " + why + "\n");
    return lines + "⚠️ Some file associations failed to set (0/6 succeeded)\n" + verification("❌", "❌", "❌") +
           kInstructions;
}

} // namespace

/// What becomes of the user's default applications.
class FirstLaunchTest : public E2ETest
{
protected:
    explicit FirstLaunchTest(std::optional<uid_t> user = std::nullopt) : E2ETest(user)
    {
        fs::remove_all(folders.config() / "tallowmere");
        // A desktop file whose program is nowhere to be found is no application. Nobody starts it here.
        const auto installed = folders.root() / "bin" / "tallowmere";
        fs::create_directories(installed.parent_path());
        desktop::writeFile(installed, "#!/bin/sh\n");
        fs::permissions(installed, fs::perms{0755});
        environment["PATH"] = installed.parent_path().string() + ':' + environment["PATH"];
    }

    void install(const std::string &name, const std::string &text)
    {
        fs::create_directories(folders.data() / "applications");
        desktop::writeFile(folders.data() / "applications" / name, text);
    }
    void install() { install(kDesktopFile, desktop::readFile(TALLOWMERE_DESKTOP_FILE)); }
    [[nodiscard]] fs::path list() const { return folders.config() / "mimeapps.list"; }

    /// Launches until the window is there, and says what was printed until then.
    std::string outputOfLaunch()
    {
        start();
        return program->output();
    }
    void quit()
    {
        EXPECT_EQ(callApplication("ActivateAction", {"quit", "[]", "{}"}).status, 0);
        EXPECT_EQ(program->waitForExit(), 0) << situation();
    }
    [[nodiscard]] bool flagIsStored() const
    {
        return settings().find("DefaultFileAssociationsSet=true\n") != std::string::npos;
    }
    /// What another program finds.
    [[nodiscard]] std::string defaultApplication(const std::string &mimeType) const
    {
        const auto found = desktop::run({.arguments = {"gio", "mime", mimeType},
                                         .environment = environment,
                                         .workingDirectory = {},
                                         .user = m_user});
        const std::string firstLine = found.output.substr(0, found.output.find('\n'));
        const auto colon = firstLine.find(": ");
        return colon == std::string::npos ? "" : firstLine.substr(colon + 2);
    }
    [[nodiscard]] bool hasLoaded(const std::string &library) const
    {
        return desktop::readFile("/proc/" + std::to_string(program->id()) + "/maps").find(library) != std::string::npos;
    }
};

TEST_F(FirstLaunchTest, anInstalledProgramBecomesTheDefaultOfAllSixTypes)
{
    install();
    EXPECT_EQ(outputOfLaunch(), allSucceeded() + verification("✅", "✅", "✅"));
    EXPECT_EQ(program->errors(), "");
    EXPECT_TRUE(flagIsStored()) << settings();
    for (const char *type : kMimeTypes)
        EXPECT_EQ(defaultApplication(type), kDesktopFile) << type;
}

TEST_F(FirstLaunchTest, theOtherLinesOfTheListStayAndTheOlderDefaultsBecomeFallBacks)
{
    install();
    const auto real = folders.home() / "dotfiles-mimeapps";
    desktop::writeFile(real, "# mine\r\n\r\n[Added Associations]\r\nimage/png=x.desktop;\r\n\r\n"
                             "[Default Applications]\r\n# photos\r\nimage/jpeg = old.desktop;older.desktop;");
    fs::create_symlink(real, list());
    EXPECT_EQ(outputOfLaunch(), allSucceeded() + verification("✅", "✅", "✅"));
    const std::string ours = kDesktopFile;
    EXPECT_EQ(desktop::readFile(real), "# mine\r\n\r\n[Added Associations]\r\nimage/png=x.desktop;\r\n\r\n"
                                       "[Default Applications]\r\n# photos\r\nimage/jpeg = " +
                                           ours + ";old.desktop;older.desktop;\r\nimage/png=" + ours +
                                           "\r\nimage/webp=" + ours + "\r\nimage/avif=" + ours +
                                           "\r\nimage/heic=" + ours + "\r\nimage/heif=" + ours);
    EXPECT_TRUE(fs::is_symlink(list()));
}

TEST_F(FirstLaunchTest, secondLaunchPrintsNothingAndDoesNotCallTheRegistry)
{
    install();
    EXPECT_NE(outputOfLaunch(), "");
    quit();
    // The user has changed their mind: nobody argues.
    const std::string others = "[Default Applications]\nimage/png=other.desktop\n";
    desktop::writeFile(list(), others);
    EXPECT_EQ(outputOfLaunch(), "");
    EXPECT_EQ(desktop::readFile(list()), others);
    EXPECT_EQ(program->output(), "");
}

TEST_F(FirstLaunchTest, aProgramThatIsNotInstalledIsRefusedForAllSixTypesAndTheFlagIsStillSet)
{
    EXPECT_EQ(outputOfLaunch(), allFailed("-10814 - Application not found"));
    EXPECT_TRUE(flagIsStored()) << settings();
    EXPECT_FALSE(fs::exists(list()));
    quit();
    EXPECT_EQ(outputOfLaunch(), "");
}

TEST_F(FirstLaunchTest, withoutTheFlagTheNextLaunchTriesAgain)
{
    EXPECT_EQ(outputOfLaunch(), allFailed("-10814 - Application not found"));
    quit();
    fs::remove(folders.config() / "tallowmere" / "tallowmere.ini");
    install();
    EXPECT_EQ(outputOfLaunch(), allSucceeded() + verification("✅", "✅", "✅"));
}

TEST_F(FirstLaunchTest, aWriteProtectedListIsAnUnknownErrorAndStaysAsItIs)
{
    install();
    desktop::writeFile(list(), "# mine\n");
    fs::permissions(list(), fs::perms{0444});
    EXPECT_EQ(outputOfLaunch(), allFailed("-10817 - Unknown error"));
    EXPECT_EQ(desktop::readFile(list()), "# mine\n");
    EXPECT_TRUE(flagIsStored()) << settings();
}

TEST_F(FirstLaunchTest, anotherHandlerForWebPIsToldAlthoughRegistrationPrintedSuccess)
{
    install();
    install("other.desktop", "[Desktop Entry]\nType=Application\nName=Other\nExec=true %U\nMimeType=image/webp;\n");
    setEnvironment("XDG_CURRENT_DESKTOP", "Some:Desk");
    // The running desktop's own list goes before the one that is written.
    desktop::writeFile(folders.config() / "desk-mimeapps.list", "[Default Applications]\nimage/webp=other.desktop\n");
    EXPECT_EQ(outputOfLaunch(), allSucceeded() + verification("✅", "✅", "❌"));
    EXPECT_EQ(defaultApplication("image/webp"), "other.desktop");
    EXPECT_EQ(defaultApplication("image/png"), kDesktopFile);
}

TEST_F(FirstLaunchTest, aPhotoIsShownOnTheFirstLaunchToo)
{
    install();
    addPicture("a.jpg", kRed);
    start({"a.jpg"});
    EXPECT_TRUE(waitForPicture("a.jpg", kRed)) << situation();
    EXPECT_EQ(program->output().find(allSucceeded() + verification("✅", "✅", "✅")), 0U) << situation();
}

TEST_F(FirstLaunchTest, onlyTheFirstLaunchLoadsGio)
{
    EXPECT_NE(outputOfLaunch(), "");
    EXPECT_TRUE(hasLoaded("/libgio-2.0.so"));
    quit();
    start();
    EXPECT_FALSE(hasLoaded("/libgio-2.0.so"));
    EXPECT_TRUE(hasLoaded("/libQt6Core.so"));
}

class FirstLaunchOfOrdinaryUserTest : public FirstLaunchTest
{
protected:
    FirstLaunchOfOrdinaryUserTest() : FirstLaunchTest(desktop::kOrdinaryUser) {}
};

TEST_F(FirstLaunchOfOrdinaryUserTest, aReadOnlyConfigurationFolderIsAnUnknownError)
{
    install();
    fs::permissions(folders.config(), fs::perms{0555});
    EXPECT_EQ(outputOfLaunch(), allFailed("-10817 - Unknown error"));
    EXPECT_TRUE(fs::is_empty(folders.config()));
}

} // namespace tallowmere
