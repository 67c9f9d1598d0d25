// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "platform/freedesktop/ApplicationBus.h"

#include "tests/doubles/CapturedOutput.h"
#include "tests/platform/freedesktop/PrivateBus.h"

#include <gtest/gtest.h>

#include <sys/socket.h>
#include <sys/un.h>

#include <atomic>
#include <mutex>

namespace tallowmere {

namespace {

using namespace std::chrono_literals;
using namespace tallowmere::test;
using Kind = ApplicationRequest::Kind;
using Role = ApplicationBus::Role;

constexpr const char *kName = "app.tallowmere.Tallowmere";

/// One start of the program, as far as the bus can see it.
class Instance final
{
public:
    explicit Instance(const QByteArray &address, std::chrono::milliseconds connect = 30s,
                      std::chrono::milliseconds handOver = 30s)
        : m_bus({address, connect, handOver}, [this](ApplicationRequest request) {
              const std::lock_guard lock(m_mutex);
              m_requests.push_back(std::move(request));
          })
    {}

    Role start(ApplicationStart start = {}) { return m_bus.start(std::move(start)); }
    std::vector<ApplicationRequest> requests() const
    {
        const std::lock_guard lock(m_mutex);
        return m_requests;
    }

private:
    mutable std::mutex m_mutex;
    std::vector<ApplicationRequest> m_requests;
    ApplicationBus m_bus;
};

} // namespace

TEST(ApplicationBus, firstStartBecomesTheInstance)
{
    PrivateBus bus;
    Instance first(bus.address());
    EXPECT_EQ(first.start(), Role::owner);
    EXPECT_FALSE(BusCaller(bus.address()).ownerOf(kName).isEmpty());
}

TEST(ApplicationBus, secondStartHandsItsFilesToTheFirst)
{
    PrivateBus bus;
    Instance first(bus.address());
    ASSERT_EQ(first.start(), Role::owner);

    const QList<FileURL> files{FileURL::fromPath("/photos/a b#%\n.jpg"), FileURL::fromPath("/photos/\xe9t\xe9.jpg")};
    Instance second(bus.address());
    EXPECT_EQ(second.start({files, "token-7"}), Role::handedOver);

    // The words of a command line bring the window forward whatever they name.
    EXPECT_EQ(first.requests(), (std::vector<ApplicationRequest>{{Kind::openFiles, files, "token-7"}}));
    EXPECT_TRUE(second.requests().empty());
}

TEST(ApplicationBus, oneFileOfASecondStartStillCountsAsACommandLine)
{
    PrivateBus bus;
    Instance first(bus.address());
    ASSERT_EQ(first.start(), Role::owner);
    Instance second(bus.address());
    EXPECT_EQ(second.start({{FileURL::fromPath("/notes.txt")}, {}}), Role::handedOver);
    ASSERT_EQ(first.requests().size(), 1U);
    EXPECT_EQ(first.requests().front().kind, Kind::openFiles);
}

TEST(ApplicationBus, secondStartWithoutFilesAsksTheFirstToComeForward)
{
    PrivateBus bus;
    Instance first(bus.address());
    ASSERT_EQ(first.start(), Role::owner);
    Instance second(bus.address());
    EXPECT_EQ(second.start({{}, "token-8"}), Role::handedOver);
    EXPECT_EQ(first.requests(), (std::vector<ApplicationRequest>{{Kind::reopen, {}, "token-8"}}));
}

TEST(ApplicationBus, ofStartsThatRaceExactlyOneBecomesTheInstance)
{
    constexpr std::size_t kStarts = 8;
    PrivateBus bus;
    std::vector<std::unique_ptr<Instance>> instances;
    for (std::size_t i = 0; i < kStarts; ++i)
        instances.push_back(std::make_unique<Instance>(bus.address()));
    std::array<Role, kStarts> roles{};
    std::vector<std::thread> threads;
    for (std::size_t i = 0; i < kStarts; ++i)
        threads.emplace_back([&, i] {
            roles.at(i) = instances[i]->start({{FileURL::fromPath("/" + QByteArray::number(qulonglong(i)))}, {}});
        });
    for (std::thread &thread : threads)
        thread.join();

    const auto owner = std::find(roles.begin(), roles.end(), Role::owner);
    ASSERT_NE(owner, roles.end());
    EXPECT_EQ(std::count(roles.begin(), roles.end(), Role::owner), 1);
    EXPECT_EQ(std::count(roles.begin(), roles.end(), Role::handedOver), static_cast<std::ptrdiff_t>(kStarts - 1));
    EXPECT_EQ(instances[static_cast<std::size_t>(owner - roles.begin())]->requests().size(), kStarts - 1);
}

TEST(ApplicationBus, aRunningInstanceThatDoesNotAnswerIsPassedOver)
{
    PrivateBus bus;
    BusService frozen(bus.address(), kName, BusService::Reaction::ignore);
    Instance second(bus.address(), 30s, 100ms);
    const CapturedOutput errors(STDERR_FILENO);
    EXPECT_EQ(second.start({{FileURL::fromPath("/a.jpg")}, {}}), Role::unanswered);
    EXPECT_EQ(errors.text(), "tallowmere: the running instance does not answer; opening a window of its own\n");
    EXPECT_TRUE(eventually([&] { return frozen.calls() == 1; }));
}

TEST(ApplicationBus, aRunningInstanceThatQuitsInsteadOfAnsweringIsReplaced)
{
    PrivateBus bus;
    BusService quitting(bus.address(), kName, BusService::Reaction::disappear);
    Instance second(bus.address());
    EXPECT_EQ(second.start({{FileURL::fromPath("/a.jpg")}, {}}), Role::owner);
    EXPECT_EQ(quitting.calls(), 1);
    EXPECT_TRUE(second.requests().empty()); // its own files are on its own command line
}

TEST(ApplicationBus, leavingGivesTheNameBack)
{
    PrivateBus bus;
    {
        Instance first(bus.address());
        ASSERT_EQ(first.start(), Role::owner);
    }
    BusCaller caller(bus.address());
    ASSERT_TRUE(eventually([&] { return caller.ownerOf(kName).isEmpty(); }));
    Instance next(bus.address());
    EXPECT_EQ(next.start(), Role::owner);
}

TEST(ApplicationBus, withoutABusTheProgramRunsAlone)
{
    EXPECT_EQ(Instance("unix:path=/nonexistent/bus").start(), Role::noBus);
    EXPECT_EQ(Instance("nonsense").start(), Role::noBus);
    EXPECT_EQ(Instance("disabled:").start(), Role::noBus);
    EXPECT_EQ(Instance("autolaunch:").start(), Role::noBus);
}

TEST(ApplicationBus, aBusThatTakesTheConnectionAndSaysNothingIsNotWaitedFor)
{
    const TestFolder folder;
    const QByteArray path = folder.path() + "/mute";
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    path.toStdString().copy(address.sun_path, sizeof address.sun_path - 1);
    const int listener = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    ASSERT_EQ(bind(listener, reinterpret_cast<const sockaddr *>(&address), sizeof address), 0);
    ASSERT_EQ(listen(listener, 4), 0);

    Instance instance("unix:path=" + path, 100ms);
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_EQ(instance.start(), Role::noBus);
    EXPECT_LT(std::chrono::steady_clock::now() - begin, 10s); // not the library's own 25 s and more
    close(listener);
}

TEST(ApplicationBus, aBusThatWakesUpLateStillMakesUsTheInstance)
{
    PrivateBus bus;
    bus.stop();
    Instance slow(bus.address(), 100ms);
    EXPECT_EQ(slow.start(), Role::noBus);
    bus.resume();
    BusCaller caller(bus.address());
    ASSERT_TRUE(eventually([&] { return !caller.ownerOf(kName).isEmpty(); }));
    EXPECT_EQ(caller.activate(), "");
    EXPECT_TRUE(eventually([&] { return slow.requests().size() == 1; }));
}

TEST(ApplicationBus, theLossOfTheBusIsToldOnceAndLeavingIsNoLoss)
{
    std::atomic<int> losses{0};
    const auto count = [&] { ++losses; };
    const auto ignore = [](ApplicationRequest) {};
    PrivateBus bus;
    {
        ApplicationBus leaving({bus.address(), 30s, 30s}, ignore, count);
        ASSERT_EQ(leaving.start({}), Role::owner);
    }
    EXPECT_EQ(losses, 0);
    BusCaller caller(bus.address());
    ASSERT_TRUE(eventually([&] { return caller.ownerOf(kName).isEmpty(); }));
    {
        ApplicationBus losing({bus.address(), 30s, 30s}, ignore, count);
        ASSERT_EQ(losing.start({}), Role::owner);
        bus.end();
        EXPECT_TRUE(eventually([&] { return losses == 1; }));
    }
    EXPECT_EQ(losses, 1);
}

TEST(ApplicationBus, theEndOfTheBusEndsNothingElse)
{
    PrivateBus bus;
    auto instance = std::make_unique<Instance>(bus.address());
    ASSERT_EQ(instance->start(), Role::owner);
    bus.end();
    instance.reset(); // returns
    SUCCEED();
}

class ApplicationBusCalls : public ::testing::Test
{
protected:
    void SetUp() override { ASSERT_EQ(m_instance.start(), Role::owner); }

