#pragma once

#include "countdown/CountdownRegistry.h"
#include "l10n/LocaleManager.h"
#include "parse/NaturalDateParser.h"
#include "storage/EventStore.h"
#include "storage/PathProvider.h"
#include "storage/SettingsStore.h"
#include "support/FakeClock.h"
#include "support/FaultyFileAccess.h"
#include "support/ListCalendarSource.h"
#include "ui/CountdownListModel.h"
#include "ui/EventEditorModel.h"
#include "ui/OnboardingModel.h"
#include "ui/PopupNavigator.h"
#include "ui/QuickEntryController.h"
#include "ui/RowActions.h"
#include "ui/SettingsModel.h"
#include "ui/TimeZoneListModel.h"

#include <QList>
#include <QUrl>

// The popup's models over a real store in a throw-away folder, a calendar the test fills, the
// real date parser and a clock that stands at 12:00 UTC (15:00 in Istanbul) on 1 March 2026.
// Suggestions are parsed without a pause, links are collected instead of opened.
struct UiWorld
{
    explicit UiWorld(const QString &language = QStringLiteral("en"))
        : locale(settings, [language] { return QStringList {language}; })
    {
        registry.attachCalendarSource(&calendar);
        editor.suggester().setPause(0);
        entry.suggester().setPause(0);
    }

    static std::optional<NaturalDateMatch> parse(const QString &text, const QDateTime &now,
                                                 bool keepsPast)
    {
        return NaturalDateParser::parse(text, now, QTimeZone::systemTimeZone(), keepsPast);
    }

    // The events as a fresh store reads them from disk.
    QList<Event> eventsOnDisk() const { return EventStore(paths, disk).events(); }
    std::optional<PinTarget> pinOnDisk() const { return EventStore(paths, disk).pin(); }
    int rowOf(const QString &title) const
    {
        for (int row = 0; row < list.rowCount(); ++row) {
            if (list.index(row).data(CountdownListModel::KindRole).toString() == u"item"
                && list.index(row).data(CountdownListModel::TitleRole).toString() == title)
                return row;
        }
        return -1;
    }
    Event add(const Event &event)
    {
        store.addEvent(event);
        return event;
    }

    TempPathProvider paths;
    FaultyFileAccess files;
    mutable DiskFileAccess disk;
    FakeClock clock;
    EventStore store {paths, files};
    SettingsStore settings {paths, files};
    LocaleManager locale;
    CountdownRegistry registry {store};
    ListCalendarSource calendar;
    QList<QUrl> opened;
    bool openerWorks = true;
    CountdownListModel list {registry, store, settings, locale, clock};
    RowActions actions {store, list, locale, [this](const QUrl &url) {
                            opened.append(url);
                            return openerWorks;
                        }};
    QString panelSymbol;
    EventEditorModel editor {
        store, settings, locale, clock, &UiWorld::parse, [this](const QString &symbol) {
            panelSymbol = symbol;
        }};
    PopupNavigator navigator {list, actions, editor};
    QuickEntryController entry {store, settings, clock, &UiWorld::parse};
    TimeZoneListModel zones {clock.now()};
    SettingsModel settingsModel {settings, locale, [] {
                                     return MenubarChipInputs();
                                 }};
};
