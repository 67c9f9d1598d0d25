// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "viewer/ProgressSign.h"

#include <QPainter>

#include <algorithm>
#include <cmath>
#include <utility>

namespace tallowmere {

namespace {

constexpr int kWidth = 160; // points
constexpr int kHeight = 6;  // points
constexpr int kRim = 1;     // points of the groove that stay dark around the bar
constexpr int kMargin = 8;  // points between the bar and the sides of a narrow view
constexpr int kFrameMilliseconds = 40;
constexpr int kFramesPerSweep = 40; // of the part that wanders while there is no figure
constexpr double kWanderingPart = 0.3;

} // namespace

ProgressSign::ProgressSign(QWidget *parent) : QWidget(parent)
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setAttribute(Qt::WA_NoSystemBackground);
    setFocusPolicy(Qt::NoFocus);
    hide();
    m_patience.setSingleShot(true);
    m_patience.setTimerType(Qt::PreciseTimer); // others may come early
    m_patience.setInterval(kPatienceMilliseconds);
    connect(&m_patience, &QTimer::timeout, this, &ProgressSign::appear);
    m_frames.setInterval(kFrameMilliseconds);
    connect(&m_frames, &QTimer::timeout, this, [this] {
        ++m_frame;
        update();
    });
}

void ProgressSign::start(std::shared_ptr<const DecodeProgress> progress)
{
    stop();
    m_progress = std::move(progress);
    m_patience.start();
}

void ProgressSign::stop()
{
    m_patience.stop();
    m_frames.stop();
    hide();
    m_progress.reset();
}

void ProgressSign::appear()
{
    m_frame = 0;
    show();
    m_frames.start();
}

std::optional<double> ProgressSign::fraction() const
{
    return m_progress ? m_progress->fraction() : std::nullopt;
}

void ProgressSign::layOutIn(QSize view)
{
    const int width = std::max(std::min(kWidth, view.width() - 2 * kMargin), 0);
    setGeometry((view.width() - width) / 2, (view.height() - kHeight) / 2, width, kHeight);
}

void ProgressSign::paintEvent(QPaintEvent *)
{
    const auto done = fraction();
    const QRectF groove = rect();
    const QRectF inside = groove.adjusted(kRim, kRim, -kRim, -kRim);
    QRectF bar = inside;
    if (done) {
        bar.setWidth(inside.width() * *done);
    } else {
        const double turn = (1 - std::cos(m_frame * 2 * std::acos(-1.0) / kFramesPerSweep)) / 2;
        bar.setWidth(inside.width() * kWanderingPart);
        bar.moveLeft(inside.left() + (inside.width() - bar.width()) * turn);
    }
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    // Dark under light: one of the two stands out from any background.
    painter.setBrush(QColor(0, 0, 0, 110));
    painter.drawRoundedRect(groove, groove.height() / 2, groove.height() / 2);
    painter.setBrush(QColor(255, 255, 255, 220));
    painter.drawRoundedRect(bar, bar.height() / 2, bar.height() / 2);
}

} // namespace tallowmere
