// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "tests/viewer/ViewerFixture.h"

#include <QApplication>
#include <QTest>
#include <QWheelEvent>

namespace tallowmere::test {
namespace {

class Pan : public ViewerFixture
{
protected:
    Pan() { showWindow(); }

    /// An image of 1000 x 800 in a view of 500 x 400, so that a point of the one is two of the other.
    void show()
    {
        window->resize(window->size() - controller->view()->size() + QSize(500, 400));
        open(cachedFile("shown.jpg", imageOf(1000, 800)));
    }
    void magnify(int steps = 1)
    {
        for (int i = 0; i < steps; ++i)
            press('=', Qt::ControlModifier);
    }
    [[nodiscard]] double zoom() const { return imageView()->imageTransform().scale; }
    /// Of the image, y downwards, points before the zoom.
    [[nodiscard]] QPointF shift() const { return imageView()->imageTransform().shift / zoom(); }
    [[nodiscard]] Qt::CursorShape cursor() const { return imageView()->cursor().shape(); }

    void mouse(QEvent::Type type, QPointF point, Qt::MouseButtons buttons)
    {
        const Qt::MouseButton button = type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton;
        QMouseEvent event(type, point, imageView()->mapToGlobal(point), button, buttons, Qt::NoModifier);
        QCoreApplication::sendEvent(imageView(), &event);
    }
    void drag(QPointF from, QPointF to)
    {
        mouse(QEvent::MouseButtonPress, from, Qt::LeftButton);
        mouse(QEvent::MouseMove, to, Qt::LeftButton);
        mouse(QEvent::MouseButtonRelease, to, Qt::NoButton);
    }
    bool wheel(QPoint pixels, QPoint angle)
    {
        const QPointF point(100, 100);
        QWheelEvent event(point, imageView()->mapToGlobal(point), pixels, angle, Qt::NoButton, Qt::NoModifier,
                          Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(imageView(), &event);
        return event.isAccepted();
    }
};

TEST_F(Pan, shouldStartPanningAnswersFalseAtZoom1AndBelowAndTrueAbove)
{
    show();
    EXPECT_FALSE(controller->shouldStartPanningAt({10, 10}));
    press('-', Qt::ControlModifier);
    EXPECT_FALSE(controller->shouldStartPanningAt({10, 10}));
    magnify(2);
    EXPECT_TRUE(controller->shouldStartPanningAt({10, 10}));
}

TEST_F(Pan, panningIsAvailableOverAnyImage)
{
    EXPECT_FALSE(controller->isPanningAvailable());
    show();
    EXPECT_TRUE(controller->isPanningAvailable());
}

TEST_F(Pan, aDragMovesTheImageWithThePointer)
{
    show();
    magnify();
    drag({100, 100}, {130, 80});
    EXPECT_EQ(shift(), QPointF(30, -20));
    drag({100, 100}, {90, 110});
    EXPECT_EQ(shift(), QPointF(20, -10)) << "each begins where the last one ended";
}

TEST_F(Pan, isLimitedTo250And200ForAnImageOf1000By800InAViewOf500By400AtZoom2)
{
    show();
    controller->handleMagnifyWith(1.0);
    ASSERT_EQ(zoom(), 2.0);
    drag({0, 0}, {9000, 9000});
    EXPECT_EQ(shift(), QPointF(250, 200));
    drag({0, 0}, {-9000, -9000});
    EXPECT_EQ(shift(), QPointF(-250, -200));
}

TEST_F(Pan, aDragAtZoom1MovesNothing)
{
    show();
    drag({100, 100}, {130, 80});
    EXPECT_EQ(imageView()->imageTransform(), ImageTransform());
    magnify();
    EXPECT_EQ(shift(), QPointF(0, 0));
}

TEST_F(Pan, anotherButtonDragsNothing)
{
    show();
    magnify();
    const QPointF from(100, 100);
    QMouseEvent down(QEvent::MouseButtonPress, from, imageView()->mapToGlobal(from), Qt::RightButton, Qt::RightButton,
                     Qt::NoModifier);
    QCoreApplication::sendEvent(imageView(), &down);
    mouse(QEvent::MouseMove, {150, 150}, Qt::RightButton);
    EXPECT_EQ(shift(), QPointF(0, 0));
    EXPECT_EQ(cursor(), Qt::OpenHandCursor);
}

TEST_F(Pan, aScrollWithPositiveDeltaYMovesTheImageDownAndWithPositiveDeltaXToTheRight)
{
    show();
    magnify();
    EXPECT_TRUE(wheel({0, 25}, {}));
    EXPECT_EQ(shift(), QPointF(0, 25)) << "the offset's y, which points up, goes down";
    EXPECT_TRUE(wheel({40, 0}, {}));
    EXPECT_EQ(shift(), QPointF(40, 25));
    EXPECT_EQ(zoom(), 1.5);
}

TEST_F(Pan, aNotchOfTheWheelScrollsAsFarAsInAnyOtherWindow)
{
    show();
    magnify();
    EXPECT_TRUE(wheel({}, {0, 120}));
    EXPECT_EQ(shift(), QPointF(0, 20 * QApplication::wheelScrollLines()));
}

TEST_F(Pan, aScrollAtZoom1IsNotSeen)
{
    show();
    EXPECT_TRUE(wheel({0, 25}, {}));
    EXPECT_EQ(imageView()->imageTransform(), ImageTransform());
    magnify();
    EXPECT_EQ(shift(), QPointF(0, 25)) << "but it counts as soon as the picture is magnified";
}

TEST_F(Pan, aScrollWithoutAnImageIsLeftToTheWindow)
{
    EXPECT_FALSE(wheel({0, 25}, {}));
}

TEST_F(Pan, theOffsetIsKeptForEachFileAndGoneWithTheZoom)
{
    show();
    (void)cachedFile("other.jpg", imageOf(1000, 800));
    controller->openImage(folder.at("shown.jpg"));
    magnify(2);
    drag({100, 100}, {130, 80});
    controller->openImage(folder.at("other.jpg"));
    EXPECT_EQ(imageView()->imageTransform(), ImageTransform());
    controller->openImage(folder.at("shown.jpg"));
    EXPECT_EQ(shift(), QPointF(30, -20));
    press('0', Qt::ControlModifier);
    magnify(2);
    EXPECT_EQ(shift(), QPointF(0, 0));
}

TEST_F(Pan, theOpenHandIsShownOverAnyImageAndTheClosedOneWhileItIsDragged)
{
    EXPECT_EQ(cursor(), Qt::ArrowCursor);
    show();
    EXPECT_EQ(cursor(), Qt::OpenHandCursor) << "zoomed or not";
    magnify();
    mouse(QEvent::MouseButtonPress, {100, 100}, Qt::LeftButton);
    EXPECT_EQ(cursor(), Qt::ClosedHandCursor);
    mouse(QEvent::MouseMove, {110, 100}, Qt::LeftButton);
    EXPECT_EQ(cursor(), Qt::ClosedHandCursor);
    mouse(QEvent::MouseButtonRelease, {110, 100}, Qt::NoButton);
    EXPECT_EQ(cursor(), Qt::OpenHandCursor);
    controller->showIdleState();
    EXPECT_EQ(cursor(), Qt::ArrowCursor);
}

TEST_F(Pan, anotherImageEndsTheDrag)
{
    show();
    (void)cachedFile("other.jpg", imageOf(1000, 800));
    magnify();
    mouse(QEvent::MouseButtonPress, {100, 100}, Qt::LeftButton);
    controller->openImage(folder.at("other.jpg"));
    EXPECT_EQ(cursor(), Qt::OpenHandCursor);
    magnify();
    mouse(QEvent::MouseMove, {150, 150}, Qt::LeftButton);
    EXPECT_EQ(shift(), QPointF(0, 0));
}

TEST_F(Pan, aDragEndsWhenThePointerLeaves)
{
    show();
    magnify();
    mouse(QEvent::MouseButtonPress, {100, 100}, Qt::LeftButton);
    QEvent leave(QEvent::Leave);
    QCoreApplication::sendEvent(imageView(), &leave);
    EXPECT_EQ(cursor(), Qt::OpenHandCursor);
    mouse(QEvent::MouseMove, {150, 150}, Qt::LeftButton);
    EXPECT_EQ(shift(), QPointF(0, 0));
}

TEST_F(Pan, aSecondPressInARowDragsAsTheFirstDoes)
{
    show();
    magnify();
    mouse(QEvent::MouseButtonDblClick, {100, 100}, Qt::LeftButton);
    mouse(QEvent::MouseMove, {110, 100}, Qt::LeftButton);
    EXPECT_EQ(shift(), QPointF(10, 0));
}

TEST_F(Pan, aViewWithoutADelegateLeavesEverythingToItsWindow)
{
    show();
    imageView()->setPanningDelegate(nullptr);
    drag({100, 100}, {130, 80});
    EXPECT_FALSE(wheel({0, 25}, {}));
    EXPECT_EQ(imageView()->imageTransform(), ImageTransform());
}

} // namespace
} // namespace tallowmere::test
