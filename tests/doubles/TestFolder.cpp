// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "tests/doubles/TestFolder.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

namespace tallowmere::test {
namespace {

std::filesystem::path native(const FileURL &url)
{
    return std::filesystem::path(url.path().toStdString());
}

} // namespace

TestFolder::TestFolder()
{
    std::string pattern = (std::filesystem::temp_directory_path() / "tallowmere-test-XXXXXX").string();
    if (!::mkdtemp(pattern.data())) {
        std::perror("mkdtemp");
        std::abort();
    }
    m_url = FileURL::fromPath(QByteArray::fromStdString(pattern));
}

TestFolder::~TestFolder()
{
    std::error_code ignored;
    std::filesystem::remove_all(native(m_url), ignored);
}

FileURL TestFolder::write(const QByteArray &name, const QByteArray &contents) const
{
    return write(name, std::as_bytes(std::span(contents.constData(), static_cast<std::size_t>(contents.size()))));
}

FileURL TestFolder::write(const QByteArray &name, std::span<const std::byte> contents) const
{
    FileURL url = at(name);
    std::ofstream file(native(url), std::ios::binary | std::ios::trunc);
    file.write(reinterpret_cast<const char *>(contents.data()), static_cast<std::streamsize>(contents.size()));
    file.close();
    if (!file) {
        std::fprintf(stderr, "can't write %s\n", url.path().constData());
        std::abort();
    }
    return url;
}

FileURL TestFolder::makeFolder(const QByteArray &name) const
{
    FileURL url = at(name);
    std::filesystem::create_directories(native(url));
    return url;
}

QByteArray TestFolder::read(const QByteArray &name) const
{
    std::ifstream file(native(at(name)), std::ios::binary);
    std::ostringstream contents;
    contents << file.rdbuf();
    return QByteArray::fromStdString(contents.str());
}

void TestFolder::remove(const QByteArray &name) const
{
    std::error_code ignored;
    std::filesystem::remove_all(native(at(name)), ignored);
}

} // namespace tallowmere::test
