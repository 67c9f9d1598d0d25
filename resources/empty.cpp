// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT

// The resources are compiled into objects of their own; a library must have a source all the same.
