// Saves a picture of the whole X screen as PNG: `tarrow_screen_grab OUT.png`.
#include <QGuiApplication>
#include <QPixmap>
#include <QScreen>

#include <cstdio>

int main(int argc, char **argv)
{
    QGuiApplication app(argc, argv);
    if (argc < 2) {
        std::fputs("usage: tarrow_screen_grab OUT.png\n", stderr);
        return 2;
    }
    QScreen *screen = QGuiApplication::primaryScreen();
    if (!screen || !screen->grabWindow(0).save(QString::fromLocal8Bit(argv[1]), "PNG")) {
        std::fputs("tarrow_screen_grab: could not grab the screen\n", stderr);
        return 1;
    }
    return 0;
}
