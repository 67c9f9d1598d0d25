// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT

// One codec alone, which the build names, into a sink that holds it to its contract.
#include "fuzz/Limits.h"
#include TALLOWMERE_CODEC_HEADER

#include <cstdio>
#include <cstdlib>
#include <vector>

namespace tallowmere {

namespace {

void demand(bool holds, const char *what)
{
    if (holds)
        return;
    std::fprintf(stderr, "broken contract: %s\n", what);
    std::abort();
}

class StrictSink final : public RowSink
{
public:
    [[nodiscard]] bool begin(const RowLayout &layout) override
    {
        demand(!m_begun, "begin() comes once");
        demand(!layout.rows.empty() && !layout.storedSize.empty(), "sizes are not empty");
        m_begun = true;
        m_layout = layout;
        m_row.resize(std::size_t{layout.rows.width} * 4);
        return true;
    }
    [[nodiscard]] std::byte *nextRow() override
    {
        demand(m_begun && m_rows < m_layout.rows.height, "rows come after begin() and no more than announced");
        return m_row.data();
    }
    [[nodiscard]] bool rowDone() override
    {
        for (std::size_t i = 3; !m_layout.hasAlpha && i < m_row.size(); i += 4)
            demand(m_row[i] == std::byte{0xFF}, "without alpha all is opaque");
        ++m_rows;
        return true;
    }
    [[nodiscard]] DecodeFailure failure() const override { return DecodeFailure::corrupt; }
    [[nodiscard]] std::uint32_t rows() const { return m_rows; }

private:
    RowLayout m_layout;
    std::vector<std::byte> m_row; // exactly as long as it has to be, so that the sanitizer sees a byte too many
    std::uint32_t m_rows = 0;
    bool m_begun = false;
};

} // namespace

} // namespace tallowmere

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    using namespace tallowmere;
    static const TALLOWMERE_CODEC codec;
    const auto file = std::as_bytes(std::span(data, size));
    if (!codec.recognises(file))
        return 0;
    static_cast<void>(codec.storedSize(file));
    StrictSink sink;
    const auto failure = codec.decode(file, fuzzLimits(), sink);
    demand(failure.has_value() || sink.rows() > 0, "success means at least one row");
    return 0;
}
