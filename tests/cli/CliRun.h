#pragma once

#include "cli/Cli.h"

#include <QIODevice>
#include <QTextStream>

// What one `tarrow` command gave back: its exit code and what it printed.
struct CliResult
{
    int code = 0;
    QString out, err;
};

// `tarrow --data-dir FOLDER ARGUMENTS` at the clock's time, with `input` on stdin.
inline CliResult runCli(const QString &folder, const QStringList &arguments, const Clock &clock,
                        QString input = {})
{
    CliResult result;
    QTextStream out(&result.out), err(&result.err), in(&input, QIODevice::ReadOnly);
    result.code = Cli::run(QStringList {"--data-dir", folder} + arguments, clock, out, err, in);
    out.flush();
    err.flush();
    return result;
}
