// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "tests/settings/SettingsWindowFixture.h"

#include <QComboBox>
#include <QLabel>
#include <QTest>

#include <algorithm>

namespace tallowmere::test {

SettingsWindowFixture::~SettingsWindowFixture() = default;

void SettingsWindowFixture::show()
{
    if (!controller) {
        controller = std::make_unique<SettingsViewController>(
            settings, SettingsViewController::PrefetchCounts{.before = 2, .after = 20});
        keepJournal();
    }
    controller->show();
    controller->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(controller.get(), 30'000));
}

void SettingsWindowFixture::keepJournal()
{
    using Controller = SettingsViewController;
    const auto note = [this](const char *news) { return [this, news] { journal.emplace_back(news); }; };
    const Controller *from = controller.get();
    QObject::connect(from, &Controller::enabledFormatsChanged, from, note("formats"));
    QObject::connect(from, &Controller::fileInfoChanged, from, note("file info"));
    QObject::connect(from, &Controller::fileTagChanged, from, note("file tag"));
    QObject::connect(from, &Controller::autoResizeWithAnimationChanged, from, note("animation"));
    QObject::connect(from, &Controller::transparencyBackgroundChanged, from, note("transparency"));
    QObject::connect(from, &Controller::fileNameDisplayLocationChanged, from, note("file name"));
    QObject::connect(from, &Controller::autoResizeToImageSizeChanged, from,
                     [this](bool on) { journal.emplace_back(on ? "auto-resize on" : "auto-resize off"); });
    QObject::connect(from, &Controller::prefetchBeforeChanged, from,
                     [this](int count) { journal.push_back("before " + std::to_string(count)); });
    QObject::connect(from, &Controller::prefetchAfterChanged, from,
                     [this](int count) { journal.push_back("after " + std::to_string(count)); });
}

QList<QGroupBox *> SettingsWindowFixture::groups() const
{
    QList<QGroupBox *> found = controller->findChildren<QGroupBox *>();
    std::ranges::sort(found, {}, &QWidget::y);
    return found;
}

QList<QWidget *> SettingsWindowFixture::controlsOf(const QGroupBox *group)
{
    QList<QWidget *> controls;
    for (QWidget *child : group->findChildren<QWidget *>(Qt::FindDirectChildrenOnly)) {
        // A label is no frame here, the line between the controls is.
        if (child->metaObject() != &QFrame::staticMetaObject)
            controls << child;
    }
    const bool mirrored = group->isRightToLeft();
    std::ranges::sort(controls, [mirrored](const QWidget *a, const QWidget *b) {
        const QRect first = a->geometry();
        const QRect second = b->geometry();
        if (first.bottom() < second.center().y() || second.bottom() < first.center().y())
            return first.y() < second.y();
        return mirrored ? first.right() > second.right() : first.x() < second.x();
    });
    return controls;
}

} // namespace tallowmere::test
