// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "CorpusTable.h"
#include "imaging/codecs/Decode.h"
#include "Measuring.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <fstream>
#include <iostream>
#include <stdexcept>

namespace tallowmere {

namespace {

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
// Instrumented code is slower, and the instruments' own memory can't be told from ours.
constexpr std::chrono::seconds kMostProcessorTime{60};
constexpr bool kJudgeMemory = false;
#else
constexpr std::chrono::seconds kMostProcessorTime{5};
constexpr bool kJudgeMemory = true;
#endif
constexpr std::size_t kMostMemory = std::size_t{512} << 20;
constexpr double kMeanTolerance = 2.5;

constexpr auto kFolders = std::to_array<const char *>({"alpha", "animated", "avif", "bombs", "cmyk", "corrupt", "heif",
                                                       "icc", "large", "misnamed", "orientation", "png-suite",
                                                       "progressive", "sixteen-bit", "subsampling", "webp"});

std::vector<std::byte> contents(const std::filesystem::path &path)
{
    std::ifstream file(path, std::ios::binary);
    std::vector<std::byte> bytes(std::filesystem::file_size(path));
    file.read(reinterpret_cast<char *>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    if (!file)
        throw std::runtime_error("cannot read " + path.string());
    return bytes;
}

void expectSize(PixelSize found, PixelSize expected, std::uint32_t limit)
{
    EXPECT_EQ(found.longerSide(), expected.longerSide());
    const auto apart = [](std::uint32_t a, std::uint32_t b) { return a > b ? a - b : b - a; };
    // The table's rounding of the shorter side of a picture that was shrunk may be another.
    const std::uint32_t tolerance = expected.longerSide() == limit ? 1 : 0;
    EXPECT_LE(apart(found.width, expected.width), tolerance) << found.width << " x " << found.height;
    EXPECT_LE(apart(found.height, expected.height), tolerance) << found.width << " x " << found.height;
}

void expectMean(std::span<const std::byte> file, const DecodeLimits &limits, const std::array<double, 4> &expected)
{
    MeasuringSink sink;
    const auto failure = codecFor(file)->decode(file, limits, sink);
    ASSERT_FALSE(failure.has_value());
    ASSERT_GT(sink.rows(), 0U);
    const auto mean = sink.mean();
    for (std::size_t i = 0; i < mean.size(); ++i)
        EXPECT_NEAR(mean[i], expected[i], kMeanTolerance) << "channel "
                                                          << "RGBA"[i];
}

void check(const CorpusRow &row, const std::filesystem::path &corpus)
{
    SCOPED_TRACE(row.path);
    const auto file = contents(corpus / row.path);
    const DecodeLimits limits;
    const Cost cost;
    const DecodeResult result = decodeImage(file, limits);
    EXPECT_LE(cost.processorTime(), kMostProcessorTime);
    if (const auto peak = cost.peakMemory(); kJudgeMemory && peak) {
        EXPECT_LE(*peak, kMostMemory);
    }

    const auto *image = std::get_if<DecodedImage>(&result);
    if (!image) {
        EXPECT_NE(row.outcome, CorpusOutcome::ok) << "failure " << static_cast<int>(std::get<DecodeFailure>(result));
        return;
    }
    EXPECT_NE(row.outcome, CorpusOutcome::fail) << "but it was shown";
    if (row.displayed)
        expectSize(image->pixels.size(), *row.displayed, limits.maxSide);
    if (row.alpha) {
        EXPECT_EQ(image->hasAlpha, *row.alpha);
    }
    if (row.mean)
        expectMean(file, limits, *row.mean);
}

class Corpus : public testing::TestWithParam<const char *>
{
protected:
    void SetUp() override
    {
        if (corpusFolder().empty())
            GTEST_SKIP() << "TALLOWMERE_CORPUS is not set: no row of its table was checked";
    }
};

TEST_P(Corpus, isShownAsExpected)
{
    const auto corpus = corpusFolder();
    std::size_t checked = 0;
    for (const CorpusRow &row : readCorpusTable(corpus)) {
        if (row.folder() != GetParam())
            continue;
        check(row, corpus);
        ++checked;
    }
    EXPECT_GT(checked, 0U);
    std::cout << checked << " rows checked" << std::endl;
}

INSTANTIATE_TEST_SUITE_P(Folder, Corpus, testing::ValuesIn(kFolders), [](const auto &folder) {
    std::string name = folder.param;
    std::replace(name.begin(), name.end(), '-', '_');
    return name;
});

TEST(CorpusTable, hasNoRowOutsideTheFoldersChecked)
{
    if (corpusFolder().empty())
        GTEST_SKIP() << "TALLOWMERE_CORPUS is not set: no row of its table was checked";
    for (const CorpusRow &row : readCorpusTable(corpusFolder())) {
        EXPECT_NE(std::find(kFolders.begin(), kFolders.end(), row.folder()), kFolders.end()) << row.path;
    }
}

} // namespace

} // namespace tallowmere
