#include "cli/CalendarsCommand.h"

#include "calendar/CalendarRules.h"
#include "cli/CalendarSnapshot.h"
#include "cli/CliContext.h"
#include "cli/CommandArguments.h"
#include "l10n/LanguageTable.h"
#include "l10n/LocaleManager.h"
#include "l10n/SupportedLanguages.h"
#include "json/JsonWriter.h"

#include <QDir>

using namespace Qt::StringLiterals;

namespace {

LanguageTable interfaceTable(CliContext &context)
{
    return LanguageTable::load(resolveLanguage(context.data().settings().settings().language,
                                               LocaleManager::systemPreferredLanguages()));
}

QString whenText(const QDateTime &instant)
{
    return instant.isValid() ? instant.toLocalTime().toString(u"yyyy-MM-dd HH:mm"_s) : u"never"_s;
}

// "ok, read 2026-11-22 10:00", or the problem and what is shown meanwhile.
QString stateText(const SubscriptionStatus &status, bool hasCopy, const LanguageTable &texts)
{
    if (status.problem == SubscriptionProblem::none)
        return hasCopy ? u"ok, read %1"_s.arg(whenText(status.lastSuccess)) : u"not read yet"_s;
    const QString problem = problemMessage(status, texts);
    return hasCopy ? u"%1 (showing the copy of %2)"_s.arg(problem, whenText(status.lastSuccess))
                   : problem;
}

void writeStatus(JsonWriter &writer, const SubscriptionStatus &status, const LanguageTable &texts)
{
    writer.beginObject();
    if (!status.detail.isEmpty())
        writer.key("detail"_L1).string(status.detail);
    if (status.lastAttempt.isValid())
        writer.key("lastAttempt"_L1).date(status.lastAttempt);
    if (status.lastSuccess.isValid())
        writer.key("lastSuccess"_L1).date(status.lastSuccess);
    if (status.problem != SubscriptionProblem::none)
        writer.key("message"_L1).string(problemMessage(status, texts));
    writer.key("problem"_L1).string(problemRawValue(status.problem));
    writer.endObject();
}

} // namespace

QString CalendarsCommand::usage() const
{
    return u"calendars add FILE|URL [--title TITLE] | list [--json] | remove ID | "
           "addresses [ADDRESS...]"_s;
}

int CalendarsCommand::run(const QStringList &arguments, CliContext &context)
{
    if (arguments.isEmpty())
        return list({}, context);
    const QString action = arguments.first();
    const QStringList rest = arguments.mid(1);
    if (action == u"add")
        return add(rest, context);
    if (action == u"list")
        return list(rest, context);
    if (action == u"remove")
        return remove(rest, context);
    if (action == u"addresses")
        return addresses(rest, context);
    return context.fail(
        u"unknown calendars action \"%1\" (usage: tarrow %2)"_s.arg(action, usage()));
}

