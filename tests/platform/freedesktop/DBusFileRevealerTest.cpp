// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "platform/freedesktop/DBusFileRevealer.h"

#include "tests/doubles/SteppedQueues.h"
#include "tests/doubles/TestFolder.h"
#include "tests/platform/freedesktop/PrivateBus.h"

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

namespace tallowmere {

namespace {

using namespace std::chrono_literals;
using namespace tallowmere::test;

constexpr const char *kFileManager = "org.freedesktop.FileManager1";
constexpr const char *kPortal = "org.freedesktop.portal.Desktop";

class DesktopReveal : public ::testing::Test
{
protected:
    DesktopReveal()
    {
        const FileURL script = m_folder.write("opener", "#!/bin/sh\nprintf %s \"$1\" > \"${0%/*}/opened\"\n");
        chmod(script.path().constData(), 0755);
    }

    DBusFileRevealer revealer(const QByteArray &address, std::chrono::milliseconds timeout = 30s)
    {
        return {m_launcher, {address, timeout, timeout, m_folder.at("opener").path()}};
    }
    /// What the program of last resort was given.
    QByteArray opened() const { return m_folder.read("opened"); }

    TestFolder m_folder;
    FileURL m_photo = m_folder.write("\xe9t\xe9 #1.jpg");
    SteppedLauncher m_launcher;
};

} // namespace

TEST_F(DesktopReveal, asksTheFileManagerToShowExactlyTheFile)
{
    PrivateBus bus;
    QByteArray uri;
    BusService manager(bus.address(), kFileManager, BusService::Reaction::reply, [&uri](sd_bus_message *call) {
        const char *text = nullptr;
        if (sd_bus_message_is_method_call(call, kFileManager, "ShowItems") > 0)
            sd_bus_message_read(call, "as", 1, &text);
        uri = text;
    });
    revealer(bus.address()).reveal(m_photo);
    EXPECT_EQ(manager.calls(), 0); // nothing happens on the calling thread
    m_launcher.runAll();
    EXPECT_EQ(manager.calls(), 1);
    EXPECT_EQ(uri, m_photo.encoded());
    EXPECT_TRUE(uri.endsWith("/%E9t%E9%20%231.jpg")) << uri.constData();
    EXPECT_EQ(opened(), "");
}

TEST_F(DesktopReveal, withoutAFileManagerThePortalIsGivenTheOpenFile)
{
    PrivateBus bus;
    ino_t inode = 0;
    BusService portal(bus.address(), kPortal, BusService::Reaction::reply, [&inode](sd_bus_message *call) {
        const char *parent = nullptr;
        int fd = -1;
        struct stat status
        {};
        if (sd_bus_message_read(call, "sh", &parent, &fd) > 0 && fstat(fd, &status) == 0)
            inode = status.st_ino;
    });
    revealer(bus.address()).reveal(m_photo);
    m_launcher.runAll();
    struct stat status
    {};
    ASSERT_EQ(stat(m_photo.path().constData(), &status), 0);
    EXPECT_EQ(inode, status.st_ino);
    EXPECT_EQ(opened(), "");
}

TEST_F(DesktopReveal, withoutFileManagerAndPortalTheFolderIsOpened)
{
    PrivateBus bus;
    revealer(bus.address()).reveal(m_photo);
    m_launcher.runAll();
    EXPECT_EQ(opened(), m_folder.path());
}

TEST_F(DesktopReveal, withoutABusTheFolderIsOpened)
{
    revealer("unix:path=/nonexistent/bus").reveal(m_photo);
    m_launcher.runAll();
    EXPECT_EQ(opened(), m_folder.path());
}

TEST_F(DesktopReveal, aFileManagerThatDoesNotAnswerIsGivenUp)
{
    PrivateBus bus;
    BusService manager(bus.address(), kFileManager, BusService::Reaction::ignore);
    BusService portal(bus.address(), kPortal, BusService::Reaction::ignore);
    revealer(bus.address(), 100ms).reveal(m_photo);
    m_launcher.runAll();
    EXPECT_EQ(manager.calls(), 1);
    EXPECT_EQ(portal.calls(), 1);
    EXPECT_EQ(opened(), m_folder.path());
}

TEST_F(DesktopReveal, aBusThatHangsIsGivenUp)
{
    PrivateBus bus;
    bus.stop();
    revealer(bus.address(), 100ms).reveal(m_photo);
    m_launcher.runAll();
    EXPECT_EQ(opened(), m_folder.path());
}

TEST_F(DesktopReveal, aRequestUnderWayIsNotRepeatedButALaterOneIs)
{
    auto subject = revealer("unix:path=/nonexistent/bus");
    subject.reveal(m_photo);
    subject.reveal(m_photo);
    subject.reveal(m_folder.at("other.jpg"));
    EXPECT_EQ(m_launcher.launched().size(), 2U);
    m_launcher.runAll();
    subject.reveal(m_photo);
    EXPECT_EQ(m_launcher.launched().size(), 3U);
}

TEST_F(DesktopReveal, aMissingOpenerIsSilence)
{
    DBusFileRevealer(m_launcher, {"unix:path=/nonexistent/bus", 1s, 1s, "/nonexistent/opener"}).reveal(m_photo);
    m_launcher.runAll();
    EXPECT_EQ(opened(), "");
}

} // namespace tallowmere
