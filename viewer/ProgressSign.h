// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "imaging/codecs/DecodeProgress.h"

#include <QTimer>
#include <QWidget>

#include <memory>
#include <optional>

namespace tallowmere {

/// A thin bar in the middle of the view, for pictures that take their time.
///
/// It lies over the view and moves nothing; the pointer goes through it. Main thread.
class ProgressSign final : public QWidget
{
    Q_OBJECT

public:
    /// A picture that is there by then was fast: the bar would only flash.
    static constexpr int kPatienceMilliseconds = 300;

    explicit ProgressSign(QWidget *parent);

    /// Waiting begins now; what was waited for before is forgotten. @p progress may be null or without a figure: then
    /// the bar only shows that something goes on.
    void start(std::shared_ptr<const DecodeProgress> progress);
    /// The picture is there, or is not going to come.
    void stop();

    /// How much of the picture is there, 0 to 1; nothing while there is no figure.
    [[nodiscard]] std::optional<double> fraction() const;

    /// Puts it into the middle of a view of this size, points.
    void layOutIn(QSize view);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    void appear();

    std::shared_ptr<const DecodeProgress> m_progress;
    QTimer m_patience;
    QTimer m_frames;
    int m_frame = 0;
};

} // namespace tallowmere