int CalendarsCommand::add(const QStringList &arguments, CliContext &context)
{
    CommandArguments args({QCommandLineOption(u"title"_s, QString(), u"TITLE"_s)});
    if (!args.parse(arguments, context, 1, 1, usage()))
        return 1;
    const LanguageTable texts = interfaceTable(context);
    CalendarBackends backends(context.data().paths(), context.data().files(), context.clock(),
                              texts);
    QString error;
    const std::optional<CalendarSubscription> added = backends.subscriptions().add(
        args.positional().constFirst(), args.value(u"title"_s), QDir::currentPath(), &error);
    if (!added)
        return context.fail(error);
    context.out() << added->shortID() << '\n';
    // Adding it starts its first read; a wrong link is told at once (it stays added all the same).
    IcsProvider &ics = backends.ics();
    CalendarSnapshot::waitUntil([&ics] { return !ics.isBusy(); }, 60'000);
    const SubscriptionStatus status = ics.status(added->id);
    if (status.problem != SubscriptionProblem::none)
        context.err() << "tarrow: added, but " << problemMessage(status, texts) << Qt::endl;
    return 0;
}

int CalendarsCommand::list(const QStringList &arguments, CliContext &context)
{
    CommandArguments args({QCommandLineOption(u"json"_s)});
    if (!args.parse(arguments, context, 0, 0, usage()))
        return 1;
    const LanguageTable texts = interfaceTable(context);
    CalendarBackends backends(context.data().paths(), context.data().files(), context.clock(),
                              texts);
    IcsProvider &ics = backends.ics();
    // Files are read and due feeds fetched; plugin backends fill their lists as they connect.
    CalendarSnapshot::waitUntil(
        [&backends] {
            const QList<CalendarProvider *> providers = backends.providers();
            return std::none_of(providers.begin(), providers.end(),
                                [](CalendarProvider *p) { return p->isBusy(); });
        },
        60'000);
    const CalendarSettings &settings = context.data().settings().settings().calendars;
    const SubscriptionStore &subscriptions = backends.subscriptions();

    struct Row
    {
        CalendarInfo calendar;
        const CalendarSubscription *subscription = nullptr;
    };
    QList<Row> rows;
    for (CalendarProvider *provider : backends.providers()) {
        for (const CalendarInfo &calendar : provider->calendars()) {
            Row row {calendar, nullptr};
            for (const CalendarSubscription &subscription : subscriptions.subscriptions()) {
                if (subscription.calendarID() == calendar.id)
                    row.subscription = &subscription;
            }
            rows.append(row);
        }
    }

    if (args.isSet(u"json"_s)) {
        JsonWriter writer;
        writer.beginObject();
        writer.key("addresses"_L1).beginArray();
        for (const QString &address : subscriptions.userAddresses())
            writer.string(address);
        writer.endArray();
        writer.key("calendars"_L1).beginArray();
        for (const Row &row : rows) {
            writer.beginObject();
            writer.key("account"_L1).string(row.calendar.accountTitle);
            writer.key("enabled"_L1)
                .boolean(!settings.disabledCalendarIDs.contains(row.calendar.id));
            writer.key("id"_L1).string(row.calendar.id);
            writer.key("kind"_L1).string(accountKindRawValue(row.calendar.accountKind));
            if (row.subscription) {
                writer.key("status"_L1);
                writeStatus(writer, ics.status(row.subscription->id), texts);
                writer.key("subscription"_L1).string(row.subscription->shortID());
            }
            writer.key("title"_L1).string(row.calendar.title);
            if (row.subscription)
                writer.key("url"_L1).string(row.subscription->url.toDisplayString());
            writer.endObject();
        }
        writer.endArray();
        writer.endObject();
        context.out() << QString::fromUtf8(writer.finish());
        return 0;
    }

    if (!subscriptions.loadError().isEmpty())
        context.err() << "tarrow: " << SubscriptionStore::fileName()
                      << " cannot be read: " << subscriptions.loadError() << Qt::endl;
    for (const Row &row : rows) {
        const bool enabled = !settings.disabledCalendarIDs.contains(row.calendar.id);
        QString where = row.calendar.accountTitle;
        QString state;
        QString id = row.calendar.id;
        if (row.subscription) {
            id = row.subscription->shortID();
            where = row.subscription->isLocalFile() ? row.subscription->url.toLocalFile()
                                                    : row.subscription->url.toDisplayString();
            state = stateText(ics.status(row.subscription->id), ics.hasCopy(row.subscription->id),
                              texts);
        }
        context.out() << id << "  " << row.calendar.title << "  " << where << "  "
                      << (enabled ? "on" : "off") << (state.isEmpty() ? "" : "  ") << state << '\n';
    }
    if (rows.isEmpty())
        context.out() << "No calendars. Add one with: tarrow calendars add FILE|URL\n";
    return 0;
}

int CalendarsCommand::remove(const QStringList &arguments, CliContext &context)
{
    CommandArguments args;
    if (!args.parse(arguments, context, 1, 1, usage()))
        return 1;
    SubscriptionStore store(context.data().paths(), context.data().files(), context.clock());
    QString error;
    const std::optional<CalendarSubscription> found =
        store.findByID(args.positional().constFirst(), &error);
    if (!found || !store.remove(found->id, &error))
        return context.fail(error);
    // The cached copy of a feed goes with it.
    SubscriptionCache(SubscriptionCache::directoryFor(context.data().paths().supportDirectory()),
                      context.data().files())
        .remove(found->id);
    return 0;
}

int CalendarsCommand::addresses(const QStringList &arguments, CliContext &context)
{
    CommandArguments args;
    if (!args.parse(arguments, context, 0, 64, usage()))
        return 1;
    SubscriptionStore store(context.data().paths(), context.data().files(), context.clock());
    if (!args.positional().isEmpty()) {
        QString error;
        if (!store.setUserAddresses(args.positional(), &error))
            return context.fail(error);
    }
    for (const QString &address : store.userAddresses())
        context.out() << address << '\n';
    return 0;
}
