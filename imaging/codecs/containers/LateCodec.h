// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "imaging/codecs/containers/ContainerModule.h"

namespace tallowmere {

/// Stands in for a codec of the ISO container until a file needs the real one.
///
/// Files are recognised and measured without it. Where the module is missing, decoding says "unsupported".
class LateCodec final : public Codec
{
public:
    /// @p module outlives the codec.
    explicit LateCodec(MediaFamily family, const ContainerModule &module = ContainerModule::installed())
        : m_family(family), m_module(module)
    {}

    [[nodiscard]] bool recognises(std::span<const std::byte> head) const override;
    [[nodiscard]] std::optional<PixelSize> storedSize(std::span<const std::byte> file) const override;
    [[nodiscard]] std::optional<DecodeFailure> decode(std::span<const std::byte> file, const DecodeLimits &limits,
                                                      RowSink &sink) const override;

private:
    MediaFamily m_family;
    const ContainerModule &m_module;
};

} // namespace tallowmere
