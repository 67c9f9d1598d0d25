// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "viewer/WindowFrame.h"

#include <QSignalSpy>
#include <QTest>
#include <QWidget>
#include <QWindow>

#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <vector>

namespace tallowmere {
namespace {

constexpr int kLimit = 30'000; // ms

WindowFrame::Rule fixed(const QRectF &frame)
{
    return [frame] { return std::optional(frame); };
}

class WindowFrameTest : public ::testing::Test
{
protected:
    WindowFrameTest()
    {
        window.resize(300, 200);
        window.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&window, kLimit));
        start = subject->frame();
    }

    QWidget window;
    WindowFrame *const subject = new WindowFrame(&window);
    QRectF start;
    const QRectF target{40, 50, 420, 260};
};

TEST_F(WindowFrameTest, setsAFrameAtOnceAndReports)
{
    bool done = false;
    subject->setFrame(fixed(target), false, [&] { done = true; });
    EXPECT_TRUE(done);
    EXPECT_EQ(subject->frame(), target);
    EXPECT_EQ(QRectF(window.frameGeometry()), target);
}

TEST_F(WindowFrameTest, animatesThroughSizesInBetweenAndReportsAtTheEnd)
{
    std::vector<double> widths;
    bool done = false;
    subject->setFrame(fixed(target), true, [&] { done = true; });
    EXPECT_TRUE(subject->isAnimating());
    EXPECT_TRUE(QTest::qWaitFor(
        [&] {
        widths.push_back(subject->frame().width());
        return done;
        },
        kLimit));
    EXPECT_FALSE(subject->isAnimating());
    EXPECT_EQ(subject->frame(), target);
    EXPECT_TRUE(std::is_sorted(widths.begin(), widths.end()));
    EXPECT_EQ(widths.front(), start.width());
}

TEST_F(WindowFrameTest, aSecondAnimationTakesTheFrameAndLeavesTheFirstItsCompletion)
{
    const QRectF second(10, 20, 150, 120);
    int firstDone = 0;
    int secondDone = 0;
    double widest = 0;
    const QSignalSpy finished(subject, &WindowFrame::animationFinished);
    subject->setFrame(fixed(target), true, [&] { ++firstDone; });
    subject->setFrame(fixed(second), true, [&] {
        ++secondDone;
        EXPECT_EQ(subject->frame(), second);
    });
    EXPECT_TRUE(QTest::qWaitFor(
        [&] {
        widest = std::max(widest, subject->frame().width());
        return firstDone && secondDone;
        },
        kLimit));
    EXPECT_EQ(firstDone, 1);
    EXPECT_EQ(secondDone, 1);
    EXPECT_EQ(finished.count(), 1) << "only the one that owned the frame to the end";
    EXPECT_EQ(subject->frame(), second);
    EXPECT_EQ(widest, start.width()) << "the first no longer moves the window";
}

TEST_F(WindowFrameTest, aFrameSetAtOnceEndsTheAnimationsHoldOnIt)
{
    bool firstDone = false;
    subject->setFrame(fixed(target), true, [&] { firstDone = true; });
    subject->setFrame(fixed(start), false, {});
    EXPECT_FALSE(subject->isAnimating());
    EXPECT_FALSE(firstDone);
    EXPECT_TRUE(QTest::qWaitFor([&] { return firstDone; }, kLimit));
    EXPECT_EQ(subject->frame(), start);
}

TEST_F(WindowFrameTest, aFrameThatIsThereAlreadyNeedsNoAnimation)
{
    bool done = false;
    subject->setFrame(fixed(start), true, [&] { done = true; });
    EXPECT_TRUE(done);
    EXPECT_FALSE(subject->isAnimating());
}

TEST_F(WindowFrameTest, aHiddenWindowGetsItsFrameAtOnce)
{
    window.hide();
    bool done = false;
    subject->setFrame(fixed(target), true, [&] { done = true; });
    EXPECT_TRUE(done);
    EXPECT_EQ(window.size(), QSizeF(target.size()).toSize() - (window.frameGeometry().size() - window.size()));
}

