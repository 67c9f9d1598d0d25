// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

#include <unistd.h>

#include <cstdio>

namespace tallowmere::test {

/// What is written to one standard stream while it lives, by anybody in the process.
class CapturedOutput final
{
public:
    explicit CapturedOutput(int descriptor = STDOUT_FILENO)
        : m_descriptor(descriptor), m_original(::dup(descriptor)), m_file(std::tmpfile())
    {
        std::fflush(nullptr);
        if (m_file)
            ::dup2(::fileno(m_file), m_descriptor);
    }
    ~CapturedOutput()
    {
        std::fflush(nullptr);
        ::dup2(m_original, m_descriptor);
        ::close(m_original);
        if (m_file)
            std::fclose(m_file);
    }
    CapturedOutput(const CapturedOutput &) = delete;
    CapturedOutput &operator=(const CapturedOutput &) = delete;

    [[nodiscard]] QByteArray text() const
    {
        std::fflush(nullptr);
        QByteArray bytes;
        char buffer[4096];
        ssize_t got = 0;
        while (m_file && (got = ::pread(::fileno(m_file), buffer, sizeof buffer, bytes.size())) > 0)
            bytes.append(buffer, got);
        return bytes;
    }

private:
    const int m_descriptor;
    const int m_original;
    std::FILE *const m_file;
};

} // namespace tallowmere::test
