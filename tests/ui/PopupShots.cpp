// Renders the popup and the settings window with sample data, for the README and for looking at:
//   tarrow_popup_shots OUT_DIR LANGUAGE THEME [SCALE]
// writes OUT_DIR/LANGUAGE-THEME-{list,editor,editor-more,calendar,empty,welcome,settings,
// settings-general,settings-arrivals,settings-calendars,settings-shortcuts,settings-data,
// settings-import,settings-about}.png. THEME is light or dark.
// The clock stands at 15:00 in Istanbul on 1 March 2026, so the pictures do not change from run
// to run.
#include "SettingsWorld.h"
#include "UiWorld.h"
#include "support/Fixtures.h"
#include "support/ItemFixtures.h"
#include "ui/AppearanceManager.h"
#include "ui/ChipPreviewProvider.h"
#include "ui/PopoverController.h"
#include "ui/SettingsPageList.h"
#include "ui/SettingsWindowController.h"
#include "ui/TableTranslator.h"

#include <QApplication>
#include <QDir>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTest>

#include <cstdio>

using namespace Qt::StringLiterals;

namespace {

// A world of everyday countdowns: upcoming ones, a pinned one, count-ups, arrived ones and a
// meeting from the calendar that is about to start.
void fill(UiWorld &world)
{
    const QDateTime now = world.clock.now();
    const auto event = [&](const QString &title, const QDateTime &target, const char *symbol,
                           std::optional<EventColor> color) {
        Event e = Fixture::countdown(title, target);
        e.icon = IconRef::named(QString::fromLatin1(symbol));
        e.color = color;
        e.createdAt = target.addDays(-30);
        return e;
    };
    Event trip = event(world.locale.text(u"settings.preview.sample_title"_s),
                       now.addDays(12).addSecs(5 * 3600), "airplane", EventColor::blue);
    world.add(trip);
    world.store.setPin(PinTarget::manual(trip.id));
    world.add(event(u"Dentist"_s, now.addDays(1).addSecs(3600), "heart.fill", EventColor::red));
    world.add(event(u"Maya’s birthday"_s, now.addDays(5), "birthday.cake.fill", EventColor::pink));
    Event longTitle = event(u"Submit the quarterly tax return and the receipts folder"_s,
                            now.addDays(40), "briefcase.fill", EventColor::yellow);
    world.add(longTitle);
    Event rtl = event(u"عيد ميلاد سارة"_s, now.addDays(20), "gift.fill", EventColor::purple);
    world.add(rtl);
    Event sober = Fixture::countUp(u"Running streak"_s, now.addDays(-430));
    sober.icon = IconRef::named(u"figure.run"_s);
    sober.color = EventColor::green;
    world.add(sober);
    Event home = Fixture::countUp(u"New flat"_s, now.addDays(-61));
    home.icon = IconRef::named(u"house.fill"_s);
    home.color = EventColor::teal;
    world.add(home);
    Event concert =
        Fixture::reached(event(u"Concert"_s, now.addDays(-2), "music.note", EventColor::orange));
    world.add(concert);

    CalendarOccurrence standup =
        Fixture::occurrence(u"standup"_s, u"Team standup"_s, now.addSecs(9 * 60));
    standup.meetingURL = QUrl(u"https://meet.google.com/abc-defg-hij"_s);
    standup.tint = CalendarTint {0.23, 0.65, 0.65};
    CalendarOccurrence review =
        Fixture::occurrence(u"review"_s, u"Design review"_s, now.addDays(2).addSecs(-3600));
    review.tint = CalendarTint {0.56, 0.40, 0.84};
    world.calendar.publish({standup, review});
}

// Calendars added by hand (a file that reads, one that has gone) and the user's address.
bool addCalendars(UiWorld &world, SettingsWorld &settings)
{
    const QDir folder(world.paths.supportDirectory());
    QFile team(folder.filePath(u"team.ics"_s));
    if (team.open(QIODevice::WriteOnly))
        team.write(fixtureBytes(u"calendars/weekly-berlin.ics"_s));
    team.close();
    settings.calendars.addSource(team.fileName());
    settings.calendars.addSource(folder.filePath(u"holidays.ics"_s), u"Holidays"_s);
    settings.calendars.setAddresses(u"maya@example.com"_s);
    return QTest::qWaitFor([&] { return !settings.calendars.accounts().isEmpty(); }, 3000);
}

bool save(QQuickWindow *window, const QString &path)
{
    QTest::qWait(400); // images from providers and the first layout pass
    const QImage image = window->grabWindow();
    if (image.isNull() || !image.save(path)) {
        std::fprintf(stderr, "could not save %s\n", qPrintable(path));
        return false;
    }
    std::printf("%s\n", qPrintable(path));
    return true;
}

struct Scene
{
    Scene(UiWorld &world, SettingsWorld &models, const QPalette &system)
        : appearance(world.settings, system)
        , onboarding(world.entry)
        , translator(world.locale)
        , popover(QVariantMap {{u"navigator"_s, QVariant::fromValue(&world.navigator)},
                               {u"listModel"_s, QVariant::fromValue(&world.list)},
                               {u"actions"_s, QVariant::fromValue(&world.actions)},
                               {u"editor"_s, QVariant::fromValue(&world.editor)},
                               {u"quickEntry"_s, QVariant::fromValue(&world.entry)},
                               {u"zones"_s, QVariant::fromValue(&world.zones)},
                               {u"onboarding"_s, QVariant::fromValue(&onboarding)},
                               {u"settings"_s, QVariant::fromValue(&world.settingsModel)},
                               {u"appearance"_s, QVariant::fromValue(&appearance)},
                               {u"calendars"_s, QVariant::fromValue(&models.calendars)}})
        , pages(SettingsPageList::withGeneralPages())
        , settingsWindow(QVariantMap {{u"pages"_s, QVariant::fromValue(pages.get())},
                                      {u"settings"_s, QVariant::fromValue(&world.settingsModel)},
                                      {u"appearance"_s, QVariant::fromValue(&appearance)},
                                      {u"models"_s, models.models()}},
                         providers(world))
    {
        pages->addPage(u"calendars"_s, u"settings.page.calendars"_s,
                       SettingsPageList::pageFile("CalendarSettingsPage"), u"calendar"_s);
        pages->addPage(u"shortcuts"_s, u"settings.page.shortcuts"_s,
                       SettingsPageList::pageFile("ShortcutsSettingsPage"), u"ui.keyboard"_s);
        pages->addPage(u"data"_s, u"settings.page.data"_s,
                       SettingsPageList::pageFile("DataSettingsPage"), u"ui.archivebox"_s);
        QCoreApplication::installTranslator(&translator);
        QLocale::setDefault(world.locale.interfaceLocale());
        popover.setImageProviders(providers(world));
    }
    ~Scene() { QCoreApplication::removeTranslator(&translator); }