TEST_F(WindowFrameTest, aRuleThatGivesNothingLeavesTheWindowButReports)
{
    bool done = false;
    subject->setFrame([] { return std::nullopt; }, true, [&] { done = true; });
    EXPECT_TRUE(done);
    EXPECT_EQ(subject->frame(), start);
}

TEST(WindowFrame, aWindowJustComingOnTheScreenGetsItsFrameThere)
{
    QWidget window;
    window.resize(300, 200);
    auto *subject = new WindowFrame(&window);
    window.show();
    ASSERT_FALSE(window.windowHandle()->isExposed());
    int done = 0;
    subject->setFrame(fixed({10, 20, 150, 120}), true, [&] { ++done; });
    subject->setFrame(fixed({40, 50, 420, 260}), true, [&] { ++done; });
    EXPECT_EQ(done, 0);
    EXPECT_EQ(window.size(), QSize(300, 200));
    EXPECT_TRUE(QTest::qWaitFor([&] { return done == 2; }, kLimit));
    EXPECT_EQ(subject->frame(), QRectF(40, 50, 420, 260)) << "the last one counts";
    EXPECT_FALSE(subject->isAnimating()) << "there was nothing to be seen moving";
}

TEST(WindowFrame, aFrameSetBeforeTheDecorationsAreKnownIsWorkedOutOnceMore)
{
    QWidget window;
    window.resize(300, 200);
    auto *subject = new WindowFrame(&window);
    int asked = 0;
    const auto rule = [&] {
        ++asked;
        return std::optional(QRectF(40, 50, 420, 260));
    };
    subject->setFrame(rule, false, {});
    EXPECT_EQ(asked, 1);
    EXPECT_EQ(window.size(), QSize(420, 260));
    window.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&window, kLimit));
    EXPECT_EQ(asked, 2);
    EXPECT_EQ(QRectF(window.frameGeometry()), QRectF(40, 50, 420, 260));
    window.hide();
    window.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&window, kLimit));
    EXPECT_EQ(asked, 2);
}

TEST_F(WindowFrameTest, aFrameThatRoundsToNothingStillLeavesAWindow)
{
    const QSizeF around = start.size() - QSizeF(window.size());
    for (const QSizeF &size : {QSizeF(0.4, 300), QSizeF(300, 0.4), QSizeF(0, 0)}) {
        subject->setFrame(fixed({{40, 50}, size + around}), false, {});
        EXPECT_EQ(window.size(), size.toSize().expandedTo({1, 1}));
        EXPECT_TRUE(window.windowHandle()->isExposed());
        bool done = false;
        subject->setFrame(fixed(target), true, [&] { done = true; });
        EXPECT_TRUE(QTest::qWaitFor([&] { return done; }, kLimit));
        EXPECT_EQ(subject->frame(), target);
    }
}

TEST_F(WindowFrameTest, aWindowMaximisedMeanwhileStaysSo)
{
    bool done = false;
    subject->setFrame(fixed(target), true, [&] { done = true; });
    window.showMaximized();
    ASSERT_TRUE(QTest::qWaitFor([&] { return window.isMaximized() && window.width() > 500; }, kLimit));
    EXPECT_TRUE(QTest::qWaitFor([&] { return done; }, kLimit));
    EXPECT_TRUE(window.isMaximized());
    EXPECT_GT(window.width(), 500);
}

TEST(WindowFrame, aCompletionDiesWithItsWindow)
{
    bool done = false;
    {
        QWidget window;
        window.resize(300, 200);
        window.show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&window, kLimit));
        auto *subject = new WindowFrame(&window);
        subject->setFrame(fixed({0, 0, 500, 400}), true, [&] { done = true; });
    }
    EXPECT_FALSE(done);
}

} // namespace
} // namespace tallowmere
