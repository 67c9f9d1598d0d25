// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "viewer/rules/StoredResolution.h"

#include "imaging/codecs/Decode.h"
#include "support/RegularFile.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <vector>

namespace tallowmere {

namespace {

constexpr std::size_t kFirstRead = std::size_t{64} << 10;
constexpr std::size_t kMostRead = std::size_t{256} << 20;
constexpr std::size_t kGrowth = 16; ///< 64 KiB, 1 MiB, 16 MiB, 256 MiB

/// Reads on until @p bytes has @p wanted. False: the file ended before, or could not be read.
bool readUpTo(int descriptor, std::size_t wanted, std::vector<std::byte> &bytes)
{
    std::size_t have = bytes.size();
    bytes.resize(wanted);
    while (have < wanted) {
        const ssize_t got = ::read(descriptor, bytes.data() + have, wanted - have);
        if (got < 0 && errno == EINTR)
            continue;
        if (got <= 0)
            break;
        have += static_cast<std::size_t>(got);
    }
    bytes.resize(have);
    return have == wanted;
}

} // namespace

std::optional<PixelSize> storedResolution(const FileURL &file)
{
    const auto opened = RegularFile::open(file);
    if (!opened)
        return std::nullopt;
    const std::size_t most = std::min(opened->size, kMostRead);
    std::vector<std::byte> bytes;
    const Codec *codec = nullptr;
    for (std::size_t wanted = std::min(kFirstRead, most); wanted > bytes.size();
         wanted = std::min(wanted * kGrowth, most)) {
        const bool mayGoOn = readUpTo(opened->descriptor.number(), wanted, bytes);
        if (!codec)
            codec = codecFor(bytes);
        if (!codec)
            return std::nullopt;
        if (const auto size = codec->storedSize(bytes))
            return size->empty() ? std::nullopt : size;
        if (!mayGoOn)
            break;
    }
    return std::nullopt;
}

} // namespace tallowmere
