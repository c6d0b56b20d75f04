#pragma once

#include <QString>
#include <QStringList>

class CliContext;

// One `tarrow` subcommand. `run` gets the arguments after the subcommand's name and returns the
// process exit code; it reports problems through CliContext::fail (one line on stderr).
class CliCommand
{
public:
    virtual ~CliCommand() = default;
    virtual QString name() const = 0;
    // One line for `tarrow help`: the usage, e.g. "add TITLE [--date ISO8601] ...".
    virtual QString usage() const = 0;
    virtual int run(const QStringList &arguments, CliContext &context) = 0;
};