    static QList<SceneImageProvider> providers(UiWorld &world)
    {
        return {{u"chip"_s, [&world]() -> QQmlImageProviderBase * {
                     return new ChipPreviewProvider(
                         [&world](const QString &name) -> std::optional<MenubarChipPresentation> {
                             if (name == u"editor")
                                 return world.editor.chipPresentation();
                             return world.settingsModel.chipPresentation();
                         });
                 }}};
    }

    AppearanceManager appearance;
    OnboardingModel onboarding;
    TableTranslator translator;
    PopoverController popover;
    std::unique_ptr<SettingsPageList> pages;
    SettingsWindowController settingsWindow;
};

} // namespace

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    const QStringList args = app.arguments();
    if (args.size() < 4) {
        std::fputs("usage: tarrow_popup_shots OUT_DIR LANGUAGE light|dark\n", stderr);
        return 2;
    }
    const QDir out(args.at(1));
    out.mkpath(QStringLiteral("."));
    const QString language = args.at(2);
    const bool dark = args.at(3) == u"dark";
    // Added calendars only (copied from the test fixtures), and update checks answered without a
    // network.
    qputenv("TARROW_CALENDAR_BACKENDS", "ics");
    qputenv("TARROW_FIXTURES", TARROW_FIXTURES_DIR);
    qputenv(UpdateChecker::stubVariable, "updateAvailable:1.4.0:https://example.org/tarrow/1.4.0");
    AppearanceManager::installControlsStyle();
    const QPalette system = QGuiApplication::palette();
    const QString prefix = out.filePath(language + u'-' + args.at(3) + u'-');
    bool ok = true;

    {
        UiWorld world(language);
        Settings settings = world.settings.settings();
        settings.theme = dark ? ThemePref::dark : ThemePref::light;
        world.settings.setSettings(settings);
        fill(world);
        // The desktop holds the new-countdown keys already.
        SettingsWorld models(world, {defaultCombo(ShortcutAction::newCountdown)});
        ok &= addCalendars(world, models);
        Scene scene(world, models, system);
        scene.popover.open(QRect(900, 0, 24, 24));
        world.list.moveCurrent(1);
        ok &= save(scene.popover.window(), prefix + u"list.png"_s);

        world.navigator.newCountdown();
        world.editor.setTitle(u"Dentist tomorrow at 3pm"_s);
        ok &= QTest::qWaitFor([&] { return world.editor.hasSuggestion(); }, 3000);
        world.editor.setSymbol(u"heart.fill"_s);
        world.editor.setColor(u"red"_s);
        world.editor.addReminder(60);
        ok &= save(scene.popover.window(), prefix + u"editor.png"_s);
        world.editor.setRepeat(int(RecurrenceRule::Frequency::weekly));
        world.editor.toggleWeekday(int(Weekday::monday));
        world.editor.setNote(u"Bring the insurance card"_s);
        world.editor.setLink(u"clinic.example.com/booking"_s);
        auto *form = scene.popover.window()->findChild<QQuickItem *>(u"editorForm"_s);
        if (form)
            form->setProperty("contentY",
                              form->property("contentHeight").toReal() - form->height());
        ok &= save(scene.popover.window(), prefix + u"editor-more.png"_s);
        world.editor.cancel();
        world.navigator.editRow(world.rowOf(u"Team standup"_s));
        ok &= save(scene.popover.window(), prefix + u"calendar.png"_s);
        world.editor.cancel();

        scene.popover.close();
        models.backup.finishExport(
            QUrl::fromLocalFile(QDir(world.paths.supportDirectory()).filePath(u"backup.json"_s)));
        models.updates.checkNow();
        ok &= QTest::qWaitFor(
            [&] { return models.updates.state() != UpdateChecker::State::checking; });
        for (const QString &page : {u"panel"_s, u"general"_s, u"arrivals"_s, u"calendars"_s,
                                    u"shortcuts"_s, u"data"_s, u"about"_s}) {
            scene.settingsWindow.open(page);
            ok &= save(scene.settingsWindow.window(),
                       prefix + (page == u"panel" ? u"settings"_s : u"settings-"_s + page)
                           + u".png"_s);
        }
        scene.settingsWindow.open(u"data"_s);
        models.backup.importFrom(
            QUrl::fromLocalFile(QDir(world.paths.supportDirectory()).filePath(u"backup.json"_s)));
        ok &= save(scene.settingsWindow.window(), prefix + u"settings-import.png"_s);
        models.backup.answer(u"cancel"_s);
        scene.settingsWindow.close();
    }
    {
        UiWorld world(language);
        Settings settings = world.settings.settings();
        settings.theme = dark ? ThemePref::dark : ThemePref::light;
        world.settings.setSettings(settings);
        SettingsWorld models(world);
        Scene scene(world, models, system);
        scene.popover.open(QRect(900, 0, 24, 24));
        ok &= save(scene.popover.window(), prefix + u"empty.png"_s);
        ok &= addCalendars(world, models); // the welcome page offers the calendars found
        world.navigator.showWelcome();
        world.entry.setText(u"Exam on 3 June"_s);
        ok &= QTest::qWaitFor([&] { return world.entry.hasSuggestion(); }, 3000);
        ok &= save(scene.popover.window(), prefix + u"welcome.png"_s);
    }
    return ok ? 0 : 1;
}
