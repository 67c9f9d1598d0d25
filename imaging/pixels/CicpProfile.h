// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "imaging/pixels/ColourProfile.h"

namespace tallowmere {

/// The light of a signal of 0 to 1 by a transfer of ITU-T H.273, where 1 is the white of an ordinary screen; nothing
/// for codes that are reserved or of no use to pictures. PQ and HLG are rolled off into that range.
[[nodiscard]] std::optional<double> lightFromSignal(std::uint16_t transfer, double signal);

/// Null for codes that say nothing.
[[nodiscard]] Profile makeProfile(cmsContext context, const Cicp &cicp);

} // namespace tallowmere
