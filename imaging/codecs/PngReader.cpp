// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "imaging/codecs/PngReader.h"

#include <algorithm>
#include <csetjmp>
#include <cstring>

namespace tallowmere {

namespace {

constexpr std::size_t kMaxIccBytes = std::size_t{4} << 20;

void leave(png_structp png, png_const_charp)
{
    png_longjmp(png, 1);
}

void ignoreWarning(png_structp, png_const_charp) {}

} // namespace

/// Runs @p call, which may be left by a jump: nothing in it may need a destructor.
template <typename Call>
bool PngReader::guarded(Call call)
{
    if (setjmp(png_jmpbuf(m_png)) != 0)
        return false;
    call();
    return true;
}

PngReader::PngReader(std::span<const std::byte> file, const PngSummary &summary)
    : m_png(png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, &leave, &ignoreWarning)),
      m_chunks(file), m_pieces{file.first(kPngSignatureBytes)}, m_paletted(summary.paletted)
{
    if (m_png)
        m_info = png_create_info_struct(m_png);
}

PngReader::~PngReader()
{
    png_destroy_read_struct(&m_png, &m_info, nullptr);
}

bool PngReader::readHeader()
{
    if (!m_png || !m_info)
        return false;
    return guarded([this] {
        png_set_read_fn(m_png, this, [](png_structp png, png_bytep out, std::size_t count) {
            auto *reader = static_cast<PngReader *>(png_get_io_ptr(png));
            if (!reader->feed(reinterpret_cast<std::byte *>(out), count))
                png_error(png, "end of file");
        });
        // A picture with a wrong sum is more to its owner than none. It saves computing them, too.
        png_set_crc_action(m_png, PNG_CRC_QUIET_USE, PNG_CRC_DEFAULT);
        png_set_option(m_png, PNG_IGNORE_ADLER32, PNG_OPTION_ON);
        png_set_option(m_png, PNG_SKIP_sRGB_CHECK_PROFILE, PNG_OPTION_ON);
        png_set_benign_errors(m_png, 1);
        png_set_user_limits(m_png, PNG_UINT_31_MAX, PNG_UINT_31_MAX);
        png_set_chunk_malloc_max(m_png, kMaxIccBytes);
        png_read_info(m_png, m_info);
        if (m_paletted)
            keepPalette();
        prepareTransformations();
    });
}

void PngReader::prepareTransformations()
{
    const int colourType = png_get_color_type(m_png, m_info);
    m_hasAlpha = (colourType & PNG_COLOR_MASK_ALPHA) != 0 || png_get_valid(m_png, m_info, PNG_INFO_tRNS) != 0;
    png_set_expand(m_png);
    png_set_scale_16(m_png);
    if ((colourType & PNG_COLOR_MASK_COLOR) == 0)
        png_set_gray_to_rgb(m_png);
    png_set_bgr(m_png);
    if (!m_hasAlpha)
        png_set_filler(m_png, 0xFF, PNG_FILLER_AFTER);
    png_set_interlace_handling(m_png);
    png_read_update_info(m_png, m_info);
    if (png_get_rowbytes(m_png, m_info) != std::size_t{png_get_image_width(m_png, m_info)} * 4)
        png_error(m_png, "rows of an unexpected length");
}

bool PngReader::readRow(std::byte *row)
{
    return guarded([this, row] { png_read_row(m_png, reinterpret_cast<png_bytep>(row), nullptr); });
}

bool PngReader::refineRow(std::byte *row)
{
    return guarded([this, row] { png_read_row(m_png, nullptr, reinterpret_cast<png_bytep>(row)); });
}

