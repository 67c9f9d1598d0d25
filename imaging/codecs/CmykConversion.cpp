// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "imaging/codecs/CmykConversion.h"

#include <lcms2.h>

#include <cstring>

namespace tallowmere {

namespace {

struct CloseProfile
{
    void operator()(void *profile) const { cmsCloseProfile(profile); }
};
struct DeleteTransform
{
    void operator()(void *transform) const { cmsDeleteTransform(transform); }
};
using Profile = std::unique_ptr<void, CloseProfile>;
using Transform = std::unique_ptr<void, DeleteTransform>;

Transform makeTransform(std::span<const std::byte> icc, CmykConversion::Samples samples)
{
    if (icc.empty())
        return nullptr;
    const Profile ink(cmsOpenProfileFromMem(icc.data(), static_cast<cmsUInt32Number>(icc.size())));
    if (!ink || cmsGetColorSpace(ink.get()) != cmsSigCmykData)
        return nullptr;
    const Profile light(cmsCreate_sRGBProfile());
    if (!light)
        return nullptr;
    const cmsUInt32Number format = samples == CmykConversion::Samples::inverted ? TYPE_CMYK_8_REV : TYPE_CMYK_8;
    return Transform(cmsCreateTransform(ink.get(), format, light.get(), TYPE_BGRA_8, INTENT_RELATIVE_COLORIMETRIC,
                                        cmsFLAGS_BLACKPOINTCOMPENSATION));
}

std::byte lightThrough(unsigned paper, unsigned blackPaper)
{
    return static_cast<std::byte>((paper * blackPaper + 127) / 255);
}

} // namespace

struct CmykConversion::Link
{
    Transform transform;
};

CmykConversion::CmykConversion(std::span<const std::byte> icc, Samples samples) : m_samples(samples)
{
    if (auto transform = makeTransform(icc, samples))
        m_link = std::make_unique<Link>(Link{std::move(transform)});
}

CmykConversion::~CmykConversion() = default;

void CmykConversion::convertRow(const std::uint8_t *cmyk, std::byte *bgra, std::uint32_t pixels) const
{
    if (m_link) {
        std::memset(bgra, 0xFF, std::size_t{pixels} * 4); // the link leaves alpha as it finds it
        cmsDoTransform(m_link->transform.get(), cmyk, bgra, pixels);
        return;
    }
    const unsigned flip = m_samples == Samples::inverted ? 0 : 255;
    for (std::uint32_t x = 0; x < pixels; ++x, cmyk += 4, bgra += 4) {
        const unsigned black = cmyk[3] ^ flip;
        bgra[0] = lightThrough(cmyk[2] ^ flip, black);
        bgra[1] = lightThrough(cmyk[1] ^ flip, black);
        bgra[2] = lightThrough(cmyk[0] ^ flip, black);
        bgra[3] = std::byte{0xFF};
    }
}

} // namespace tallowmere
