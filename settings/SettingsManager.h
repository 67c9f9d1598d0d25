// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "settings/DefaultsStore.h"

#include <QByteArray>
#include <QList>

#include <array>
#include <memory>
#include <optional>

namespace tallowmere {

/// Where the current file's name is shown.
enum class FileNameDisplayLocation
{
    inTitle,
    inCorner,
    off
};
/// What lies under the transparent parts of an image.
enum class TransparencyBackground
{
    solidColor,
    checkers
};

inline constexpr std::array kAllFileNameDisplayLocations{
    FileNameDisplayLocation::inTitle, FileNameDisplayLocation::inCorner, FileNameDisplayLocation::off};
inline constexpr std::array kAllTransparencyBackgrounds{TransparencyBackground::solidColor,
                                                        TransparencyBackground::checkers};

[[nodiscard]] QString rawValue(FileNameDisplayLocation location);
[[nodiscard]] QString rawValue(TransparencyBackground background);
/// Exact, case-sensitive; nothing for any other text.
[[nodiscard]] std::optional<FileNameDisplayLocation> fileNameDisplayLocationFrom(const QString &rawValue);
[[nodiscard]] std::optional<TransparencyBackground> transparencyBackgroundFrom(const QString &rawValue);

/// The one place that knows the names, types and defaults of the user's preferences.
///
/// Keeps no copy: every read asks the store, every write goes straight to it, and nobody is told.
/// Threads: reads from any, writes from the main thread.
class SettingsManager final
{
public:
    /// Owns @p store.
    explicit SettingsManager(std::unique_ptr<DefaultsStore> store);
    ~SettingsManager();
    SettingsManager(const SettingsManager &) = delete;
    SettingsManager &operator=(const SettingsManager &) = delete;

    /// The process's own, over the user's configuration file; made on first use.
    [[nodiscard]] static SettingsManager &shared();

    [[nodiscard]] bool pngSupportEnabled() const;
    [[nodiscard]] bool webpSupportEnabled() const;
    [[nodiscard]] bool avifSupportEnabled() const;
    [[nodiscard]] bool heicSupportEnabled() const;
    [[nodiscard]] bool showFileSize() const;
    [[nodiscard]] bool showImageResolution() const;
    [[nodiscard]] bool showCreationDate() const;
    [[nodiscard]] bool autoResizeToImageSize() const;
    [[nodiscard]] bool autoResizeWithAnimation() const;
    [[nodiscard]] FileNameDisplayLocation fileNameDisplayLocation() const;
    [[nodiscard]] bool showFileTag() const;
    [[nodiscard]] bool defaultFileAssociationsSet() const;
    [[nodiscard]] TransparencyBackground transparencyBackground() const;
    [[nodiscard]] bool useXPCService() const;

    void setPngSupportEnabled(bool enabled);
    void setWebpSupportEnabled(bool enabled);
    void setAvifSupportEnabled(bool enabled);
    void setHeicSupportEnabled(bool enabled);
    void setShowFileSize(bool show);
    void setShowImageResolution(bool show);
    void setShowCreationDate(bool show);
    void setAutoResizeToImageSize(bool enabled);
    void setAutoResizeWithAnimation(bool enabled);
    void setFileNameDisplayLocation(FileNameDisplayLocation location);
    void setShowFileTag(bool show);
    void setDefaultFileAssociationsSet(bool set);
    void setTransparencyBackground(TransparencyBackground background);
    void setUseXPCService(bool use);

    /// Lower-case extensions accepted now, in a fixed order; "jpg" and "jpeg" always lead.
    [[nodiscard]] QList<QByteArray> enabledImageExtensions() const;

private:
    const std::unique_ptr<DefaultsStore> m_store;
};

} // namespace tallowmere
