// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include <lcms2.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <memory>
#include <stdexcept>
#include <vector>

// Colour profiles made on the spot, always the same bytes for the same request. All throw std::runtime_error when the
// colour library fails. Any thread.
namespace tallowmere {

using ProfileBytes = std::shared_ptr<const std::vector<std::byte>>;

template <auto function>
struct FreeWith
{
    template <typename T>
    void operator()(T *handle) const
    {
        function(handle);
    }
};
using ProfileHandle = std::unique_ptr<void, FreeWith<cmsCloseProfile>>;
using TransformHandle = std::unique_ptr<void, FreeWith<cmsDeleteTransform>>;
using CurveHandle = std::unique_ptr<cmsToneCurve, FreeWith<cmsFreeToneCurve>>;

/// What the colour library gave, unless that is nothing.
template <typename Result>
Result required(Result result)
{
    if (!result)
        throw std::runtime_error("the colour library made no profile");
    return result;
}

/// Takes over @p taken.
inline ProfileBytes bytesOf(cmsHPROFILE taken)
{
    const ProfileHandle profile(required(taken));
    cmsUInt32Number size = 0;
    required(cmsSaveProfileToMem(profile.get(), nullptr, &size));
    auto bytes = std::make_shared<std::vector<std::byte>>(size);
    required(cmsSaveProfileToMem(profile.get(), bytes->data(), &size));
    // The time of making lies in the header.
    constexpr std::size_t kDateAt = 24;
    constexpr std::size_t kDateLength = 12;
    std::fill_n(bytes->begin() + kDateAt, kDateLength, std::byte{0});
    return bytes;
}

inline ProfileHandle opened(const ProfileBytes &bytes)
{
    return ProfileHandle(required(cmsOpenProfileFromMem(bytes->data(), static_cast<cmsUInt32Number>(bytes->size()))));
}

inline TransformHandle transformToSRGB(const ProfileBytes &bytes, cmsUInt32Number format, cmsUInt32Number flags)
{
    const ProfileHandle profile = opened(bytes);
    const ProfileHandle screen(required(cmsCreate_sRGBProfile()));
    return TransformHandle(
        required(cmsCreateTransform(profile.get(), format, screen.get(), format, INTENT_PERCEPTUAL, flags)));
}

inline ProfileBytes sRGBProfile(double version = 4.3)
{
    ProfileHandle profile(required(cmsCreate_sRGBProfile()));
    cmsSetProfileVersion(profile.get(), version);
    return bytesOf(profile.release());
}

/// @p gamma 0: sRGB's curve.
inline ProfileBytes rgbProfile(const cmsCIExyYTRIPLE &primaries, double gamma)
{
    const cmsCIExyY white{0.3127, 0.3290, 1.0};
    const double sRGB[5] = {2.4, 1 / 1.055, 0.055 / 1.055, 1 / 12.92, 0.04045};
    const CurveHandle curve(
        required(gamma > 0 ? cmsBuildGamma(nullptr, gamma) : cmsBuildParametricToneCurve(nullptr, 4, sRGB)));
    cmsToneCurve *const curves[3] = {curve.get(), curve.get(), curve.get()};
    return bytesOf(cmsCreateRGBProfile(&white, &primaries, curves));
}

inline constexpr cmsCIExyYTRIPLE kP3{{0.680, 0.320, 1}, {0.265, 0.690, 1}, {0.150, 0.060, 1}};
inline constexpr cmsCIExyYTRIPLE kBT709{{0.640, 0.330, 1}, {0.300, 0.600, 1}, {0.150, 0.060, 1}};

/// What telephones write.
inline ProfileBytes displayP3Profile()
{
    return rgbProfile(kP3, 0);
}

inline ProfileBytes greyProfile(double gamma)
{
    const CurveHandle curve(required(cmsBuildGamma(nullptr, gamma)));
    return bytesOf(cmsCreateGrayProfile(cmsD50_xyY(), curve.get()));
}

/// Measured points that no curves and matrix stand for: the colours of @p base, their hue turned by so many degrees and
/// their chroma changed by @p saturation.
inline ProfileBytes bentProfile(const ProfileBytes &base, double hue, double saturation)
{
    const ProfileHandle straight = opened(base);
    const ProfileHandle bend(required(cmsCreateBCHSWabstractProfile(17, 0, 1, hue, saturation, 0, 0)));
    cmsHPROFILE chain[] = {straight.get(), bend.get()};
    const TransformHandle transform(
        required(cmsCreateMultiprofileTransform(chain, 2, TYPE_RGB_16, TYPE_Lab_16, INTENT_PERCEPTUAL, 0)));
    ProfileHandle bent(required(cmsTransform2DeviceLink(transform.get(), 4.3, 0)));
    cmsSetDeviceClass(bent.get(), cmsSigInputClass);
    return bytesOf(bent.release());
}

/// Points behind curves, as scanners' profiles have them: each channel raised to @p gamma and taken for sRGB's, the
/// colours the paler the richer they are.
inline ProfileBytes curvedBentProfile(double gamma)
{
    const auto measure = [](const cmsUInt16Number *in, cmsUInt16Number *out, void *toLab) -> cmsInt32Number {
        cmsCIELab colour;
        cmsDoTransform(toLab, in, &colour, 1);
        const double paler = 1 - std::hypot(colour.a, colour.b) / 400;
        colour.a *= paler;
        colour.b *= paler;
        cmsFloat2LabEncodedV2(out, &colour);
        return 1;
    };
    ProfileHandle profile(required(cmsCreate_sRGBProfile()));
    const ProfileHandle lab(required(cmsCreateLab2Profile(nullptr)));
    const TransformHandle toLab(required(cmsCreateTransform(profile.get(), TYPE_RGB_16, lab.get(), TYPE_Lab_DBL,
                                                            INTENT_PERCEPTUAL, cmsFLAGS_NOOPTIMIZE)));
    const CurveHandle curve(required(cmsBuildGamma(nullptr, gamma)));
    cmsToneCurve *const curves[3] = {curve.get(), curve.get(), curve.get()};
    const std::unique_ptr<cmsPipeline, FreeWith<cmsPipelineFree>> pipeline(required(cmsPipelineAlloc(nullptr, 3, 3)));
    cmsStage *const points = cmsStageAllocCLut16bit(nullptr, 17, 3, 3, nullptr);
    required(cmsPipelineInsertStage(pipeline.get(), cmsAT_END, points));
    required(cmsStageSampleCLut16bit(points, measure, toLab.get(), 0));
    required(cmsPipelineInsertStage(pipeline.get(), cmsAT_BEGIN, cmsStageAllocToneCurves(nullptr, 3, curves)));
    cmsSetProfileVersion(profile.get(), 2.4);
    cmsSetPCS(profile.get(), cmsSigLabData);
    required(cmsWriteTag(profile.get(), cmsSigAToB0Tag, pipeline.get()));
    return bytesOf(profile.release());
}

} // namespace tallowmere
