// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "Measuring.h"

#include <malloc.h>

#include <ctime>
#include <fstream>
#include <string>

namespace tallowmere {

namespace {

double processorSeconds()
{
    timespec now{};
    ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

std::optional<std::size_t> statusBytes(const std::string &name)
{
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);) {
        if (line.starts_with(name + ":"))
            return std::stoull(line.substr(name.size() + 1)) * 1024;
    }
    return std::nullopt;
}

/// Brings the kernel's high-water mark down to what is resident now.
bool resetPeak()
{
    std::ofstream clear("/proc/self/clear_refs");
    clear << "5" << std::flush;
    return clear.good();
}

} // namespace

bool MeasuringSink::begin(const RowLayout &layout)
{
    m_row.resize(std::size_t{layout.rows.width} * 4);
    return true;
}

bool MeasuringSink::rowDone()
{
    for (std::size_t i = 0; i < m_row.size(); ++i)
        m_sums[i % 4] += std::to_integer<std::uint64_t>(m_row[i]);
    ++m_rows;
    return true;
}

std::array<double, 4> MeasuringSink::mean() const
{
    const double pixels = static_cast<double>(m_rows) * static_cast<double>(m_row.size() / 4);
    const auto of = [&](std::size_t channel) { return static_cast<double>(m_sums[channel]) / pixels; };
    return {of(2), of(1), of(0), of(3)};
}

Cost::Cost() : m_startSeconds(processorSeconds())
{
    ::malloc_trim(0); // or room left by the one before would hide what this one takes
    if (resetPeak())
        m_startBytes = statusBytes("VmRSS");
}

std::chrono::duration<double> Cost::processorTime() const
{
    return std::chrono::duration<double>(processorSeconds() - m_startSeconds);
}

std::optional<std::size_t> Cost::peakMemory() const
{
    const auto peak = statusBytes("VmHWM");
    if (!m_startBytes || !peak)
        return std::nullopt;
    return *peak > *m_startBytes ? *peak - *m_startBytes : 0;
}

} // namespace tallowmere
