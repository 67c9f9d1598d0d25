// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "viewer/rules/StoredResolution.h"

#include "imaging/codecs/Decode.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <vector>

namespace tallowmere {

namespace {

constexpr std::size_t kFirstRead = std::size_t{64} << 10;
constexpr std::size_t kMostRead = std::size_t{256} << 20;
constexpr std::size_t kGrowth = 16; ///< 64 KiB, 1 MiB, 16 MiB, 256 MiB

class Descriptor final
{
public:
    // Without O_NONBLOCK, opening a FIFO would wait for somebody to write to it.
    explicit Descriptor(const FileURL &file)
        : m_number(::open(file.path().constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY))
    {}
    ~Descriptor()
    {
        if (m_number >= 0)
            ::close(m_number);
    }
    Descriptor(const Descriptor &) = delete;
    Descriptor &operator=(const Descriptor &) = delete;
    [[nodiscard]] int number() const { return m_number; }

private:
    const int m_number;
};

/// 0 for everything but a regular file.
std::size_t regularFileSize(int descriptor)
{
    struct stat status = {};
    if (descriptor < 0 || ::fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode))
        return 0;
    return static_cast<std::size_t>(status.st_size);
}

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
    const Descriptor descriptor(file);
    const std::size_t most = std::min(regularFileSize(descriptor.number()), kMostRead);
    std::vector<std::byte> bytes;
    const Codec *codec = nullptr;
    for (std::size_t wanted = std::min(kFirstRead, most); wanted > bytes.size();
         wanted = std::min(wanted * kGrowth, most)) {
        const bool mayGoOn = readUpTo(descriptor.number(), wanted, bytes);
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
