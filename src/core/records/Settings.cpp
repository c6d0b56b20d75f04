#include "records/Settings.h"

#include "json/JsonObjectReader.h"
#include "json/JsonWriter.h"

#include <algorithm>
#include <limits>

using namespace Qt::StringLiterals;

std::optional<KeyCombo> KeyCombo::fromJson(const JsonValue &value, QString *error)
{
    JsonObjectReader reader(value, error);
    KeyCombo combo;
    combo.keyCode = quint16(reader.int64("keyCode"_L1, 0, std::numeric_limits<quint16>::max()));
    combo.modifierFlags =
        quint64(reader.int64("modifierFlags"_L1, 0, std::numeric_limits<qint64>::max()));
    return reader.ok() ? std::optional(combo) : std::nullopt;
}

void KeyCombo::toJson(JsonWriter &writer) const
{
    writer.beginObject();
    writer.key("keyCode"_L1).integer(keyCode);
    writer.key("modifierFlags"_L1).integer(qint64(modifierFlags));
    writer.endObject();
}

CalendarSettings CalendarSettings::fromJson(const JsonValue &value)
{
    // Calendar choices are worth keeping even when one of them is damaged: each key on its own,
    // a missing or unreadable one takes its default.
    CalendarSettings settings;
    for (const JsonValue id : value["disabledCalendarIDs"_L1].elements()) {
        if (id.isString())
            settings.disabledCalendarIDs.insert(id.toString());
    }
    const auto flag = [&](QLatin1StringView key, bool fallback) {
        const JsonValue member = value[key];
        return member.isBool() ? member.toBool() : fallback;
    };
    settings.hasEverChosen = flag("hasEverChosen"_L1, false);
    settings.skipDeclined = flag("skipDeclined"_L1, true);
    settings.includeAllDay = flag("includeAllDay"_L1, false);
    settings.horizonDays = value["horizonDays"_L1].toInt64().value_or(7);
    return settings;
}

void CalendarSettings::toJson(JsonWriter &writer) const
{
    QStringList disabled(disabledCalendarIDs.cbegin(), disabledCalendarIDs.cend());
    disabled.sort();
    writer.beginObject();
    writer.key("disabledCalendarIDs"_L1).beginArray();
    for (const QString &id : std::as_const(disabled))
        writer.string(id);
    writer.endArray();
    writer.key("hasEverChosen"_L1).boolean(hasEverChosen);
    writer.key("horizonDays"_L1).integer(horizonDays);
    writer.key("includeAllDay"_L1).boolean(includeAllDay);
    writer.key("skipDeclined"_L1).boolean(skipDeclined);
    writer.endObject();
}

namespace {

// Takes each listed field from `mine` where it differs from `base`.
template<typename Record, typename... Fields>
Record mergeFields(const Record &base, const Record &mine, Record theirs, Fields... fields)
{
    ((theirs.*fields = mine.*fields != base.*fields ? mine.*fields : theirs.*fields), ...);
    return theirs;
}

} // namespace

CalendarSettings CalendarSettings::merged(const CalendarSettings &base,
                                          const CalendarSettings &mine,
                                          const CalendarSettings &theirs)
{
    using C = CalendarSettings;
    return mergeFields(base, mine, theirs, &C::disabledCalendarIDs, &C::hasEverChosen,
                       &C::skipDeclined, &C::includeAllDay, &C::horizonDays);
}

Settings Settings::merged(const Settings &base, const Settings &mine, const Settings &theirs)
{
    using S = Settings;
    Settings result = mergeFields(
        base, mine, theirs, &S::schemaVersion, &S::language, &S::theme, &S::launchAtLogin,
        &S::legacyCelebrationOnReach, &S::legacyNotificationOnReach, &S::menubarTitleLength,
        &S::menubarStyle, &S::legacyMenubarShowsRemaining, &S::shortcutOverrides, &S::displayFormat,
        &S::pastSectionExpanded, &S::celebrationConfetti, &S::celebrationSound, &S::appVersion);
    result.calendars = CalendarSettings::merged(base.calendars, mine.calendars, theirs.calendars);
    return result;
}

qint64 Settings::clampedTitleLength(qint64 length)
{
    return std::clamp(length, MinTitleLength, MaxTitleLength);
}

qint64 Settings::clampedAutoDismissSeconds(qint64 seconds)
{
    return std::clamp<qint64>(seconds, 0, MaxAutoDismissSeconds);
}

