// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QList>

#include <cstdint>
#include <optional>

namespace tallowmere {

/// Which application opens which type of content by default, for the user.
///
/// Content types are uniform type identifiers ("public.jpeg"), a handler is an application's identity
/// ("app.tallowmere.Tallowmere"). Main thread; every operation may block on the disk.
class DefaultHandlerRegistry
{
public:
    using Status = std::int32_t;
    static constexpr Status kSuccess = 0;
    static constexpr Status kInvalidParameter = -50; ///< a content type that the registry does not know
    /// The handler is not installed, or does not say that it opens the type.
    static constexpr Status kApplicationNotFound = -10814;
    static constexpr Status kUnknownError = -10817; ///< whatever else went wrong

    virtual ~DefaultHandlerRegistry() = default;
    /// Makes @p handler the default of all of @p contentTypes in one step. One status for each of them, in their
    /// order; where it is not kSuccess, nothing has changed for that type.
    [[nodiscard]] virtual QList<Status> setDefaultHandler(const QList<QByteArray> &contentTypes,
                                                          const QByteArray &handler) = 0;
    /// Who opens @p contentType now; nothing when nobody does or it can't be told.
    [[nodiscard]] virtual std::optional<QByteArray> defaultHandler(const QByteArray &contentType) const = 0;
};

} // namespace tallowmere
