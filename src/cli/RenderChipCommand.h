#pragma once

#include "cli/CliCommand.h"

// tarrow render-chip --out FILE.png [--style STYLE] [--now ISO8601] [--scale RATIO] [--square
// SIDE]: draws the menu-bar chip as it stands after one engine pass over the data folder, in the
// style of the settings or the one given, or with --square the square tray icon of SIDE pixels.
// Needs a QGuiApplication (any platform, "offscreen" will do); it makes an offscreen one when the
// process has no application object yet.
class RenderChipCommand final : public CliCommand
{
public:
    QString name() const override { return QStringLiteral("render-chip"); }
    QString usage() const override;
    int run(const QStringList &arguments, CliContext &context) override;
};
