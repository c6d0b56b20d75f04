#include "cli/AddCommand.h"

#include "cli/CliContext.h"
#include "cli/CommandArguments.h"
#include "cli/DateArgument.h"
#include "cli/TerminalText.h"
#include "records/Event.h"

QString AddCommand::usage() const
{
    return QStringLiteral("add TITLE [--date ISO8601] [--all-day] [--since] [--time-zone ZONE]");
}

int AddCommand::run(const QStringList &arguments, CliContext &context)
{
    CommandArguments args({
        QCommandLineOption(QStringLiteral("date"), QString(), QStringLiteral("ISO8601")),
        QCommandLineOption(QStringLiteral("all-day")),
        QCommandLineOption(QStringLiteral("since")),
        QCommandLineOption(QStringLiteral("time-zone"), QString(), QStringLiteral("ZONE")),
    });
    if (!args.parse(arguments, context, 1, 1, usage()))
        return 1;

    const std::optional<QTimeZone> zone =
        zoneArgument(args.value(QStringLiteral("time-zone")), context);
    if (!zone)
        return 1;
    const QString title = args.positional().constFirst().trimmed();
    if (title.isEmpty())
        return context.fail(QStringLiteral("the title is empty"));
    if (Event::isTitleTooLong(title))
        return context.fail(
            QStringLiteral("the title is longer than %1 characters").arg(Event::MaxTitleLength));

    Event event = Event::created(title, context.clock().now(), *zone);
    event.direction =
        args.isSet(QStringLiteral("since")) ? CountdownDirection::since : CountdownDirection::until;

    if (args.isSet(QStringLiteral("date"))) {
        QString problem;
        const std::optional<DateText> date =
            parseDateText(args.value(QStringLiteral("date")), *zone, &problem);
        if (!problem.isEmpty())
            return context.fail(problem);
        if (!date)
            return context.fail(
                QStringLiteral("\"%1\" is not a date: write it as ISO 8601, for example "
                               "2026-12-24, 2026-12-24T18:30 or 2026-12-24T18:30:00Z")
                    .arg(args.value(QStringLiteral("date"))));
        event.targetDate = date->instant;
        event.includeTime = date->hasTime && !args.isSet(QStringLiteral("all-day"));
    } else {
        const std::optional<TitleDate> found = dateFromTitle(
            title, context.clock().now(), *zone, event.direction == CountdownDirection::since);
        if (!found)
            return context.fail(QStringLiteral("no date in \"%1\": give one with --date ISO8601")
                                    .arg(terminalSafe(title)));
        event.title = found->title;
        event.targetDate = found->instant;
        event.includeTime = found->hasTime && !args.isSet(QStringLiteral("all-day"));
    }

    EventStoreError error;
    if (!context.data().events().addEvent(event, &error))
        return reportStoreError(error, context);
    context.out() << event.id.toString(QUuid::WithoutBraces).toUpper() << '\n';
    return 0;
}
