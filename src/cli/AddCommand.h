#pragma once

#include "cli/CliCommand.h"

// tarrow add TITLE [--date ISO8601] [--all-day] [--since] [--time-zone ZONE]
class AddCommand final : public CliCommand
{
public:
    QString name() const override { return QStringLiteral("add"); }
    QString usage() const override;
    int run(const QStringList &arguments, CliContext &context) override;
};
