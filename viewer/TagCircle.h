// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QString>
#include <QWidget>

namespace tallowmere {

/// The dot in the colour of a file's label. It reacts to nothing.
class TagCircle final : public QWidget
{
    Q_OBJECT

public:
    explicit TagCircle(QWidget *parent);

    void setColor(const QColor &color);
    [[nodiscard]] const QColor &color() const { return m_color; }
    /// What a screen reader says of it.
    void setLabelName(const QString &name);
    [[nodiscard]] const QString &labelName() const { return m_labelName; }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QColor m_color;
    QString m_labelName;
};

} // namespace tallowmere
