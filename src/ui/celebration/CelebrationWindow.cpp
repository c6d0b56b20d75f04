#include "ui/celebration/CelebrationWindow.h"

#include <QKeyEvent>
#include <QPainter>
#include <QScreen>

namespace {

constexpr int FrameMSecs = 16;

} // namespace

CelebrationWindow::CelebrationWindow(CelebrationScene scene, QScreen *screen, bool takesKeyboard)
    : m_scene(std::move(scene))
    , m_takesKeyboard(takesKeyboard)
{
    setScreen(screen);
    setGeometry(screen->geometry());
    Qt::WindowFlags flags = Qt::Window | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint;
    if (!takesKeyboard)
        flags |= Qt::WindowDoesNotAcceptFocus;
    setFlags(flags);
    setTitle(QStringLiteral("Tarrow"));
}

void CelebrationWindow::showEvent(QShowEvent *event)
{
    QRasterWindow::showEvent(event);
    if (m_takesKeyboard)
        requestActivate();
    if (m_scene.isMoving()) {
        m_clock.start();
        m_frameTimer.start(FrameMSecs, Qt::PreciseTimer, this);
    }
}

void CelebrationWindow::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    m_scene.paint(painter);
}

void CelebrationWindow::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape || event->key() == Qt::Key_Space) {
        Q_EMIT dismissRequested();
        return;
    }
    QRasterWindow::keyPressEvent(event);
}

void CelebrationWindow::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton)
        Q_EMIT dismissRequested();
}

void CelebrationWindow::timerEvent(QTimerEvent *event)
{
    if (event->timerId() != m_frameTimer.timerId())
        return QRasterWindow::timerEvent(event);
    const int elapsed = int(m_clock.restart());
    if (!m_scene.advance(elapsed))
        m_frameTimer.stop(); // the confetti has landed: no more frames
    update();
}
