// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "browsing/FolderAccessManager.h"

#include "tests/doubles/RecordingScope.h"
#include "tests/doubles/SteppedQueues.h"
#include "tests/doubles/TestFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <utility>
#include <vector>

namespace tallowmere::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// Keeps the questions until the test answers them, as a user does.
class PendingPanel final : public FolderPanel
{
public:
    void ask(const Question &question, std::function<void(const FileURL &folder)> done) override
    {
        questions.push_back(question);
        m_answers.push_back(std::move(done));
    }
    /// To the last question.
    void pick(const FileURL &folder)
    {
        const auto answer = std::move(m_answers.back());
        m_answers.pop_back();
        answer(folder);
    }
    void cancel() { pick({}); }

    std::vector<Question> questions;

private:
    std::vector<std::function<void(const FileURL &folder)>> m_answers;
};

class FolderAccessTest : public testing::Test
{
protected:
    [[nodiscard]] std::shared_ptr<FolderAccessManager> makeManager(SecurityScope &with)
    {
        return std::make_shared<FolderAccessManager>(FolderAccessManager::Surroundings{mainQueue, with, panel});
    }
    /// Asks without running the main queue.
    void request(const FileURL &directory)
    {
        manager->requestAccess(directory, [this](bool granted) { answers.push_back(granted); });
    }
    void requestAndWait(const FileURL &directory)
    {
        request(directory);
        mainQueue.runAll();
    }

    TestFolder folder;
    const FileURL listable = folder.makeFolder("listable");
    /// Refused even to root: it is not there.
    const FileURL unlistable = folder.at("unlistable");
    SteppedMainQueue mainQueue;
    RecordingScope scope{true};
    PendingPanel panel;
    std::shared_ptr<FolderAccessManager> manager = makeManager(scope);
    std::vector<bool> answers;
};

TEST_F(FolderAccessTest, aFolderThatCanBeListedIsAnsweredWithoutAPanelAndRecorded)
{
    request(listable);
    EXPECT_THAT(answers, IsEmpty()) << "never before the request returns";
    mainQueue.runAll();
    EXPECT_THAT(answers, ElementsAre(true));
    EXPECT_TRUE(panel.questions.empty());
    EXPECT_EQ(manager->accessedDirectories(), QSet{listable.path()});
    EXPECT_THAT(scope.log(), IsEmpty());
}

TEST_F(FolderAccessTest, aKnownFolderIsAnsweredOnTheNextTurnWithoutListingOrPanel)
{
    requestAndWait(listable);
    folder.remove("listable"); // a listing would fail from now on
    request(listable);
    EXPECT_EQ(answers.size(), 1U);
    EXPECT_EQ(mainQueue.waiting(), 1U);
    mainQueue.runAll();
    EXPECT_THAT(answers, ElementsAre(true, true));
    EXPECT_TRUE(panel.questions.empty());
}

TEST_F(FolderAccessTest, aPathWithASlashAtItsEndIsTheSameFolder)
{
    requestAndWait(FileURL::fromPath(listable.path() + "/"));
    EXPECT_EQ(manager->accessedDirectories(), QSet{listable.path()});
}

TEST_F(FolderAccessTest, theUserIsAskedInTwoLinesBeginningInTheFolderItself)
{
    requestAndWait(unlistable);
    ASSERT_EQ(panel.questions.size(), 1U);
    const FolderPanel::Question &question = panel.questions.front();
    EXPECT_EQ(question.message, QStringLiteral("Tallowmere needs access to this folder to browse images.\n"
                                               "Please select the folder and click 'Grant Access'."));
    EXPECT_EQ(question.acceptTitle, QStringLiteral("Grant Access"));
    EXPECT_EQ(question.startFolder, unlistable);
    EXPECT_THAT(answers, IsEmpty()) << "until the panel is answered";
}

TEST_F(FolderAccessTest, cancellingThePanelAnswersFalseAndRecordsNothing)
{
    requestAndWait(unlistable);
    panel.cancel();
    EXPECT_THAT(answers, ElementsAre(false));
    EXPECT_TRUE(manager->accessedDirectories().isEmpty());
    EXPECT_EQ(manager->activeDirectoryURL(), std::nullopt);
    EXPECT_FALSE(manager->isAccessingSecurityScopedResource());
    EXPECT_THAT(scope.log(), IsEmpty());
}

TEST_F(FolderAccessTest, pickingTheRequestedFolderRecordsItOnceAndMakesItTheActiveOne)
{
    requestAndWait(unlistable);
    folder.makeFolder("unlistable"); // what the grant does
    panel.pick(unlistable);
    EXPECT_THAT(answers, ElementsAre(true));
    EXPECT_EQ(manager->accessedDirectories(), QSet{unlistable.path()});
    EXPECT_EQ(manager->activeDirectoryURL(), unlistable);
    EXPECT_TRUE(manager->isAccessingSecurityScopedResource());
    EXPECT_THAT(scope.log(), ElementsAre("start " + unlistable.path()));
}

