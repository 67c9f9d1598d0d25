// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

namespace tallowmere {

/// What the user has asked of all programs.
enum class ColourScheme
{
    noPreference,
    dark,
    light
};

/// Knows the desktop's colour scheme and its changes, from construction to destruction.
class ColourSchemeWatcher
{
public:
    using Changed = std::function<void(ColourScheme)>;

    virtual ~ColourSchemeWatcher() = default;
    /// Once. Returns at once; @p changed is called on the main thread with what the desktop says first, as soon as it
    /// does, and after every change. Never, where there is no such setting.
    virtual void start(Changed changed) = 0;
};

} // namespace tallowmere
