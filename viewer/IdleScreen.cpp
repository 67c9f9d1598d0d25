// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "viewer/IdleScreen.h"

#include "viewer/Appearance.h"
#include "viewer/InterfaceFont.h"
#include "viewer/NonInteractiveImageView.h"

#include <QEvent>
#include <QLabel>

#include <algorithm>

namespace tallowmere {

namespace {

constexpr double kFontSize = 13;  // points
constexpr int kLogoSide = 100;    // points; the logo is never larger
constexpr int kSmallestLogo = 32; // points; below that a logo is a blot
constexpr int kSpacing = 16;      // points between logo and text
constexpr int kMargin = 20;       // points around both
constexpr int kWidestText = 420;  // points

} // namespace

IdleScreen::IdleScreen(QWidget *parent)
    : QWidget(parent), m_logoImageView(new NonInteractiveImageView(this)), m_instructionLabel(new QLabel(this))
{
    m_instructionLabel->setTextFormat(Qt::PlainText);
    m_instructionLabel->setText(tr("Double-click an image in Finder to open, or drop it here"));
    m_instructionLabel->setAlignment(Qt::AlignHCenter | Qt::AlignTop);
    m_instructionLabel->setWordWrap(true);
    m_instructionLabel->setTextInteractionFlags(Qt::NoTextInteraction);
    applyTextLook();
}

void IdleScreen::applyTextLook()
{
    m_instructionLabel->setFont(interfaceFont(kFontSize));
    QPalette colours = m_instructionLabel->palette();
    colours.setColor(QPalette::WindowText, secondaryLabelColor(palette()));
    m_instructionLabel->setPalette(colours);
}

void IdleScreen::showEvent(QShowEvent *event)
{
    // Whoever starts with a picture never sees the logo and shouldn't wait for it.
    if (!m_logoLoaded) {
        m_logoLoaded = true;
        m_logoImageView->setImage(QStringLiteral(":/logo.svg"));
        m_logoImageView->setAccessibleName(tr("Tallowmere logo"));
        layOut();
    }
    QWidget::showEvent(event);
}

void IdleScreen::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    layOut();
}

void IdleScreen::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::FontChange) {
        applyTextLook();
        layOut();
    }
}

void IdleScreen::layOut()
{
    const int textWidth = std::min(width() - 2 * kMargin, kWidestText);
    const int textHeight = textWidth > 0 ? m_instructionLabel->heightForWidth(textWidth) : 0;
    // What doesn't fit is left out rather than cut: first the logo shrinks and goes, then the text.
    const bool textFits = textWidth > 0 && textHeight <= height();
    const int roomForLogo =
        std::min({kLogoSide, width() - kMargin, height() - kMargin - (textFits ? textHeight + kSpacing : 0)});
    const bool logoFits = !m_logoImageView->isEmpty() && roomForLogo >= kSmallestLogo;
    m_instructionLabel->setVisible(textFits);
    m_logoImageView->setVisible(logoFits);

    const int logoHeight = logoFits ? roomForLogo : 0;
    const int spacing = logoFits && textFits ? kSpacing : 0;
    const int top = (height() - logoHeight - spacing - (textFits ? textHeight : 0)) / 2;
    m_logoImageView->setGeometry((width() - logoHeight) / 2, top, logoHeight, logoHeight);
    m_instructionLabel->setGeometry((width() - textWidth) / 2, top + logoHeight + spacing, std::max(textWidth, 0),
                                    textHeight);
}

} // namespace tallowmere
