// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "imaging/XPCImageLoader.h"

namespace tallowmere {

XPCImageLoader::~XPCImageLoader()
{
    const std::lock_guard lock(connectionLock);
    if (connection)
        connection->invalidate();
    connection.reset();
}

} // namespace tallowmere
