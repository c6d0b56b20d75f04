#pragma once

#include "cli/CliCommand.h"

// tarrow calendars add FILE|URL [--title TITLE] | list [--json] | remove ID | addresses
// [ADDRESS...] The calendars added by hand (files and feeds), every calendar the app reads, and the
// user's own addresses (which attendee of an invitation is the user).
class CalendarsCommand final : public CliCommand
{
public:
    QString name() const override { return QStringLiteral("calendars"); }
    QString usage() const override;
    int run(const QStringList &arguments, CliContext &context) override;

private:
    int add(const QStringList &arguments, CliContext &context);
    int list(const QStringList &arguments, CliContext &context);
    int remove(const QStringList &arguments, CliContext &context);
    int addresses(const QStringList &arguments, CliContext &context);
};
