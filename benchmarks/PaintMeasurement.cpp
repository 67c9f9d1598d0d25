// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "benchmarks/Measurements.h"
#include "settings/DefaultsStore.h"
#include "settings/SettingsManager.h"
#include "viewer/DisplayPreparation.h"
#include "viewer/DraggableImageView.h"
#include "viewer/TransparencyChecker.h"

#include <QApplication>

#include <algorithm>
#include <array>
#include <cstring>
#include <ctime>
#include <deque>
#include <functional>
#include <vector>

namespace tallowmere::bench {
namespace {

constexpr QSize kWindow{3840, 2160};
constexpr PixelSize kPicture{4000, 2667};
constexpr int kFrames = 9;

const char *const kSection = "Paint, a frame of 3840 × 2160, processor time of all threads";

/// Nothing without a settings file.
class NoDefaults final : public DefaultsStore
{
public:
    [[nodiscard]] bool contains(QByteArrayView) const override { return false; }
    [[nodiscard]] bool boolForKey(QByteArrayView) const override { return false; }
    [[nodiscard]] QString stringForKey(QByteArrayView) const override { return {}; }
    void setBool(QByteArrayView, bool) override {}
    void setString(QByteArrayView, const QString &) override {}
};

/// Background work that waits until it is asked for, so that it is not measured.
class Background final : public Launcher, public MainQueue
{
public:
    void launch(const std::string &, QualityOfService, Job job) override { m_jobs.push_back(std::move(job)); }
    void async(Job job) override { m_jobs.push_back(std::move(job)); }
    void catchUp()
    {
        for (; !m_jobs.empty(); m_jobs.pop_front())
            m_jobs.front()();
    }
    void forget() { m_jobs.clear(); }

private:
    std::deque<Job> m_jobs;
};

/// The toolkit may share the work of a frame among threads of its own.
double processorMilliseconds()
{
    timespec time{};
    ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

double median(std::vector<double> values)
{
    std::ranges::nth_element(values, values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2));
    return values[values.size() / 2];
}

/// Half of a transparent one is.
ImagePtr makePicture(PixelSize size, bool transparent)
{
    DecodedImage decoded;
    decoded.pixels = PixelBuffer::allocate(size);
    decoded.storedSize = size;
    decoded.hasAlpha = transparent;
    std::uint32_t noise = 12345;
    for (std::uint32_t y = 0; y < size.height; ++y) {
        auto *row = reinterpret_cast<std::uint32_t *>(decoded.pixels.row(y));
        for (std::uint32_t x = 0; x < size.width; ++x) {
            noise = noise * 1664525 + 1013904223;
            row[x] =
                transparent && x < size.width / 2 ? 0x80000000U | (noise >> 9 & 0x7f7f7fU) : 0xff000000U | (noise >> 8);
        }
    }
    return std::make_shared<const Image>(std::move(decoded));
}

/// A window and what it paints.
class Stage final
{
public:
    explicit Stage(ImagePtr picture = makePicture(kPicture, false),
                   ImageScaling scaling = ImageScaling::proportionallyDown)
    {
        view.resize(kWindow);
        view.setImageScaling(scaling);
        view.setBackgroundColor(Qt::darkGray);
        view.setImage(std::move(picture));
        view.show();
        QApplication::processEvents(); // a window that is not exposed paints nothing
        settle();
    }
    /// The picture is painted from what it should be painted from.
    void settle()
    {
        view.repaint();
        background.catchUp();
        view.repaint();
    }
    [[nodiscard]] double frame(const std::function<void()> &change)
    {
        const double begin = processorMilliseconds();
        change();
        view.repaint();
        return processorMilliseconds() - begin;
    }
    /// @p change gets the frame's number, from 1 on.
    [[nodiscard]] double frames(const std::function<void(int)> &change)
    {
        std::vector<double> values;
        for (int i = 1; i <= kFrames; ++i)
            values.push_back(frame([&] { change(i); }));
        background.forget();
        return median(values);
    }

