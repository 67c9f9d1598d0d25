// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT

// The whole way from bytes to a picture, as the program goes it.
#include "fuzz/Limits.h"
#include "imaging/codecs/Decode.h"

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    using namespace tallowmere;
    const auto file = std::as_bytes(std::span(data, size));
    const DecodeLimits limits = fuzzLimits();
    static_cast<void>(storedSize(file));
    const auto result = decodeImage(file, limits);
    const auto *image = std::get_if<DecodedImage>(&result);
    if (image && (image->pixels.isNull() || image->pixels.size().longerSide() > limits.maxSide))
        std::abort();
    return 0;
}
