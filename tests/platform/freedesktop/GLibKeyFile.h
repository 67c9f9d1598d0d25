// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QList>

#include <dlfcn.h>

#include <optional>

namespace tallowmere::test {

/// A key file as GLib reads it: what comes before the first line that it can't read.
class GLibKeyFile final
{
public:
    explicit GLibKeyFile(const QByteArray &text)
    {
        m_file = function<void *()>("g_key_file_new")();
        // False for a file with a bad line; what came before it is there all the same.
        m_readWholly = function<int(void *, const char *, std::size_t, int, void **)>("g_key_file_load_from_data")(
                           m_file, text.constData(), static_cast<std::size_t>(text.size()), 0, nullptr) != 0;
    }
    ~GLibKeyFile() { function<void(void *)>("g_key_file_unref")(m_file); }
    GLibKeyFile(const GLibKeyFile &) = delete;
    GLibKeyFile &operator=(const GLibKeyFile &) = delete;

    [[nodiscard]] bool readWholly() const { return m_readWholly; }
    [[nodiscard]] std::optional<QList<QByteArray>> list(const QByteArray &group, const QByteArray &key) const
    {
        std::size_t size = 0;
        char **elements = function<char **(void *, const char *, const char *, std::size_t *, void **)>(
            "g_key_file_get_string_list")(m_file, group.constData(), key.constData(), &size, nullptr);
        if (!elements)
            return std::nullopt;
        QList<QByteArray> found;
        for (std::size_t i = 0; i < size; ++i)
            found.append(elements[i]);
        function<void(char **)>("g_strfreev")(elements);
        return found;
    }

private:
    /// QtCore has brought GLib along.
    template <typename Signature>
    static Signature *function(const char *name)
    {
        static void *const library = ::dlopen("libglib-2.0.so.0", RTLD_LAZY);
        return reinterpret_cast<Signature *>(::dlsym(library, name));
    }

    void *m_file = nullptr;
    bool m_readWholly = false;
};

} // namespace tallowmere::test
