#pragma once

#include "cli/CliCommand.h"

// tarrow export FILE: writes a backup of every countdown to FILE (atomically); FILE may be a
// folder, which then gets the proposed name "Tarrow Backup <date>.json". Prints the message the
// settings window shows.
class ExportCommand final : public CliCommand
{
public:
    QString name() const override { return QStringLiteral("export"); }
    QString usage() const override { return QStringLiteral("export FILE"); }
    int run(const QStringList &arguments, CliContext &context) override;
};

// tarrow import FILE --merge|--replace: reads a backup and merges its countdowns into the list
// (those already there are skipped) or replaces the list with them; prints the counts. A file
// that is not a backup of this version changes nothing.
class ImportCommand final : public CliCommand
{
public:
    QString name() const override { return QStringLiteral("import"); }
    QString usage() const override { return QStringLiteral("import FILE --merge|--replace"); }
    int run(const QStringList &arguments, CliContext &context) override;
};
