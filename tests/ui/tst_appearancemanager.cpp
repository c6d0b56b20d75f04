#include "UiWorld.h"
#include "ui/AccentColors.h"
#include "ui/AppearanceManager.h"

#include <QGuiApplication>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

// The theme setting over the desktop's palette, and accents that stay readable on both.
class tst_AppearanceManager : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theThemeChoosesThePalette_data()
    {
        QTest::addColumn<bool>("systemDark");
        QTest::addColumn<ThemePref>("theme");
        QTest::addColumn<QString>("palette"); // "system", "light", "dark"

        QTest::newRow("Following a light desktop") << false << ThemePref::auto_ << u"system"_s;
        QTest::newRow("Following a dark desktop") << true << ThemePref::auto_ << u"system"_s;
        QTest::newRow("Light on a light desktop keeps its palette")
            << false << ThemePref::light << u"system"_s;
        QTest::newRow("Dark on a light desktop") << false << ThemePref::dark << u"dark"_s;
        QTest::newRow("Light on a dark desktop") << true << ThemePref::light << u"light"_s;
        QTest::newRow("Dark on a dark desktop keeps its palette")
            << true << ThemePref::dark << u"system"_s;
    }

    void theThemeChoosesThePalette()
    {
        QFETCH(bool, systemDark);
        QFETCH(ThemePref, theme);
        QFETCH(QString, palette);
        QPalette system =
            systemDark ? AppearanceManager::darkPalette() : AppearanceManager::lightPalette();
        system.setColor(QPalette::Highlight, QColor(0x123456)); // tells the desktop's apart
        const QPalette chosen = AppearanceManager::paletteFor(theme, system);
        const QPalette expected = palette == u"system" ? system
            : palette == u"light"                      ? AppearanceManager::lightPalette()
                                                       : AppearanceManager::darkPalette();
        QCOMPARE(chosen, expected);
    }

    void aThemeChangeRepaintsTheApplication()
    {
        UiWorld world;
        const QPalette system = QGuiApplication::palette();
        AppearanceManager appearance(world.settings, system);
        QSignalSpy changed(&appearance, &AppearanceManager::appearanceChanged);
        Settings dark = world.settings.settings();
        dark.theme = AppearanceManager::isDarkPalette(system) ? ThemePref::light : ThemePref::dark;
        world.settings.setSettings(dark);
        QCOMPARE(changed.count(), 1);
        QCOMPARE(AppearanceManager::isDarkPalette(QGuiApplication::palette()),
                 !AppearanceManager::isDarkPalette(system));
        dark.theme = ThemePref::auto_;
        world.settings.setSettings(dark);
        QCOMPARE(QGuiApplication::palette(), system);
    }

    void everyAccentIsReadableOnBothPalettes_data()
    {
        QTest::addColumn<EventColor>("color");
        QTest::addColumn<bool>("dark");
        for (const EventColor color : AllEventColors) {
            for (const bool dark : {false, true})
                QTest::newRow(qPrintable(rawValue(color) + (dark ? u" on dark"_s : u" on light"_s)))
                    << color << dark;
        }
    }

    void everyAccentIsReadableOnBothPalettes()
    {
        QFETCH(EventColor, color);
        QFETCH(bool, dark);
        const QColor base =
            (dark ? AppearanceManager::darkPalette() : AppearanceManager::lightPalette())
                .color(QPalette::Base);
        const QColor accent = AccentColors::of(color);
        const QColor text = AccentColors::legibleOn(accent, base);
        QVERIFY2(AccentColors::contrast(text, base) >= 4.5, qPrintable(text.name()));
        QVERIFY(AccentColors::contrast(AccentColors::legibleOn(accent, base, 3.0), base) >= 3.0);
        // Still the same colour: the hue moves by a few degrees at most.
        QVERIFY(std::abs(text.toHsl().hslHue() - accent.toHsl().hslHue()) <= 4);
    }

    void contrastIsMeasuredAsWcagDoes()
    {
        QCOMPARE(qRound(AccentColors::contrast(Qt::black, Qt::white) * 10), 210);
        QCOMPARE(qRound(AccentColors::contrast(QColor(0x777777), Qt::white) * 100), 448);
    }
};

QTEST_MAIN(tst_AppearanceManager)
#include "tst_appearancemanager.moc"