ColourDescription PngReader::colour() const
{
    ColourDescription colour;
    png_charp name = nullptr;
    int method = 0;
    png_bytep profile = nullptr;
    png_uint_32 profileBytes = 0;
    if (png_get_iCCP(m_png, m_info, &name, &method, &profile, &profileBytes) == PNG_INFO_iCCP) {
        const auto *bytes = reinterpret_cast<const std::byte *>(profile);
        colour.icc = std::make_shared<const std::vector<std::byte>>(bytes, bytes + profileBytes);
        return colour;
    }
    if (png_get_valid(m_png, m_info, PNG_INFO_sRGB) != 0)
        return colour; // which is what no description means
    GammaAndPrimaries description;
    if (png_get_gAMA(m_png, m_info, &description.gamma) != PNG_INFO_gAMA)
        return colour;
    std::array<double, 8> xy{};
    if (png_get_cHRM(m_png, m_info, &xy[0], &xy[1], &xy[2], &xy[3], &xy[4], &xy[5], &xy[6], &xy[7]) == PNG_INFO_cHRM)
        description.xy = xy;
    colour.gamma = description;
    return colour;
}

void PngReader::keepPalette()
{
    m_palette.fill({std::byte{0}, std::byte{0}, std::byte{0}, std::byte{0xFF}});
    png_colorp colours = nullptr;
    int count = 0;
    if (png_get_PLTE(m_png, m_info, &colours, &count) != PNG_INFO_PLTE)
        return;
    for (int i = 0; i < count; ++i)
        m_palette[static_cast<std::size_t>(i)] = {std::byte{colours[i].blue}, std::byte{colours[i].green},
                                                  std::byte{colours[i].red}, std::byte{0xFF}};
    png_bytep alphas = nullptr;
    int alphaCount = 0;
    if (png_get_tRNS(m_png, m_info, &alphas, &alphaCount, nullptr) == PNG_INFO_tRNS && alphas) {
        for (int i = 0; i < alphaCount; ++i)
            m_palette[static_cast<std::size_t>(i)][3] = std::byte{alphas[i]};
    }
}

bool PngReader::isWanted(const PngChunk &chunk) const
{
    switch (chunk.type) {
    case PngChunk::typeOf("PLTE"): // elsewhere a mere suggestion, and one that libpng lets spoil tRNS
        return m_paletted;
    case PngChunk::typeOf("IHDR"):
    case PngChunk::typeOf("tRNS"):
    case PngChunk::typeOf("gAMA"):
    case PngChunk::typeOf("cHRM"):
    case PngChunk::typeOf("sRGB"):
    case PngChunk::typeOf("IDAT"):
    case PngChunk::typeOf("IEND"):
        return true;
    case PngChunk::typeOf("iCCP"):
        return chunk.data.size() < kMaxIccBytes;
    default:
        return false;
    }
}

bool PngReader::feed(std::byte *out, std::size_t count)
{
    while (count > 0) {
        const auto piece = std::find_if(m_pieces.begin(), m_pieces.end(), [](auto rest) { return !rest.empty(); });
        if (piece == m_pieces.end()) {
            const auto chunk = m_chunks.next();
            if (!chunk)
                return false;
            if (isWanted(*chunk))
                serve(*chunk);
            continue;
        }
        const std::size_t part = std::min(count, piece->size());
        std::memcpy(out, piece->data(), part);
        *piece = piece->subspan(part);
        out += part;
        count -= part;
    }
    return true;
}

void PngReader::serve(const PngChunk &chunk)
{
    // libpng reads chunks by large pieces and gives up where one isn't whole, with all that is in it. So a chunk that
    // the file's end cut short is passed off as one of that length.
    static constexpr std::array<std::byte, 4> kNoChecksum{};
    const auto put = [this](std::size_t offset, std::uint64_t number) {
        for (std::size_t i = 0; i < 4; ++i)
            m_chunkHeader[offset + i] = static_cast<std::byte>(number >> (24 - 8 * i));
    };
    put(0, chunk.data.size());
    put(4, chunk.type);
    const bool whole = chunk.checksum.size() == kNoChecksum.size();
    m_pieces = {m_chunkHeader, chunk.data, whole ? chunk.checksum : kNoChecksum};
}

} // namespace tallowmere
