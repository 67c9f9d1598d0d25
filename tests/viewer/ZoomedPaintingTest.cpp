// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
//
// Runs at several scale factors, see CMakeLists.txt: nothing here takes a point for a pixel.
#include "tests/viewer/ViewerFixture.h"
#include "viewer/DisplayPreparation.h"
#include "viewer/TransparencyChecker.h"

#include <QImage>
#include <QPaintEvent>
#include <QRegion>
#include <QTest>

#include <cmath>

namespace tallowmere::test {
namespace {

constexpr QRgb kBackground = 0xff102030;
constexpr QSize kView{200, 100};

/// Each pixel tells where it lies: x in green and half of blue, y in red.
ImagePtr chart(std::uint32_t width, std::uint32_t height)
{
    DecodedImage decoded;
    decoded.pixels = PixelBuffer::allocate({width, height});
    decoded.storedSize = {width, height};
    for (std::uint32_t y = 0; y < height; ++y) {
        auto *row = reinterpret_cast<std::uint32_t *>(decoded.pixels.row(y));
        for (std::uint32_t x = 0; x < width; ++x)
            row[x] = 0xff000000U | (y % 256) << 16 | (x % 256) << 8 | (x / 256);
    }
    return std::make_shared<const Image>(std::move(decoded));
}

class ZoomedPainting : public ::testing::Test
{
protected:
    ZoomedPainting()
    {
        view.resize(kView);
        view.setImageScaling(ImageScaling::proportionallyDown);
        view.setBackgroundColor(QColor(kBackground));
    }
    [[nodiscard]] double scale() const { return view.devicePixelRatioF(); }
    [[nodiscard]] QImage painted() { return view.grab().toImage().convertToFormat(QImage::Format_RGB32); }
    void zoom(double factor, QPointF offset = {}) { view.setImageTransform(ImageTransform::of(factor, offset)); }
    void catchUp()
    {
        (void)painted();
        launcher.runAll();
        mainQueue.runAll();
    }
    /// The chart fills the view at zoom 1; @p offset with y upwards. Pixels whose centre lies on an edge may be either.
    void expectNearest(const QImage &picture, PixelSize chartSize, double factor, QPointF offset = {})
    {
        const auto source = [&](int pixel, int pixels, double shift, std::uint32_t count) {
            return ((pixel + 0.5 - pixels / 2.0) / factor - shift * scale() + pixels / 2.0) * count / pixels;
        };
        const auto onEdge = [](double position) { return std::abs(position - std::round(position)) < 1e-6; };
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x < picture.width(); ++x) {
                const double column = source(x, picture.width(), offset.x(), chartSize.width);
                const double row = source(y, picture.height(), -offset.y(), chartSize.height);
                if (onEdge(column) || onEdge(row))
                    continue;
                const auto atX = static_cast<std::uint32_t>(column);
                const QRgb expected =
                    0xff000000U | (static_cast<std::uint32_t>(row) % 256) << 16 | (atX % 256) << 8 | (atX / 256);
                ASSERT_EQ(picture.pixel(x, y), expected) << x << ", " << y << " from " << column << ", " << row;
            }
        }
    }

    SettingsManager settings{std::make_unique<MemoryDefaultsStore>()};
    SteppedLauncher launcher;
    SteppedMainQueue mainQueue;
    std::shared_ptr<DisplayPreparation> preparation = std::make_shared<DisplayPreparation>(settings);
    DraggableImageView view{preparation, launcher, mainQueue};
};

/// What a widget on the screen is asked to paint.
class PaintedRegion final : public QObject
{
public:
    explicit PaintedRegion(QWidget &widget) : m_widget(widget)
    {
        widget.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&widget, 30'000));
        QCoreApplication::processEvents();
        widget.installEventFilter(this);
    }
    /// By @p change alone.
    template <typename Change>
    [[nodiscard]] QRegion after(const Change &change)
    {
        m_region = {};
        change();
        // At once, and not with the next frame.
        QCoreApplication::sendPostedEvents(&m_widget, QEvent::UpdateRequest);
        QCoreApplication::processEvents();
        return m_region;
    }

private:
    bool eventFilter(QObject * /*watched*/, QEvent *event) override
    {
        if (event->type() == QEvent::Paint)
            m_region += static_cast<QPaintEvent *>(event)->region();
        return false;
    }

    QWidget &m_widget;
    QRegion m_region;
};

