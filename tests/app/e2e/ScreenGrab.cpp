// Saves a picture of the whole X screen as PNG: `tarrow_screen_grab OUT.png`.
#include <QGuiApplication>
#include <QPixmap>
#include <QScreen>

int main(int argc, char **argv)
{
    QGuiApplication app(argc, argv);
    const QString out = app.arguments().value(1);
    QScreen *screen = QGuiApplication::primaryScreen();
    return screen && !out.isEmpty() && screen->grabWindow(0).save(out, "PNG") ? 0 : 1;
}
