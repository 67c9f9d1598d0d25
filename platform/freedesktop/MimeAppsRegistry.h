// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/DefaultHandlerRegistry.h"

namespace tallowmere {

/// The user's default applications by the freedesktop MIME Applications Associations specification. Knows the six
/// image types that Tallowmere opens; a handler's desktop file is its identity followed by ".desktop".
///
/// Writes the user's mimeapps.list, once for all types, and leaves it alone when it would not change; reads with the
/// precedence of all lists, so that another one may name another handler than the one just written.
class MimeAppsRegistry final : public DefaultHandlerRegistry
{
public:
    /// Who tells the default desktop file of a MIME type.
    using Reader = std::optional<QByteArray> (*)(const QByteArray &mimeType);

    MimeAppsRegistry(); ///< GIO tells
    explicit MimeAppsRegistry(Reader reader) : m_reader(reader) {}

    [[nodiscard]] QList<Status> setDefaultHandler(const QList<QByteArray> &contentTypes,
                                                  const QByteArray &handler) override;
    [[nodiscard]] std::optional<QByteArray> defaultHandler(const QByteArray &contentType) const override;

private:
    const Reader m_reader;
};

} // namespace tallowmere
