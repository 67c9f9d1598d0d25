// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "viewer/AccessibleViews.h"

#include "viewer/DraggableImageView.h"
#include "viewer/DraggableView.h"
#include "viewer/IdleScreen.h"
#include "viewer/NonInteractiveImageView.h"
#include "viewer/Pill.h"
#include "viewer/ProgressSign.h"
#include "viewer/TagCircle.h"

#include <QAccessibleWidget>
#include <QLabel>

namespace tallowmere {

namespace {

/// A view that is described by what it shows at the moment it is asked: nothing has to be kept up to date.
template <typename View>
class DescribedView final : public QAccessibleWidget
{
public:
    using Text = QString (*)(const View &);
    DescribedView(View *view, QAccessible::Role role, Text name, Text description = nullptr)
        : QAccessibleWidget(view, role), m_name(name), m_description(description)
    {}

    [[nodiscard]] QString text(QAccessible::Text which) const override
    {
        const auto *view = qobject_cast<const View *>(object());
        if (view && which == QAccessible::Name)
            return m_name(*view);
        if (view && which == QAccessible::Description && m_description)
            return m_description(*view);
        return QAccessibleWidget::text(which);
    }

private:
    const Text m_name;
    const Text m_description;
};

class AccessibleProgress final : public QAccessibleWidget, public QAccessibleValueInterface
{
public:
    explicit AccessibleProgress(ProgressSign *sign)
        : QAccessibleWidget(sign, QAccessible::ProgressBar, ProgressSign::tr("Loading"))
    {}
    void *interface_cast(QAccessible::InterfaceType type) override
    {
        return type == QAccessible::ValueInterface ? static_cast<QAccessibleValueInterface *>(this)
                                                   : QAccessibleWidget::interface_cast(type);
    }
    [[nodiscard]] QVariant currentValue() const override
    {
        const auto *sign = qobject_cast<const ProgressSign *>(object());
        return sign ? sign->fraction().value_or(0.0) : 0.0;
    }
    void setCurrentValue(const QVariant &) override {} // a progress is only looked at
    [[nodiscard]] QVariant maximumValue() const override { return 1.0; }
    [[nodiscard]] QVariant minimumValue() const override { return 0.0; }
    [[nodiscard]] QVariant minimumStepSize() const override { return 0.0; }
};

/// It holds the keyboard focus, and what has the focus is what is read out: the picture, or how to begin.
QString nameOfRoot(const DraggableView &view)
{
    const auto *image = view.findChild<DraggableImageView *>(QString(), Qt::FindDirectChildrenOnly);
    if (image && !image->imageName().isEmpty())
        return image->imageName();
    const auto *idle = view.findChild<IdleScreen *>(QString(), Qt::FindDirectChildrenOnly);
    return idle ? idle->instructionLabel()->text() : QString();
}

QAccessibleInterface *makeAccessible(const QString &, QObject *object)
{
    if (auto *root = qobject_cast<DraggableView *>(object))
        return new DescribedView<DraggableView>(root, QAccessible::Pane, nameOfRoot);
    if (auto *image = qobject_cast<DraggableImageView *>(object)) {
        return new DescribedView<DraggableImageView>(
            image, QAccessible::Graphic, [](const DraggableImageView &view) { return view.imageName(); },
            [](const DraggableImageView &view) { return view.imageDescription(); });
    }
    if (auto *pill = qobject_cast<Pill *>(object))
        return new DescribedView<Pill>(pill, QAccessible::StaticText, [](const Pill &view) { return view.text(); });
    if (auto *circle = qobject_cast<TagCircle *>(object)) {
        return new DescribedView<TagCircle>(circle, QAccessible::StaticText,
                                            [](const TagCircle &view) { return view.labelName(); });
    }
    if (auto *sign = qobject_cast<ProgressSign *>(object))
        return new AccessibleProgress(sign);
    if (auto *logo = qobject_cast<NonInteractiveImageView *>(object))
        return new QAccessibleWidget(logo, QAccessible::Graphic);
    return nullptr;
}

} // namespace

void installAccessibleViews()
{
    QAccessible::installFactory(makeAccessible); // the same function twice counts once
}

void announce(QWidget &view, QAccessible::Event change)
{
    // Asked first: Qt would make the interface of an event even if nobody listens.
    if (!QAccessible::isActive())
        return;
    QAccessibleEvent event(&view, change);
    QAccessible::updateAccessibility(&event);
}

} // namespace tallowmere
