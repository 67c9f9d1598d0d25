// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "imaging/pixels/PixelSize.h"

#include <cstddef>
#include <span>

namespace tallowmere {

/// A bitmap of four bytes a pixel, straight from the kernel, so that freeing it gives the memory back at once.
///
/// Pages are zero until written. Rows follow one another without padding. Movable, not copyable. Threads: the
/// owner's business.
class PixelBuffer final
{
public:
    static constexpr std::size_t kBytesPerPixel = 4;

    PixelBuffer() = default;
    /// Null (see isNull()) when @p size is empty or the kernel has no room.
    [[nodiscard]] static PixelBuffer allocate(PixelSize size);
    ~PixelBuffer();
    PixelBuffer(PixelBuffer &&other) noexcept;
    PixelBuffer &operator=(PixelBuffer &&other) noexcept;
    PixelBuffer(const PixelBuffer &) = delete;
    PixelBuffer &operator=(const PixelBuffer &) = delete;

    [[nodiscard]] bool isNull() const { return m_data == nullptr; }
    [[nodiscard]] PixelSize size() const { return m_size; }
    [[nodiscard]] std::size_t rowBytes() const { return std::size_t{m_size.width} * kBytesPerPixel; }
    [[nodiscard]] std::size_t bytes() const { return rowBytes() * m_size.height; }
    [[nodiscard]] std::byte *row(std::uint32_t y) { return m_data + rowBytes() * y; }
    [[nodiscard]] const std::byte *row(std::uint32_t y) const { return m_data + rowBytes() * y; }

private:
    std::byte *m_data = nullptr;
    PixelSize m_size;
};

} // namespace tallowmere
