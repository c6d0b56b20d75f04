#pragma once

#include "cli/CliCommand.h"

// tarrow remove ID
class RemoveCommand final : public CliCommand
{
public:
    QString name() const override { return QStringLiteral("remove"); }
    QString usage() const override { return QStringLiteral("remove ID"); }
    int run(const QStringList &arguments, CliContext &context) override;
};
