// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "settings/SettingsManager.h"

#include "settings/IniDefaultsStore.h"

#include <utility>

namespace tallowmere {
namespace {

using namespace Qt::Literals::StringLiterals;

// Users' preferences are stored under these names: a changed letter loses them.
constexpr QByteArrayView kPngSupportEnabledKey("PNGSupportEnabled");
constexpr QByteArrayView kWebpSupportEnabledKey("WebPSupportEnabled");
constexpr QByteArrayView kAvifSupportEnabledKey("AVIFSupportEnabled");
constexpr QByteArrayView kHeicSupportEnabledKey("HEICSupportEnabled");
constexpr QByteArrayView kShowFileSizeKey("ShowFileSize");
constexpr QByteArrayView kShowImageResolutionKey("ShowImageResolution");
constexpr QByteArrayView kShowCreationDateKey("ShowCreationDate");
constexpr QByteArrayView kAutoResizeToImageSizeKey("AutoResizeToImageSize");
constexpr QByteArrayView kAutoResizeWithAnimationKey("AutoResizeWithAnimation");
constexpr QByteArrayView kFileNameDisplayLocationKey("FileNameDisplayLocation");
constexpr QByteArrayView kShowFileTagKey("ShowFileTag");
constexpr QByteArrayView kDefaultFileAssociationsSetKey("DefaultFileAssociationsSet");
constexpr QByteArrayView kTransparencyBackgroundKey("TransparencyBackground");
constexpr QByteArrayView kUseXPCServiceKey("UseXPCService");

bool readOr(const DefaultsStore &store, QByteArrayView key, bool whenAbsent)
{
    return store.contains(key) ? store.boolForKey(key) : whenAbsent;
}

} // namespace

QString rawValue(FileNameDisplayLocation location)
{
    switch (location) {
    case FileNameDisplayLocation::inTitle:
        return u"inTitle"_s;
    case FileNameDisplayLocation::inCorner:
        return u"inCorner"_s;
    case FileNameDisplayLocation::off:
        return u"off"_s;
    }
    return {};
}

QString rawValue(TransparencyBackground background)
{
    switch (background) {
    case TransparencyBackground::solidColor:
        return u"solidColor"_s;
    case TransparencyBackground::checkers:
        return u"checkers"_s;
    }
    return {};
}

std::optional<FileNameDisplayLocation> fileNameDisplayLocationFrom(const QString &text)
{
    for (const auto location : kAllFileNameDisplayLocations) {
        if (text == rawValue(location))
            return location;
    }
    return std::nullopt;
}

std::optional<TransparencyBackground> transparencyBackgroundFrom(const QString &text)
{
    for (const auto background : kAllTransparencyBackgrounds) {
        if (text == rawValue(background))
            return background;
    }
    return std::nullopt;
}

SettingsManager::SettingsManager(std::unique_ptr<DefaultsStore> store) : m_store(std::move(store)) {}

SettingsManager::~SettingsManager() = default;

SettingsManager &SettingsManager::shared()
{
    // Never destroyed: background readers may still be running when the process ends.
    static auto *const instance = new SettingsManager(std::make_unique<IniDefaultsStore>(IniDefaultsStore::userPath()));
    return *instance;
}

bool SettingsManager::pngSupportEnabled() const
{
    return readOr(*m_store, kPngSupportEnabledKey, true);
}
bool SettingsManager::webpSupportEnabled() const
{
    return readOr(*m_store, kWebpSupportEnabledKey, true);
}
bool SettingsManager::avifSupportEnabled() const
{
    return readOr(*m_store, kAvifSupportEnabledKey, true);
}
bool SettingsManager::heicSupportEnabled() const
{
    return readOr(*m_store, kHeicSupportEnabledKey, true);
}
bool SettingsManager::showFileSize() const
{
    return readOr(*m_store, kShowFileSizeKey, true);
}
bool SettingsManager::showImageResolution() const
{
    return readOr(*m_store, kShowImageResolutionKey, true);
}
bool SettingsManager::showCreationDate() const
{
    return m_store->boolForKey(kShowCreationDateKey);
}
bool SettingsManager::autoResizeToImageSize() const
{
    return readOr(*m_store, kAutoResizeToImageSizeKey, true);
}
bool SettingsManager::autoResizeWithAnimation() const
{
    return readOr(*m_store, kAutoResizeWithAnimationKey, true);
}
bool SettingsManager::showFileTag() const
{
    return readOr(*m_store, kShowFileTagKey, false);
}
bool SettingsManager::defaultFileAssociationsSet() const
{
    return m_store->boolForKey(kDefaultFileAssociationsSetKey);
}
bool SettingsManager::useXPCService() const
{
    return readOr(*m_store, kUseXPCServiceKey, false);
}

FileNameDisplayLocation SettingsManager::fileNameDisplayLocation() const
{
    return fileNameDisplayLocationFrom(m_store->stringForKey(kFileNameDisplayLocationKey))
        .value_or(FileNameDisplayLocation::inTitle);
}

TransparencyBackground SettingsManager::transparencyBackground() const
{
    return transparencyBackgroundFrom(m_store->stringForKey(kTransparencyBackgroundKey))
        .value_or(TransparencyBackground::solidColor);
}

void SettingsManager::setPngSupportEnabled(bool enabled)
{
    m_store->setBool(kPngSupportEnabledKey, enabled);
}
void SettingsManager::setWebpSupportEnabled(bool enabled)
{
    m_store->setBool(kWebpSupportEnabledKey, enabled);
}
void SettingsManager::setAvifSupportEnabled(bool enabled)
{
    m_store->setBool(kAvifSupportEnabledKey, enabled);
}
void SettingsManager::setHeicSupportEnabled(bool enabled)
{
    m_store->setBool(kHeicSupportEnabledKey, enabled);
}
void SettingsManager::setShowFileSize(bool show)
{
    m_store->setBool(kShowFileSizeKey, show);
}
void SettingsManager::setShowImageResolution(bool show)
{
    m_store->setBool(kShowImageResolutionKey, show);
}
void SettingsManager::setShowCreationDate(bool show)
{
    m_store->setBool(kShowCreationDateKey, show);
}
void SettingsManager::setAutoResizeToImageSize(bool enabled)
{
    m_store->setBool(kAutoResizeToImageSizeKey, enabled);
}

void SettingsManager::setAutoResizeWithAnimation(bool enabled)
{
    m_store->setBool(kAutoResizeWithAnimationKey, enabled);
}

void SettingsManager::setFileNameDisplayLocation(FileNameDisplayLocation location)
{
    m_store->setString(kFileNameDisplayLocationKey, rawValue(location));
}

void SettingsManager::setShowFileTag(bool show)
{
    m_store->setBool(kShowFileTagKey, show);
}
void SettingsManager::setDefaultFileAssociationsSet(bool set)
{
    m_store->setBool(kDefaultFileAssociationsSetKey, set);
}

void SettingsManager::setTransparencyBackground(TransparencyBackground background)
{
    m_store->setString(kTransparencyBackgroundKey, rawValue(background));
}

void SettingsManager::setUseXPCService(bool use)
{
    m_store->setBool(kUseXPCServiceKey, use);
}

QList<QByteArray> SettingsManager::enabledImageExtensions() const
{
    QList<QByteArray> extensions{"jpg", "jpeg"};
    if (pngSupportEnabled())
        extensions.append("png");
    if (webpSupportEnabled())
        extensions.append("webp");
    if (avifSupportEnabled())
        extensions.append("avif");
    if (heicSupportEnabled())
        extensions << "heic"
                   << "heif";
    return extensions;
}

} // namespace tallowmere
