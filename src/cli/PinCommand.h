#pragma once

#include "cli/CliCommand.h"

// tarrow pin ID: the event holds the menu bar until it is done.
class PinCommand final : public CliCommand
{
public:
    QString name() const override { return QStringLiteral("pin"); }
    QString usage() const override { return QStringLiteral("pin ID"); }
    int run(const QStringList &arguments, CliContext &context) override;
};

// tarrow unpin: the menu bar chooses by itself again.
class UnpinCommand final : public CliCommand
{
public:
    QString name() const override { return QStringLiteral("unpin"); }
    QString usage() const override { return QStringLiteral("unpin"); }
    int run(const QStringList &arguments, CliContext &context) override;
};
