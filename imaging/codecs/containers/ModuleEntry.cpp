// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "imaging/codecs/containers/AvifCodec.h"
#include "imaging/codecs/containers/ContainerModule.h"
#include "imaging/codecs/containers/HeifCodec.h"

extern "C" __attribute__((visibility("default"))) const tallowmere::Codec *tallowmere_container_codec_1(int family)
{
    using tallowmere::MediaFamily;
    static const tallowmere::AvifCodec avif;
    static const tallowmere::HeifCodec heif;
    switch (static_cast<MediaFamily>(family)) {
    case MediaFamily::avif:
        return &avif;
    case MediaFamily::heif:
        return &heif;
    case MediaFamily::none:
        break;
    }
    return nullptr;
}
