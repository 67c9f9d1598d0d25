// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "app/AboutViewController.h"

#include "app/AboutText.h"
#include "viewer/Appearance.h"
#include "viewer/InterfaceFont.h"
#include "viewer/NonInteractiveImageView.h"

#include <QDate>
#include <QDesktopServices>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QUrl>
#include <QVBoxLayout>

namespace tallowmere {

using namespace Qt::Literals::StringLiterals;

namespace {

// All in points.
constexpr int kIconSide = 64;
constexpr int kAboveIcon = 30;
constexpr int kAboveName = 12;
constexpr int kAboveVersion = 4;
constexpr int kAboveRights = 8;
constexpr int kAboveButton = 12;
constexpr int kMargin = 20;
constexpr int kBesideButtonText = 12; // more than styles leave there by themselves
constexpr double kNameFont = 18;
constexpr double kVersionFont = 12;
constexpr double kRightsFont = 10;

QLabel *textLabel(const char *name, QWidget *parent)
{
    auto *label = new QLabel(parent);
    label->setObjectName(QLatin1String(name));
    label->setTextFormat(Qt::PlainText);
    label->setAlignment(Qt::AlignHCenter | Qt::AlignTop);
    label->setWordWrap(true);
    return label;
}

} // namespace

AboutViewController::AboutViewController(const BundleInformation &bundle, QWidget *parent)
    : QWidget(parent), m_bundle(bundle), m_appIconImageView(new NonInteractiveImageView(this)),
      m_appNameLabel(textLabel("appNameLabel", this)), m_versionLabel(textLabel("versionLabel", this)),
      m_copyrightLabel(textLabel("copyrightLabel", this)), m_oltraButton(new QPushButton(tr("Oltra Software"), this))
{
    m_appIconImageView->setObjectName(u"appIconImageView"_s);
    m_oltraButton->setObjectName(u"oltraButton"_s);
    connect(m_oltraButton, &QPushButton::clicked, this, &AboutViewController::openOltraWebsite);
    layOut();
    applyTextLook();
    fillTexts();
}

void AboutViewController::layOut()
{
    m_appIconImageView->setFixedSize(kIconSide, kIconSide);
    m_appIconImageView->setImage(u":/icons/app.tallowmere.Tallowmere.svg"_s);
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(kMargin, kAboveIcon, kMargin, kMargin);
    column->setSpacing(0);
    column->addWidget(m_appIconImageView, 0, Qt::AlignHCenter);
    column->addSpacing(kAboveName);
    column->addWidget(m_appNameLabel);
    column->addSpacing(kAboveVersion);
    column->addWidget(m_versionLabel);
    column->addSpacing(kAboveRights);
    column->addWidget(m_copyrightLabel);
    column->addSpacing(kAboveButton);
    column->addWidget(m_oltraButton, 0, Qt::AlignHCenter);
    m_oltraButton->setMinimumWidth(m_oltraButton->sizeHint().width() + 2 * kBesideButtonText);
    column->addStretch(1);
}

void AboutViewController::applyTextLook()
{
    m_appNameLabel->setFont(interfaceFont(kNameFont, QFont::DemiBold));
    m_versionLabel->setFont(interfaceFont(kVersionFont));
    m_copyrightLabel->setFont(interfaceFont(kRightsFont));
    for (QLabel *label : {m_versionLabel, m_copyrightLabel}) {
        QPalette colours = palette();
        colours.setColor(QPalette::WindowText, secondaryLabelColor(colours));
        label->setPalette(colours);
    }
}

void AboutViewController::fillTexts()
{
    const AboutText text = AboutText::of(m_bundle, QDate::currentDate().year());
    m_appNameLabel->setText(text.name);
    m_versionLabel->setText(text.version);
    m_copyrightLabel->setText(text.rights);
    m_appIconImageView->setAccessibleName(tr("Icon of %1").arg(text.name));
    setAccessibleName(tr("About %1").arg(text.name));
}

void AboutViewController::makeFirstResponder()
{
    setFocus();
}

void AboutViewController::openOltraWebsite()
{
    const QString address = m_bundle.string(u"OltraWebsite"_s).value_or(QString());
    if (!address.isEmpty())
        QDesktopServices::openUrl(QUrl(address));
}

void AboutViewController::keyDown(QKeyEvent *event)
{
    const bool controlW = event->modifiers().testFlag(Qt::ControlModifier) &&
                          !event->modifiers().testFlag(Qt::ShiftModifier) && event->key() == Qt::Key_W;
    if (event->key() == Qt::Key_Escape || controlW)
        window()->close();
    else
        event->ignore();
}

void AboutViewController::keyPressEvent(QKeyEvent *event)
{
    keyDown(event);
}

void AboutViewController::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    makeFirstResponder();
}

void AboutViewController::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::FontChange)
        applyTextLook();
}

} // namespace tallowmere
