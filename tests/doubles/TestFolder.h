// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "support/FileURL.h"

#include <QByteArray>

#include <span>

namespace tallowmere::test {

/// A private temporary folder, removed with everything in it at the end. Names are bytes.
class TestFolder final
{
public:
    TestFolder();
    ~TestFolder();
    TestFolder(const TestFolder &) = delete;
    TestFolder &operator=(const TestFolder &) = delete;

    [[nodiscard]] const FileURL &url() const { return m_url; }
    [[nodiscard]] const QByteArray &path() const { return m_url.path(); }
    /// The place of @p name in here, whether it exists or not.
    [[nodiscard]] FileURL at(const QByteArray &name) const { return m_url.appending(name); }
    /// Creates or replaces a file; a name with slashes needs its folders to be there.
    FileURL write(const QByteArray &name, const QByteArray &contents = "x") const;
    FileURL write(const QByteArray &name, std::span<const std::byte> contents) const;
    FileURL makeFolder(const QByteArray &name) const;
    /// Empty when it can't be read.
    [[nodiscard]] QByteArray read(const QByteArray &name) const;
    void remove(const QByteArray &name) const;

private:
    FileURL m_url;
};

} // namespace tallowmere::test
