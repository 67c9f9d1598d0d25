// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QPixmap>
#include <QWidget>

namespace tallowmere {

/// Shows one picture of the program's own, as large as it fits in proportion, in the middle; reacts to nothing.
class NonInteractiveImageView final : public QWidget
{
    Q_OBJECT

public:
    explicit NonInteractiveImageView(QWidget *parent = nullptr);

    /// @p resource: a file compiled into the program. One that can't be read leaves the view empty.
    void setImage(const QString &resource);
    [[nodiscard]] bool isEmpty() const { return m_naturalSize.isEmpty(); }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QString m_resource;
    QSize m_naturalSize; ///< the image's own; only its shape matters
    QPixmap m_rendered;  ///< at the device size it was last painted at
};

} // namespace tallowmere
