// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "settings/SettingsViewController.h"

#include "settings/PrefetchCountField.h"
#include "settings/SettingsManager.h"

#include <QAccessibleWidget>
#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QKeyEvent>
#include <QLabel>
#include <QSignalBlocker>

namespace tallowmere {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr QSize kContentSize{500, 390}; // points
constexpr int kMargin = 12;             // points around the groups
constexpr int kGroupSpacing = 8;        // points
constexpr QMargins kGroupMargins{11, 6, 11, 7};
constexpr int kRowSpacing = 4;       // points
constexpr int kLabelSpacing = 8;     // points between a label and its control
constexpr int kSeparatorSpacing = 3; // points, beside that of the rows
/// Of the window's background in quiet text, and of the text in a line between controls.
constexpr float kQuiet = 0.3F;
constexpr float kFaint = 0.2F;
/// Of the text in the wells of fields and boxes under a dark appearance.
constexpr float kLifted = 0.1F;

/// To a screen reader a frame is a window; this one is but a line.
QAccessibleInterface *makeAccessible(const QString &, QObject *object)
{
    return object->objectName() == u"separatorBox"_s
               ? new QAccessibleWidget(qobject_cast<QWidget *>(object), QAccessible::Separator)
               : nullptr;
}

/// A popup's rows stand for the cases of an enumeration, in their order.
template <typename Case, std::size_t count>
int rowOf(const std::array<Case, count> &cases, Case value)
{
    return static_cast<int>(std::find(cases.begin(), cases.end(), value) - cases.begin());
}

void setRowSilently(QComboBox &popup, int row)
{
    const QSignalBlocker silent(popup);
    popup.setCurrentIndex(row);
}

template <typename Widget>
Widget *named(const QString &name, Widget *widget)
{
    widget->setObjectName(name);
    return widget;
}

/// The label's text is the control's name for assistive technology, too. Where a layout gives it more room than its
/// text needs, it has to be aligned there: an English text keeps to the left even in a window laid out the other way.
QLabel *labelFor(QWidget *control, const QString &name, const QString &text)
{
    auto *label = named(name, new QLabel(text));
    label->setTextFormat(Qt::PlainText);
    label->setBuddy(control);
    return label;
}

/// Two columns that take the same part of the width in every group: the groups' columns stand under each other.
QGridLayout *gridOf(QGroupBox *group)
{
    auto *grid = new QGridLayout(group);
    grid->setContentsMargins(kGroupMargins);
    grid->setVerticalSpacing(kRowSpacing);
    grid->setColumnStretch(0, 3);
    grid->setColumnStretch(1, 2);
    return grid;
}

/// The label right beside its field, whatever the column's width.
QHBoxLayout *labelled(QLabel *label, QWidget *control)
{
    auto *row = new QHBoxLayout;
    row->setSpacing(kLabelSpacing);
    row->addWidget(label);
    row->addWidget(control);
    row->addStretch();
    return row;
}

bool isCloseKey(const QKeyEvent &event)
{
    return event.key() == Qt::Key_W && event.modifiers() == Qt::ControlModifier;
}

QColor mixed(const QColor &a, const QColor &b, float partOfB)
{
    const auto channel = [partOfB](float x, float y) { return x + (y - x) * partOfB; };
    return QColor::fromRgbF(channel(a.redF(), b.redF()), channel(a.greenF(), b.greenF()),
                            channel(a.blueF(), b.blueF()));
}

void setTextColor(QWidget &widget, const QColor &color)
{
    QPalette palette = widget.palette();
    palette.setColor(QPalette::WindowText, color);
    widget.setPalette(palette);
}

} // namespace

SettingsViewController::SettingsViewController(SettingsManager &settings, PrefetchCounts counts, QWidget *parent)
    : QWidget(parent), m_settings(settings)
{
    setAccessibleName(tr("Settings"));
    setFocusPolicy(Qt::ClickFocus); // it can hold the focus, but Tab doesn't stop at it
    buildPrefetchGroup(counts);
    buildFileFormatsGroup();
    buildDisplayGroup();
    auto *groups = new QVBoxLayout(this);
    groups->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
    groups->setSpacing(kGroupSpacing);
    for (QGroupBox *group : {m_prefetchGroupBox, m_fileFormatsGroupBox, m_displayGroupBox})
        groups->addWidget(group);
    applyColors();
    refreshControls();
}

