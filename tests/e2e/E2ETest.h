// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "tests/desktop/Input.h"
#include "tests/desktop/PhotoGenerator.h"
#include "tests/desktop/Screen.h"
#include "tests/desktop/SessionBus.h"
#include "tests/desktop/Windows.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tallowmere {

/// What the pictures of these tests are made of: a centre to be recognised, and what lies around it.
inline constexpr desktop::Colour kRed{208, 32, 32};
inline constexpr desktop::Colour kGreen{24, 144, 56};
inline constexpr desktop::Colour kBlue{32, 64, 200};
inline constexpr desktop::Colour kYellow{224, 200, 24};
inline constexpr desktop::Colour kSurround{90, 40, 90};

/// A JPEG of the given colours and size.
[[nodiscard]] std::vector<std::byte> picture(const desktop::Colour &centre, int width = 640, int height = 480,
                                             const photos::JpegOptions &options = {});

/// The real program on a desktop of its own: X server, window manager, session bus and user, all new for each test.
class E2ETest : public testing::Test
{
protected:
    static constexpr const char *kApplication = "app.tallowmere.Tallowmere";
    static constexpr const char *kObject = "/app/tallowmere/Tallowmere";

    /// @p user runs the program; only root can choose another than itself.
    explicit E2ETest(std::optional<uid_t> user = std::nullopt, const desktop::DisplayOptions &options = {});
    ~E2ETest() override;
    /// A picture of the whole screen after a failure, when TALLOWMERE_FAILURE_PICTURES names a folder for it.
    void TearDown() override;

    /// Writes a picture into the folder of pictures; @p name as bytes.
    std::filesystem::path addPicture(const std::string &name, const desktop::Colour &centre, int width = 640,
                                     int height = 480);
    std::filesystem::path addFile(const std::string &name, std::span<const std::byte> bytes);
    /// Lines of the form "Key=value". Settings of somebody who has launched the program before: so they are from the
    /// beginning, for most launches are not the first.
    void writeSettings(const std::string &lines);
    /// The settings file's text.
    [[nodiscard]] std::string settings() const;

    void setEnvironment(const std::string &name, const std::string &value);

    /// Starts the program and returns once its window has the focus; a test failure when it does not come to that.
    void start(const std::vector<std::string> &files = {});
    /// Starts the program without waiting for anything.
    [[nodiscard]] std::unique_ptr<desktop::Process> launch(const std::vector<std::string> &files,
                                                           const desktop::Environment &overrides = {}) const;
    /// Waits for the window of a program started otherwise.
    void adopt(pid_t process);

    /// "Tallowmere • name" and @p centre in the middle of the window.
    [[nodiscard]] bool waitForPicture(const std::string &name, const desktop::Colour &centre);
    [[nodiscard]] bool waitForTitle(const std::string &title);
    [[nodiscard]] bool waitForFrame(const desktop::Rectangle &frame, int tolerance = 1);
    /// Returns when a later key than all so far has had its effect: the window is of medium size then, for good.
    void waitUntilKeysAreDealtWith();
    /// The middle of the window shows no picture of these tests.
    [[nodiscard]] bool showsNoPicture() const;
    /// For failures: what can be seen from outside.
    [[nodiscard]] std::string situation() const;

    /// One call of org.freedesktop.Application.
    [[nodiscard]] desktop::Finished callApplication(const std::string &method,
                                                    const std::vector<std::string> &arguments);

    /// @p file needs no percent codes.
    [[nodiscard]] static std::string uri(const std::filesystem::path &file);
    /// As GVariant text, the first argument of Open.
    [[nodiscard]] static std::string uris(const std::vector<std::string> &list);

    const std::optional<uid_t> m_user;
    desktop::UserFolders folders;
    desktop::VirtualDesktop screenAndKeys;
    desktop::Screen screen{screenAndKeys};
    desktop::Windows windows{screenAndKeys};
    desktop::Input input{screenAndKeys};
    std::unique_ptr<desktop::SessionBus> bus;
    desktop::Environment environment;
    std::filesystem::path programFile;
    std::unique_ptr<desktop::Process> program;
    desktop::WindowId window = 0;
};

/// The program runs as somebody whom permissions bind.
class OrdinaryUserTest : public E2ETest
{
protected:
    OrdinaryUserTest() : E2ETest(desktop::kOrdinaryUser) {}
};

} // namespace tallowmere
