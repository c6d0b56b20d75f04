#include "ui/celebration/CelebrationOverlay.h"
#include "ui/celebration/CelebrationWindow.h"

#include "l10n/LocaleManager.h"
#include "storage/SettingsStore.h"

#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

QPalette paletteOf(bool dark)
{
    QPalette palette;
    palette.setColor(QPalette::Window, dark ? QColor(0x1f, 0x20, 0x23) : QColor(0xf6, 0xf5, 0xf4));
    palette.setColor(QPalette::WindowText,
                     dark ? QColor(0xee, 0xee, 0xec) : QColor(0x24, 0x1f, 0x31));
    return palette;
}

} // namespace

class tst_CelebrationOverlay : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void dismissalClosesEveryWindowOnce_data();
    void dismissalClosesEveryWindowOnce();
    void confettiFollowsTheSettingAndTheDesktop();
    void sceneDrawsTitleAndReachedText_data();
    void sceneDrawsTitleAndReachedText();

private:
    struct Setup
    {
        explicit Setup(bool confetti = true, bool reducedMotion = false, qint64 autoDismiss = 8)
        {
            Settings s = settings.settings();
            s.celebrationConfetti = confetti;
            s.celebrationSound = true;
            s.celebrationAutoDismissSeconds = autoDismiss;
            settings.setSettings(s);
            overlay = std::make_unique<CelebrationOverlay>(
                settings, locale, [reducedMotion] { return reducedMotion; },
                [this] { return ++sounds, true; });
        }
        TempPathProvider paths;
        DiskFileAccess files;
        SettingsStore settings {paths, files};
        LocaleManager locale {settings, [] {
                                  return QStringList {u"en"_s};
                              }};
        int sounds = 0;
        std::unique_ptr<CelebrationOverlay> overlay;
    };
    static Celebration party()
    {
        return Celebration {CountdownID::manual(QUuid::createUuid()), u"Launch party"_s,
                            IconRef {u"party.popper.fill"_s}, EventColor::purple};
    }
};

void tst_CelebrationOverlay::dismissalClosesEveryWindowOnce_data()
{
    QTest::addColumn<QString>("how");
    QTest::newRow("Escape closes it") << "escape";
    QTest::newRow("Space closes it") << "space";
    QTest::newRow("a click closes it") << "click";
    QTest::newRow("it closes by itself after the delay") << "wait";
}

void tst_CelebrationOverlay::dismissalClosesEveryWindowOnce()
{
    QFETCH(QString, how);
    Setup s(true, false, how == u"wait" ? 1 : 0);
    QSignalSpy dismissed(s.overlay.get(), &CelebrationPresenter::dismissed);
    s.overlay->present(party());
    QVERIFY(s.overlay->isPresenting());
    QCOMPARE(s.overlay->windows().size(), size_t(QGuiApplication::screens().size()));
    QCOMPARE(s.overlay->autoDismissIsRunning(), how == u"wait");
    QCOMPARE(s.sounds, 1);
    CelebrationWindow *window = s.overlay->windows().front().get();
    QVERIFY(QTest::qWaitForWindowExposed(window));
    QCOMPARE(window->geometry(), window->screen()->geometry());
    QVERIFY(window->flags() & Qt::WindowStaysOnTopHint);
    QVERIFY(window->flags() & Qt::FramelessWindowHint);

    s.overlay->present(party()); // a second request while shown changes nothing
    QCOMPARE(s.sounds, 1);
    if (how == u"escape")
        QTest::keyClick(window, Qt::Key_Escape);
    else if (how == u"space")
        QTest::keyClick(window, Qt::Key_Space);
    else if (how == u"click")
        QTest::mouseClick(window, Qt::LeftButton, {}, QPoint(40, 40));
    QTRY_COMPARE_WITH_TIMEOUT(dismissed.count(), 1, 3000);
    QVERIFY(!s.overlay->isPresenting());
    QVERIFY(s.overlay->windows().empty());
    // Nothing of ours keeps the keyboard once it is gone.
    QCOMPARE(QGuiApplication::focusWindow(), nullptr);
    QTest::qWait(50);
    QCOMPARE(dismissed.count(), 1);
}

void tst_CelebrationOverlay::confettiFollowsTheSettingAndTheDesktop()
{
    // Falling by default, still when the desktop asks for reduced motion, none when switched off.
    for (auto [setting, reduced, moving] :
         {std::tuple {true, false, true}, std::tuple {true, true, false},
          std::tuple {false, false, false}}) {
        Setup s(setting, reduced, 0);
        s.overlay->present(party());
        QCOMPARE(s.overlay->windows().front()->scene().isMoving(), moving);
        s.overlay->dismiss();
    }
}

void tst_CelebrationOverlay::sceneDrawsTitleAndReachedText_data()
{
    QTest::addColumn<bool>("dark");
    QTest::newRow("on a light desktop") << false;
    QTest::newRow("on a dark desktop") << true;
}

void tst_CelebrationOverlay::sceneDrawsTitleAndReachedText()
{
    QFETCH(bool, dark);
    const QPalette palette = paletteOf(dark);
    CelebrationScene scene({u"Launch party"_s, u"It’s here!"_s, u"Click or press Space to close"_s},
                           u"party.popper.fill"_s, QColor(0x9067D6), palette, QSize(1024, 600),
                           CelebrationScene::Confetti::falling, 7);
    for (int frame = 0; frame < 90; ++frame)
        scene.advance(16); // a second and a half in
    QImage image(scene.size(), QImage::Format_ARGB32_Premultiplied);
    QPainter painter(&image);
    scene.paint(painter);
    painter.end();

    // The title's row holds text-coloured pixels; the corners keep the window colour.
    const QColor text = palette.color(QPalette::WindowText);
    int textPixels = 0;
    for (int x = 300; x < 724; ++x) {
        for (int y = 280; y < 330; ++y)
            textPixels += QColor(image.pixel(x, y)) == text;
    }
    QVERIFY2(textPixels > 200, qPrintable(u"%1 text pixels"_s.arg(textPixels)));
    const QColor corner(image.pixel(1020, 596));
    QVERIFY(std::abs(corner.lightness() - palette.color(QPalette::Window).lightness()) < 40);
    if (const QString out = qEnvironmentVariable("TARROW_SCREENSHOT_DIR"); !out.isEmpty())
        image.save(out + (dark ? u"/celebration-dark.png"_s : u"/celebration-light.png"_s));
}

QTEST_MAIN(tst_CelebrationOverlay)
#include "tst_celebrationoverlay.moc"
