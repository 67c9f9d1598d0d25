// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/ColourSchemeWatcher.h"

namespace tallowmere {

/// Gives the application a palette for @p scheme: the one it would have anyway where that fits, else one of our own.
/// Main thread.
void applyColourScheme(ColourScheme scheme);

} // namespace tallowmere