TEST_F(ZoomedPainting, aPanLeavesTheFreeMarginsAlone)
{
    view.setImage(chart(400, 20)); // 10 points high in the view, 30 when magnified
    zoom(3.0);
    PaintedRegion region(view);
    const QRegion panned = region.after([&] { zoom(3.0, {20, 0}); });
    EXPECT_TRUE(panned.contains(QRect(0, 35, 200, 30)));
    EXPECT_FALSE(panned.intersects(QRect(0, 0, 200, 32)));
    EXPECT_FALSE(panned.intersects(QRect(0, 68, 200, 32)));
}

TEST_F(ZoomedPainting, whatTheImageLeavesAndWhatItReachesIsPaintedAnew)
{
    view.setImage(imageOf(40, 20, 0xffcc2200));
    zoom(2.0);
    PaintedRegion region(view);
    const QRect whole(60, 30, 80, 40);
    const QRegion reduced = region.after([&] { zoom(0.5); });
    EXPECT_TRUE(reduced.contains(whole)) << "where it was";
    EXPECT_FALSE(reduced.intersects(QRect(0, 0, 57, 100)));
    EXPECT_FALSE(reduced.intersects(QRect(0, 73, 200, 27)));
    EXPECT_TRUE(region.after([&] { zoom(2.0); }).contains(whole)) << "where it comes";
    const QRegion moved = region.after([&] { zoom(2.0, {20, -10}); });
    EXPECT_TRUE(moved.contains(whole)) << "where it was";
    EXPECT_TRUE(moved.contains(whole.translated(40, 20))) << "where it comes";
}

TEST_F(ZoomedPainting, aChangeThatConcernsMoreThanTheImagePaintsTheWholeView)
{
    view.setImage(imageOf(40, 20, 0xffcc2200));
    PaintedRegion region(view);
    EXPECT_EQ(region.after([&] {
        zoom(2.0);
        view.setBackgroundColor(Qt::white);
    }),
              QRegion(view.rect()));
    EXPECT_EQ(region.after([&] {
        zoom(1.0);
        view.setImage({});
    }),
              QRegion(view.rect()));
    EXPECT_EQ(region.after([&] { zoom(3.0); }), QRegion(view.rect())) << "without an image";
}

TEST_F(ZoomedPainting, magnifiedPixelsAreSharpSquares)
{
    view.setImage(chart(200, 100));
    for (const double factor : {1.5, 2.0, 3.375, 10.0}) {
        zoom(factor);
        expectNearest(painted(), {200, 100}, factor);
    }
}

TEST_F(ZoomedPainting, magnifiedPixelsComeFromTheDecodedImageAndNotFromTheFittedCopy)
{
    view.setImage(chart(800, 400));
    catchUp();
    zoom(4 / scale()); // one pixel of the image for each of the screen, or nearly so
    expectNearest(painted(), {800, 400}, 4 / scale());
    zoom(1.5);
    expectNearest(painted(), {800, 400}, 1.5);
}

TEST_F(ZoomedPainting, aPanShiftsTheMagnifiedImage)
{
    view.setImage(chart(400, 200));
    for (const QPointF offset : {QPointF(30, 0), QPointF(0, -20), QPointF(-13.5, 7.25)}) {
        zoom(3.0, offset);
        expectNearest(painted(), {400, 200}, 3.0, offset);
    }
}

TEST_F(ZoomedPainting, aPartIsPaintedAsItIsInTheWhole)
{
    view.setImage(chart(400, 200));
    zoom(3.0, {11, 5});
    const QImage whole = painted();
    const QRect part(50, 20, 60, 40);
    const QImage some = view.grab(part).toImage().convertToFormat(QImage::Format_RGB32);
    const QPoint origin = (QPointF(part.topLeft()) * scale()).toPoint();
    for (int y = 1; y < some.height() - 1; ++y) {
        for (int x = 1; x < some.width() - 1; ++x)
            ASSERT_EQ(some.pixel(x, y), whole.pixel(x + origin.x(), y + origin.y())) << x << ", " << y;
    }
}

TEST_F(ZoomedPainting, whatTheImageLeavesFreeShowsTheBackground)
{
    view.setImage(imageOf(40, 20, 0xffcc2200));
    zoom(2.0, {10, 0});
    const QImage picture = painted();
    const auto at = [&](double x, double y) {
        return picture.pixel(static_cast<int>(x * scale()), static_cast<int>(y * scale()));
    };
    // 80 x 40 points around the centre, then 20 to the right.
    EXPECT_EQ(at(82, 50), 0xffcc2200);
    EXPECT_EQ(at(158, 50), 0xffcc2200);
    EXPECT_EQ(at(78, 50), kBackground);
    EXPECT_EQ(at(162, 50), kBackground);
    EXPECT_EQ(at(120, 28), kBackground);
    EXPECT_EQ(at(120, 72), kBackground);
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x)
            ASSERT_TRUE(picture.pixel(x, y) == kBackground || picture.pixel(x, y) == 0xffcc2200U) << x << ", " << y;
    }
}

