// The popup's pages and the settings pages as a person uses them, offscreen: QML test cases in
// quick/ drive the real pages over the real models (a store in a throw-away folder, the real date
// parser, a clock that stands at 15:00 in Istanbul on 1 March 2026).
#include "SettingsWorld.h"
#include "UiWorld.h"
#include "shortcuts/KeyComboText.h"
#include "support/Fixtures.h"
#include "support/ItemFixtures.h"
#include "ui/AppearanceManager.h"
#include "ui/ChipPreviewProvider.h"
#include "ui/SymbolImageProvider.h"
#include "ui/TableTranslator.h"

#include <QQmlContext>
#include <QQmlEngine>
#include <QtQuickTest>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

// What the QML tests ask of the world around the pages.
class TestWorld : public QObject
{
    Q_OBJECT
public:
    TestWorld(UiWorld &world, SettingsWorld &settingsWorld)
        : m_world(world)
        , m_settingsWorld(settingsWorld)
    {
    }

    // Leaves the store empty, the editor closed, the list unfiltered on the list page, every
    // calendar included.
    Q_INVOKABLE void reset()
    {
        m_world.editor.cancel();
        m_world.actions.dismissUndo();
        m_world.list.setSearchText(QString());
        m_world.list.setScope(CountdownListScope::all);
        m_world.list.setCurrentRow(-1);
        m_world.store.setPin(std::nullopt);
        const QList<Event> events = m_world.store.events(); // each deletion replaces the list
        for (const Event &event : events)
            m_world.store.deleteEvent(event.id);
        m_world.navigator.showList();
        m_settingsWorld.backup.answer(QStringLiteral("cancel"));
        m_settingsWorld.backup.dismissMessage();
        m_settingsWorld.shortcutsPage.restoreDefaults();
        Settings settings = m_world.settings.settings();
        settings.calendars.disabledCalendarIDs.clear();
        m_world.settings.setSettings(settings);
    }
    // A countdown `days` from now at 15:00 in Istanbul.
    Q_INVOKABLE void addCountdown(const QString &title, int days)
    {
        m_world.add(Fixture::countdown(title, m_world.clock.now().addDays(days)));
    }
    // "title|2026-03-02T12:00:00Z|allDay" of each event, as the events file holds them.
    Q_INVOKABLE QStringList eventsOnDisk() const
    {
        QStringList events;
        for (const Event &event : m_world.eventsOnDisk())
            events.append(event.title + u'|' + event.targetDate.toString(Qt::ISODate)
                          + (event.includeTime ? u"" : u"|allDay"));
        return events;
    }
    Q_INVOKABLE QString currentTitle() const
    {
        const std::optional<CountdownItem> item = m_world.list.currentItem();
        return item ? item->title() : QString();
    }
    Q_INVOKABLE QString pinnedTitle() const
    {
        const std::optional<PinTarget> pin = m_world.pinOnDisk();
        for (const Event &event : m_world.eventsOnDisk()) {
            if (pin && pin->eventID == event.id)
                return event.title;
        }
        return QString();
    }

    // A file in the data folder, as a file chooser hands it over.
    Q_INVOKABLE QUrl fileUrl(const QString &name) const
    {
        return QUrl::fromLocalFile(QDir(m_world.paths.supportDirectory()).filePath(name));
    }
    // Copies a calendar of tests/fixtures into the data folder; its path.
    Q_INVOKABLE QString calendarFile(const QString &fixture) const
    {
        const QString path = fileUrl(fixture).toLocalFile();
        QFile file(path);
        if (file.open(QIODevice::WriteOnly))
            file.write(fixtureBytes(u"calendars/"_s + fixture));
        return path;
    }
    // The keys the desktop's hot-key engine holds for `action` ("Ctrl+Alt+K"), empty for none.
    Q_INVOKABLE QString registeredKeys(const QString &action) const
    {
        const std::optional<ShortcutAction> known = shortcutActionFromRaw(action);
        if (!known || !m_settingsWorld.hotkeys->registered.contains(*known))
            return QString();
        return keyComboText(m_settingsWorld.hotkeys->registered.value(*known),
                            m_world.locale.table());
    }
    Q_INVOKABLE QStringList disabledCalendars() const
    {
        return m_world.settings.settings().calendars.disabledCalendarIDs.values();
    }

private:
    UiWorld &m_world;
    SettingsWorld &m_settingsWorld;
};

class Setup : public QObject
{
    Q_OBJECT
public Q_SLOTS:
    void qmlEngineAvailable(QQmlEngine *engine)
    {
        engine->addImageProvider(QStringLiteral("symbol"), new SymbolImageProvider);
        engine->addImportPath(QStringLiteral("qrc:/qt/qml"));
        // One world for every test file, each of which gets an engine of its own.
        if (!m_world) {
            AppearanceManager::installControlsStyle();
            m_world = std::make_unique<UiWorld>();
            m_settingsWorld = std::make_unique<SettingsWorld>(*m_world);
            m_testWorld = std::make_unique<TestWorld>(*m_world, *m_settingsWorld);
            m_appearance =
                std::make_unique<AppearanceManager>(m_world->settings, QGuiApplication::palette());
            m_translator = std::make_unique<TableTranslator>(m_world->locale);
            QCoreApplication::installTranslator(m_translator.get());
        }
        engine->addImageProvider(
            QStringLiteral("chip"),
            new ChipPreviewProvider(
                [this](const QString &) -> std::optional<MenubarChipPresentation> {
                    return m_world->editor.chipPresentation();
                }));
        QQmlContext *context = engine->rootContext();
        context->setContextProperty(QStringLiteral("navigator"), &m_world->navigator);
        context->setContextProperty(QStringLiteral("listModel"), &m_world->list);
        context->setContextProperty(QStringLiteral("actions"), &m_world->actions);
        context->setContextProperty(QStringLiteral("editor"), &m_world->editor);
        context->setContextProperty(QStringLiteral("quickEntry"), &m_world->entry);
        context->setContextProperty(QStringLiteral("zones"), &m_world->zones);
        context->setContextProperty(QStringLiteral("appearance"), m_appearance.get());
        context->setContextProperty(QStringLiteral("testWorld"), m_testWorld.get());
        context->setContextProperty(QStringLiteral("settingsModels"), m_settingsWorld->models());
    }

    void cleanupTestCase()
    {
        if (m_translator)
            QCoreApplication::removeTranslator(m_translator.get());
    }

private:
    std::unique_ptr<UiWorld> m_world;
    std::unique_ptr<SettingsWorld> m_settingsWorld;
    std::unique_ptr<TestWorld> m_testWorld;
    std::unique_ptr<AppearanceManager> m_appearance;
    std::unique_ptr<TableTranslator> m_translator;
};

} // namespace

QUICK_TEST_MAIN_WITH_SETUP(tst_popupquick, Setup)
#include "tst_popupquick.moc"
