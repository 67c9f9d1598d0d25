// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "imaging/pixels/ColourConversion.h"

#include "imaging/pixels/CicpProfile.h"
#include "imaging/pixels/ColourProfile.h"
#include "imaging/pixels/GridConversion.h"
#include "imaging/pixels/LightMeter.h"
#include "imaging/pixels/PixelKernels.h"

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <list>
#include <mutex>
#include <optional>
#include <random>
#include <vector>

namespace tallowmere {
namespace {

using Light = LightMeter::Light;
using Colour = std::array<std::uint8_t, 4>;

/// Kept by all that live in it.
using Context = std::shared_ptr<std::remove_pointer_t<cmsContext>>;

/// By channel (B, G, R) and value: the light it adds to blue, green and red.
using LightOfChannels = std::array<std::array<Light, 256>, 3>;

/// Colours spread over the whole cube, greys included.
const std::vector<Colour> &probes()
{
    static const auto made = [] {
        std::vector<Colour> colours;
        const auto level = [](unsigned i) { return static_cast<std::uint8_t>(i * 255 / 8); };
        for (unsigned i = 0; i < 9 * 9 * 9; ++i)
            colours.push_back({level(i % 9), level(i / 9 % 9), level(i / 81), 255});
        for (unsigned i = 0; i < 256; ++i) {
            const auto grey = static_cast<std::uint8_t>(i);
            colours.push_back({grey, grey, grey, 255});
        }
        return colours;
    }();
    return made;
}

bool changesNothing(const ColourConversion &conversion)
{
    auto converted = probes();
    conversion.convert(reinterpret_cast<std::byte *>(converted.data()), converted.size());
    for (std::size_t i = 0; i < converted.size(); ++i) {
        for (std::size_t c = 0; c < 3; ++c) {
            if (std::abs(int{converted[i][c]} - int{probes()[i][c]}) > 1)
                return false;
        }
    }
    return true;
}

/// Curves and matrix of most profiles in one table, four to five times as fast as the library's own arithmetic.
class Mixture final : public ColourConversion
{
public:
    Mixture(const LightOfChannels &light)
    {
        for (std::size_t channel = 0; channel < 3; ++channel) {
            for (std::size_t value = 0; value < 256; ++value) {
                for (std::size_t c = 0; c < 3; ++c)
                    m_tables.light[channel][value][c] = light[channel][value][c] * MixingTables::kSteps;
            }
        }
        for (std::size_t i = 0; i < m_tables.signal.size(); ++i)
            m_tables.signal[i] = byteFromLight(static_cast<float>(i) / MixingTables::kSteps);
    }

    void convert(std::byte *pixels, std::size_t count) const override { mixColours(pixels, count, m_tables); }

private:
    MixingTables m_tables;
};

/// Bends that are too sharp for evenly spaced points: the library's own points stand closer where the curves are steep.
class LibraryTransform final : public ColourConversion
{
public:
    LibraryTransform(Context context, ColourTransform transform)
        : m_context(std::move(context)), m_transform(std::move(transform))
    {}

