#include "cli/ListCommand.h"

#include "cli/CalendarSnapshot.h"
#include "cli/CliContext.h"
#include "cli/CommandArguments.h"
#include "cli/TerminalText.h"
#include "countdown/CountdownRegistry.h"
#include "l10n/LanguageTable.h"
#include "l10n/LocaleManager.h"
#include "l10n/SupportedLanguages.h"
#include "storage/SettingsStore.h"
#include "time/CountdownFormatter.h"
#include "time/ItemTimeText.h"
#include "json/JsonWriter.h"

QString ListCommand::usage() const
{
    return QStringLiteral("list [--json] [--lang CODE]");
}

namespace {

QString whenText(const Event &event)
{
    const QDateTime local = event.targetDate.toTimeZone(event.zone());
    const QString day = local.toString(QStringLiteral("yyyy-MM-dd"));
    return event.includeTime ? day + local.toString(QStringLiteral(" HH:mm")) : day;
}

QString whenText(const CalendarOccurrence &occurrence, const QTimeZone &zone)
{
    const QDateTime local = occurrence.start.toTimeZone(zone);
    return local.toString(occurrence.isAllDay ? QStringLiteral("yyyy-MM-dd")
                                              : QStringLiteral("yyyy-MM-dd HH:mm"));
}

// Time left until the start, or "+" and the time since it began for a meeting under way.
QString occurrenceTimeText(const CountdownItem &item, const QDateTime &now,
                           CountdownDisplayFormat format, const LanguageTable &table)
{
    if (item.isUpcoming(now))
        return CountdownFormatter::compact(Remaining::until(item.date(), now), format, table);
    return u'+' + CountdownFormatter::compactElapsed(item.date(), now, item.zone(), format, table);
}

void writeOccurrence(JsonWriter &writer, const CalendarOccurrence &occurrence)
{
    writer.beginObject();
    writer.key(QLatin1StringView("calendar")).string(occurrence.calendarTitle);
    if (occurrence.end)
        writer.key(QLatin1StringView("end")).date(*occurrence.end);
    writer.key(QLatin1StringView("excludedFromAutomatic"))
        .boolean(occurrence.excludedFromAutomatic);
    writer.key(QLatin1StringView("isAllDay")).boolean(occurrence.isAllDay);
    writer.key(QLatin1StringView("kind")).string(QStringLiteral("calendarOccurrence"));
    if (occurrence.location)
        writer.key(QLatin1StringView("location")).string(*occurrence.location);
    if (occurrence.meetingURL)
        writer.key(QLatin1StringView("meetingURL")).string(occurrence.meetingURL->toString());
    writer.key(QLatin1StringView("ref"));
    occurrence.ref.toJson(writer);
    writer.key(QLatin1StringView("start")).date(occurrence.start);
    writer.key(QLatin1StringView("timeZone")).string(occurrence.timeZoneID);
    writer.key(QLatin1StringView("title")).string(occurrence.title);
    writer.endObject();
}

} // namespace

int ListCommand::run(const QStringList &arguments, CliContext &context)
{
    CommandArguments args(
        {QCommandLineOption(QStringLiteral("json")),
         QCommandLineOption(QStringLiteral("lang"), QString(), QStringLiteral("CODE"))});
    if (!args.parse(arguments, context, 0, 0, usage()))
        return 1;
    QString language = args.value(QStringLiteral("lang")).toLower();
    if (args.isSet(QStringLiteral("lang")) && !isSupportedLanguage(language))
        return context.fail(QStringLiteral("unsupported language \"%1\" (supported: %2)")
                                .arg(args.value(QStringLiteral("lang")),
                                     supportedLanguages().join(QStringLiteral(", "))));
    EventStore &store = context.data().events();
    // Time texts speak the language asked for, else the interface language of the settings.
    const Settings &settings = context.data().settings().settings();
    if (language.isEmpty())
        language = resolveLanguage(settings.language, LocaleManager::systemPreferredLanguages());
    const LanguageTable table = LanguageTable::load(language);
    const QDateTime now = context.clock().now();

    // Calendar occurrences as the list shows them: with the series' choices, hidden ones left out.
    CalendarSnapshot calendars(context.data(), now, table);
    CountdownRegistry registry(store);
    registry.attachCalendarSource(&calendars.store());
    QList<CountdownItem> calendarItems;
    for (const CountdownItem &item : registry.items()) {
        if (item.isCalendar() && !item.isHidden())
            calendarItems.append(item);
    }

    if (args.isSet(QStringLiteral("json"))) {
        JsonWriter writer;
        writer.beginArray();
        for (const Event &event : store.events())
            event.toJson(writer);
        for (const CountdownItem &item : std::as_const(calendarItems))
            writeOccurrence(writer, *item.occurrence());
        writer.endArray();
        context.out() << QString::fromUtf8(writer.finish());
        return 0;
    }

    const std::optional<PinTarget> &pin = store.pin();
    for (const Event &event : store.events()) {
        const bool pinned = pin && pin->kind == PinTarget::Kind::manual && pin->eventID == event.id;
        context.out() << event.id.toString(QUuid::WithoutBraces).toUpper() << "  "
                      << whenText(event) << "  "
                      << (event.direction == CountdownDirection::since ? "since  " : "until  ")
                      << eventTimeText(event, now, settings.displayFormat, table) << "  "
                      << terminalSafe(event.title) << (pinned ? "  [pinned]" : "") << '\n';
    }
    for (const CountdownItem &item : std::as_const(calendarItems)) {
        const CalendarOccurrence &occurrence = *item.occurrence();
        context.out() << occurrence.calendarTitle << "  " << whenText(occurrence, item.zone())
                      << "  until  " << occurrenceTimeText(item, now, settings.displayFormat, table)
                      << "  " << occurrence.title
                      << (CountdownRegistry::pinMatches(pin, item) ? "  [pinned]" : "");
        if (occurrence.meetingURL)
            context.out() << "  join " << occurrence.meetingURL->toString();
        context.out() << '\n';
    }
    return 0;
}
