// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "imaging/pixels/RowPipe.h"

#include <algorithm>
#include <system_error>

namespace tallowmere {
namespace {

/// Large enough that waking the other thread costs nothing beside the work, small enough for the second-level cache.
constexpr std::size_t kBatchBytes = std::size_t{256} << 10;

} // namespace

std::size_t RowPipe::rowsPerBatch(std::size_t rowBytes)
{
    return std::max<std::size_t>(kBatchBytes / std::max<std::size_t>(rowBytes, 1), 1);
}

std::uint64_t RowPipe::workingBytes(std::size_t rowBytes)
{
    return kBatches * rowsPerBatch(rowBytes) * rowBytes;
}

RowPipe::RowPipe(std::size_t rowBytes, std::function<void(std::byte *)> use)
    : m_rowBytes(rowBytes), m_batchRows(rowsPerBatch(rowBytes)), m_use(std::move(use)),
      m_rows(kBatches * m_batchRows * m_rowBytes)
{
    try {
        m_thread = std::thread([this] { run(); });
    } catch (const std::system_error &) {
        // The process is out of threads: the work is done where the rows are made.
    }
}

RowPipe::~RowPipe()
{
    if (!m_thread.joinable())
        return;
    {
        const std::lock_guard lock(m_mutex);
        m_dropped = true;
    }
    m_changed.notify_all();
    m_thread.join();
}

std::byte *RowPipe::nextRow()
{
    return batch(m_made) + m_filled * m_rowBytes;
}

void RowPipe::rowDone()
{
    if (!m_thread.joinable())
        return m_use(nextRow());
    if (++m_filled == m_batchRows)
        handOver();
}

void RowPipe::handOver()
{
    std::unique_lock lock(m_mutex);
    m_counts[m_made % kBatches] = m_filled;
    ++m_made;
    m_filled = 0;
    m_changed.notify_all();
    m_changed.wait(lock, [&] { return m_made - m_used < kBatches; });
}

void RowPipe::finish()
{
    if (!m_thread.joinable())
        return;
    if (m_filled > 0)
        handOver();
    {
        const std::lock_guard lock(m_mutex);
        m_ended = true;
    }
    m_changed.notify_all();
    m_thread.join();
}

void RowPipe::run()
{
    std::unique_lock lock(m_mutex);
    for (;;) {
        m_changed.wait(lock, [&] { return m_dropped || m_ended || m_used < m_made; });
        if (m_dropped || m_used == m_made)
            return;
        std::byte *row = batch(m_used);
        const std::size_t count = m_counts[m_used % kBatches];
        lock.unlock();
        for (std::size_t i = 0; i < count; ++i, row += m_rowBytes)
            m_use(row);
        lock.lock();
        ++m_used;
        m_changed.notify_all();
    }
}

} // namespace tallowmere