    ApplicationRequest onlyRequest()
    {
        // Quitting is answered before it is asked of the program.
        EXPECT_TRUE(eventually([&] { return !m_instance.requests().empty(); }));
        const auto requests = m_instance.requests();
        EXPECT_EQ(requests.size(), 1U);
        return requests.empty() ? ApplicationRequest{} : requests.front();
    }

    PrivateBus m_bus;
    Instance m_instance{m_bus.address()};
    BusCaller m_caller{m_bus.address()};
};

TEST_F(ApplicationBusCalls, activateAsksToComeForward)
{
    EXPECT_EQ(m_caller.activate({{"desktop-startup-id", "id-1"}}), "");
    EXPECT_EQ(onlyRequest(), (ApplicationRequest{Kind::reopen, {}, "id-1"}));
}

TEST_F(ApplicationBusCalls, openOfOneAddressIsOneFile)
{
    EXPECT_EQ(
        m_caller.open({"file:///photos/a%20b.jpg"}, {{"desktop-startup-id", "id"}, {"activation-token", "token"}}), "");
    EXPECT_EQ(onlyRequest(), (ApplicationRequest{Kind::openFile, {FileURL::fromPath("/photos/a b.jpg")}, "token"}));
}

TEST_F(ApplicationBusCalls, openOfSeveralAddressesKeepsTheirOrder)
{
    EXPECT_EQ(m_caller.open({"file:///b.jpg", "file:///a.jpg", "file:///c.jpg"}), "");
    EXPECT_EQ(onlyRequest(), (ApplicationRequest{Kind::openFiles,
                                                 {FileURL::fromPath("/b.jpg"), FileURL::fromPath("/a.jpg"),
                                                  FileURL::fromPath("/c.jpg")},
                                                 {}}));
}

TEST_F(ApplicationBusCalls, openOfNothingIsAnEmptyList)
{
    EXPECT_EQ(m_caller.open({}), "");
    EXPECT_EQ(onlyRequest(), (ApplicationRequest{Kind::openFiles, {}, {}}));
}

TEST_F(ApplicationBusCalls, addressesAreBytes)
{
    EXPECT_EQ(m_caller.open({"file:///%E9t%E9/%0A%23%25.jpg"}), "");
    EXPECT_EQ(onlyRequest().files, QList<FileURL>{FileURL::fromPath("/\xe9t\xe9/\n#%.jpg")});
}

TEST_F(ApplicationBusCalls, placesThatAreNoLocalFileAreRefused)
{
    for (const char *uri : {"trash:///a.jpg", "mtp://phone/DCIM/a.jpg", "http://example.org/a.jpg", "a.jpg", "",
                            "file://elsewhere/a.jpg", "file:///a%2.jpg"})
        EXPECT_EQ(m_caller.open({uri}), "org.freedesktop.DBus.Error.InvalidArgs") << uri;
    EXPECT_TRUE(m_instance.requests().empty());
}

TEST_F(ApplicationBusCalls, localFilesAmongRefusedPlacesAreKept)
{
    EXPECT_EQ(m_caller.open({"trash:///a.jpg", "file:///b.jpg"}), "");
    EXPECT_EQ(onlyRequest(), (ApplicationRequest{Kind::openFiles, {FileURL::fromPath("/b.jpg")}, {}}));
}

TEST_F(ApplicationBusCalls, theQuitActionEndsTheProgram)
{
    EXPECT_EQ(m_caller.activateAction("quit"), "");
    EXPECT_EQ(onlyRequest().kind, Kind::quit);
}

TEST_F(ApplicationBusCalls, otherActionsAreAnError)
{
    EXPECT_EQ(m_caller.activateAction("explode"), "org.freedesktop.DBus.Error.InvalidArgs");
    EXPECT_TRUE(m_instance.requests().empty());
}

TEST_F(ApplicationBusCalls, callsOfAnotherShapeAreAnError)
{
    for (const char *method : {"Activate", "Open", "ActivateAction", "NoSuchMethod"})
        EXPECT_NE(m_caller.callWithWrongArguments(method), "") << method;
    EXPECT_TRUE(m_instance.requests().empty());
    EXPECT_EQ(m_caller.activate(), ""); // and it still answers
}

TEST_F(ApplicationBusCalls, requestsKeepTheOrderOfTheCalls)
{
    EXPECT_EQ(m_caller.open({"file:///1.jpg"}), "");
    EXPECT_EQ(m_caller.activate(), "");
    EXPECT_EQ(m_caller.open({"file:///2.jpg"}), "");
    std::vector<Kind> kinds;
    for (const ApplicationRequest &request : m_instance.requests())
        kinds.push_back(request.kind);
    EXPECT_EQ(kinds, (std::vector<Kind>{Kind::openFile, Kind::reopen, Kind::openFile}));
}

} // namespace tallowmere
