// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "imaging/pixels/ColourConversion.h"

#include "imaging/pixels/CicpProfile.h"
#include "imaging/pixels/ColourProfile.h"
#include "imaging/pixels/PixelKernels.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <list>
#include <mutex>
#include <vector>

namespace tallowmere {
namespace {

using Bgr = std::array<float, 3>;

struct DeleteContext
{
    void operator()(cmsContext context) const { cmsDeleteContext(context); }
};
struct DeleteTransform
{
    void operator()(cmsHTRANSFORM transform) const { cmsDeleteTransform(transform); }
};
using Context = std::unique_ptr<std::remove_pointer_t<cmsContext>, DeleteContext>;
using Transform = std::unique_ptr<void, DeleteTransform>;

// Without the cache a transform is constant while it is used, so that threads may share it.
constexpr cmsUInt32Number kFlags = cmsFLAGS_NOCACHE;
constexpr cmsUInt32Number kIntent = INTENT_PERCEPTUAL;

std::uint8_t byteFromLight(float light)
{
    const double value = std::clamp(static_cast<double>(light), 0.0, 1.0);
    const double signal = value <= 0.0031308 ? value * 12.92 : 1.055 * std::pow(value, 1.0 / 2.4) - 0.055;
    return static_cast<std::uint8_t>(std::lround(signal * 255.0));
}

/// Colours spread over the whole cube, greys included.
const std::vector<std::array<std::uint8_t, 4>> &probes()
{
    static const auto made = [] {
        std::vector<std::array<std::uint8_t, 4>> colours;
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

/// The light each channel's value adds to blue, green and red: curves and matrix of most profiles in one table, four to
/// five times as fast as the library's own arithmetic.
class Mixture final : public ColourConversion
{
public:
    Mixture(const std::array<std::array<Bgr, 256>, 3> &light)
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

/// What no sum of tables describes: profiles made of measured points.
class LibraryTransform final : public ColourConversion
{
public:
    LibraryTransform(Context context, Transform transform)
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
    Transform m_transform;
};

/// Colours in a profile's space, told as light in sRGB's.
class LightMeter final
{
public:
    LightMeter(cmsContext context, cmsHPROFILE profile) : m_grey(cmsGetColorSpace(profile) == cmsSigGrayData)
    {
        const Profile screen = makeLinearProfile(context);
        if (screen)
            m_transform.reset(cmsCreateTransformTHR(context, profile, m_grey ? TYPE_GRAY_FLT : TYPE_BGR_FLT,
                                                    screen.get(), TYPE_BGR_FLT, kIntent, kFlags | cmsFLAGS_NOOPTIMIZE));
    }

    [[nodiscard]] bool usable() const { return m_transform != nullptr; }
    [[nodiscard]] bool grey() const { return m_grey; }
    [[nodiscard]] Bgr operator()(unsigned blue, unsigned green, unsigned red) const
    {
        const Bgr in{static_cast<float>(blue) / 255.0F, static_cast<float>(green) / 255.0F,
                     static_cast<float>(red) / 255.0F};
        Bgr out{};
        cmsDoTransform(m_transform.get(), in.data(), out.data(), 1);
        // A hostile profile's curves may hold anything at all.
        for (float &light : out)
            light = std::isfinite(light) ? std::clamp(light, -kMostLight, kMostLight) : 0.0F;
        return out;
    }

private:
    static constexpr float kMostLight = 16.0F;

    bool m_grey;
    Transform m_transform;
};

std::array<std::array<Bgr, 256>, 3> lightOfChannels(const LightMeter &meter)
{
    std::array<std::array<Bgr, 256>, 3> light{};
    const Bgr black = meter(0, 0, 0);
    for (unsigned v = 0; v < 256; ++v) {
        if (meter.grey()) {
            const Bgr all = meter(v, v, v);
            for (std::size_t c = 0; c < 3; ++c)
                light[c][v][c] = all[c];
            continue;
        }
        const std::array<Bgr, 3> alone{meter(v, 0, 0), meter(0, v, 0), meter(0, 0, v)};
        for (std::size_t channel = 0; channel < 3; ++channel) {
            for (std::size_t c = 0; c < 3; ++c)
                light[channel][v][c] = alone[channel][c] - (channel == 0 ? 0.0F : black[c]);
        }
    }
    return light;
}

/// Whether channels add up: not so where a profile bends colours together.
bool isMixture(const Mixture &mixture, const LightMeter &meter)
{
    if (meter.grey())
        return true;
    for (const auto &probe : probes()) {
        auto mixed = probe;
        mixture.convert(reinterpret_cast<std::byte *>(mixed.data()), 1);
        const Bgr light = meter(probe[0], probe[1], probe[2]);
        for (std::size_t c = 0; c < 3; ++c) {
            if (std::abs(int{mixed[c]} - int{byteFromLight(light[c])}) > 1)
                return false;
        }
    }
    return true;
}

std::shared_ptr<const ColourConversion> libraryTransform(Context context, cmsHPROFILE profile)
{
    const Profile screen(cmsCreate_sRGBProfileTHR(context.get()));
    if (!screen)
        return nullptr;
    Transform transform(
        cmsCreateTransformTHR(context.get(), profile, TYPE_BGRA_8, screen.get(), TYPE_BGRA_8, kIntent, kFlags));
    if (!transform)
        return nullptr;
    return std::make_shared<LibraryTransform>(std::move(context), std::move(transform));
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
    Context context(cmsCreateContext(nullptr, nullptr));
    if (!context)
        return nullptr;
    const Profile profile = profileOf(context.get(), colour);
    if (!profile)
        return nullptr;
    std::shared_ptr<const ColourConversion> conversion;
    {
        const LightMeter meter(context.get(), profile.get());
        if (!meter.usable())
            return nullptr;
        auto mixture = std::make_shared<const Mixture>(lightOfChannels(meter));
        if (isMixture(*mixture, meter))
            conversion = std::move(mixture);
    }
    if (!conversion)
        conversion = libraryTransform(std::move(context), profile.get());
    return conversion && !changesNothing(*conversion) ? conversion : nullptr;
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
            for (auto entry = m_entries.begin(); entry != m_entries.end(); ++entry) {
                if (sameColour(entry->colour, colour)) {
                    m_entries.splice(m_entries.begin(), m_entries, entry);
                    return entry->conversion;
                }
            }
        }
        // Made without the lock: who needs another one needn't wait, and making the same twice does no harm.
        auto conversion = make(colour);
        const std::lock_guard lock(m_mutex);
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
