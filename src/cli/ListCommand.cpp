#include "cli/ListCommand.h"

#include "cli/CliContext.h"
#include "cli/CommandArguments.h"
#include "cli/TerminalText.h"
#include "l10n/LanguageTable.h"
#include "l10n/LocaleManager.h"
#include "l10n/SupportedLanguages.h"
#include "storage/SettingsStore.h"
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
    const EventStore &store = context.data().events();

    if (args.isSet(QStringLiteral("json"))) {
        JsonWriter writer;
        writer.beginArray();
        for (const Event &event : store.events())
            event.toJson(writer);
        writer.endArray();
        context.out() << QString::fromUtf8(writer.finish());
        return 0;
    }

    // Time texts speak the language asked for, else the interface language of the settings.
    const Settings &settings = context.data().settings().settings();
    if (language.isEmpty())
        language = resolveLanguage(settings.language, LocaleManager::systemPreferredLanguages());
    const LanguageTable table = LanguageTable::load(language);
    const QDateTime now = context.clock().now();

    const std::optional<PinTarget> &pin = store.pin();
    for (const Event &event : store.events()) {
        const bool pinned = pin && pin->kind == PinTarget::Kind::manual && pin->eventID == event.id;
        context.out() << event.id.toString(QUuid::WithoutBraces).toUpper() << "  "
                      << whenText(event) << "  "
                      << (event.direction == CountdownDirection::since ? "since  " : "until  ")
                      << eventTimeText(event, now, settings.displayFormat, table) << "  "
                      << terminalSafe(event.title) << (pinned ? "  [pinned]" : "") << '\n';
    }
    return 0;
}
