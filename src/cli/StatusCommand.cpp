#include "cli/StatusCommand.h"

#include "cli/CliContext.h"
#include "cli/CommandArguments.h"
#include "cli/DateArgument.h"
#include "cli/TerminalText.h"
#include "countdown/MenubarChipPresentation.h"
#include "countdown/SinglePassEngine.h"
#include "l10n/LanguageTable.h"
#include "l10n/LocaleManager.h"
#include "l10n/SupportedLanguages.h"
#include "storage/SettingsStore.h"
#include "json/JsonWriter.h"

namespace {

QString stateWord(ReachState::Kind kind)
{
    switch (kind) {
    case ReachState::Kind::counting:
        return QStringLiteral("counting");
    case ReachState::Kind::reached:
        return QStringLiteral("reached");
    case ReachState::Kind::elapsed:
        return QStringLiteral("elapsed");
    case ReachState::Kind::idle:
        break;
    case ReachState::Kind::acknowledged:
        return QStringLiteral("acknowledged");
    }
    return QStringLiteral("idle");
}

void writeHolder(JsonWriter &writer, const std::optional<CountdownItem> &holder)
{
    if (!holder) {
        writer.null();
        return;
    }
    writer.beginObject();
    writer.key(QLatin1StringView("id"));
    if (const Event *event = holder->event())
        writer.uuid(event->id);
    else
        holder->occurrence()->ref.toJson(writer);
    writer.key(QLatin1StringView("title")).string(holder->title());
    writer.endObject();
}

} // namespace

int StatusCommand::run(const QStringList &arguments, CliContext &context)
{
    CommandArguments args(
        {QCommandLineOption(QStringLiteral("json")),
         QCommandLineOption(QStringLiteral("now"), QString(), QStringLiteral("ISO8601"))});
    if (!args.parse(arguments, context, 0, 0, usage()))
        return 1;
    // Checked before the data folder is opened, so a refused instant changes nothing.
    QDateTime now = context.clock().now();
    if (args.isSet(QStringLiteral("now"))) {
        const std::optional<QDateTime> given =
            instantArgument(args.value(QStringLiteral("now")), context);
        if (!given)
            return 1;
        now = *given;
    }

    EventStore &store = context.data().events();
    const Settings &settings = context.data().settings().settings();
    const SinglePassEngine pass(store, now);
    const CountdownEngine &engine = pass.engine();

    const std::optional<CountdownItem> &holder = engine.pinned();
    const LanguageTable table = LanguageTable::load(
        resolveLanguage(settings.language, LocaleManager::systemPreferredLanguages()));
    const QString detail = MenubarChipPresentation::detailText(
        engine.state(), holder ? holder->zone() : QTimeZone::systemTimeZone(),
        settings.displayFormat, table);
    const QString state = stateWord(engine.state().kind);

    if (args.isSet(QStringLiteral("json"))) {
        JsonWriter writer;
        writer.beginObject(); // the writer keeps keys in sorted order
        writer.key(QLatin1StringView("detail")).string(detail);
        writer.key(QLatin1StringView("holder"));
        writeHolder(writer, holder);
        writer.key(QLatin1StringView("progress")).number(engine.progress());
        writer.key(QLatin1StringView("state")).string(state);
        writer.endObject();
        context.out() << QString::fromUtf8(writer.finish());
        return 0;
    }
    context.out() << "holder: "
                  << (holder ? terminalSafe(holder->title()) : QStringLiteral("(none)")) << '\n'
                  << "state: " << state << '\n'
                  << "detail: " << detail << '\n'
                  << "progress: " << QString::number(engine.progress(), 'f', 3) << '\n';
    return 0;
}
