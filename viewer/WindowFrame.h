// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QMargins>
#include <QObject>
#include <QPointer>
#include <QRectF>
#include <QSize>
#include <QTimer>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

class QVariantAnimation;
class QWidget;

namespace tallowmere {

class X11WindowState;

/// Moves and sizes one window by its whole frame, at once or in an animation. Main thread.
///
/// What the window system makes of a request is accepted: nothing is asked for twice, but for the one time when the
/// decorations become known.
class WindowFrame final : public QObject
{
    Q_OBJECT

public:
    static constexpr int kAnimationMilliseconds = 250;

    using Completion = std::function<void()>;
    /// Works out a frame in points from the state of the window at the time. Nothing: the window is to stay as it is.
    using Rule = std::function<std::optional<QRectF>()>;

    /// @p window owns this.
    explicit WindowFrame(QWidget *window);
    ~WindowFrame() override;

    /// The window with its decorations, in points; without them as long as the window has never been on the screen.
    [[nodiscard]] QRectF frame() const;
    /// The frame at the end of the running animation, as frame() will give it; without an animation frame() itself.
    [[nodiscard]] QRectF destination() const;
    /// Full screen, maximised in at least one direction, as a window tiled to half the screen is, or in the hands of a
    /// window manager that refused the last size asked for, as tiling ones do: the size is not ours to change.
    [[nodiscard]] bool isHeldBySystem() const;
    /// A frame that is set from now on counts.
    void releaseFromSystem();
    [[nodiscard]] bool isAnimating() const { return !m_animation.isNull(); }

    /// A hidden window gets its frame at once, and once more when its decorations are known; one that is just coming
    /// on the screen gets it there. A running animation gives up the frame but calls its own completion when its time
    /// is over. @p completion may be empty; it is not called when the window has gone.
    void setFrame(Rule rule, bool animated, Completion completion);

Q_SIGNALS:
    void animationStarted();
    /// The frame has arrived; not sent by an animation that gave it up.
    void animationFinished();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    [[nodiscard]] QMargins decorations() const;
    [[nodiscard]] QRect clientRectFor(const QRectF &frame) const;
    [[nodiscard]] bool isComingOnScreen() const;
    void apply(const std::optional<QRectF> &frame);
    void animateTo(const QRectF &frame, Completion completion);
    void giveUpAnimation();
    void watchNativeWindow();
    void cameOnScreen();
    void takeGivenSize();
    void sizeWasGiven();

    QWidget *const m_window;
    const std::unique_ptr<X11WindowState> m_x11State; ///< null where windows are not X11's
    QPointer<QVariantAnimation> m_animation;          ///< the one that owns the frame
    bool m_decorationsAreKnown = false;
    Rule m_ruleOnScreen;                       ///< to be applied when the window has come on the screen
    std::vector<Completion> m_waitForOnScreen; ///< whose frames are still to be applied

    /// A tiling window manager keeps its size without announcing any state.
    enum class Refusal
    {
        none,
        suspected, ///< it was refused before the size changed: the next frame is a question
        certain,
    };
    Refusal m_refusal = Refusal::none;
    QSize m_askedSize; ///< of the client area, last
    QTimer m_answers;  ///< runs while answers to earlier requests may still be on their way
};

} // namespace tallowmere
