// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "imaging/codecs/Decode.h"

#include "imaging/codecs/containers/LateCodec.h"
#include "imaging/codecs/ImageAssembler.h"
#include "imaging/codecs/JpegCodec.h"
#include "imaging/codecs/PngCodec.h"
#include "imaging/codecs/WebpCodec.h"

#include <array>
#include <exception>
#include <new>
#include <utility>

namespace tallowmere {

namespace {

DecodeResult decodeWith(const Codec &codec, std::span<const std::byte> file, const DecodeLimits &limits)
{
    ImageAssembler assembler(limits);
    if (const auto failure = codec.decode(file, limits, assembler))
        return *failure;
    auto image = assembler.take();
    if (!image)
        return DecodeFailure::corrupt;
    return std::move(*image);
}

using HeaderReading = std::optional<PixelSize> (Codec::*)(std::span<const std::byte>) const;

std::optional<PixelSize> sizeFromHeader(std::span<const std::byte> file, HeaderReading reading)
{
    const Codec *codec = codecFor(file);
    if (!codec)
        return std::nullopt;
    try {
        return (codec->*reading)(file);
    } catch (const std::exception &) {
        return std::nullopt;
    }
}

} // namespace

std::span<const Codec *const> codecs()
{
    static const JpegCodec jpeg;
    static const PngCodec png;
    static const WebpCodec webp;
    static const LateCodec avif(MediaFamily::avif);
    static const LateCodec heif(MediaFamily::heif); // after AVIF: both share one container
    static const std::array<const Codec *, 5> order{&jpeg, &png, &webp, &avif, &heif};
    return order;
}

const Codec *codecFor(std::span<const std::byte> file)
{
    for (const Codec *codec : codecs()) {
        if (codec->recognises(file))
            return codec;
    }
    return nullptr;
}

DecodeResult decodeImage(std::span<const std::byte> file, const DecodeLimits &limits)
{
    const Codec *codec = codecFor(file);
    if (!codec)
        return DecodeFailure::unrecognised;
    // Exceptions end here: containers and threads throw when there is no room, and callers know results only.
    try {
        return decodeWith(*codec, file, limits);
    } catch (const std::exception &) {
        return DecodeFailure::outOfMemory;
    }
}

std::optional<PixelSize> sizeOfScalable(std::span<const std::byte> file)
{
    return sizeFromHeader(file, &Codec::sizeOfScalable);
}

std::optional<PixelSize> storedSize(std::span<const std::byte> file)
{
    return sizeFromHeader(file, &Codec::storedSize);
}

} // namespace tallowmere