    void convert(std::byte *pixels, std::size_t count) const override
    {
        constexpr std::size_t kMost = std::numeric_limits<cmsUInt32Number>::max() / 8;
        for (; count > 0; count -= std::min(count, kMost), pixels += kMost * 4)
            cmsDoTransform(m_transform.get(), pixels, pixels, static_cast<cmsUInt32Number>(std::min(count, kMost)));
    }

private:
    Context m_context; ///< first: the transform lives in it
    ColourTransform m_transform;
};

LightOfChannels lightOfChannels(const LightMeter &meter)
{
    LightOfChannels light{};
    const Light black = meter(0, 0, 0);
    for (std::size_t v = 0; v < 256; ++v) {
        const float value = static_cast<float>(v) / 255.0F;
        if (meter.grey()) {
            const Light all = meter(value, value, value);
            for (std::size_t c = 0; c < 3; ++c)
                light[c][v][c] = all[c];
            continue;
        }
        const std::array<Light, 3> alone{meter(value, 0, 0), meter(0, value, 0), meter(0, 0, value)};
        for (std::size_t channel = 0; channel < 3; ++channel) {
            for (std::size_t c = 0; c < 3; ++c)
                light[channel][v][c] = alone[channel][c] - (channel == 0 ? 0.0F : black[c]);
        }
    }
    return light;
}

Colour measured(const LightMeter &meter, const Colour &colour)
{
    const auto level = [](std::uint8_t value) { return static_cast<float>(value) / 255.0F; };
    const Light light = meter(level(colour[0]), level(colour[1]), level(colour[2]));
    return {byteFromLight(light[0]), byteFromLight(light[1]), byteFromLight(light[2]), colour[3]};
}

/// Whether channels add up: not so where a profile bends colours together.
bool isMixture(const ColourConversion &mixture, const LightMeter &meter)
{
    if (meter.grey())
        return true;
    for (const auto &probe : probes()) {
        auto mixed = probe;
        mixture.convert(reinterpret_cast<std::byte *>(mixed.data()), 1);
        const Colour exact = measured(meter, probe);
        for (std::size_t c = 0; c < 3; ++c) {
            if (std::abs(int{mixed[c]} - int{exact[c]}) > 1)
                return false;
        }
    }
    return true;
}

/// How far conversions are from the library's exact arithmetic.
class Judge final
{
public:
    static constexpr unsigned kGreys = 256;
    static constexpr unsigned kColours = 3000;

    struct Deviation
    {
        int greys = 0;    ///< the largest
        unsigned off = 0; ///< how many other colours are more than two values away
        std::uint64_t squares = 0;

        /// At the rim of what the screen can show a channel ends so steeply that some colours always miss it.
        [[nodiscard]] bool hardlySeen() const { return greys <= 1 && off <= kColours / 50; }
    };

    explicit Judge(const LightMeter &meter)
    {
        for (unsigned i = 0; i < kGreys; ++i) {
            const auto grey = static_cast<std::uint8_t>(i);
            m_asked.push_back({grey, grey, grey, 255});
        }
        // Colours in a pattern might all lie on the points of a grid.
        std::minstd_rand random;
        for (unsigned i = 0; i < kColours; ++i) {
            const auto level = [&] { return static_cast<std::uint8_t>(random() >> 20U); };
            m_asked.push_back({level(), level(), level(), 255});
        }
        for (const Colour &colour : m_asked)
            m_exact.push_back(measured(meter, colour));
    }

