// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

#include <vector>

class QCheckBox;
class QComboBox;
class QFrame;
class QGridLayout;
class QGroupBox;
class QLabel;

namespace tallowmere {

class PrefetchCountField;
class SettingsManager;

/// The content of the Settings window: every setting and the two prefetch counts. Main thread.
///
/// Each control writes its setting at once and then says what has changed; whoever shows the window carries that to
/// the viewer, the menu and the cache.
class SettingsViewController final : public QWidget
{
    Q_OBJECT

public:
    struct PrefetchCounts
    {
        int before = 0;
        int after = 0;
    };

    /// @p settings outlives it.
    SettingsViewController(SettingsManager &settings, PrefetchCounts counts, QWidget *parent = nullptr);
    ~SettingsViewController() override;

    /// 500 x 390 points, or more where the font needs it.
    [[nodiscard]] QSize sizeHint() const override;

    /// A setting was changed elsewhere: every check box and popup from the store.
    void refreshControls();
    /// Key presses go to it from now on.
    void makeFirstResponder();

Q_SIGNALS:
    /// A format was switched on or off.
    void enabledFormatsChanged();
    /// What the information pill shows.
    void fileInfoChanged();
    void fileTagChanged();
    void autoResizeToImageSizeChanged(bool on);
    void autoResizeWithAnimationChanged();
    void transparencyBackgroundChanged();
    void fileNameDisplayLocationChanged();
    /// From 0 to 100.
    void prefetchBeforeChanged(int count);
    void prefetchAfterChanged(int count);

protected:
    /// Ctrl-W closes the window.
    void keyPressEvent(QKeyEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    using Reader = bool (SettingsManager::*)() const;
    using Writer = void (SettingsManager::*)(bool);
    struct Switch
    {
        QCheckBox *checkbox;
        Reader read;
    };

    void buildPrefetchGroup(PrefetchCounts counts);
    void buildFileFormatsGroup();
    void buildDisplayGroup();
    void buildDisplayCheckboxes(QGridLayout &grid);
    [[nodiscard]] QGridLayout *buildDisplayPopups();
    /// A check box that shows what @p read answers and hands what the user makes of it to @p write.
    QCheckBox *addSwitch(const QString &name, const QString &text, Reader read, Writer write);
    void applyColors();

    SettingsManager &m_settings;
    PrefetchCountField *m_prefetchBeforeField = nullptr;
    PrefetchCountField *m_prefetchAfterField = nullptr;
    QLabel *m_prefetchBeforeLabel = nullptr;
    QLabel *m_prefetchAfterLabel = nullptr;
    QLabel *m_prefetchInfoLabel = nullptr;
    QCheckBox *m_pngSupportCheckbox = nullptr;
    QCheckBox *m_webpSupportCheckbox = nullptr;
    QCheckBox *m_avifSupportCheckbox = nullptr;
    QCheckBox *m_heicSupportCheckbox = nullptr;
    QCheckBox *m_showFileSizeCheckbox = nullptr;
    QCheckBox *m_showImageResolutionCheckbox = nullptr;
    QCheckBox *m_showCreationDateCheckbox = nullptr;
    QCheckBox *m_showFileTagCheckbox = nullptr;
    QCheckBox *m_autoResizeToImageSizeCheckbox = nullptr;
    QCheckBox *m_autoResizeWithAnimationCheckbox = nullptr;
    QLabel *m_transparencyBackgroundLabel = nullptr;
    QComboBox *m_transparencyBackgroundPopup = nullptr;
    QFrame *m_separatorBox = nullptr;
    QLabel *m_fileNameDisplayLocationLabel = nullptr;
    QComboBox *m_fileNameDisplayLocationPopup = nullptr;
    QGroupBox *m_prefetchGroupBox = nullptr;
    QGroupBox *m_fileFormatsGroupBox = nullptr;
    QGroupBox *m_displayGroupBox = nullptr;
    QCheckBox *m_useXPCServiceCheckbox = nullptr;
    std::vector<Switch> m_switches;
};

} // namespace tallowmere
