// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "imaging/codecs/Codec.h"

#include <jpeglib.h>

#include <array>
#include <csetjmp>
#include <cstdio> // jpeglib.h needs it first
#include <memory>
#include <vector>

namespace tallowmere {

/// libjpeg behind a wall: its jumps out of errors never leave a member function.
///
/// Every member that returns bool says false once libjpeg has given up; failure() tells why. One thread.
class JpegReader final
{
public:
    /// @p file outlives the reader.
    explicit JpegReader(std::span<const std::byte> file);
    ~JpegReader();
    JpegReader(const JpegReader &) = delete;
    JpegReader &operator=(const JpegReader &) = delete;

    [[nodiscard]] bool readHeader();
    /// @p eighths: the scale of the output, 1 to 8.
    void setOutput(unsigned eighths, J_COLOR_SPACE colours);
    /// Makes ready to decode. A picture of several scans is to be read with readBlocks() next, then shown.
    [[nodiscard]] bool start();
    enum class Progress
    {
        row,
        scan,
        all,
        failed
    };
    /// Reads one more row of blocks of a picture of several scans.
    [[nodiscard]] Progress readBlocks();
    /// The output of a picture of several scans is made of what was read so far.
    [[nodiscard]] bool showScansRead();
    [[nodiscard]] bool readRow(std::byte *row);

    [[nodiscard]] const jpeg_decompress_struct &info() const { return m_info; }
    [[nodiscard]] PixelSize size() const { return {m_info.image_width, m_info.image_height}; }
    [[nodiscard]] bool hasSeveralScans() { return jpeg_has_multiple_scans(&m_info) != 0; }
    /// How many of the output's rows the file's data reached to; all of them in a healthy file.
    [[nodiscard]] std::uint32_t rowsWithData() const;
    [[nodiscard]] DecodeFailure failure() const;
    [[nodiscard]] Orientation orientation() const;
    /// Null when there is none or it is incomplete.
    [[nodiscard]] std::shared_ptr<const std::vector<std::byte>> iccProfile() const;

private:
    template <typename Call>
    bool guarded(Call call);
    static JpegReader &of(jpeg_common_struct *info) { return *static_cast<JpegReader *>(info->client_data); }
    static void leave(j_common_ptr info);
    static void note(j_common_ptr info, int level);
    static boolean takeMarker(j_decompress_ptr info);
    void keepMarker(int marker, std::span<const std::byte> data);

    // Markers stay where they are in the file: nothing is copied, however large they are.
    static constexpr std::size_t kMaxIccChunks = 255;

    jpeg_decompress_struct m_info = {};
    jpeg_error_mgr m_errors = {};
    std::jmp_buf m_jump = {};
    std::span<const std::byte> m_file;
    std::span<const std::byte> m_exif;
    std::array<std::span<const std::byte>, kMaxIccChunks> m_iccChunks; ///< by sequence number less one
    std::size_t m_iccChunkCount = 0;
    bool m_iccBroken = false;
    bool m_dataEnded = false;
    std::uint32_t m_lastBlockRow = 0; ///< the row of blocks being read when the data ended
    int m_lastScan = 0;               ///< and the scan; the first is 1
};

} // namespace tallowmere