TEST_F(ZoomedPainting, theBackgroundShowsThroughMagnifiedTransparentPixels)
{
    view.setImage(imageOf(200, 100, 0x00000000));
    zoom(3.0);
    EXPECT_EQ(painted().pixel(10, 10), kBackground);
}

TEST_F(ZoomedPainting, theCheckerboardShowsAroundAndThroughAMagnifiedImageAsItIsByItself)
{
    TransparencyChecker checker(nullptr);
    checker.setPattern(CheckerPattern::forAppearance(false));
    checker.resize(kView);
    const QImage board = checker.grab().toImage().convertToFormat(QImage::Format_RGB32);
    view.setChecker(&checker);
    for (const ImagePtr &image : {imageOf(200, 100, 0x00000000), imageOf(40, 20, 0x00000000), ImagePtr()}) {
        view.setImage(image);
        for (const double factor : {1.0, 1.5, 3.375}) {
            zoom(factor, {7, -3});
            catchUp();
            EXPECT_EQ(painted(), board) << factor;
        }
    }
    view.setChecker(nullptr);
    EXPECT_EQ(painted().pixel(5, 5), kBackground);
}

TEST_F(ZoomedPainting, anImageNeedsNoCopyToBeMagnified)
{
    view.setImage(chart(400, 200));
    catchUp();
    const auto before = launcher.launched().size();
    zoom(3.0);
    (void)painted();
    EXPECT_EQ(launcher.launched().size(), before);
}

TEST_F(ZoomedPainting, belowZoom1TheImageIsReducedWithAProperFilter)
{
    // Lines of one pixel: picking single ones would show stripes, and so would mixing only two neighbours.
    DecodedImage decoded;
    decoded.pixels = PixelBuffer::allocate({1600, 800});
    decoded.storedSize = {1600, 800};
    for (std::uint32_t y = 0; y < 800; ++y) {
        auto *row = reinterpret_cast<std::uint32_t *>(decoded.pixels.row(y));
        for (std::uint32_t x = 0; x < 1600; ++x)
            row[x] = x % 2 == 0 ? 0xff000000U : 0xffffffffU;
    }
    view.setImage(std::make_shared<const Image>(std::move(decoded)));
    for (const double factor : {1.0, 1 / 1.5, 0.25}) {
        zoom(factor);
        catchUp();
        const QImage picture = painted();
        const int reach = static_cast<int>(picture.width() * factor / 2) - 4;
        for (int x = picture.width() / 2 - reach; x < picture.width() / 2 + reach; ++x)
            ASSERT_NEAR(qRed(picture.pixel(x, picture.height() / 2)), 128, 6) << factor << ": " << x;
    }
}

TEST_F(ZoomedPainting, aReducedImageLiesInTheMiddleAtItsSize)
{
    view.setImage(imageOf(200, 100, 0xffcc2200));
    zoom(0.5);
    catchUp();
    const QImage picture = painted();
    const int quarter = static_cast<int>(std::lround(picture.width() / 4.0));
    EXPECT_EQ(picture.pixel(quarter + 1, picture.height() / 2), 0xffcc2200);
    EXPECT_EQ(picture.pixel(picture.width() - quarter - 2, picture.height() / 2), 0xffcc2200);
    EXPECT_EQ(picture.pixel(quarter - 2, picture.height() / 2), kBackground);
    EXPECT_EQ(picture.pixel(picture.width() - quarter + 1, picture.height() / 2), kBackground);
}

TEST_F(ZoomedPainting, survivesTinyViewsAndImagesWithoutPixelsAtAnyZoom)
{
    for (const ImagePtr &image : {imageOf(800, 400), imageOf(1, 1), imageOf(1, 3000),
                                  std::make_shared<const Image>(QSizeF(30, 20)), ImagePtr()}) {
        view.setImage(image);
        for (const double factor : {0.25, 1.0, 10.0}) {
            for (const QSize size : {QSize(0, 0), QSize(1, 1), QSize(1, 300), QSize(300, 2)}) {
                view.resize(size);
                zoom(factor, {1e9, -1e9});
                EXPECT_FALSE(painted().isNull() && !size.isEmpty());
                zoom(factor);
                EXPECT_FALSE(painted().isNull() && !size.isEmpty());
            }
        }
    }
}

} // namespace
} // namespace tallowmere::test
