// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "support/FileURL.h"

#include <QByteArray>
#include <QList>

namespace tallowmere {

/// What the desktop, or a second start, asks of the running program. A value.
struct ApplicationRequest
{
    enum class Kind
    {
        reopen,    ///< come forward, with a window if none is visible
        openFile,  ///< one file; one that is not accepted leaves everything as it is
        openFiles, ///< the first of several; the window comes forward whatever the list holds
        quit,
    };

    Kind kind = Kind::reopen;
    QList<FileURL> files;       ///< local files only
    QByteArray activationToken; ///< the desktop's leave to come forward; empty: none was given

    friend bool operator==(const ApplicationRequest &, const ApplicationRequest &) = default;
};

/// What this start was given and a running instance would have to know. A value.
struct ApplicationStart
{
    QList<FileURL> files;
    QByteArray activationToken; ///< XDG_ACTIVATION_TOKEN, or DESKTOP_STARTUP_ID on X11
};

} // namespace tallowmere
