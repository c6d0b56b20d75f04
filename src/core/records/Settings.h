#pragma once

#include "records/SettingsTypes.h"

#include <QMap>
#include <QSet>
#include <QString>

#include <optional>

class JsonValue;
class JsonWriter;

// A global shortcut: key code and modifier mask.
struct KeyCombo
{
    quint16 keyCode = 0;
    quint64 modifierFlags = 0;

    static std::optional<KeyCombo> fromJson(const JsonValue &value, QString *error);
    void toJson(JsonWriter &writer) const;
    bool operator==(const KeyCombo &) const = default;
};

// Which calendars feed the list and how far ahead.
struct CalendarSettings
{
    QSet<QString> disabledCalendarIDs;
    bool hasEverChosen = false;
    bool skipDeclined = true;
    bool includeAllDay = false;
    qint64 horizonDays = 7;

    // Missing keys take their defaults.
    static CalendarSettings fromJson(const JsonValue &value);
    void toJson(JsonWriter &writer) const;
    bool operator==(const CalendarSettings &) const = default;
    // Field by field, as Settings::merged().
    static CalendarSettings merged(const CalendarSettings &base, const CalendarSettings &mine,
                                   const CalendarSettings &theirs);
};

// The user's preferences, kept in "settings.json".
struct Settings
{
    static constexpr qint64 MinTitleLength = 12;
    static constexpr qint64 MaxTitleLength = 24;

    qint64 schemaVersion = 1;
    LanguagePref language = LanguagePref::auto_;
    ThemePref theme = ThemePref::auto_;
    bool launchAtLogin = false;
    std::optional<bool> legacyCelebrationOnReach; // "showCelebrationOnReach" of older versions
    std::optional<bool> legacyNotificationOnReach; // "showNotificationOnReach" of older versions
    qint64 menubarTitleLength = 16;
    MenubarStyle menubarStyle = MenubarStyle::full;
    std::optional<bool> legacyMenubarShowsRemaining; // "menubarShowsRemaining" of older versions
    QMap<QString, KeyCombo> shortcutOverrides;
    CalendarSettings calendars;
    CountdownDisplayFormat displayFormat = CountdownDisplayFormat::automatic;
    bool pastSectionExpanded = true;
    bool celebrationConfetti = true;
    bool celebrationSound = false;
    // Seconds a celebration stays before it closes by itself; 0 keeps it until dismissed.
    qint64 celebrationAutoDismissSeconds = 8;
    QString appVersion = QStringLiteral(TARROW_VERSION);
    // What a new countdown asks for when it arrives (each countdown keeps its own switches).
    bool newCountdownNotifies = true;
    bool newCountdownCelebrates = false;

    static qint64 clampedTitleLength(qint64 length);
    static constexpr qint64 MaxAutoDismissSeconds = 600;
    static qint64 clampedAutoDismissSeconds(qint64 seconds);

    // Every key may be missing; a value of the wrong type fails the whole file.
    static std::optional<Settings> fromJson(const JsonValue &value, QString *error);
    void toJson(JsonWriter &writer) const;
    bool operator==(const Settings &) const = default;

    // Two writers that changed the same settings: `theirs` (what another process saved) with
    // every field that `mine` changed from `base` taken from `mine`. Changes of different fields
    // both survive; of the same field, mine wins.
    static Settings merged(const Settings &base, const Settings &mine, const Settings &theirs);
};
