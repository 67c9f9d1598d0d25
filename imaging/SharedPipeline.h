// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "imaging/ImageCacheManager.h"
#include "imaging/ImageLoader.h"
#include "platform/LinuxMemoryStatus.h"
#include "platform/SecurityScope.h"
#include "support/MainQueuePump.h"
#include "support/ThreadQueues.h"

#include <memory>

namespace tallowmere {

/// The process's one loader and one cache over its real queues.
///
/// Made on first use, by whichever thread comes first, and never destroyed: workers may still be decoding when the
/// process ends, so main() leaves by _exit(). Making it starts no thread. Results wait in mainQueue until the
/// program puts a MainQueuePump on it. Nobody but ImageLoader::shared(), ImageCacheManager::shared() and the code that
/// builds the program should need it.
class SharedPipeline final
{
public:
    [[nodiscard]] static SharedPipeline &instance();
    SharedPipeline(const SharedPipeline &) = delete;
    SharedPipeline &operator=(const SharedPipeline &) = delete;

    PostedMainQueue mainQueue;
    ThreadSerialQueue prefetchSyncQueue{"com.tallowmere.prefetchsync"};
    ThreadOperationQueue prefetchQueue{"com.tallowmere.imageprefetch", ImageCacheManager::maxConcurrentPrefetches};
    ThreadLauncher launcher;
    NoSecurityScope scope;
    LinuxMemoryStatus memory;
    const std::shared_ptr<ImageCacheManager> imageCacheManager;
    const std::shared_ptr<ImageLoader> imageLoader;

private:
    SharedPipeline();
};

} // namespace tallowmere