SettingsViewController::~SettingsViewController()
{
    // A field commits its text when it is hidden, and that happens while the rest of this object is gone.
    m_prefetchBeforeField->disconnect(this);
    m_prefetchAfterField->disconnect(this);
}

QSize SettingsViewController::sizeHint() const
{
    return QWidget::sizeHint().expandedTo(kContentSize);
}

void SettingsViewController::buildPrefetchGroup(PrefetchCounts counts)
{
    m_prefetchGroupBox = named(u"prefetchGroupBox"_s, new QGroupBox(tr("Prefetching")));
    m_prefetchBeforeField = named(u"prefetchBeforeField"_s, new PrefetchCountField(counts.before));
    m_prefetchAfterField = named(u"prefetchAfterField"_s, new PrefetchCountField(counts.after));
    m_prefetchBeforeLabel = labelFor(m_prefetchBeforeField, u"prefetchBeforeLabel"_s, tr("Files before:"));
    m_prefetchAfterLabel = labelFor(m_prefetchAfterField, u"prefetchAfterLabel"_s, tr("Files after:"));
    m_useXPCServiceCheckbox =
        addSwitch(u"useXPCServiceCheckbox"_s, tr("Keep the app in memory for instant loading"),
                  &SettingsManager::useXPCService, &SettingsManager::setUseXPCService); // kept and shown, no more
    m_prefetchInfoLabel =
        named(u"prefetchInfoLabel"_s, new QLabel(tr("Prefetching loads images in advance for smoother navigation")));
    m_prefetchInfoLabel->setTextFormat(Qt::PlainText);
    connect(m_prefetchBeforeField, &PrefetchCountField::countChanged, this,
            &SettingsViewController::prefetchBeforeChanged);
    connect(m_prefetchAfterField, &PrefetchCountField::countChanged, this,
            &SettingsViewController::prefetchAfterChanged);

    QGridLayout *grid = gridOf(m_prefetchGroupBox);
    grid->addLayout(labelled(m_prefetchBeforeLabel, m_prefetchBeforeField), 0, 0);
    grid->addLayout(labelled(m_prefetchAfterLabel, m_prefetchAfterField), 0, 1);
    grid->addWidget(m_useXPCServiceCheckbox, 1, 0, 1, 2);
    grid->addWidget(m_prefetchInfoLabel, 2, 0, 1, 2, Qt::AlignLeft); // no wider than its text, see labelFor()
}

void SettingsViewController::buildFileFormatsGroup()
{
    m_fileFormatsGroupBox = named(u"fileFormatsGroupBox"_s, new QGroupBox(tr("File Formats")));
    m_pngSupportCheckbox = addSwitch(u"pngSupportCheckbox"_s, tr("Support PNG"), &SettingsManager::pngSupportEnabled,
                                     &SettingsManager::setPngSupportEnabled);
    m_webpSupportCheckbox = addSwitch(u"webpSupportCheckbox"_s, tr("Support WebP"),
                                      &SettingsManager::webpSupportEnabled, &SettingsManager::setWebpSupportEnabled);
    m_avifSupportCheckbox = addSwitch(u"avifSupportCheckbox"_s, tr("Support AVIF"),
                                      &SettingsManager::avifSupportEnabled, &SettingsManager::setAvifSupportEnabled);
    m_heicSupportCheckbox = addSwitch(u"heicSupportCheckbox"_s, tr("Support HEIC"),
                                      &SettingsManager::heicSupportEnabled, &SettingsManager::setHeicSupportEnabled);
    QGridLayout *grid = gridOf(m_fileFormatsGroupBox);
    int cell = 0;
    for (QCheckBox *checkbox :
         {m_pngSupportCheckbox, m_webpSupportCheckbox, m_avifSupportCheckbox, m_heicSupportCheckbox}) {
        connect(checkbox, &QCheckBox::toggled, this, &SettingsViewController::enabledFormatsChanged);
        grid->addWidget(checkbox, cell / 2, cell % 2);
        ++cell;
    }
}

