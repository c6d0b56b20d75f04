#pragma once

#include "cli/CliCommand.h"

// tarrow parse TEXT [--now ISO8601] [--time-zone ZONE] [--keeps-past]
// tarrow parse --jsonl   (one {"text","now","tz","keepsPast"} object a line on stdin)
//
// Prints the date phrase found in TEXT as one JSON object a line:
// {"date":"2026-06-03T12:00:00.000Z","includeTime":true,"cleanedTitle":"dentist"}, or
// {"match":null} when there is none.
class ParseCommand final : public CliCommand
{
public:
    QString name() const override { return QStringLiteral("parse"); }
    QString usage() const override;
    int run(const QStringList &arguments, CliContext &context) override;

private:
    int runLines(CliContext &context);
};
