// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "app/AppDelegate.h"
#include "app/ColourSchemePalette.h"
#include "app/CommandLine.h"
#include "app/NoFolderAccess.h"
#include "app/ToolkitStart.h"
#include "imaging/ImageLoader.h"
#include "imaging/SharedPipeline.h"
#include "platform/freedesktop/ApplicationBus.h"
#include "platform/freedesktop/DBusFileRevealer.h"
#include "platform/freedesktop/PortalColourScheme.h"
#include "platform/freedesktop/StatxAttributes.h"
#include "platform/freedesktop/XdgTagLabel.h"
#include "settings/SettingsManager.h"
#include "support/Diagnostics.h"

#include <QThread>

#include <unistd.h>

#include <atomic>
#include <csignal>
#include <cstdio>

namespace {

using namespace tallowmere;

void preloadFirst(const QList<FileURL> &files)
{
    constexpr int kMaxPixelSize = 4000; // what the viewer will ask for
    if (!files.isEmpty() &&
        SettingsManager::shared().enabledImageExtensions().contains(files.first().lowercasedPathExtension()))
        ImageLoader::shared()->preload(files.first(), kMaxPixelSize);
}

/// No destructor and no exit handler runs: they would wait for decodes that nobody needs any more.
[[noreturn]] void leave(int status)
{
    std::fflush(nullptr);
    _exit(status);
}

} // namespace

int main(int argc, char **argv)
{
    std::signal(SIGPIPE, SIG_IGN); // tallowmere photo.jpg | head
    const CommandLine line = parseCommandLine({argv + (argc > 0 ? 1 : 0), argv + argc});
    for (const QByteArray &refusal : line.refusals)
        printError(refusal);
    if (line.nothingLeft())
        return 2;

    // Qt takes the first thread it meets for the main one: that must not be the bus's, which reads settings.
    QThread::currentThread();
    // From here on the photo is being decoded, while the bus and then the window system are connected.
    preloadFirst(line.files);
    SharedPipeline &pipeline = SharedPipeline::instance();
    AppDelegate *delegate = nullptr; // main thread
    std::atomic<bool> starting{true};
    ApplicationBus bus({}, [&](ApplicationRequest request) {
        // Later on the main thread is there to look into the cache first.
        if (starting)
            preloadFirst(request.files);
        // Requests wait in the queue, in order, until the event loop runs.
        pipeline.mainQueue.async([&delegate, request = std::move(request)] { delegate->handle(request); });
    });
    const ApplicationBus::Role role = bus.start({line.files, activationTokenOfThisStart()});
    if (role == ApplicationBus::Role::handedOver)
        leave(0);
    PortalColourScheme colourScheme(pipeline.mainQueue);
    if (role == ApplicationBus::Role::noBus)
        qputenv("DBUS_SESSION_BUS_ADDRESS", "disabled:"); // Qt would wait for a bus that hangs, or start one
    else
        colourScheme.start(applyColourScheme); // its answer comes home once the event loop runs

    ToolkitStart toolkit(argc > 0 ? argv[0] : "tallowmere", line.toolkitArguments);
    NoFolderAccess folderAccess;
    DBusFileRevealer revealer(pipeline.launcher, {});
    const XdgTagLabelReader labels;
    const StatxAttributesReader attributes;
    AppDelegate theDelegate({SettingsManager::shared(), pipeline.imageLoader, pipeline.imageCacheManager,
                             pipeline.scope, folderAccess, revealer, labels, attributes, pipeline.mainQueue,
                             pipeline.launcher});
    delegate = &theDelegate;
    theDelegate.applicationDidFinishLaunching();
    if (!line.files.isEmpty())
        theDelegate.applicationOpenFiles(line.files);
    starting = false;
    leave(toolkit.run(pipeline));
}
