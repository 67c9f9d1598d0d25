// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "app/BundleInformation.h"
#include "platform/DefaultHandlerRegistry.h"

#include <QByteArray>
#include <QList>

namespace tallowmere {

class SettingsManager;

/// Makes the program the default viewer of the images it opens, once in a user's life.
///
/// Everything it does is told on standard output, and nowhere else. Main thread; may block on the disk.
class DefaultFileAssociationManager final
{
public:
    using BundleSource = const BundleInformation &(*)();

    /// Everything referred to outlives it. @p bundle is asked when the identity is needed and not before.
    DefaultFileAssociationManager(SettingsManager &settings, DefaultHandlerRegistry &registry,
                                  BundleSource bundle = &BundleInformation::main,
                                  QList<QByteArray> imageUTIs = allImageUTIs());

    /// The process's own, over the desktop's registry; made on first use.
    [[nodiscard]] static DefaultFileAssociationManager &shared();

    /// Does nothing, in silence, when an earlier launch has tried; what became of that does not count.
    void setDefaultsOnFirstLaunch();
    /// True when every type was registered.
    bool setAsDefaultViewer();

private:
    [[nodiscard]] static QList<QByteArray> allImageUTIs();
    [[nodiscard]] QByteArray handlerIdentity() const;
    void verify() const;

    SettingsManager &m_settings;
    DefaultHandlerRegistry &m_registry;
    const BundleSource m_bundle;
    const QList<QByteArray> m_imageUTIs;
};

/// What a status of the registry is called.
[[nodiscard]] QByteArray descriptionOf(DefaultHandlerRegistry::Status status);

} // namespace tallowmere
