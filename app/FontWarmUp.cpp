// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "app/FontWarmUp.h"

#include <fontconfig/fontconfig.h>

#include <system_error>

namespace tallowmere {

FontWarmUp::FontWarmUp()
{
    try {
        m_thread = std::thread([] { FcInit(); });
    } catch (const std::system_error &) {
        // Out of threads: the toolkit will do it.
    }
}

FontWarmUp::~FontWarmUp()
{
    if (m_thread.joinable())
        m_thread.join();
}

} // namespace tallowmere
