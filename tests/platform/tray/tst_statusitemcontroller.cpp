#include "support/ItemFixtures.h"

#include "countdown/CountdownEngine.h"
#include "countdown/CountdownRegistry.h"
#include "l10n/LocaleManager.h"
#include "platform/tray/StatusItemController.h"
#include "platform/tray/StatusItemHost.h"
#include "storage/EventStore.h"
#include "storage/SettingsStore.h"
#include "support/FakeClock.h"
#include "support/FakeTickScheduler.h"

#include <QSignalSpy>
#include <QTest>

#include <functional>
#include <memory>

using namespace Fixture;

namespace {

const QDateTime kStart = at("2026-03-01T12:00:00Z");

// Keeps every frame it is asked to show.
class RecordingHost final : public StatusItemHost
{
    Q_OBJECT
public:
    QList<MenubarChipPresentation> frames;
    QStringList labels;

    void show(const MenubarChipPresentation &presentation, const QString &accessibleLabel) override
    {
        frames.append(presentation);
        labels.append(accessibleLabel);
    }
    void setMenuEntries(const QList<StatusItemMenuEntry> &) override { }
    void click(const StatusItemClick &click) { Q_EMIT clicked(click); }
};

} // namespace

Q_DECLARE_METATYPE(std::function<void(Settings &)>)

class tst_StatusItemController : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void firstDrawInvitesANewCountdown();
    void ticksThatChangeNothingVisibleDrawNothing();
    void settingsRedrawOnlyWhenTheChipChanges_data();
    void settingsRedrawOnlyWhenTheChipChanges();
    void switchingTheLanguageRedrawsInTheNewLanguage();
    void previewIconReplacesTheHoldersIconUntilCleared();
    void clicksReachTheHandler();

private:
    StatusItemController &startController();
    void addDentist();
    void tick();

    std::unique_ptr<TempPathProvider> m_paths;
    std::unique_ptr<DiskFileAccess> m_files;
    std::unique_ptr<EventStore> m_store;
    std::unique_ptr<SettingsStore> m_settings;
    std::unique_ptr<CountdownRegistry> m_registry;
    std::unique_ptr<FakeClock> m_clock;
    std::unique_ptr<FakeTickScheduler> m_scheduler;
    std::unique_ptr<CountdownEngine> m_engine;
    std::unique_ptr<LocaleManager> m_locale;
    std::unique_ptr<RecordingHost> m_host;
    std::unique_ptr<StatusItemController> m_controller;
};

void tst_StatusItemController::init()
{
    m_paths = std::make_unique<TempPathProvider>();
    m_files = std::make_unique<DiskFileAccess>();
    m_store = std::make_unique<EventStore>(*m_paths, *m_files);
    m_settings = std::make_unique<SettingsStore>(*m_paths, *m_files);
    Settings english = m_settings->settings();
    english.language = LanguagePref::en;
    m_settings->setSettings(english);
    m_registry = std::make_unique<CountdownRegistry>(*m_store);
    m_clock = std::make_unique<FakeClock>(kStart);
    m_scheduler = std::make_unique<FakeTickScheduler>();
    m_engine = std::make_unique<CountdownEngine>(*m_store, *m_registry, *m_clock, *m_scheduler);
    m_locale = std::make_unique<LocaleManager>(*m_settings);
    m_host = std::make_unique<RecordingHost>();
}

void tst_StatusItemController::cleanup()
{
    m_controller.reset();
    m_host.reset();
    m_locale.reset();
    m_engine.reset();
    m_scheduler.reset();
    m_clock.reset();
    m_registry.reset();
    m_settings.reset();
    m_store.reset();
    m_files.reset();
    m_paths.reset();
}

StatusItemController &tst_StatusItemController::startController()
{
    m_controller =
        std::make_unique<StatusItemController>(*m_host, *m_engine, *m_settings, *m_locale);
    return *m_controller;
}

// A countdown 5 days 18 hours 36 minutes ahead, 50.1 % of the way from its creation: the fill
// sits in the middle of one of its thousandth steps.
void tst_StatusItemController::addDentist()
{
    Event dentist = countdown(QStringLiteral("Dentist"), kStart.addSecs(499000));
    dentist.createdAt = kStart.addSecs(-501000);
    dentist.icon = IconRef::named(QStringLiteral("star.fill"));
    QVERIFY(m_store->addEvent(dentist));
}

void tst_StatusItemController::tick()
{
    QVERIFY(m_scheduler->isRunning());
    m_clock->advance(m_scheduler->interval().count());
    m_scheduler->fire();
}

void tst_StatusItemController::firstDrawInvitesANewCountdown()
{
    const StatusItemController &controller = startController();
    QCOMPARE(controller.drawCount(), 1);
    const MenubarChipPresentation invitation {QStringLiteral("hourglass"),
                                              QStringLiteral("New countdown"), QString(), 1.0};
    QCOMPARE(m_host->frames, QList<MenubarChipPresentation> {invitation});
    QCOMPARE(m_host->labels, QStringList {QStringLiteral("New countdown")});
}

