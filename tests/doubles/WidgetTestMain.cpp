// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "tests/doubles/TestFolder.h"

#include <QApplication>

#include <gtest/gtest.h>

/// Widget tests see an empty home of their own and no desktop: nothing they do reaches the user's files or bus.
int main(int argc, char **argv)
{
    const tallowmere::test::TestFolder home;
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("HOME", home.path());
    for (const char *kind : {"CONFIG", "DATA", "CACHE", "STATE"}) {
        const QByteArray folder = home.makeFolder(QByteArray("xdg-") + QByteArray(kind).toLower()).path();
        qputenv((QByteArray("XDG_") + kind + "_HOME").constData(), folder);
    }
    qunsetenv("DBUS_SESSION_BUS_ADDRESS");
    qunsetenv("XDG_RUNTIME_DIR");
    qunsetenv("XDG_CURRENT_DESKTOP");

    // Before the application: googletest takes its own arguments away.
    ::testing::InitGoogleTest(&argc, argv);
    const QApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
