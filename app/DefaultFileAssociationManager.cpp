// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "app/DefaultFileAssociationManager.h"

#include "platform/freedesktop/MimeAppsRegistry.h"
#include "settings/SettingsManager.h"
#include "support/Diagnostics.h"

#include <array>
#include <utility>

namespace tallowmere {

using namespace Qt::Literals::StringLiterals;

namespace {

struct VerifiedType
{
    QByteArrayView label;
    const char *contentType;
};
constexpr std::array<VerifiedType, 3> kVerifiedTypes{
    {{"JPEG", "public.jpeg"}, {"PNG", "public.png"}, {"WebP", "org.webmproject.webp"}}};

constexpr std::array<QByteArrayView, 8> kInstructions{"",
                                                      "ℹ️  To manually set Tallowmere as default:",
                                                      "   1. Right-click any JPG/PNG/WebP file in Finder",
                                                      "   2. Select 'Get Info'",
                                                      "   3. Expand 'Open with:' section",
                                                      "   4. Select 'Tallowmere' from the dropdown",
                                                      "   5. Click 'Change All...' button",
                                                      ""};

} // namespace

DefaultFileAssociationManager::DefaultFileAssociationManager(SettingsManager &settings,
                                                             DefaultHandlerRegistry &registry, BundleSource bundle,
                                                             QList<QByteArray> imageUTIs)
    : m_settings(settings), m_registry(registry), m_bundle(bundle), m_imageUTIs(std::move(imageUTIs))
{}

DefaultFileAssociationManager &DefaultFileAssociationManager::shared()
{
    static MimeAppsRegistry registry;
    static DefaultFileAssociationManager manager(SettingsManager::shared(), registry);
    return manager;
}

QList<QByteArray> DefaultFileAssociationManager::allImageUTIs()
{
    return {"public.jpeg", "public.png", "org.webmproject.webp", "public.avif", "public.heic", "public.heif"};
}

QByteArray DefaultFileAssociationManager::handlerIdentity() const
{
    return m_bundle().string(u"CFBundleIdentifier"_s).value_or(u"app.tallowmere.Tallowmere"_s).toUtf8();
}

void DefaultFileAssociationManager::setDefaultsOnFirstLaunch()
{
    if (m_settings.defaultFileAssociationsSet())
        return;
    printDiagnostic("🔧 Attempting to set default file associations on first launch...");
    const bool succeeded = setAsDefaultViewer();
    m_settings.setDefaultFileAssociationsSet(true);
    verify();
    if (succeeded)
        return;
    for (const QByteArrayView line : kInstructions)
        printDiagnostic(line);
}

bool DefaultFileAssociationManager::setAsDefaultViewer()
{
    const QByteArray total = QByteArray::number(m_imageUTIs.size());
    qsizetype successes = 0;
    const auto statuses = m_imageUTIs.isEmpty() ? QList<DefaultHandlerRegistry::Status>()
                                                : m_registry.setDefaultHandler(m_imageUTIs, handlerIdentity());
    for (qsizetype i = 0; i < m_imageUTIs.size(); ++i) {
        const auto status = statuses.value(i, DefaultHandlerRegistry::kUnknownError);
        if (status == DefaultHandlerRegistry::kSuccess) {
            printDiagnostic("✅ Successfully set default handler for " + m_imageUTIs[i]);
            ++successes;
        } else {
            printDiagnostic("❌ Failed to set default handler for " + m_imageUTIs[i]);
            printDiagnostic("   Error code: " + QByteArray::number(status) + " - " + descriptionOf(status));
        }
    }
    const QByteArray ratio = "(" + QByteArray::number(successes) + "/" + total;
    if (successes == m_imageUTIs.size())
        printDiagnostic("✅ All file associations set successfully " + ratio + ")");
    else
        printDiagnostic("⚠️ Some file associations failed to set " + ratio + " succeeded)");
    return successes == m_imageUTIs.size();
}

void DefaultFileAssociationManager::verify() const
{
    const QByteArray identity = handlerIdentity();
    std::array<bool, kVerifiedTypes.size()> isOurs{};
    for (std::size_t i = 0; i < isOurs.size(); ++i)
        isOurs[i] = m_registry.defaultHandler(kVerifiedTypes[i].contentType) == identity;
    printDiagnostic("📋 Verification after setting associations:");
    for (std::size_t i = 0; i < isOurs.size(); ++i)
        printDiagnostic("   " + kVerifiedTypes[i].label.toByteArray() + (isOurs[i] ? ": ✅" : ": ❌"));
}

QByteArray descriptionOf(DefaultHandlerRegistry::Status status)
{
    switch (status) {
    case DefaultHandlerRegistry::kSuccess:
        return "Success";
    case DefaultHandlerRegistry::kUnknownError:
        return "Unknown error";
    case DefaultHandlerRegistry::kApplicationNotFound:
        return "Application not found";
    case DefaultHandlerRegistry::kInvalidParameter:
        return "Invalid parameter";
    default:
        return "Error code: " + QByteArray::number(status);
    }
}

} // namespace tallowmere
