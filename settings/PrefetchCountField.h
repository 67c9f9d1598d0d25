// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QLineEdit>

namespace tallowmere {

/// A text field for a number of images to prefetch. Main thread.
///
/// What is no number character vanishes while the user types. Return, the loss of the focus and the window's closing
/// commit the text: a count that is out of the range or none at all gives way to the last accepted one.
class PrefetchCountField final : public QLineEdit
{
    Q_OBJECT

public:
    explicit PrefetchCountField(int count, QWidget *parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

Q_SIGNALS:
    /// Another count than before was committed, from 0 to 100.
    void countChanged(int count);

protected:
    void focusOutEvent(QFocusEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    void removeOtherCharacters();
    void commit();

    int m_previousCount;
};

} // namespace tallowmere
