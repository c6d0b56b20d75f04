#pragma once

#include "cli/CliCommand.h"

// The automation intents from a terminal or a script. Each asks the running Tarrow over the
// session bus when it serves the same data folder, and otherwise acts on the folder itself with
// the same rules; either way the answer is the same localised sentence on stdout, or the
// intent's message on stderr with exit code 1.

// tarrow create TITLE DATE
class CreateCommand final : public CliCommand
{
public:
    QString name() const override { return QStringLiteral("create"); }
    QString usage() const override { return QStringLiteral("create TITLE DATE"); }
    int run(const QStringList &arguments, CliContext &context) override;
};

// tarrow next
class NextCommand final : public CliCommand
{
public:
    QString name() const override { return QStringLiteral("next"); }
    QString usage() const override { return QStringLiteral("next"); }
    int run(const QStringList &arguments, CliContext &context) override;
};

// tarrow time-until ID|TITLE
class TimeUntilCommand final : public CliCommand
{
public:
    QString name() const override { return QStringLiteral("time-until"); }
    QString usage() const override { return QStringLiteral("time-until ID|TITLE"); }
    int run(const QStringList &arguments, CliContext &context) override;
};
