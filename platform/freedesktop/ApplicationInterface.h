// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/ApplicationRequest.h"
#include "platform/freedesktop/SessionBus.h"

#include <functional>

namespace tallowmere {

inline constexpr const char *kApplicationName = "app.tallowmere.Tallowmere";
inline constexpr const char *kApplicationPath = "/app/tallowmere/Tallowmere";

/// Serves org.freedesktop.Application at kApplicationPath of @p bus and turns each call into a request for
/// @p handler, which outlives the bus. A call that asks for nothing we can do is answered with an error.
/// False when the object could not be registered.
[[nodiscard]] bool serveApplicationInterface(sd_bus *bus, const std::function<void(ApplicationRequest)> &handler);

/// The call that gives @p start to the running instance: Open, or Activate when there are no files. It never
/// starts an instance. Null when it could not be written.
[[nodiscard]] MessagePtr handOverCall(sd_bus *bus, const ApplicationStart &start);

} // namespace tallowmere
