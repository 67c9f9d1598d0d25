// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "support/FileURL.h"

#include <cstddef>
#include <list>
#include <memory>
#include <mutex>
#include <unordered_map>
#include <utility>
#include <vector>

namespace tallowmere {

/// A bounded map from file to value that forgets what was used longest ago.
///
/// Bounded by count always, by bytes only when shrinkTo() is called. Nothing is removed by hand: an
/// entry leaves by eviction alone. Threads: any. A value handed out outlives its eviction.
template <typename Value>
class MemoryCache final
{
public:
    explicit MemoryCache(std::size_t countLimit) : m_countLimit(countLimit) {}

    /// Null when nothing is held for @p file. Counts as a use.
    [[nodiscard]] std::shared_ptr<const Value> find(const FileURL &file)
    {
        const std::lock_guard lock(m_mutex);
        const auto found = m_index.find(file);
        if (found == m_index.end())
            return nullptr;
        m_entries.splice(m_entries.begin(), m_entries, found->second);
        return found->second->value;
    }

    /// Whether find() would answer; not a use.
    [[nodiscard]] bool contains(const FileURL &file) const
    {
        const std::lock_guard lock(m_mutex);
        return m_index.contains(file);
    }

    using Dropped = std::vector<std::shared_ptr<const Value>>;

    /// Replaces an older value of the same file. @p bytes: what freeing it would give back. Answers what had to go, as
    /// does the next: freeing it may take milliseconds, so the caller chooses where.
    Dropped insert(const FileURL &file, std::shared_ptr<const Value> value, std::size_t bytes)
    {
        Dropped dropped;
        const std::lock_guard lock(m_mutex);
        const auto found = m_index.find(file);
        if (found != m_index.end()) {
            Entry &entry = *found->second;
            m_bytes += bytes - entry.bytes;
            entry.bytes = bytes;
            dropped.push_back(std::exchange(entry.value, std::move(value)));
            m_entries.splice(m_entries.begin(), m_entries, found->second);
        } else {
            m_entries.push_front({file, std::move(value), bytes});
            m_index.emplace(file, m_entries.begin());
            m_bytes += bytes;
        }
        while (m_entries.size() > m_countLimit)
            dropped.push_back(takeOldest());
        return dropped;
    }

    /// Evicts down to @p bytes in all. The newest entry always stays.
    Dropped shrinkTo(std::size_t bytes)
    {
        Dropped dropped;
        const std::lock_guard lock(m_mutex);
        while (m_bytes > bytes && m_entries.size() > 1)
            dropped.push_back(takeOldest());
        return dropped;
    }

    [[nodiscard]] std::size_t count() const
    {
        const std::lock_guard lock(m_mutex);
        return m_entries.size();
    }

    [[nodiscard]] std::size_t bytes() const
    {
        const std::lock_guard lock(m_mutex);
        return m_bytes;
    }

private:
    struct Entry
    {
        FileURL file;
        std::shared_ptr<const Value> value;
        std::size_t bytes;
    };

    std::shared_ptr<const Value> takeOldest()
    {
        Entry &oldest = m_entries.back();
        auto value = std::move(oldest.value);
        m_bytes -= oldest.bytes;
        m_index.erase(oldest.file);
        m_entries.pop_back();
        return value;
    }

    const std::size_t m_countLimit;
    mutable std::mutex m_mutex;
    std::list<Entry> m_entries; ///< most recently used first
    std::unordered_map<FileURL, typename std::list<Entry>::iterator> m_index;
    std::size_t m_bytes = 0;
};

} // namespace tallowmere
