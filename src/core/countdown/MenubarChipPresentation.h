#pragma once

#include "countdown/MenubarSubject.h"
#include "countdown/ReachState.h"
#include "records/IconRef.h"
#include "records/SettingsTypes.h"

#include <QString>

#include <optional>

class LanguageTable;

// Everything the chip is made from: the holder of the menu bar (absent when nothing holds it),
// the icon the icon picker is previewing, the engine's state and progress and the user's choices.
struct MenubarChipInputs
{
    std::optional<MenubarSubject> subject;
    std::optional<IconRef> previewIcon;
    ReachState state;
    double progress = 0.0;
    MenubarStyle style = MenubarStyle::full;
    qint64 titleLength = 16;
    CountdownDisplayFormat displayFormat = CountdownDisplayFormat::automatic;

    bool operator==(const MenubarChipInputs &) const = default;
};

// One frame of the menu-bar chip: the symbol, the (possibly cut) title, the time text and how much
// of the chip the pale progress fill covers (1 = all of it, 0 = none).
struct MenubarChipPresentation
{
    QString symbolName;
    QString title;
    QString detail;
    double remaining = 1.0;

    bool operator==(const MenubarChipPresentation &) const = default;

    // Shortest and longest title limits the user can choose; other values are clamped to them.
    static constexpr qint64 minimumTitleLength = 12;
    static constexpr qint64 maximumTitleLength = 24;
    static const QString defaultSymbol; // "hourglass"

    // The frame for `inputs`, with the idle label and unit words from `table`. With nothing
    // holding the menu bar it invites the user to add a countdown, in every style.
    static MenubarChipPresentation build(const MenubarChipInputs &inputs,
                                         const LanguageTable &table);

    // `title` cut to at most `titleLength` user-perceived characters (clamped to 12–24): a longer
    // title keeps its first limit − 1 characters, trimmed, followed by "…".
    static QString truncatedTitle(const QString &title, qint64 titleLength);
    // The time text for a state: the compact time left, "✓" once reached, "+" and the time passed
    // for a count-up, nothing when idle.
    static QString detailText(const ReachState &state, const QTimeZone &zone,
                              CountdownDisplayFormat format, const LanguageTable &table);
    // The fraction of the chip to fill for an engine progress: 1 at or below 0, empty from 1 on,
    // in steps of 1/fillSteps.
    static double fillFraction(double progress);
    static constexpr double fillSteps = 1000.0;
    // The text screen readers announce: title and time joined by ", ", or whichever is present.
    QString accessibleLabel() const;
};
