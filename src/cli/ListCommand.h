#pragma once

#include "cli/CliCommand.h"

// tarrow list [--json]: the events in the store's order, then the calendar occurrences the list
// shows (in its order).
class ListCommand final : public CliCommand
{
public:
    QString name() const override { return QStringLiteral("list"); }
    QString usage() const override;
    int run(const QStringList &arguments, CliContext &context) override;
};
