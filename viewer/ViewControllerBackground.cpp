// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "imaging/ImageCacheManager.h"
#include "imaging/ImageLoader.h"
#include "viewer/Appearance.h"
#include "viewer/DraggableImageView.h"
#include "viewer/DraggableView.h"
#include "viewer/rules/TransparencyRule.h"
#include "viewer/TransparencyChecker.h"
#include "viewer/ViewController.h"

namespace tallowmere {

namespace {

QColor toQColor(const Color &color)
{
    return QColor::fromRgbF(static_cast<float>(color.red), static_cast<float>(color.green),
                            static_cast<float>(color.blue), static_cast<float>(color.alpha));
}

/// What one sees when @p color lies on the opaque @p base.
QColor laidOn(const QColor &base, const QColor &color)
{
    const float alpha = color.alphaF();
    const auto mixed = [alpha](float over, float under) { return over * alpha + under * (1.0F - alpha); };
    return QColor::fromRgbF(mixed(color.redF(), base.redF()), mixed(color.greenF(), base.greenF()),
                            mixed(color.blueF(), base.blueF()));
}

} // namespace

void ViewController::applyBackgroundColor(const QColor &color)
{
    // The average of a picture with transparent parts is transparent itself.
    m_imageView->setBackgroundColor(laidOn(windowBackgroundColor(), color));
}

QColor ViewController::windowBackgroundColor() const
{
    return m_view->palette().color(QPalette::Active, QPalette::Window);
}

void ViewController::appearanceChanged()
{
    // Palettes are set anew for many reasons; only another colour is another appearance.
    const QColor color = windowBackgroundColor();
    if (color == m_resolvedWindowColor)
        return;
    m_resolvedWindowColor = color;
    applyBackgroundColor(color);
    m_transparencyCheckerView->setPattern(CheckerPattern::forAppearance(isDark(m_view->palette())));
    m_imageView->update(); // which paints it
}

void ViewController::updateTransparencyBackground()
{
    const bool checkers = showsCheckers(m_with.settings.transparencyBackground(), m_imageView->image());
    m_imageView->setChecker(checkers ? m_transparencyCheckerView : nullptr);
    m_transparencyCheckerView->setVisible(checkers);
}

/// Whether it was the average colour: then nothing needs to be computed.
bool ViewController::applyBackgroundFor(const FileURL &file)
{
    if (!m_with.settings.autoResizeToImageSize()) {
        applyBackgroundColor(windowBackgroundColor());
        return false;
    }
    const auto average = m_with.cache->averageColorCache.find(file);
    if (average)
        applyBackgroundColor(toQColor(*average));
    return average != nullptr;
}

bool ViewController::applyAverageColorBackground(const FileURL &file)
{
    if (const auto average = m_with.cache->averageColorCache.find(file)) {
        applyBackgroundColor(toQColor(*average));
        return true;
    }
    // A preview is followed by the whole picture, and that by its colour.
    if (const ImagePtr &image = m_imageView->image(); image && !image->isPreview())
        computeAverageColor(file, image);
    return false;
}

void ViewController::computeAverageColor(const FileURL &file, const ImagePtr &image)
{
    storeAverageColor(file, image, [self = QPointer(this)](const Color &average) {
        // By now the user may have gone over to fixed sizes or closed the picture. Another file may be on its way: its
        // own colour comes later.
        auto *controller = self.data();
        if (controller && controller->m_with.settings.autoResizeToImageSize() && !controller->isIdle())
            controller->applyBackgroundColor(toQColor(average));
    });
}

/// Computed in the background; @p done (may be empty) is called on the main thread afterwards, unless there is none.
void ViewController::storeAverageColor(const FileURL &file, const ImagePtr &image,
                                       std::function<void(const Color &)> done)
{
    m_with.launcher.launch("com.tallowmere.averageColor", QualityOfService::userInitiated,
                           [file, image, done = std::move(done), loader = m_with.loader, cache = m_with.cache,
                            &mainQueue = m_with.mainQueue] {
        const std::optional<Color> average = loader->calculateAverageColor(*image);
        if (!average)
            return;
        cache->averageColorCache.insert(file, std::make_shared<Color>(*average), sizeof(Color));
        if (done)
            mainQueue.async([done, average] { done(*average); });
    });
}

} // namespace tallowmere
