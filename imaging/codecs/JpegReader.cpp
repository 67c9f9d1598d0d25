// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "imaging/codecs/JpegReader.h"

#include "imaging/codecs/Exif.h"

#include <jerror.h>

#include <algorithm>
#include <cstring>
#include <string_view>

namespace tallowmere {

namespace {

constexpr int kExifMarker = JPEG_APP0 + 1;
constexpr int kIccMarker = JPEG_APP0 + 2;
constexpr std::string_view kExifName("Exif\0\0", 6);
constexpr std::string_view kIccName("ICC_PROFILE\0", 12);
constexpr std::size_t kIccHeaderBytes = kIccName.size() + 2; ///< the sequence number and the count follow the name
constexpr std::size_t kMaxIccBytes = std::size_t{4} << 20;

bool startsWith(std::span<const std::byte> data, std::string_view name)
{
    return data.size() >= name.size() && std::memcmp(data.data(), name.data(), name.size()) == 0;
}

} // namespace

/// Runs @p call, which may be left by a jump: nothing in it may need a destructor.
template <typename Call>
bool JpegReader::guarded(Call call)
{
    if (setjmp(m_jump) != 0)
        return false;
    call();
    return true;
}

JpegReader::JpegReader(std::span<const std::byte> file) : m_file(file)
{
    m_info.err = jpeg_std_error(&m_errors);
    m_info.client_data = this;
    m_errors.error_exit = &JpegReader::leave;
    m_errors.emit_message = &JpegReader::note;
}

JpegReader::~JpegReader()
{
    jpeg_destroy_decompress(&m_info);
}

bool JpegReader::readHeader()
{
    return guarded([this] {
        jpeg_create_decompress(&m_info);
        jpeg_mem_src(&m_info, reinterpret_cast<const unsigned char *>(m_file.data()), m_file.size());
        jpeg_set_marker_processor(&m_info, kExifMarker, &JpegReader::takeMarker);
        jpeg_set_marker_processor(&m_info, kIccMarker, &JpegReader::takeMarker);
        jpeg_read_header(&m_info, TRUE);
    });
}

void JpegReader::setOutput(unsigned eighths, J_COLOR_SPACE colours)
{
    m_info.scale_num = eighths;
    m_info.scale_denom = 8;
    m_info.out_color_space = colours;
}

bool JpegReader::start()
{
    return guarded([this] {
        m_info.buffered_image = jpeg_has_multiple_scans(&m_info);
        jpeg_start_decompress(&m_info);
    });
}

JpegReader::Progress JpegReader::readBlocks()
{
    int status = JPEG_SUSPENDED;
    if (!guarded([this, &status] { status = jpeg_consume_input(&m_info); }))
        return Progress::failed;
    switch (status) {
    case JPEG_REACHED_EOI:
        return Progress::all;
    case JPEG_SCAN_COMPLETED:
        return Progress::scan;
    case JPEG_SUSPENDED: // cannot be: the whole file is there
        return Progress::failed;
    default:
        return Progress::row;
    }
}

bool JpegReader::showScansRead()
{
    return guarded([this] { jpeg_start_output(&m_info, m_info.input_scan_number); });
}

bool JpegReader::readRow(std::byte *row)
{
    auto *samples = reinterpret_cast<JSAMPROW>(row);
    return guarded([this, &samples] { jpeg_read_scanlines(&m_info, &samples, 1); });
}

std::uint32_t JpegReader::rowsWithData() const
{
    if (!m_dataEnded || m_lastScan > 1) // later scans refine a picture that is there
        return m_info.output_height;
    // A first row of blocks that isn't whole is no picture, unless there is no other.
    const bool nothingWhole = m_lastBlockRow == 0 && m_info.total_iMCU_rows > 1;
    const std::uint64_t blockRows = nothingWhole ? 0 : std::uint64_t{m_lastBlockRow} + 1;
    const auto rowsPerBlockRow =
        static_cast<std::uint64_t>(m_info.max_v_samp_factor) * static_cast<std::uint64_t>(m_info.min_DCT_scaled_size);
    return static_cast<std::uint32_t>(std::min<std::uint64_t>(blockRows * rowsPerBlockRow, m_info.output_height));
}

DecodeFailure JpegReader::failure() const
{
    switch (m_errors.msg_code) {
    case JERR_OUT_OF_MEMORY:
        return DecodeFailure::outOfMemory;
    case JERR_IMAGE_TOO_BIG:
    case JERR_WIDTH_OVERFLOW:
        return DecodeFailure::tooLarge;
    case JERR_BAD_PRECISION:
    case JERR_SOF_UNSUPPORTED:
    case JERR_CONVERSION_NOTIMPL:
        return DecodeFailure::unsupported;
    default:
        return DecodeFailure::corrupt;
    }
}

Orientation JpegReader::orientation() const
{
    return orientationFromExifBlock(m_exif);
}

std::shared_ptr<const std::vector<std::byte>> JpegReader::iccProfile() const
{
    if (m_iccBroken || m_iccChunkCount == 0)
        return nullptr;
    const auto chunks = std::span(m_iccChunks).first(m_iccChunkCount);
    std::size_t bytes = 0;
    for (const auto &chunk : chunks) {
        if (chunk.empty())
            return nullptr;
        bytes += chunk.size();
    }
    if (bytes > kMaxIccBytes)
        return nullptr;
    auto profile = std::make_shared<std::vector<std::byte>>();
    profile->reserve(bytes);
    for (const auto &chunk : chunks)
        profile->insert(profile->end(), chunk.begin(), chunk.end());
    return profile;
}

void JpegReader::leave(j_common_ptr info)
{
    std::longjmp(of(info).m_jump, 1);
}

void JpegReader::note(j_common_ptr info, int level)
{
    if (level >= 0)
        return;
    JpegReader &reader = of(info);
    ++reader.m_errors.num_warnings;
    // The entropy decoder wanted more and stands at the end of the picture, be it the file's or one made up for a
    // file cut short. From here on libjpeg invents.
    if (reader.m_errors.msg_code == JWRN_HIT_MARKER && reader.m_info.unread_marker == JPEG_EOI && !reader.m_dataEnded) {
        reader.m_dataEnded = true;
        reader.m_lastBlockRow = reader.m_info.input_iMCU_row;
        reader.m_lastScan = reader.m_info.input_scan_number;
    }
}

boolean JpegReader::takeMarker(j_decompress_ptr info)
{
    // The source is the whole file in memory, so what is not in the buffer isn't anywhere.
    jpeg_source_mgr &source = *info->src;
    const auto *bytes = reinterpret_cast<const std::byte *>(source.next_input_byte);
    constexpr std::size_t kLengthBytes = 2;
    std::size_t length = source.bytes_in_buffer;
    if (length >= kLengthBytes) {
        const auto declared = std::to_integer<std::size_t>(bytes[0]) << 8 | std::to_integer<std::size_t>(bytes[1]);
        length = std::min(length, std::max(declared, kLengthBytes));
        of(reinterpret_cast<j_common_ptr>(info))
            .keepMarker(info->unread_marker, {bytes + kLengthBytes, length - kLengthBytes});
    }
    source.next_input_byte += length;
    source.bytes_in_buffer -= length;
    return TRUE;
}

void JpegReader::keepMarker(int marker, std::span<const std::byte> data)
{
    if (marker == kExifMarker) {
        if (m_exif.empty() && startsWith(data, kExifName))
            m_exif = data;
        return;
    }
    if (!startsWith(data, kIccName) || data.size() < kIccHeaderBytes)
        return;
    const auto number = std::to_integer<std::size_t>(data[kIccName.size()]);
    const auto count = std::to_integer<std::size_t>(data[kIccName.size() + 1]);
    const bool countDiffers = m_iccChunkCount != 0 && m_iccChunkCount != count;
    if (number == 0 || number > count || countDiffers || !m_iccChunks[number - 1].empty()) {
        m_iccBroken = true;
        return;
    }
    m_iccChunkCount = count;
    m_iccChunks[number - 1] = data.subspan(kIccHeaderBytes);
}

} // namespace tallowmere
