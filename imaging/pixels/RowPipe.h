// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace tallowmere {

/// Hands rows from the thread that makes them to a thread of its own that uses them, a batch at a time.
///
/// The maker waits when it is three batches ahead. Where no thread can be had, rows are used at once, in the maker's.
class RowPipe final
{
public:
    /// @p use takes each row in order; it may change the row's bytes, and must not throw. Throws std::bad_alloc.
    RowPipe(std::size_t rowBytes, std::function<void(std::byte *row)> use);
    /// Rows not yet handed over are dropped.
    ~RowPipe();
    RowPipe(const RowPipe &) = delete;
    RowPipe &operator=(const RowPipe &) = delete;

    /// What a pipe for such rows allocates.
    [[nodiscard]] static std::uint64_t workingBytes(std::size_t rowBytes);

    /// Where the next row is to be written.
    [[nodiscard]] std::byte *nextRow();
    void rowDone();
    /// Returns when all rows have been used; none may follow. What @p use did is visible to the caller.
    void finish();

private:
    static constexpr std::size_t kBatches = 4;

    static std::size_t rowsPerBatch(std::size_t rowBytes);
    std::byte *batch(std::size_t index) { return m_rows.data() + index % kBatches * m_batchRows * m_rowBytes; }
    void handOver();
    void run();

    const std::size_t m_rowBytes;
    const std::size_t m_batchRows;
    const std::function<void(std::byte *)> m_use;
    std::vector<std::byte> m_rows;
    std::size_t m_filled = 0; ///< rows of the maker's batch

    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::size_t m_made = 0; ///< batches handed over
    std::size_t m_used = 0; ///< batches done with
    std::array<std::size_t, kBatches> m_counts{};
    bool m_ended = false;
    bool m_dropped = false;
    std::thread m_thread;
};

} // namespace tallowmere
