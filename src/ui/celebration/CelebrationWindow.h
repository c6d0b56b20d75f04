#pragma once

#include "ui/celebration/CelebrationScene.h"

#include <QBasicTimer>
#include <QElapsedTimer>
#include <QRasterWindow>

// One screen's celebration: a frameless window over the whole screen, above other windows, that
// draws its scene and asks to be dismissed on a click, Escape or Space. Only the window that
// takes the keyboard (the one on the primary screen) accepts focus; it gives it back when it
// closes, so another app's typing is never held longer than the celebration is shown.
class CelebrationWindow : public QRasterWindow
{
    Q_OBJECT

public:
    CelebrationWindow(CelebrationScene scene, QScreen *screen, bool takesKeyboard);

    const CelebrationScene &scene() const { return m_scene; }

Q_SIGNALS:
    void dismissRequested();

protected:
    void paintEvent(QPaintEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void timerEvent(QTimerEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    CelebrationScene m_scene;
    QBasicTimer m_frameTimer;
    QElapsedTimer m_clock;
    bool m_takesKeyboard;
};
