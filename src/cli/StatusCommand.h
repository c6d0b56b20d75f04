#pragma once

#include "cli/CliCommand.h"

// tarrow status [--now ISO8601] [--json]: what the menu bar shows at that instant (its holder,
// state, time text and progress), after one full pass of the engine over the data folder, which
// stamps arrivals and clears spent pins exactly as the app does.
// tarrow status --follow [--json]: a line whenever that changes (see StatusFollower).
class StatusCommand final : public CliCommand
{
public:
    QString name() const override { return QStringLiteral("status"); }
    QString usage() const override;
    int run(const QStringList &arguments, CliContext &context) override;
};
