// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "imaging/codecs/containers/LateCodec.h"

#include "imaging/codecs/containers/MediaBudget.h"

namespace tallowmere {

bool LateCodec::recognises(std::span<const std::byte> head) const
{
    return mediaFamily(head) == m_family;
}

std::optional<PixelSize> LateCodec::storedSize(std::span<const std::byte> file) const
{
    if (const auto size = storedSizeOfPrimary(file))
        return size;
    // A sequence without items is measured by the library.
    const Codec *codec = hasTracks(file) ? m_module.codec(m_family) : nullptr;
    return codec ? codec->storedSize(file) : std::nullopt;
}

std::optional<DecodeFailure> LateCodec::decode(std::span<const std::byte> file, const DecodeLimits &limits,
                                               RowSink &sink) const
{
    const Codec *codec = m_module.codec(m_family);
    return codec ? codec->decode(file, limits, sink) : DecodeFailure::unsupported;
}

} // namespace tallowmere
