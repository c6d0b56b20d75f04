#include "cli/StatusCommand.h"

#include "automation/StatusSnapshot.h"
#include "cli/CalendarSnapshot.h"
#include "cli/CliContext.h"
#include "cli/CommandArguments.h"
#include "cli/DateArgument.h"
#include "cli/StatusFollower.h"
#include "cli/TerminalText.h"
#include "countdown/SinglePassEngine.h"
#include "countdown/TimerTickScheduler.h"
#include "platform/tray/StatusItemController.h"
#include "storage/SettingsStore.h"
#include "json/JsonWriter.h"

#include <QCoreApplication>

namespace {

// Runs until the process is ended (a status bar restarting its module closes the pipe).
int follow(CliContext &context, bool json)
{
    if (!QCoreApplication::instance())
        return context.fail(QStringLiteral("--follow needs an application object"));
    TimerTickScheduler scheduler;
    StatusFollower follower(context.dataDirectory(), context.clock(), scheduler,
                            AutomationClient::sessionBus(), json, context.out());
    follower.start();
    return QCoreApplication::exec();
}

} // namespace

QString StatusCommand::usage() const
{
    return QStringLiteral("status [--now ISO8601] [--json] | status --follow [--json]");
}

int StatusCommand::run(const QStringList &arguments, CliContext &context)
{
    const QString json = QStringLiteral("json");
    const QString nowOption = QStringLiteral("now");
    const QString followOption = QStringLiteral("follow");
    CommandArguments args({QCommandLineOption(json),
                           QCommandLineOption(nowOption, QString(), QStringLiteral("ISO8601")),
                           QCommandLineOption(followOption)});
    if (!args.parse(arguments, context, 0, 0, usage()))
        return 1;
    if (args.isSet(followOption)) {
        if (args.isSet(nowOption))
            return context.fail(QStringLiteral("--follow follows the clock: leave out --now"));
        return follow(context, args.isSet(json));
    }
    // Checked before the data folder is opened, so a refused instant changes nothing.
    QDateTime now = context.clock().now();
    if (args.isSet(nowOption)) {
        const std::optional<QDateTime> given = instantArgument(args.value(nowOption), context);
        if (!given)
            return 1;
        now = *given;
    }

    CalendarSnapshot calendars(context.data(), now, context.table());
    const SinglePassEngine pass(context.data().events(), now, &calendars.store());
    const StatusSnapshot status = StatusSnapshot::of(
        pass.engine().pinned(),
        StatusItemController::inputsFrom(pass.engine(), context.data().settings().settings()), now,
        context.table());

    if (args.isSet(json)) {
        JsonWriter writer;
        status.write(writer, false);
        context.out() << QString::fromUtf8(writer.finish());
        return 0;
    }
    context.out() << "holder: " << (status.holder ? terminalSafe(status.holder->title()) : u"(none)"_qs) << '\n';
    if (const CalendarOccurrence *occurrence =
            status.holder ? status.holder->occurrence() : nullptr;
        occurrence && occurrence->meetingURL)
        context.out() << "join: " << occurrence->meetingURL->toString() << '\n';
    context.out() << "state: " << status.stateWord() << '\n'
                  << "detail: " << status.detail << '\n'
                  << "progress: " << QString::number(status.progress, 'f', 3) << '\n';
    return 0;
}
