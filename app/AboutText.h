// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace tallowmere {

class BundleInformation;

/// What the About window says: the bundle's entries, with something to say for each that is missing.
struct AboutText
{
    QString name;
    QString version;
    QString rights;

    /// @p year goes into the rights notice of a bundle that has none.
    [[nodiscard]] static AboutText of(const BundleInformation &bundle, int year);
};

} // namespace tallowmere
