// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "imaging/codecs/Codec.h"
#include "imaging/codecs/containers/MediaFile.h"

#include <string>

namespace tallowmere {

/// The codecs of the ISO container, in a module of their own that is loaded on first use.
///
/// Their libraries bring dozens of others along, and starting with all of them would cost every start several
/// milliseconds. Once loaded the module stays. Threads: any, at once.
class ContainerModule final
{
public:
    /// @p path: of the shared object. Nothing is loaded yet.
    explicit ContainerModule(std::string path) : m_path(std::move(path)) {}

    /// Null when the module is not there or is not one of ours. Loads it when asked for the first time.
    [[nodiscard]] const Codec *codec(MediaFamily family) const;

    /// The one installed beside the running program.
    [[nodiscard]] static const ContainerModule &installed();

private:
    std::string m_path;
};

/// What the module exports, and its name there. Null for a family it doesn't read; the codec lives for ever.
using ContainerCodecFunction = const Codec *(int family);
inline constexpr char kContainerCodecFunction[] = "tallowmere_container_codec_1";

} // namespace tallowmere
