// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "imaging/pixels/PixelKernels.h"

#include <span>

namespace tallowmere {

/// The loops of PixelKernels.h as compiled for one instruction set.
struct KernelSet
{
    const char *instructionSet;
    decltype(&channelSums) sumChannels;
    decltype(&premultiply) premultiplyPixels;
    decltype(&transpose) transposeRows;
    decltype(&pickPixels) pickRow;
    decltype(&filterRow) filterOneRow;
    decltype(&filterColumns) filterOneColumnSet;
    decltype(&mixColours) mixColourRow;
    decltype(&interpolateColours) interpolateColourRow;
};

/// What this processor can run, the fastest first; never empty. Any thread.
[[nodiscard]] std::span<const KernelSet *const> runnableKernelSets();

/// For tests: the loops run with @p set from now on. Not while they run.
void useKernelSet(const KernelSet &set);

} // namespace tallowmere
