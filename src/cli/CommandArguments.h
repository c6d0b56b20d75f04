#pragma once

#include <QCommandLineParser>
#include <QUuid>

#include <optional>

class CliContext;
struct EventStoreError;

// Parses one subcommand's arguments with QCommandLineParser and turns every problem into the one
// line a command prints before it gives up.
class CommandArguments
{
public:
    explicit CommandArguments(const QList<QCommandLineOption> &options = {});

    // False (after reporting) on an unknown option, a missing option value, or a number of
    // positional arguments outside [minPositional, maxPositional].
    bool parse(const QStringList &arguments, CliContext &context, qsizetype minPositional,
               qsizetype maxPositional, const QString &usage);

    bool isSet(const QString &name) const { return m_parser.isSet(name); }
    QString value(const QString &name) const { return m_parser.value(name); }
    QStringList positional() const { return m_parser.positionalArguments(); }

private:
    QCommandLineParser m_parser;
};

// The event id a command was given, or nothing after reporting a malformed one.
std::optional<QUuid> parseEventId(const QString &text, CliContext &context);
// Reports a failed store operation in one line and returns the exit code.
int reportStoreError(const EventStoreError &error, CliContext &context);
