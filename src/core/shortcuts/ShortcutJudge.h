#pragma once

#include "records/Settings.h"

#include <QList>
#include <QString>

// A combination the system keeps for itself. The desktop-neutral rows carry their name as it
// stands, in English; the Linux desktops' rows carry a localisation key for their name.
struct ReservedShortcut
{
    KeyCombo combo;
    QString name; // shown as it is when `translated` is false, else a localisation key
    bool translated = false;

    bool operator==(const ReservedShortcut &) const = default;
};

// What the recorder does with a key press.
struct ShortcutJudgement
{
    enum class Verdict {
        cancel, // Escape: stop recording, capture nothing, keep the last refusal
        invalid, // neither Ctrl nor Super: "settings.shortcuts.invalid", keep recording
        reserved, // the system uses it: "settings.shortcuts.reserved %@", keep recording
        capture, // take it and stop recording
    };
    Verdict verdict;
    KeyCombo combo; // with the modifiers masked
    ReservedShortcut reservation; // for `reserved`

    bool operator==(const ShortcutJudgement &) const = default;
};

// Every reserved combination, first match wins.
const QList<ReservedShortcut> &reservedShortcuts();

// Judges one recorded key press: Escape cancels; the modifiers are masked to Shift, Ctrl, Alt and
// Super; a combination needs Ctrl or Super; an exact match in the reserved table is refused.
ShortcutJudgement judgeRecordedKey(const KeyCombo &pressed);
