// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QList>

#include <optional>

namespace tallowmere {

/// The MIME types that the application of the desktop file @p contents opens (Desktop Entry Specification). Nothing
/// when it is no readable desktop file of an application, or one that stands for a removed application.
[[nodiscard]] std::optional<QList<QByteArray>> mimeTypesOfDesktopFile(const QByteArray &contents);

} // namespace tallowmere