    SettingsManager settings{std::make_unique<NoDefaults>()};
    Background background;
    DraggableImageView view{std::make_shared<DisplayPreparation>(settings), background, background};
};

double pan(double zoom, bool transparent = false)
{
    Stage stage(makePicture(kPicture, transparent));
    stage.view.setImageTransform(ImageTransform::of(zoom, {}));
    return stage.frames([&](int i) { stage.view.setImageTransform(ImageTransform::of(zoom, QPointF(i * 7, i * 3))); });
}

double zoom(double first, double step)
{
    Stage stage;
    return stage.frames([&, scale = first](int) mutable {
        stage.view.setImageTransform(ImageTransform::of(scale, {}));
        scale *= step;
    });
}

/// As the window has them: the checkerboard beneath the picture.
double panOverCheckerboard()
{
    SettingsManager settings{std::make_unique<NoDefaults>()};
    Background background;
    QWidget window;
    TransparencyChecker checker(&window);
    DraggableImageView view(std::make_shared<DisplayPreparation>(settings), background, background, &window);
    window.resize(kWindow);
    checker.setGeometry(window.rect());
    view.setGeometry(window.rect());
    view.setImageScaling(ImageScaling::proportionallyDown);
    view.setChecker(&checker);
    view.setImage(makePicture(kPicture, true));
    window.show();
    QApplication::processEvents();
    std::vector<double> values;
    for (int i = 1; i <= kFrames; ++i) {
        const double begin = processorMilliseconds();
        view.setImageTransform(ImageTransform::of(1.5, QPointF(i * 7, i * 3)));
        view.repaint();
        values.push_back(processorMilliseconds() - begin);
    }
    return median(values);
}

/// Of a picture that the screen has more pixels for than it has itself.
double backToZoom1()
{
    Stage stage(makePicture({3000, 1688}, false), ImageScaling::proportionallyUpOrDown);
    std::vector<double> values;
    for (int i = 0; i < kFrames; ++i) {
        stage.view.setImageTransform(ImageTransform::of(1.5, {}));
        stage.view.repaint();
        values.push_back(stage.frame([&] { stage.view.setImageTransform({}); }));
    }
    return median(values);
}

double resize()
{
    Stage stage;
    return stage.frames([&](int i) { stage.view.resize(kWindow - QSize(i * 11, i * 7)); });
}

/// What no frame can do without: its pixels are written once.
double plainCopy()
{
    const auto bytes = static_cast<std::size_t>(kWindow.width()) * static_cast<std::size_t>(kWindow.height()) * 4;
    const std::vector<char> from(bytes, 'a');
    std::vector<char> to(bytes, 'b');
    std::vector<double> values;
    for (int i = 0; i < kFrames; ++i) {
        const double begin = processorMilliseconds();
        std::memcpy(to.data(), from.data(), bytes);
        values.push_back(processorMilliseconds() - begin);
    }
    return median(values);
}

} // namespace

void measurePainting(Results &results)
{
    const std::vector<std::pair<std::string, std::function<double()>>> cases{
        {"Pan at zoom 1.5", [] { return pan(1.5); }},
        {"Pan at zoom 3.4", [] { return pan(3.375); }},
        {"Pan at zoom 10", [] { return pan(10); }},
        {"Pan at zoom 1.5, half transparent", [] { return pan(1.5, true); }},
        {"Pan at zoom 1.5, half transparent, over the checkerboard", [] { return panOverCheckerboard(); }},
        {"Zoom in, as a pinch does", [] { return zoom(1.1, 1.15); }},
        {"Zoom out, as a pinch does", [] { return zoom(0.95, 0.9); }},
        {"Back to zoom 1, a picture smaller than the window", [] { return backToZoom1(); }},
        {"Resize", [] { return resize(); }},
    };
    const auto wanted = [&](const auto &each) { return results.wants({kSection, each.first}); };
    if (std::ranges::none_of(cases, wanted))
        return;
    // Its windows lie in memory, whatever screen there is.
    std::array<std::string, 3> words{"tallowmere_bench", "-platform", "offscreen"};
    std::array<char *, 4> arguments{words[0].data(), words[1].data(), words[2].data(), nullptr};
    int count = 3;
    const QApplication application(count, arguments.data());
    for (const auto &[name, measure] : cases) {
        const Row row{kSection, name};
        if (!results.wants(row))
            continue;
        if (results.wants(row, kProgram))
            results.add(row, kProgram, measure());
        results.add(row, kFloor, plainCopy());
    }
}

} // namespace tallowmere::bench
