// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "browsing/FileListManager.h"
#include "viewer/DeferredListing.h"
#include "viewer/DraggableImageView.h"
#include "viewer/DraggableView.h"
#include "viewer/Pill.h"
#include "viewer/rules/FileInfoText.h"
#include "viewer/rules/OverlayVisibility.h"
#include "viewer/rules/PillLayout.h"
#include "viewer/TagCircle.h"
#include "viewer/TransparencyChecker.h"
#include "viewer/ViewController.h"
#include "viewer/WindowTitle.h"

namespace tallowmere {

namespace {

void apply(OverlayVisibility::Pill visibility, Pill &pill)
{
    if (visibility != OverlayVisibility::Pill::unchanged)
        pill.setVisible(visibility == OverlayVisibility::Pill::shown);
}

} // namespace

void ViewController::buildOverlayViews()
{
    m_transparencyCheckerView = new TransparencyChecker(m_view);
    m_transparencyCheckerView->lower(); // beneath the image
    m_fileInfoPill = new Pill(Pill::Content::facts, PillLayout::kInitialInfoPillWidth, m_view);
    m_fileNamePill = new Pill(Pill::Content::name, PillLayout::kMaximumNamePillWidth, m_view);
    m_fileTagCircle = new TagCircle(m_fileInfoPill);
    m_fileInfoPill->setObjectName(QStringLiteral("fileInfoPill"));
    m_fileNamePill->setObjectName(QStringLiteral("fileNamePill"));
    connect(m_fileInfoPill, &Pill::fontChanged, this, [this] {
        updateFileInfoPillWidth();
        layOutOverlays();
    });
    connect(m_fileNamePill, &Pill::fontChanged, this, [this] {
        m_fileNamePill->setPillWidth(PillLayout::namePillWidth(m_fileNamePill->textWidth()));
        layOutOverlays();
    });
    m_transparencyCheckerView->hide();
    m_fileInfoPill->setVisible(FileInfoSelection::of(m_with.settings).any());
    m_fileNamePill->hide();
    m_fileTagCircle->hide();
}

void ViewController::layOutOverlays()
{
    m_transparencyCheckerView->setGeometry(m_view->rect());
    m_fileInfoPill->placeAtLeft(m_view->size());
    m_fileNamePill->placeAtRight(m_view->size());
    constexpr int kDiameter = PillLayout::kTagDiameter;
    m_fileTagCircle->setGeometry(PillLayout::kTagLeading, (m_fileInfoPill->height() - kDiameter) / 2, kDiameter,
                                 kDiameter);
    updateOverlayVisibility();
    if (!overlaysHaveFile())
        m_fileNamePill->hide();
}

/// A file whose listing was put off counts as the current one: nothing may look different because of that.
bool ViewController::overlaysHaveFile() const
{
    const FileListManager &list = *m_fileListManager;
    return m_deferredListing->isPutOff() || (list.currentIndex >= 0 && list.currentIndex < list.fileURLs.size());
}

void ViewController::updateFileNameDisplay(const FileURL &file)
{
    const bool inCorner =
        !file.empty() && m_with.settings.fileNameDisplayLocation() == FileNameDisplayLocation::inCorner;
    m_imageView->setImageName(file.empty() ? QString() : nameOnOneLine(file));
    updateWindowTitle(file);
    if (inCorner) {
        m_fileNamePill->setText(nameOnOneLine(file));
        m_fileNamePill->setPillWidth(PillLayout::namePillWidth(m_fileNamePill->textWidth()));
        m_fileNamePill->placeAtRight(m_view->size());
    }
    m_fileNamePill->setVisible(inCorner);
    updateOverlayVisibility();
}

void ViewController::updateFileInfo(const FileURL &file)
{
    if (!FileInfoSelection::of(m_with.settings).any()) {
        m_fileInfoPill->hide();
        m_imageView->setImageDescription({});
        return;
    }
    m_with.launcher.launch("com.tallowmere.fileInfo", QualityOfService::userInitiated,
                           [self = QPointer(this), file, &settings = m_with.settings, &scope = m_with.scope,
                            &reader = m_with.attributesReader, &mainQueue = m_with.mainQueue] {
        const FileInfoTexts texts = readFileInfo(file, FileInfoSelection::of(settings), reader, scope);
        mainQueue.async([self, text = texts.joined()] {
            if (auto *controller = self.data())
                controller->applyFileInfo(text);
        });
    });
}

void ViewController::applyFileInfo(const QString &text)
{
    // Cleared, too: a later layout may show the pill again, but never with another file's facts.
    m_fileInfoPill->setText(text);
    // An answer that was on its way when the user switched everything off isn't wanted any more.
    m_imageView->setImageDescription(FileInfoSelection::of(m_with.settings).any() ? text : QString());
    if (text.isEmpty()) {
        m_fileInfoPill->hide();
        return;
    }
    m_fileInfoPill->show();
    updateFileInfoPillWidth();
}

void ViewController::refreshFileInfo()
{
    const FileURL file = currentFile();
    if (file.empty()) {
        m_fileInfoPill->hide();
        return;
    }
    m_fileInfoPill->setVisible(FileInfoSelection::of(m_with.settings).any());
    updateFileInfo(file);
    updateOverlayVisibility();
}

void ViewController::updateFileInfoPillWidth()
{
    if (m_fileInfoPill->text().isEmpty())
        return;
    m_fileInfoPill->setPillWidth(PillLayout::infoPillWidth(m_fileInfoPill->textWidth(), !m_fileTagCircle->isHidden()));
    m_fileInfoPill->placeAtLeft(m_view->size());
    updateOverlayVisibility();
}

void ViewController::updateOverlayVisibility()
{
    const auto visibility = OverlayVisibility::of({
        .viewWidth = static_cast<double>(m_view->width()),
        .hasCurrentFile = overlaysHaveFile(),
        .showsName = m_with.settings.fileNameDisplayLocation() == FileNameDisplayLocation::inCorner,
        .showsInformation = FileInfoSelection::of(m_with.settings).any(),
        .namePillWidth = m_fileNamePill->pillWidth(),
        .infoPillWidth = m_fileInfoPill->pillWidth(),
    });
    apply(visibility.name, *m_fileNamePill);
    apply(visibility.info, *m_fileInfoPill);
}

} // namespace tallowmere
