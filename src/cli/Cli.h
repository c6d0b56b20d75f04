#pragma once

#include <QStringList>

class Clock;
class QTextStream;

// The command-line front end: `tarrow [--data-dir DIR] COMMAND ARGS...`.
namespace Cli {

// True when the arguments (without the program name) ask for a subcommand or for help, rather
// than for the tray application.
bool wantsCommandLine(const QStringList &arguments);

// The subcommand the arguments name (after the global options), or an empty string.
QString commandName(const QStringList &arguments);

// Runs the subcommand and returns the process exit code.
int run(const QStringList &arguments, const Clock &clock, QTextStream &out, QTextStream &err,
        QTextStream &in);

// The names of the subcommands, for messages that point to them.
QStringList commandNames();

} // namespace Cli
