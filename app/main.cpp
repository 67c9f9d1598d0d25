// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "app/AppDelegate.h"
#include "app/ColourSchemePalette.h"
#include "app/CommandLine.h"
#include "app/DefaultFileAssociationManager.h"
#include "app/FirstScreen.h"
#include "app/FontWarmUp.h"
#include "app/ToolkitStart.h"
#include "browsing/FolderAccessManager.h"
#include "imaging/ImageLoader.h"
#include "imaging/SharedPipeline.h"
#include "platform/freedesktop/ApplicationBus.h"
#include "platform/freedesktop/DBusFileRevealer.h"
#include "platform/freedesktop/FreedesktopTrash.h"
#include "platform/freedesktop/PortalColourScheme.h"
#include "platform/freedesktop/QtFolderPanel.h"
#include "platform/freedesktop/StatxAttributes.h"
#include "platform/freedesktop/XdgTagLabel.h"
#include "settings/SettingsManager.h"
#include "support/Diagnostics.h"

#include <QThread>

#include <unistd.h>

#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <optional>

namespace {

using namespace tallowmere;

/// A move that is cut off leaves a note in the Trash of a file that is still at home. A dead network mount, on the
/// other hand, is not to keep the program.
constexpr std::chrono::seconds kTrashPatience{5};

void preloadFirst(const QList<FileURL> &files)
{
    if (!files.isEmpty() &&
        SettingsManager::shared().enabledImageExtensions().contains(files.first().lowercasedPathExtension()))
        ImageLoader::shared()->preload(files.first(), ImageLoader::kMaxPixelSize);
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
    SharedPipeline &pipeline = SharedPipeline::instance();
    FirstScreen firstScreen;
    pipeline.imageLoader->setPreviewSize([&firstScreen](PixelSize full) { return firstScreen.mostFor(full); });
    // From here on the photo is being decoded, while the bus and then the window system are connected.
    preloadFirst(line.files);
    AppDelegate *delegate = nullptr; // main thread
    std::atomic<bool> starting{true};
    const auto busLost = [&] { pipeline.mainQueue.async([&delegate] { delegate->sessionBusLost(); }); };
    const auto take = [&](ApplicationRequest request) {
        // Later on the main thread is there to look into the cache first.
        if (starting)
            preloadFirst(request.files);
        // Requests wait in the queue, in order, until the event loop runs.
        pipeline.mainQueue.async([&delegate, request = std::move(request)] { delegate->handle(request); });
    };
    ApplicationBus bus({}, take, busLost);
    const ApplicationBus::Role role = bus.start({line.files, activationTokenOfThisStart()});
    if (role == ApplicationBus::Role::handedOver)
        leave(0);
    PortalColourScheme colourScheme(pipeline.mainQueue);
    if (role == ApplicationBus::Role::noBus)
        qputenv("DBUS_SESSION_BUS_ADDRESS", "disabled:"); // Qt would wait for a bus that hangs, or start one
    else
        colourScheme.start(applyColourScheme); // its answer comes home once the event loop runs

    std::optional<FontWarmUp> fonts(std::in_place);
    ToolkitStart toolkit(argc > 0 ? argv[0] : "tallowmere", line.toolkitArguments);
    firstScreen.toolkitIsThere();
    fonts.reset();
    QtFolderPanel folderPanel;
    FolderAccessManager::setSurroundingsOfShared({pipeline.mainQueue, pipeline.scope, folderPanel});
    DBusFileRevealer revealer(pipeline.launcher, {});
    FreedesktopTrash trash;
    const XdgTagLabelReader labels;
    const StatxAttributesReader attributes;
    AppDelegate theDelegate({SettingsManager::shared(), pipeline.imageLoader, pipeline.imageCacheManager,
                             pipeline.scope, *FolderAccessManager::shared(), revealer, trash, labels, attributes,
                             pipeline.mainQueue, pipeline.launcher, DefaultFileAssociationManager::shared()});
    delegate = &theDelegate;
    theDelegate.applicationDidFinishLaunching();
    if (!line.files.isEmpty())
        theDelegate.applicationOpenFiles(line.files);
    starting = false;
    const int status = toolkit.run(pipeline);
    trash.finish(kTrashPatience);
    leave(status);
}
