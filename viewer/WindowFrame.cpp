// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "viewer/WindowFrame.h"

#include "viewer/X11WindowState.h"

#include <QCoreApplication>
#include <QEvent>
#include <QMoveEvent>
#include <QResizeEvent>
#include <QVariantAnimation>
#include <QWidget>
#include <QWindow>

#include <utility>

namespace tallowmere {

namespace {

/// A window manager has answered every request by then; one that is slower is believed later.
constexpr int kAnswersTakeMilliseconds = 200;

} // namespace

WindowFrame::WindowFrame(QWidget *window)
    : QObject(window), m_window(window), m_x11State(X11WindowState::of(*window, [this] { m_answers.start(); }))
{
    m_answers.setSingleShot(true);
    m_answers.setInterval(kAnswersTakeMilliseconds);
    connect(&m_answers, &QTimer::timeout, this, &WindowFrame::takeGivenSize);
    m_window->installEventFilter(this);
    watchNativeWindow();
    m_decorationsAreKnown = m_window->isVisible() && !isComingOnScreen();
}

WindowFrame::~WindowFrame() = default;

QMargins WindowFrame::decorations() const
{
    const QWindow *native = m_window->windowHandle();
    return native ? native->frameMargins() : QMargins();
}

QRectF WindowFrame::frame() const
{
    return m_window->geometry().marginsAdded(decorations());
}

QRectF WindowFrame::destination() const
{
    if (!m_animation)
        return frame();
    return clientRectFor(m_animation->endValue().toRectF()).marginsAdded(decorations());
}

bool WindowFrame::isHeldBySystem() const
{
    if (m_window->isMaximized() || m_window->isFullScreen() || m_refusal == Refusal::certain)
        return true;
    return m_x11State && m_window->isVisible() && !isComingOnScreen() && m_x11State->isMaximisedInADirection();
}

void WindowFrame::releaseFromSystem()
{
    if (m_refusal == Refusal::certain)
        m_refusal = Refusal::suspected;
    if (!isHeldBySystem())
        return;
    // For the whole maximised state, too: it stays on the window for a while after Qt has asked for its end.
    if (m_x11State)
        m_x11State->endMaximised();
    if (m_window->isMaximized() || m_window->isFullScreen())
        m_window->setWindowState(m_window->windowState() & ~(Qt::WindowMaximized | Qt::WindowFullScreen));
}

QRect WindowFrame::clientRectFor(const QRectF &frame) const
{
    const QMargins margins = decorations();
    const QRectF client = frame.marginsRemoved(margins);
    // Qt takes a window without a width or a height off the screen.
    return {client.topLeft().toPoint(), client.size().toSize().expandedTo({1, 1})};
}

/// Shown, but not yet there. A window manager that is just taking a window over crosses with requests of ours, and
/// either may win.
bool WindowFrame::isComingOnScreen() const
{
    const QWindow *native = m_window->windowHandle();
    return m_window->isVisible() && !m_window->isMinimized() && !(native && native->isExposed());
}

void WindowFrame::apply(const std::optional<QRectF> &frame)
{
    // The user may maximise the window while it moves: then it stays so.
    if (!frame || isHeldBySystem())
        return;
    const QRect client = clientRectFor(*frame);
    m_askedSize = client.size();
    if (client != m_window->geometry())
        m_window->setGeometry(client);
    // The widget passes on a move alone when it believes to have its size already, while its native window may just
    // have been told an older one by the window manager: the move would then bring that one back.
    QWindow *native = m_window->windowHandle();
    if (native && native->geometry() != client)
        native->setGeometry(client);
}

void WindowFrame::setFrame(Rule rule, bool animated, Completion completion)
{
    if (isComingOnScreen()) {
        m_ruleOnScreen = std::move(rule);
        m_waitForOnScreen.push_back(std::move(completion));
        return;
    }
    const std::optional<QRectF> frame = rule();
    const bool onScreen = m_window->isVisible() && !m_window->isMinimized();
    if (frame && animated && onScreen && m_refusal == Refusal::none && clientRectFor(*frame) != m_window->geometry())
        return animateTo(*frame, std::move(completion));
    giveUpAnimation();
    apply(frame);
    if (!m_decorationsAreKnown)
        m_ruleOnScreen = std::move(rule);
    if (completion)
        completion();
}

void WindowFrame::giveUpAnimation()
{
    if (!isAnimating())
        return;
    m_animation.clear();
    Q_EMIT animationFinished();
}

void WindowFrame::animateTo(const QRectF &frame, Completion completion)
{
    auto *animation = new QVariantAnimation(this);
    m_animation = animation;
    animation->setDuration(kAnimationMilliseconds);
    animation->setEasingCurve(QEasingCurve::InOutSine);
    animation->setStartValue(this->frame());
    animation->setEndValue(frame);
    connect(animation, &QVariantAnimation::valueChanged, this, [this, animation](const QVariant &value) {
        if (m_animation == animation)
            apply(value.toRectF());
    });
    connect(animation, &QVariantAnimation::finished, this, [this, animation, done = std::move(completion)] {
        if (m_animation == animation) {
            giveUpAnimation();
            m_answers.start();
        }
        if (done)
            done();
    });
    Q_EMIT animationStarted();
    animation->start(QAbstractAnimation::DeleteWhenStopped);
}

void WindowFrame::watchNativeWindow()
{
    if (QWindow *native = m_window->windowHandle())
        native->installEventFilter(this);
}

bool WindowFrame::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_window) {
        if (event->type() == QEvent::Show || event->type() == QEvent::WinIdChange) {
            watchNativeWindow();
            sizeWasGiven();
        }
    } else if (event->type() == QEvent::Resize) {
        sizeWasGiven();
    } else if (event->type() == QEvent::Expose && m_window->windowHandle() && m_window->windowHandle()->isExposed()) {
        cameOnScreen();
    }
    return false;
}

/// Qt tells the widget nothing of a window manager that answers a request with the size the window had before: the
/// widget would go on painting for the size it asked for. It is told here, and nothing is asked of the window manager:
/// should the size be granted after all, that comes as a resize like any other.
void WindowFrame::takeGivenSize()
{
    QWindow *native = m_window->windowHandle();
    if (isAnimating() || !native || !native->isVisible() || native->size() == m_window->size())
        return;
    QMoveEvent moved(native->position(), m_window->pos());
    QCoreApplication::sendEvent(native, &moved);
    QResizeEvent resized(native->size(), m_window->size());
    QCoreApplication::sendEvent(native, &resized);
    m_refusal = Refusal::certain; // after sizeWasGiven(), which has seen that event, too
}

/// A tile that has changed its size, or a window that is in no tile any more: the next frame will show.
void WindowFrame::sizeWasGiven()
{
    const QWindow *native = m_window->windowHandle();
    if (native && native->size() == m_askedSize)
        m_refusal = Refusal::none;
    else if (m_refusal == Refusal::certain)
        m_refusal = Refusal::suspected;
}

void WindowFrame::cameOnScreen()
{
    m_decorationsAreKnown = true;
    if (const Rule rule = std::exchange(m_ruleOnScreen, nullptr))
        apply(rule());
    for (const Completion &done : std::exchange(m_waitForOnScreen, {})) {
        if (done)
            done();
    }
}

} // namespace tallowmere
