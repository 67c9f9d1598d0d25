// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

namespace tallowmere {

/// Turns the values of Qt's native zoom gesture into magnifications.
///
/// Each value is the difference between the gesture's scale now and a moment ago, not a factor: a pinch to twice the
/// size sends values that add up to 1. One gesture at a time.
class PinchGesture final
{
public:
    /// At the gesture's begin; one that never announces itself is taken to start at once.
    void begin() { m_scale = 1.0; }

    /// How much larger than a moment ago: a zoom is to be multiplied by 1 plus this.
    [[nodiscard]] double magnificationOf(double value)
    {
        const double magnification = value / m_scale;
        // Fingers that meet would make the scale zero, and what comes next infinite.
        m_scale = m_scale + value > kSmallestScale ? m_scale + value : kSmallestScale;
        return magnification;
    }

private:
    static constexpr double kSmallestScale = 0.01;

    double m_scale = 1.0; ///< of the gesture so far
};

} // namespace tallowmere
