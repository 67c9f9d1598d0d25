// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "benchmarks/Measurements.h"
#include "benchmarks/PlainDecoders.h"

namespace tallowmere::bench {
namespace {

constexpr std::size_t kFiles = 60;
constexpr std::size_t kSteps = 10;
/// Where the ten keys at once lead; no other picture looks like it.
constexpr std::size_t kGoal = 1 + 2 * kSteps;
constexpr std::uint32_t kEarlier = desktop::key::kRight;
constexpr std::uint32_t kLater = desktop::key::kLeft;

std::vector<std::size_t> markersOfFolder()
{
    std::vector<std::size_t> markers;
    for (std::size_t i = 0; i < kFiles; ++i)
        markers.push_back(i == kGoal ? kUniqueMarker : i % kUniqueMarker);
    return markers;
}

/// A fitted 12 MP picture's size on this screen: the floor window has as much to paint.
std::vector<std::string> floorCommand()
{
    return floorWindow(1412, 1016);
}

/// The same key again and again, each time as soon as the picture before is seen.
std::optional<double> timeSteps(const Station &station, const std::vector<desktop::Colour> &colours)
{
    const auto begin = Clock::now();
    for (const auto &colour : colours) {
        if (!station.timeKey(kLater, colour))
            return std::nullopt;
    }
    return millisecondsSince(begin);
}

std::optional<double> timeBurst(const Station &station, const desktop::Colour &colour)
{
    const auto begin = Clock::now();
    for (std::size_t i = 0; i < kSteps; ++i)
        station.input.press(kLater);
    return station.watch.until(colour, begin);
}

struct StepRows
{
    explicit StepRows(Mode mode) : section("Key to visible, 12 MP JPEG, " + nameOf(mode)) {}
    std::string section;
    Row cold{section, "neighbour not decoded ahead"};
    Row earlier{section, "neighbour decoded ahead, right arrow"};
    Row later{section, "neighbour decoded ahead, left arrow"};
    Row ten{section, "ten steps, each once the last is seen"};
    Row burst{section, "ten keys at once"};

    [[nodiscard]] std::vector<Row> all() const { return {cold, earlier, later, ten, burst}; }
};

/// Walks through a folder, always on to pictures that this run of the program has not shown yet.
class Walk
{
public:
    Walk(const Station &station, std::vector<Photo> photos) : m_station(station), m_photos(std::move(photos)) {}

    /// At the first file; its later neighbours are decoded ahead, the last file, next to it by wrapping, is not.
    [[nodiscard]] bool start()
    {
        m_program = m_station.startAndRest(ownViewer().command(m_photos.front().file), m_photos.front().centre);
        return m_program != nullptr;
    }
    [[nodiscard]] std::optional<double> to(std::uint32_t key, std::size_t index) const
    {
        return m_station.timeKey(key, m_photos[index].centre);
    }
    [[nodiscard]] std::vector<desktop::Colour> colours(std::size_t first, std::size_t count) const
    {
        std::vector<desktop::Colour> result;
        for (std::size_t i = first; i < first + count; ++i)
            result.push_back(m_photos[i].centre);
        return result;
    }
    void rest() const { m_station.waitForRest(*m_program); }

private:
    const Station &m_station;
    const std::vector<Photo> m_photos;
    std::unique_ptr<desktop::Process> m_program;
};

void walkOnce(Walk &walk, const Station &station, const StepRows &rows, Results &results)
{
    const auto add = [&](const Row &row, std::optional<double> value) {
        results.add(row, kProgram, value);
        walk.rest();
        return value.has_value();
    };
    if (!add(rows.cold, walk.to(kEarlier, kFiles - 1)) || !add(rows.earlier, walk.to(kEarlier, kFiles - 2)))
        return;
    // Back to the first by way of the last, to pictures that have been shown.
    if (!walk.to(kLater, kFiles - 1) || !walk.to(kLater, 0))
        return;
    walk.rest();
    if (!add(rows.later, walk.to(kLater, 1)))
        return;
    constexpr std::size_t kNext = 2;
    if (add(rows.ten, timeSteps(station, walk.colours(kNext, kSteps))))
        add(rows.burst, timeBurst(station, kMarkers[kUniqueMarker]));
}

void measureFloor(const Station &station, const Photo &photo, const StepRows &rows, Results &results)
{
    const auto window = station.startAndRest(floorCommand(), kMarkers[0]);
    if (!window)
        return;
    const auto add = [&](const Row &row, std::optional<double> value) { results.add(row, kFloor, value); };
    const auto once = station.timeKey(kEarlier, kMarkers[1]);
    add(rows.earlier, once);
    add(rows.cold, once ? std::optional(*once + timePlainDecode(photo.file)) : std::nullopt);
    const auto again = station.timeKey(kLater, kMarkers[2]);
    add(rows.later, again);
    // However many keys come at once, one picture has to be painted at the least.
    add(rows.burst, again);
    std::vector<desktop::Colour> colours;
    for (std::size_t i = 0; i < kSteps; ++i)
        colours.push_back(kMarkers.at((3 + i) % kUniqueMarker));
    add(rows.ten, timeSteps(station, colours));
}

} // namespace

void measureSteps(const Station &station, const PhotoStore &store, Results &results)
{
    const StepRows rows(station.mode);
    bool wanted = false;
    for (const Row &row : rows.all())
        wanted = wanted || results.wants(row, kProgram);
    if (!wanted)
        return;
    const auto photos = store.folderOf(markersOfFolder());
    {
        Walk walk(station, photos);
        if (walk.start())
            walkOnce(walk, station, rows, results);
        else
            results.add(rows.cold, kProgram, std::nullopt);
    }
    measureFloor(station, photos.front(), rows, results);
}

} // namespace tallowmere::bench