void SettingsViewController::buildDisplayGroup()
{
    m_displayGroupBox = named(u"displayGroupBox"_s, new QGroupBox(tr("Display")));
    m_separatorBox = named(u"separatorBox"_s, new QFrame);
    m_separatorBox->setFrameStyle(QFrame::HLine | QFrame::Plain);
    QAccessible::installFactory(makeAccessible); // the same function twice counts once
    QGridLayout *grid = gridOf(m_displayGroupBox);
    buildDisplayCheckboxes(*grid);
    auto *separator = new QVBoxLayout;
    separator->setContentsMargins(0, kSeparatorSpacing, 0, kSeparatorSpacing);
    separator->addWidget(m_separatorBox);
    grid->addLayout(separator, grid->rowCount(), 0, 1, 2);
    grid->addLayout(buildDisplayPopups(), grid->rowCount(), 0, 1, 2);
}

void SettingsViewController::buildDisplayCheckboxes(QGridLayout &grid)
{
    m_showFileSizeCheckbox = addSwitch(u"showFileSizeCheckbox"_s, tr("Show file size"), &SettingsManager::showFileSize,
                                       &SettingsManager::setShowFileSize);
    m_showCreationDateCheckbox = addSwitch(u"showCreationDateCheckbox"_s, tr("Show creation date"),
                                           &SettingsManager::showCreationDate, &SettingsManager::setShowCreationDate);
    m_showImageResolutionCheckbox =
        addSwitch(u"showImageResolutionCheckbox"_s, tr("Show image resolution"), &SettingsManager::showImageResolution,
                  &SettingsManager::setShowImageResolution);
    m_showFileTagCheckbox = addSwitch(u"showFileTagCheckbox"_s, tr("Show file tag"), &SettingsManager::showFileTag,
                                      &SettingsManager::setShowFileTag);
    m_autoResizeToImageSizeCheckbox =
        addSwitch(u"autoResizeToImageSizeCheckbox"_s, tr("Auto-resize window to image size"),
                  &SettingsManager::autoResizeToImageSize, &SettingsManager::setAutoResizeToImageSize);
    m_autoResizeWithAnimationCheckbox =
        addSwitch(u"autoResizeWithAnimationCheckbox"_s, tr("With animation"), &SettingsManager::autoResizeWithAnimation,
                  &SettingsManager::setAutoResizeWithAnimation);

    for (QCheckBox *checkbox : {m_showFileSizeCheckbox, m_showCreationDateCheckbox, m_showImageResolutionCheckbox})
        connect(checkbox, &QCheckBox::toggled, this, &SettingsViewController::fileInfoChanged);
    connect(m_showFileTagCheckbox, &QCheckBox::toggled, this, &SettingsViewController::fileTagChanged);
    connect(m_autoResizeToImageSizeCheckbox, &QCheckBox::toggled, this,
            &SettingsViewController::autoResizeToImageSizeChanged);
    connect(m_autoResizeWithAnimationCheckbox, &QCheckBox::toggled, this,
            &SettingsViewController::autoResizeWithAnimationChanged);

    grid.addWidget(m_showFileSizeCheckbox, 0, 0);
    grid.addWidget(m_showCreationDateCheckbox, 0, 1);
    grid.addWidget(m_showImageResolutionCheckbox, 1, 0);
    grid.addWidget(m_showFileTagCheckbox, 1, 1);
    grid.addWidget(m_autoResizeToImageSizeCheckbox, 2, 0);
    grid.addWidget(m_autoResizeWithAnimationCheckbox, 2, 1);
}

