// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "tests/e2e/SettingsTest.h"

#include <gmock/gmock.h>

#include <charconv>
#include <sstream>

namespace tallowmere {

using desktop::waitUntil;
using testing::ElementsAre;

/// Where images are decoded, as far as the list of processes shows it.
class ImageServiceSettingTest : public SettingsTest
{
protected:
    /// Of the program and of whatever was started from it.
    [[nodiscard]] std::vector<pid_t> processesOfTheProgram() const
    {
        std::vector<pid_t> found{program->id()};
        for (const auto &entry : std::filesystem::directory_iterator("/proc")) {
            const std::string id = entry.path().filename();
            pid_t process = 0;
            if (std::from_chars(id.data(), id.data() + id.size(), process).ec != std::errc())
                continue;
            std::error_code unreadable; // it may have ended meanwhile
            const auto executable = std::filesystem::read_symlink(entry.path() / "exe", unreadable);
            const bool same = !unreadable && process != program->id() && executable == programFile &&
                              desktop::readFile(entry.path() / "environ").find("DISPLAY=" + screenAndKeys.name()) !=
                                  std::string::npos;
            if (same || parentOf(entry.path()) == program->id())
                found.push_back(process);
        }
        return found;
    }
    /// The fourth entry of its "stat", after a name in brackets.
    static pid_t parentOf(const std::filesystem::path &process)
    {
        const std::string line = desktop::readFile(process / "stat");
        const auto afterName = line.rfind(')');
        pid_t parent = 0;
        if (afterName != std::string::npos)
            std::istringstream(line.substr(afterName + 3)) >> parent;
        return parent;
    }
    /// The same bytes under a name that no cache knows.
    void openCopy(const std::string &copy)
    {
        const auto folder = folders.home() / copy;
        std::filesystem::create_directories(folder);
        std::filesystem::copy_file(folders.pictures() / "a.jpg", folder / (copy + ".jpg"));
        const auto handedOver = launch({(folder / (copy + ".jpg")).string()});
        EXPECT_TRUE(waitForPicture(copy + ".jpg", kRed)) << situation();
        EXPECT_EQ(handedOver->waitForExit(), 0);
    }
    /// The picture's middle with some of what surrounds it.
    [[nodiscard]] desktop::Picture seen() const
    {
        const auto contents = windows.contents(window);
        return screen.capture({contents.x + 100, contents.y + contents.height - 350, 400, 300});
    }
    void switchService(bool on)
    {
        openSettings();
        click(checkbox("Keep the app in memory for instant loading"));
        EXPECT_TRUE(waitForSetting(on ? "UseXPCService=true" : "UseXPCService=false")) << situation();
        EXPECT_THAT(processesOfTheProgram(), ElementsAre(program->id()));
        closeSettings();
    }
};

TEST_F(ImageServiceSettingTest, switchingItChangesNeitherHowImagesAreDecodedNorWhichProcessDecodesThem)
{
    writeSettings("AutoResizeToImageSize=false\nShowFileSize=false\nShowImageResolution=false\n");
    // As large as the view: no scaling lies between the decoded pixels and those on the screen.
    addPicture("a.jpg", kRed, 600, 400);
    startWith({"a.jpg"});
    ASSERT_TRUE(waitForPicture("a.jpg", kRed)) << situation();
    openCopy("without");
    const auto without = seen();
    ASSERT_THAT(processesOfTheProgram(), ElementsAre(program->id()));
    for (const bool on : {true, false}) {
        switchService(on);
        openCopy(on ? "with" : "again without");
        // What the Settings window covered may come a moment later.
        EXPECT_TRUE(waitUntil([&] { return seen() == without; })) << "pixel for pixel\n" << situation();
        EXPECT_THAT(processesOfTheProgram(), ElementsAre(program->id()));
    }
}

} // namespace tallowmere