std::optional<Settings> Settings::fromJson(const JsonValue &value, QString *error)
{
    JsonObjectReader reader(value, error);
    Settings s;
    s.schemaVersion = reader.optionalInt64("schemaVersion"_L1).value_or(1);
    s.language = reader.optionalEnum("language"_L1, "LanguagePref", languagePrefFromRaw)
                     .value_or(LanguagePref::auto_);
    s.theme =
        reader.optionalEnum("theme"_L1, "ThemePref", themePrefFromRaw).value_or(ThemePref::auto_);
    s.launchAtLogin = reader.optionalBoolean("launchAtLogin"_L1).value_or(false);
    s.legacyCelebrationOnReach = reader.optionalBoolean("showCelebrationOnReach"_L1);
    s.legacyNotificationOnReach = reader.optionalBoolean("showNotificationOnReach"_L1);
    s.menubarTitleLength =
        clampedTitleLength(reader.optionalInt64("menubarTitleLength"_L1).value_or(16));
    s.legacyMenubarShowsRemaining = reader.optionalBoolean("menubarShowsRemaining"_L1);
    const std::optional<MenubarStyle> style =
        reader.optionalEnum("menubarStyle"_L1, "MenubarStyle", menubarStyleFromRaw);
    s.menubarStyle =
        style.value_or(s.legacyMenubarShowsRemaining.value_or(true) ? MenubarStyle::full
                                                                    : MenubarStyle::titleOnly);
    const JsonValue overrides = reader.value("shortcutOverrides"_L1);
    if (overrides.isPresent() && !overrides.isObject())
        reader.fail(QStringLiteral("Expected an object for key \"shortcutOverrides\""));
    for (auto it = overrides.elements().begin(); reader.ok() && it != overrides.elements().end();
         ++it) {
        QString comboError;
        if (const std::optional<KeyCombo> combo = KeyCombo::fromJson(*it, &comboError))
            s.shortcutOverrides.insert(it.key(), *combo);
        else
            reader.fail(comboError);
    }
    s.calendars = CalendarSettings::fromJson(reader.value("calendars"_L1));
    s.displayFormat =
        reader.optionalEnum("displayFormat"_L1, "CountdownDisplayFormat", displayFormatFromRaw)
            .value_or(CountdownDisplayFormat::automatic);
    s.pastSectionExpanded = reader.optionalBoolean("pastSectionExpanded"_L1).value_or(true);
    s.celebrationConfetti = reader.optionalBoolean("celebrationConfetti"_L1).value_or(true);
    s.celebrationSound = reader.optionalBoolean("celebrationSound"_L1).value_or(false);
    s.celebrationAutoDismissSeconds = clampedAutoDismissSeconds(
        reader.optionalInt64("celebrationAutoDismissSeconds"_L1).value_or(8));
    s.appVersion = reader.optionalString("appVersion"_L1).value_or(s.appVersion);
    s.newCountdownNotifies = reader.optionalBoolean("newCountdownNotifies"_L1).value_or(true);
    s.newCountdownCelebrates = reader.optionalBoolean("newCountdownCelebrates"_L1).value_or(false);
    if (!reader.ok())
        return std::nullopt;
    return s;
}

void Settings::toJson(JsonWriter &writer) const
{
    writer.beginObject();
    writer.key("appVersion"_L1).string(appVersion);
    writer.key("calendars"_L1);
    calendars.toJson(writer);
    writer.key("celebrationAutoDismissSeconds"_L1).integer(celebrationAutoDismissSeconds);
    writer.key("celebrationConfetti"_L1).boolean(celebrationConfetti);
    writer.key("celebrationSound"_L1).boolean(celebrationSound);
    writer.key("displayFormat"_L1).string(rawValue(displayFormat));
    writer.key("language"_L1).string(rawValue(language));
    writer.key("launchAtLogin"_L1).boolean(launchAtLogin);
    if (legacyMenubarShowsRemaining)
        writer.key("menubarShowsRemaining"_L1).boolean(*legacyMenubarShowsRemaining);
    writer.key("menubarStyle"_L1).string(rawValue(menubarStyle));
    writer.key("menubarTitleLength"_L1).integer(menubarTitleLength);
    writer.key("newCountdownCelebrates"_L1).boolean(newCountdownCelebrates);
    writer.key("newCountdownNotifies"_L1).boolean(newCountdownNotifies);
    writer.key("pastSectionExpanded"_L1).boolean(pastSectionExpanded);
    writer.key("schemaVersion"_L1).integer(schemaVersion);
    writer.key("shortcutOverrides"_L1).beginObject();
    for (auto it = shortcutOverrides.cbegin(); it != shortcutOverrides.cend(); ++it) {
        writer.key(QStringView(it.key()));
        it.value().toJson(writer);
    }
    writer.endObject();
    if (legacyCelebrationOnReach)
        writer.key("showCelebrationOnReach"_L1).boolean(*legacyCelebrationOnReach);
    if (legacyNotificationOnReach)
        writer.key("showNotificationOnReach"_L1).boolean(*legacyNotificationOnReach);
    writer.key("theme"_L1).string(rawValue(theme));
    writer.endObject();
}
