// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

#include <cstdint>
#include <optional>

class QWindow;

namespace tallowmere {

/// The time of the user's action, in the X server's ms, that a startup id ends with ("…_TIME1234").
[[nodiscard]] std::optional<std::uint32_t> timeOfStartupId(const QByteArray &id);

/// Hands the desktop's leave to come forward to the window system before @p window is raised and activated; without
/// it, a desktop that guards against windows stealing the focus would only flash its name. GUI thread. Nothing for
/// an empty @p token.
void useActivationToken(QWindow &window, const QByteArray &token);

} // namespace tallowmere