    [[nodiscard]] Deviation operator()(const ColourConversion &conversion) const
    {
        auto converted = m_asked;
        conversion.convert(reinterpret_cast<std::byte *>(converted.data()), converted.size());
        Deviation deviation;
        for (std::size_t i = 0; i < converted.size(); ++i) {
            int largest = 0;
            for (std::size_t c = 0; c < 3; ++c) {
                const int difference = std::abs(int{converted[i][c]} - int{m_exact[i][c]});
                largest = std::max(largest, difference);
                deviation.squares += static_cast<std::uint64_t>(difference) * static_cast<std::uint64_t>(difference);
            }
            if (i < kGreys)
                deviation.greys = std::max(deviation.greys, largest);
            else
                deviation.off += largest > 2 ? 1 : 0;
        }
        return deviation;
    }

private:
    std::vector<Colour> m_asked;
    std::vector<Colour> m_exact;
};

std::shared_ptr<const ColourConversion> libraryTransform(const Context &context, cmsHPROFILE profile)
{
    const Profile screen(cmsCreate_sRGBProfileTHR(context.get()));
    if (!screen)
        return nullptr;
    // Without the cache a transform is constant while it is used, so that threads may share it.
    ColourTransform transform(cmsCreateTransformTHR(context.get(), profile, TYPE_BGRA_8, screen.get(), TYPE_BGRA_8,
                                                    kRenderingIntent, cmsFLAGS_NOCACHE));
    if (!transform)
        return nullptr;
    return std::make_shared<const LibraryTransform>(context, std::move(transform));
}

/// The grid, or the library's own transform where that is nearer to what is exact. It is lossy too, for the sake of
/// speed, and mostly the worse one: it clips before it interpolates.
std::shared_ptr<const ColourConversion> bentConversion(const LightMeter &meter, const Context &context,
                                                       cmsHPROFILE profile)
{
    auto grid = std::make_shared<const GridConversion>(meter);
    const Judge judge(meter);
    const Judge::Deviation deviation = judge(*grid);
    if (deviation.hardlySeen())
        return grid;
    auto library = libraryTransform(context, profile);
    if (library && judge(*library).squares < deviation.squares)
        return library;
    return grid;
}

Profile profileOf(cmsContext context, const ColourDescription &colour)
{
    if (colour.icc)
        return openProfile(context, *colour.icc);
    if (colour.cicp)
        return makeProfile(context, *colour.cicp);
    return colour.gamma ? makeProfile(context, *colour.gamma) : nullptr;
}

std::shared_ptr<const ColourConversion> make(const ColourDescription &colour)
{
    const Context context(cmsCreateContext(nullptr, nullptr), [](cmsContext made) {
        if (made)
            cmsDeleteContext(made);
    });
    if (!context)
        return nullptr;
    const Profile profile = profileOf(context.get(), colour);
    if (!profile)
        return nullptr;
    const LightMeter meter(context.get(), profile.get());
    if (!meter.usable())
        return nullptr;
    std::shared_ptr<const ColourConversion> conversion = std::make_shared<const Mixture>(lightOfChannels(meter));
    if (!isMixture(*conversion, meter))
        conversion = bentConversion(meter, context, profile.get());
    return changesNothing(*conversion) ? nullptr : conversion;
}

bool sameColour(const ColourDescription &a, const ColourDescription &b)
{
    const bool sameProfile = a.icc == b.icc || (a.icc && b.icc && *a.icc == *b.icc);
    return sameProfile && a.cicp == b.cicp && a.gamma == b.gamma;
}

/// The conversions asked for last, the latest first. A folder's pictures come from one or two cameras.
class Remembered final
{
public:
    std::shared_ptr<const ColourConversion> find(const ColourDescription &colour)
    {
        {
            const std::lock_guard lock(m_mutex);
            if (const Entry *entry = findLocked(colour))
                return entry->conversion;
        }
        // Made without the lock: who needs another one needn't wait, and making the same twice does no harm.
        auto conversion = make(colour);
        const std::lock_guard lock(m_mutex);
        if (const Entry *entry = findLocked(colour))
            return entry->conversion; // another thread was faster
        m_entries.push_front({colour, conversion});
        if (m_entries.size() > kEntries)
            m_entries.pop_back();
        return conversion;
    }

private:
    struct Entry
    {
        ColourDescription colour;
        std::shared_ptr<const ColourConversion> conversion;
    };
    static constexpr std::size_t kEntries = 8;

    /// Null when there is none; what is found becomes the latest.
    const Entry *findLocked(const ColourDescription &colour)
    {
        const auto entry = std::find_if(m_entries.begin(), m_entries.end(),
                                        [&](const Entry &each) { return sameColour(each.colour, colour); });
        if (entry == m_entries.end())
            return nullptr;
        m_entries.splice(m_entries.begin(), m_entries, entry);
        return &*entry;
    }

    std::mutex m_mutex;
    std::list<Entry> m_entries;
};

} // namespace

std::shared_ptr<const ColourConversion> ColourConversion::toSRGB(const ColourDescription &colour)
{
    static Remembered remembered;
    return colour.unknown() ? nullptr : remembered.find(colour);
}

} // namespace tallowmere
