// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "settings/PrefetchCountField.h"

#include "settings/PrefetchCountText.h"

#include <QFocusEvent>
#include <QStyleOptionFrame>

#include <utility>

namespace tallowmere {

PrefetchCountField::PrefetchCountField(int count, QWidget *parent)
    : QLineEdit(QString::number(count), parent), m_previousCount(count)
{
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setInputMethodHints(Qt::ImhDigitsOnly); // a hint for on-screen keyboards; it refuses nothing
    connect(this, &QLineEdit::textEdited, this, &PrefetchCountField::removeOtherCharacters);
    connect(this, &QLineEdit::returnPressed, this, &PrefetchCountField::commit);
}

QSize PrefetchCountField::sizeHint() const
{
    // Room for one digit more than the longest count, so that neither it nor the cursor scrolls the text.
    QStyleOptionFrame option;
    initStyleOption(&option);
    const int textWidth = fontMetrics().horizontalAdvance(QStringLiteral("00000"));
    const QSize contents(textWidth, QLineEdit::sizeHint().height());
    const int width = style()->sizeFromContents(QStyle::CT_LineEdit, &option, contents, this).width();
    return {width, QLineEdit::sizeHint().height()};
}

void PrefetchCountField::focusOutEvent(QFocusEvent *event)
{
    QLineEdit::focusOutEvent(event);
    // The field's own context menu takes the focus for a moment, in the middle of the typing.
    if (event->reason() != Qt::PopupFocusReason)
        commit();
}

void PrefetchCountField::hideEvent(QHideEvent *event)
{
    QLineEdit::hideEvent(event);
    commit(); // a window that closes under the cursor keeps the focus where it was
}

void PrefetchCountField::removeOtherCharacters()
{
    const PrefetchCountText::Typed typed{text(), cursorPosition()};
    const PrefetchCountText::Typed cleaned = PrefetchCountText::withNumbersOnly(typed);
    if (cleaned.text == typed.text)
        return;
    setText(cleaned.text);
    setCursorPosition(cleaned.cursor);
}

void PrefetchCountField::commit()
{
    const int before = std::exchange(m_previousCount, PrefetchCountText::parse(text()).value_or(m_previousCount));
    if (const QString shown = QString::number(m_previousCount); shown != text())
        setText(shown);
    if (m_previousCount != before)
        Q_EMIT countChanged(m_previousCount);
}

} // namespace tallowmere
