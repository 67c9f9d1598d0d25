// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "app/ToolkitStart.h"

#include "imaging/SharedPipeline.h"
#include "platform/freedesktop/MemoryPressureWatcher.h"
#include "support/MainQueuePump.h"

#include <QApplication>
#include <QIcon>
#include <QTimer>

#include <algorithm>
#include <optional>

namespace tallowmere {

using namespace Qt::Literals::StringLiterals;

namespace {

/// After the start, for what nobody waits for.
constexpr std::chrono::milliseconds kLater{500};
/// Less is not worth a look at the machine's memory: a few neighbours of the image on screen.
constexpr std::size_t kBigCache = std::size_t{256} << 20;

std::unique_ptr<MemoryPressureWatcher> watchMemory(SharedPipeline &pipeline)
{
    ImageCacheManager &cache = *pipeline.imageCacheManager;
    return std::make_unique<MemoryPressureWatcher>(
        MemoryPressureWatcher::systemSource(pipeline.memory),
        [&cache] { return cache.imageCache.bytes() >= kBigCache; },
        [&cache, &memory = pipeline.memory] {
        // Stalls with no bound in sight: half is a step that can be repeated.
        cache.shrinkTo(memory.cacheBudget().value_or(cache.imageCache.bytes() / 2));
        });
}

} // namespace

QByteArray activationTokenOfThisStart()
{
    const QByteArray token = qgetenv("XDG_ACTIVATION_TOKEN");
    return token.isEmpty() ? qgetenv("DESKTOP_STARTUP_ID") : token;
}

ToolkitStart::ToolkitStart(const QByteArray &program, const QList<QByteArray> &arguments)
    : m_arguments(QList<QByteArray>{program} + arguments), m_argc(static_cast<int>(m_arguments.size()))
{
    std::transform(m_arguments.begin(), m_arguments.end(), std::back_inserter(m_argv),
                   [](QByteArray &argument) { return argument.data(); });
    m_argv.push_back(nullptr);
    QApplication::setApplicationName(u"tallowmere"_s); // no display name: Qt would append it to every title
    QApplication::setDesktopFileName(u"app.tallowmere.Tallowmere"_s);
    m_application = std::make_unique<QApplication>(m_argc, m_argv.data());
}

ToolkitStart::~ToolkitStart() = default;

int ToolkitStart::run(SharedPipeline &pipeline)
{
    MainQueuePump pump(pipeline.mainQueue);
    std::unique_ptr<MemoryPressureWatcher> watcher;
    QTimer::singleShot(kLater, m_application.get(), [&] {
        // Bare window managers show it; a desktop takes the icon of the desktop file.
        QApplication::setWindowIcon(QIcon(u":/icons/app.tallowmere.Tallowmere.svg"_s));
        watcher = watchMemory(pipeline);
    });
    return QApplication::exec();
}

} // namespace tallowmere
