#include "cli/CommandArguments.h"

#include "cli/CliContext.h"
#include "storage/EventStore.h"

CommandArguments::CommandArguments(const QList<QCommandLineOption> &options)
{
    m_parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
    m_parser.setOptionsAfterPositionalArgumentsMode(QCommandLineParser::ParseAsOptions);
    m_parser.addOptions(options);
}

bool CommandArguments::parse(const QStringList &arguments, CliContext &context,
                             qsizetype minPositional, qsizetype maxPositional, const QString &usage)
{
    if (!m_parser.parse(QStringList {QStringLiteral("tarrow")} + arguments)) {
        context.fail(m_parser.errorText() + QStringLiteral(" (usage: tarrow %1)").arg(usage));
        return false;
    }
    const qsizetype count = m_parser.positionalArguments().size();
    if (count < minPositional || count > maxPositional) {
        context.fail(QStringLiteral("usage: tarrow %1").arg(usage));
        return false;
    }
    return true;
}

std::optional<QUuid> parseEventId(const QString &text, CliContext &context)
{
    const QUuid id = QUuid::fromString(text.trimmed());
    if (id.isNull()) {
        context.fail(QStringLiteral("\"%1\" is not an event id (see tarrow list)").arg(text));
        return std::nullopt;
    }
    return id;
}

int reportStoreError(const EventStoreError &error, CliContext &context)
{
    if (error.kind == EventStoreError::Kind::noEvent)
        return context.fail(error.description + QStringLiteral(" (see tarrow list)"));
    if (error.kind == EventStoreError::Kind::refused)
        return context.fail(error.description);
    return context.fail(QStringLiteral("could not save %1: %2")
                            .arg(context.data().paths().eventFile(), error.description));
}
