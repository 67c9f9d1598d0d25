// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "platform/SecurityScope.h"
#include "support/Queues.h"
#include "viewer/Pill.h"
#include "viewer/rules/LabelColour.h"
#include "viewer/rules/PillLayout.h"
#include "viewer/TagCircle.h"
#include "viewer/ViewController.h"

namespace tallowmere {

void ViewController::updateFileTag(const FileURL &file)
{
    if (file.empty() || !m_with.settings.showFileTag())
        return applyFileTagColor(std::nullopt, {});
    m_with.launcher.launch("com.tallowmere.fileTag", QualityOfService::userInitiated,
                           [self = QPointer(this), file, &scope = m_with.scope, &reader = m_with.labelReader,
                            &mainQueue = m_with.mainQueue] {
        const ScopedAccess access(scope, file);
        const FileLabel label = reader.label(file);
        mainQueue.async([self, color = labelColour(label), name = labelName(label)] {
            if (auto *controller = self.data())
                controller->applyFileTagColor(color, name);
        });
    });
}

void ViewController::applyFileTagColor(const std::optional<Color> &color, const QString &name)
{
    m_fileTagCircle->setLabelName(name);
    if (color)
        m_fileTagCircle->setColor(QColor::fromRgbF(static_cast<float>(color->red), static_cast<float>(color->green),
                                                   static_cast<float>(color->blue)));
    m_fileTagCircle->setVisible(color.has_value());
    m_fileInfoPill->setTextLeading(PillLayout::infoTextLeading(color.has_value()));
    updateFileInfoPillWidth();
}

} // namespace tallowmere