QGridLayout *SettingsViewController::buildDisplayPopups()
{
    m_fileNameDisplayLocationPopup = named(u"fileNameDisplayLocationPopup"_s, new QComboBox);
    m_fileNameDisplayLocationPopup->addItems({tr("in the title"), tr("in the corner"), tr("off")});
    m_fileNameDisplayLocationLabel =
        labelFor(m_fileNameDisplayLocationPopup, u"fileNameDisplayLocationLabel"_s, tr("Show file name at:"));
    m_transparencyBackgroundPopup = named(u"transparencyBackgroundPopup"_s, new QComboBox);
    m_transparencyBackgroundPopup->addItems({tr("solid color"), tr("checkers")});
    m_transparencyBackgroundLabel =
        labelFor(m_transparencyBackgroundPopup, u"transparencyBackgroundLabel"_s, tr("Show transparency as:"));

    connect(m_fileNameDisplayLocationPopup, &QComboBox::currentIndexChanged, this, [this](int row) {
        m_settings.setFileNameDisplayLocation(kAllFileNameDisplayLocations.at(static_cast<std::size_t>(row)));
        Q_EMIT fileNameDisplayLocationChanged();
    });
    connect(m_transparencyBackgroundPopup, &QComboBox::currentIndexChanged, this, [this](int row) {
        m_settings.setTransparencyBackground(kAllTransparencyBackgrounds.at(static_cast<std::size_t>(row)));
        Q_EMIT transparencyBackgroundChanged();
    });

    m_fileNameDisplayLocationPopup->installEventFilter(this);
    m_transparencyBackgroundPopup->installEventFilter(this);

    auto *form = new QGridLayout;
    form->setHorizontalSpacing(kLabelSpacing);
    form->setVerticalSpacing(kRowSpacing);
    form->setColumnStretch(2, 1); // the popups stay beside their labels, all of one width
    form->addWidget(m_fileNameDisplayLocationLabel, 0, 0, Qt::AlignLeft);
    form->addWidget(m_fileNameDisplayLocationPopup, 0, 1);
    form->addWidget(m_transparencyBackgroundLabel, 1, 0, Qt::AlignLeft);
    form->addWidget(m_transparencyBackgroundPopup, 1, 1);
    return form;
}

QCheckBox *SettingsViewController::addSwitch(const QString &name, const QString &text, Reader read, Writer write)
{
    auto *checkbox = named(name, new QCheckBox(text));
    // Not clicked(): assistive technology toggles without a click. Connected first: written before anybody is told.
    connect(checkbox, &QCheckBox::toggled, this, [this, write](bool on) { (m_settings.*write)(on); });
    m_switches.push_back({checkbox, read});
    return checkbox;
}

void SettingsViewController::refreshControls()
{
    for (const auto &[checkbox, read] : m_switches) {
        const QSignalBlocker silent(checkbox);
        checkbox->setChecked((m_settings.*read)());
    }
    setRowSilently(*m_fileNameDisplayLocationPopup,
                   rowOf(kAllFileNameDisplayLocations, m_settings.fileNameDisplayLocation()));
    setRowSilently(*m_transparencyBackgroundPopup,
                   rowOf(kAllTransparencyBackgrounds, m_settings.transparencyBackground()));
}

void SettingsViewController::makeFirstResponder()
{
    setFocus();
}

void SettingsViewController::keyPressEvent(QKeyEvent *event)
{
    // The main menu has the same key, but a menu answers only while its window is to be seen.
    if (isCloseKey(*event))
        window()->close();
    else
        QWidget::keyPressEvent(event);
}

bool SettingsViewController::eventFilter(QObject *watched, QEvent *event)
{
    // A popup takes every key with a text for the beginning of a row's name.
    if (event->type() == QEvent::KeyPress && isCloseKey(static_cast<const QKeyEvent &>(*event)))
        return window()->close();
    return QWidget::eventFilter(watched, event);
}

void SettingsViewController::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    if (!event->spontaneous()) // not when it merely comes back from being minimised
        makeFirstResponder();
}

void SettingsViewController::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        applyColors();
}

void SettingsViewController::applyColors()
{
    const QColor text = palette().color(QPalette::WindowText);
    const QColor background = palette().color(QPalette::Window);
    setTextColor(*m_prefetchInfoLabel, mixed(text, background, kQuiet));
    setTextColor(*m_separatorBox, mixed(background, text, kFaint));

    // Dark palettes make wells darker than the window, and there an empty box is hardly to be seen.
    QPalette wells;
    if (text.lightness() > background.lightness())
        wells.setColor(QPalette::Base, mixed(background, text, kLifted));
    m_prefetchBeforeField->setPalette(wells);
    m_prefetchAfterField->setPalette(wells);
    for (const Switch &each : m_switches)
        each.checkbox->setPalette(wells);
}

} // namespace tallowmere
