#include "ui/celebration/CelebrationOverlay.h"
#include "ui/celebration/CelebrationWindow.h"

#include "l10n/LocaleManager.h"
#include "storage/SettingsStore.h"

#include <QGuiApplication>
#include <QPainter>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

// The overlay with the settings a test chooses, on the offscreen platform's screens.
struct Setup
{
    explicit Setup(bool confetti, bool reducedMotion, qint64 autoDismiss)
    {
        Settings s = settings.settings();
        s.celebrationConfetti = confetti;
        s.celebrationSound = true;
        s.celebrationAutoDismissSeconds = autoDismiss;
        settings.setSettings(s);
        overlay = std::make_unique<CelebrationOverlay>(
            settings, locale, [reducedMotion] { return reducedMotion; },
            [this] { return ++sounds, true; });
        overlay->present(Celebration {CountdownID::manual(QUuid::createUuid()), u"Launch party"_s,
                                      IconRef {u"party.popper.fill"_s}, EventColor::purple});
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

class tst_CelebrationOverlay : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // One window on every screen, covering it and above the rest, with the sound played once;
    // a key, a click or the delay closes them all once and lets go of the keyboard.
    void dismissalClosesEveryWindowOnce_data()
    {
        QTest::addColumn<int>("key"); // 0: a click; -1: none, the delay
        QTest::newRow("Escape closes it") << int(Qt::Key_Escape);
        QTest::newRow("Space closes it") << int(Qt::Key_Space);
        QTest::newRow("a click closes it") << 0;
        QTest::newRow("it closes by itself after the delay") << -1;
    }

    void dismissalClosesEveryWindowOnce()
    {
        QFETCH(int, key);
        Setup s(true, false, key < 0 ? 1 : 0);
        QSignalSpy dismissed(s.overlay.get(), &CelebrationPresenter::dismissed);
        QCOMPARE(s.overlay->windows().size(), size_t(QGuiApplication::screens().size()));
        QCOMPARE(s.sounds, 1);
        CelebrationWindow *window = s.overlay->windows().front().get();
        QVERIFY(QTest::qWaitForWindowExposed(window));
        QCOMPARE(window->geometry(), window->screen()->geometry());
        QVERIFY(window->flags() & (Qt::WindowStaysOnTopHint | Qt::FramelessWindowHint));
        if (key > 0)
            QTest::keyClick(window, Qt::Key(key));
        else if (key == 0)
            QTest::mouseClick(window, Qt::LeftButton, {}, QPoint(40, 40));
        QTRY_COMPARE_WITH_TIMEOUT(dismissed.count(), 1, 3000);
        QVERIFY(!s.overlay->isPresenting() && s.overlay->windows().empty());
        QCOMPARE(QGuiApplication::focusWindow(), nullptr);
    }

    void confettiFollowsTheSettingAndTheDesktop()
    {
        // Falling, still when the desktop asks for reduced motion, none when switched off.
        for (auto [setting, reduced, moving] :
             {std::tuple {true, false, true}, std::tuple {true, true, false},
              std::tuple {false, false, false}}) {
            Setup s(setting, reduced, 0);
            QCOMPARE(s.overlay->windows().front()->scene().isMoving(), moving);
        }
    }

    // Pictures to look at: TARROW_SCREENSHOT_DIR=DIR saves the scene on a light and a dark desktop.
    void sceneCanBeDrawnForAPicture()
    {
        for (bool dark : {false, true}) {
            QPalette palette;
            palette.setColor(QPalette::Window, dark ? QColor(0x1f2023) : QColor(0xf6f5f4));
            palette.setColor(QPalette::WindowText, dark ? QColor(0xeeeeec) : QColor(0x241f31));
            CelebrationScene scene({u"Launch party"_s, u"It’s here!"_s, u"Click or press Space"_s},
                                   u"party.popper.fill"_s, QColor(0x9067D6), palette,
                                   QSize(1024, 600), CelebrationScene::Confetti::falling, 7);
            for (int frame = 0; frame < 90; ++frame)
                scene.advance(16); // a second and a half in
            QImage image(scene.size(), QImage::Format_ARGB32_Premultiplied);
            QPainter painter(&image);
            scene.paint(painter);
            painter.end();
            QCOMPARE(image.pixelColor(1020, 596).lightness() < 128, dark);
            if (const QString out = qEnvironmentVariable("TARROW_SCREENSHOT_DIR"); !out.isEmpty())
                image.save(out + (dark ? u"/celebration-dark.png"_s : u"/celebration-light.png"_s));
        }
    }
};

QTEST_MAIN(tst_CelebrationOverlay)
#include "tst_celebrationoverlay.moc"