void tst_StatusItemController::ticksThatChangeNothingVisibleDrawNothing()
{
    const StatusItemController &controller = startController();
    addDentist();
    QCOMPARE(m_host->frames.last().detail, QStringLiteral("5d 18h"));
    QCOMPARE(m_host->labels.last(), QStringLiteral("Dentist, 5d 18h"));
    const int afterAdding = controller.drawCount();

    for (int i = 0; i < 5; ++i) {
        tick();
    }
    QCOMPARE(controller.drawCount(), afterAdding);

    // Forty minutes on the hour turns: the chip redraws, a few times at most, and never hands
    // the host the frame it already shows.
    for (int i = 0; i < 35; ++i) {
        tick();
    }
    QCOMPARE(m_host->frames.last().detail, QStringLiteral("5d 17h"));
    QVERIFY(controller.drawCount() - afterAdding <= 4);
    for (qsizetype i = 1; i < m_host->frames.size(); ++i) {
        QVERIFY(m_host->frames.at(i) != m_host->frames.at(i - 1));
    }
}

void tst_StatusItemController::settingsRedrawOnlyWhenTheChipChanges_data()
{
    QTest::addColumn<std::function<void(Settings &)>>("change");
    QTest::addColumn<int>("draws");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("detail");

    QTest::newRow("The compact style drops the title") << std::function<void(Settings &)>(
        [](Settings &s) { s.menubarStyle = MenubarStyle::compact; })
                                                       << 1 << ""
                                                       << "5d 18h";
    QTest::newRow("The icon-only style drops both texts") << std::function<void(Settings &)>(
        [](Settings &s) { s.menubarStyle = MenubarStyle::iconOnly; })
                                                          << 1 << ""
                                                          << "";
    QTest::newRow("The days-only format writes whole days") << std::function<void(Settings &)>(
        [](Settings &s) { s.displayFormat = CountdownDisplayFormat::daysOnly; })
                                                            << 1 << "Dentist"
                                                            << "5d";
    QTest::newRow("A longer title limit does not change a short title")
        << std::function<void(Settings &)>([](Settings &s) { s.menubarTitleLength = 24; }) << 0
        << "Dentist"
        << "5d 18h";
    QTest::newRow("A setting the chip does not show draws nothing")
        << std::function<void(Settings &)>([](Settings &s) { s.theme = ThemePref::dark; }) << 0
        << "Dentist"
        << "5d 18h";
}

void tst_StatusItemController::settingsRedrawOnlyWhenTheChipChanges()
{
    QFETCH(std::function<void(Settings &)>, change);
    QFETCH(int, draws);
    QFETCH(QString, title);
    QFETCH(QString, detail);

    const StatusItemController &controller = startController();
    addDentist();
    const int before = controller.drawCount();
    Settings settings = m_settings->settings();
    change(settings);
    m_settings->setSettings(settings);

    QCOMPARE(controller.drawCount() - before, draws);
    QCOMPARE(m_host->frames.last().title, title);
    QCOMPARE(m_host->frames.last().detail, detail);
    QCOMPARE(m_host->frames.last().symbolName, QStringLiteral("star.fill"));
}

void tst_StatusItemController::switchingTheLanguageRedrawsInTheNewLanguage()
{
    const StatusItemController &controller = startController();
    Settings settings = m_settings->settings();
    settings.language = LanguagePref::tr;
    m_settings->setSettings(settings);
    QCOMPARE(controller.drawCount(), 2);
    QCOMPARE(m_host->frames.last().title, QStringLiteral("Yeni geri sayım"));

    addDentist();
    QCOMPARE(m_host->frames.last().detail, QStringLiteral("5g 18sa"));
}

void tst_StatusItemController::previewIconReplacesTheHoldersIconUntilCleared()
{
    StatusItemController &controller = startController();
    addDentist();
    QSignalSpy changes(&controller, &StatusItemController::previewIconChanged);

    controller.setPreviewSymbol(QStringLiteral("gift.fill"));
    QCOMPARE(m_host->frames.last().symbolName, QStringLiteral("gift.fill"));
    controller.setPreviewSymbol(QStringLiteral("gift.fill"));
    controller.clearPreview();
    QCOMPARE(m_host->frames.last().symbolName, QStringLiteral("star.fill"));
    QCOMPARE(changes.size(), 2);
}

void tst_StatusItemController::clicksReachTheHandler()
{
    StatusItemController &controller = startController();
    QList<StatusItemClick> clicks;
    m_host->click(StatusItemClick {QPoint(5, 5), QRect()}); // no handler yet: ignored
    controller.setClickHandler([&clicks](const StatusItemClick &click) { clicks.append(click); });
    const StatusItemClick click {QPoint(1001, 12), QRect(990, 0, 22, 24)};
    m_host->click(click);
    QCOMPARE(clicks, QList<StatusItemClick> {click});
}

QTEST_MAIN(tst_StatusItemController)
#include "tst_statusitemcontroller.moc"
