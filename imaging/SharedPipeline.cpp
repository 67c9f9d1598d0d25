// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "imaging/SharedPipeline.h"

namespace tallowmere {

SharedPipeline::SharedPipeline()
    : imageCacheManager(std::make_shared<ImageCacheManager>(
          ImageCacheManager::Surroundings{mainQueue, prefetchSyncQueue, prefetchQueue, launcher, scope, memory})),
      imageLoader(
          std::make_shared<ImageLoader>(ImageLoader::Surroundings{mainQueue, launcher, scope, imageCacheManager}))
{
    imageCacheManager->setLoader(imageLoader);
}

SharedPipeline &SharedPipeline::instance()
{
    static auto *const pipeline = new SharedPipeline;
    return *pipeline;
}

} // namespace tallowmere