TEST_F(FolderAccessTest, pickingAnotherFolderThatCanBeListedAnswersTrueAndRecordsBoth)
{
    requestAndWait(unlistable);
    panel.pick(listable);
    EXPECT_THAT(answers, ElementsAre(true));
    EXPECT_EQ(manager->accessedDirectories(), (QSet{listable.path(), unlistable.path()}));
    EXPECT_EQ(manager->activeDirectoryURL(), listable);
}

TEST_F(FolderAccessTest, pickingAFolderThatCannotBeListedAnswersFalseAndStopsItsAccess)
{
    requestAndWait(unlistable);
    const FileURL picked = folder.at("gone");
    panel.pick(picked);
    EXPECT_THAT(answers, ElementsAre(false));
    EXPECT_TRUE(manager->accessedDirectories().isEmpty());
    EXPECT_EQ(manager->activeDirectoryURL(), std::nullopt);
    EXPECT_THAT(scope.log(), ElementsAre("start " + picked.path(), "stop " + picked.path()));
}

TEST_F(FolderAccessTest, aSecondGrantStopsTheAccessToTheFolderBeforeIt)
{
    const FileURL second = folder.makeFolder("second");
    requestAndWait(unlistable);
    panel.pick(listable);
    requestAndWait(folder.at("another"));
    panel.pick(second);
    EXPECT_THAT(answers, ElementsAre(true, true));
    EXPECT_THAT(scope.log(),
                ElementsAre("start " + listable.path(), "start " + second.path(), "stop " + listable.path()));
    EXPECT_EQ(manager->activeDirectoryURL(), second);
    EXPECT_TRUE(manager->isAccessingSecurityScopedResource());
}

TEST_F(FolderAccessTest, whereThereIsNothingToStartAGrantIsRecordedButNothingIsHeldOpen)
{
    RecordingScope none(false);
    manager = makeManager(none);
    requestAndWait(unlistable);
    panel.pick(listable);
    EXPECT_THAT(answers, ElementsAre(true));
    EXPECT_EQ(manager->accessedDirectories(), (QSet{listable.path(), unlistable.path()}));
    EXPECT_EQ(manager->activeDirectoryURL(), std::nullopt);
    EXPECT_FALSE(manager->isAccessingSecurityScopedResource());
    EXPECT_THAT(none.log(), ElementsAre("start " + listable.path()));
}

TEST_F(FolderAccessTest, givingUpTheActiveFolderStopsItsAccessOnceAndForgetsNoGrant)
{
    manager->stopAccessingActiveDirectory();
    EXPECT_THAT(scope.log(), IsEmpty()) << "there is none";
    requestAndWait(unlistable);
    panel.pick(listable);
    manager->stopAccessingActiveDirectory();
    manager->stopAccessingActiveDirectory();
    EXPECT_THAT(scope.log(), ElementsAre("start " + listable.path(), "stop " + listable.path()));
    EXPECT_EQ(manager->activeDirectoryURL(), std::nullopt);
    EXPECT_FALSE(manager->isAccessingSecurityScopedResource());
    EXPECT_EQ(manager->accessedDirectories().size(), 2);
}

TEST_F(FolderAccessTest, twoRequestsShowTwoPanelsWithAnswersOfTheirOwn)
{
    requestAndWait(unlistable);
    requestAndWait(unlistable);
    ASSERT_EQ(panel.questions.size(), 2U);
    panel.pick(listable);
    panel.cancel();
    EXPECT_THAT(answers, ElementsAre(true, false));
}

TEST_F(FolderAccessTest, aRequestWhoseManagerHasGoneIsAnsweredFalse)
{
    request(listable);
    manager.reset();
    mainQueue.runAll();
    EXPECT_THAT(answers, ElementsAre(false));
}

TEST_F(FolderAccessTest, anOpenPanelKeepsTheManager)
{
    requestAndWait(unlistable);
    manager.reset();
    panel.pick(listable);
    EXPECT_THAT(answers, ElementsAre(true));
}

TEST_F(FolderAccessTest, afterARestartNothingIsKnown)
{
    requestAndWait(unlistable);
    panel.pick(listable);
    manager = makeManager(scope);
    EXPECT_TRUE(manager->accessedDirectories().isEmpty());
    requestAndWait(unlistable);
    EXPECT_EQ(panel.questions.size(), 2U) << "the user is asked again";
}

TEST_F(FolderAccessTest, thereIsOneManagerForTheProcess)
{
    FolderAccessManager::setSurroundingsOfShared({mainQueue, scope, panel});
    const auto &shared = FolderAccessManager::shared();
    ASSERT_NE(shared, nullptr);
    EXPECT_EQ(shared, FolderAccessManager::shared());
}

} // namespace
} // namespace tallowmere::test
