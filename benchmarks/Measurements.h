// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "benchmarks/PhotoStore.h"
#include "benchmarks/Results.h"
#include "benchmarks/Station.h"
#include "benchmarks/Viewers.h"

#include <vector>

/// One round of everything there is to measure: each function adds one value to each of its rows and columns, what is
/// compared one directly after the other, so that a machine that slows down slows down all alike.
namespace tallowmere::bench {

/// Start of a viewer until its picture is seen; beside it the floor window and a plain decode.
void measureStarts(const Station &station, const PhotoStore &store, const std::vector<Viewer> &peers, int round,
                   Results &results);
/// A file manager's request over the bus until the picture is seen: with the program not running, and running.
void measureOpens(const Station &station, const PhotoStore &store, Results &results);
/// Arrow keys until the other picture is seen.
void measureSteps(const Station &station, const PhotoStore &store, Results &results);
/// Proportional set size two seconds after one picture came to stand.
void measureMemory(const Station &station, const PhotoStore &store, const std::vector<Viewer> &peers, Results &results);
/// The program's decoder, as the program calls it, against the library's plain full decode.
void measureDecoding(const PhotoStore &store, Results &results);
/// A decoded picture's colours brought to the screen's, against the colour library alone. Needs no screen.
void measureColours(Results &results);
/// Frames of a pan, a zoom and a resize on a large window, against copying such a frame. Needs no screen.
void measurePainting(Results &results);
/// Listing and sorting a folder, against reading it alone.
void measureListing(const PhotoStore &store, Results &results);

} // namespace tallowmere::bench
