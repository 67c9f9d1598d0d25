// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "imaging/codecs/Codec.h"
#include "imaging/pixels/DecodedImage.h"

#include <memory>
#include <optional>

namespace tallowmere {

/// Builds the finished picture from the rows a codec delivers: upright, premultiplied, shrunk to the limit.
///
/// Used by one decode, in its thread; the shrinking may run on a second one beside the codec.
class ImageAssembler final : public RowSink
{
public:
    /// @p limits outlives the assembler.
    explicit ImageAssembler(const DecodeLimits &limits);
    ~ImageAssembler() override;

    [[nodiscard]] bool begin(const RowLayout &layout) override;
    [[nodiscard]] std::byte *nextRow() override;
    [[nodiscard]] bool rowDone() override;
    [[nodiscard]] std::byte *allRows() override;
    [[nodiscard]] DecodeFailure failure() const override;

    /// The picture, once the codec has returned; rows that never came are left blank. Nothing when no row came.
    [[nodiscard]] std::optional<DecodedImage> take();

private:
    struct State;
    std::unique_ptr<State> m_state;
};

} // namespace tallowmere
