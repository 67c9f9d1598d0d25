// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "tests/e2e/OpenedFiles.h"
#include "tests/e2e/SettingsTest.h"

#include <iomanip>
#include <memory>
#include <sstream>

namespace tallowmere {

using desktop::waitUntil;
namespace key = desktop::key;

/// Forty pictures, p00.jpg to p39.jpg, with p10.jpg on the screen and its neighbours decoded: two before it and twenty
/// after it.
class PrefetchSettingsTest : public SettingsTest
{
protected:
    void startAmongForty()
    {
        writeSettings("AutoResizeToImageSize=false\n");
        for (int i = 0; i < 40; ++i)
            addPicture(name(i), kRed, 64, 48);
        m_opened = std::make_unique<OpenedFiles>(folders.pictures());
        startWith({name(10)});
        ASSERT_TRUE(waitForTitle("Tallowmere • p10.jpg")) << situation();
        ASSERT_TRUE(waitForOpened(8) && waitForOpened(30)) << situation();
        ASSERT_FALSE(opened(7));
    }
    static std::string name(int index)
    {
        std::ostringstream text;
        text << 'p' << std::setw(2) << std::setfill('0') << index << ".jpg";
        return text.str();
    }
    [[nodiscard]] bool opened(int index) { return m_opened->soFar().contains(name(index)); }
    [[nodiscard]] bool waitForOpened(int index)
    {
        return waitUntil([&] { return opened(index); });
    }
    void stepBackTo(int index)
    {
        input.press(key::kRight);
        ASSERT_TRUE(waitForTitle("Tallowmere • " + name(index))) << situation();
    }
    /// Returns when the neighbours up to four away have been begun with; nearer ones come first.
    void openAndWaitForNeighbours(int index)
    {
        const auto handedOver = launch({name(index)});
        ASSERT_TRUE(waitForTitle("Tallowmere • " + name(index))) << situation();
        ASSERT_TRUE(waitForOpened(index + 4)) << situation();
    }

private:
    std::unique_ptr<OpenedFiles> m_opened;
};

TEST_F(PrefetchSettingsTest, typing150ShowsThePreviousValueAgainAndTheCacheKeepsItsCount)
{
    startAmongForty();
    openSettings();
    enterFilesBefore("150", "2");
    closeSettings();
    stepBackTo(9);
    EXPECT_TRUE(waitForOpened(7));
    openAndWaitForNeighbours(35);
    EXPECT_TRUE(opened(34) && opened(33));
    EXPECT_FALSE(opened(32)) << "no more than two before";
}

TEST_F(PrefetchSettingsTest, typing0IsAcceptedAndFromTheNextStepOnNoneBeforeTheCurrentIsPrefetched)
{
    startAmongForty();
    openSettings();
    enterFilesBefore("0", "0");
    closeSettings();
    stepBackTo(9);
    stepBackTo(8);
    EXPECT_FALSE(opened(7));
    openAndWaitForNeighbours(35);
    EXPECT_FALSE(opened(34) || opened(33) || opened(7));
}

TEST_F(PrefetchSettingsTest, aLargerCountTakesEffectAtTheNextStepAndNotBefore)
{
    startAmongForty();
    openSettings();
    enterFilesBefore("5", "5");
    closeSettings();
    EXPECT_FALSE(opened(7));
    stepBackTo(9);
    EXPECT_TRUE(waitForOpened(4));
    EXPECT_FALSE(opened(3));
}

} // namespace tallowmere
