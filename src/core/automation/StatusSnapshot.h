#pragma once

#include "countdown/CountdownItem.h"
#include "countdown/MenubarChipPresentation.h"
#include "countdown/ReachState.h"

#include <QByteArray>
#include <QDateTime>
#include <QString>

#include <optional>

class JsonWriter;
class LanguageTable;

// What the panel shows at one moment, in the words other programs read: the item that holds the
// menu bar, its state, its time text and progress (what `tarrow status --json` prints), plus what
// a status bar module shows: the chip's text, a tooltip with the item's full time sentence, the
// state as a style class and the progress in whole percent.
struct StatusSnapshot
{
    std::optional<CountdownItem> holder;
    ReachState::Kind state = ReachState::Kind::idle;
    QString detail; // the time text, whatever the panel style
    double progress = 0.0;
    QString text; // the chip's title and time text as the panel style shows them
    QString tooltip;

    // The snapshot for the holder and the chip inputs the status item draws from, at `now`.
    static StatusSnapshot of(const std::optional<CountdownItem> &holder,
                             const MenubarChipInputs &inputs, const QDateTime &now,
                             const LanguageTable &table);

    // "counting", "reached", "elapsed", "idle" or "acknowledged".
    QString stateWord() const;
    // The progress in whole percent, 0 to 100.
    int percentage() const;

    // The object `tarrow status --json` prints: detail, holder, progress, state. With
    // `barFields`, also class, percentage, text and tooltip (the keys status bars read).
    void write(JsonWriter &writer, bool barFields) const;
    // The same object on one line, for `tarrow status --follow --json`.
    QByteArray barLine() const;

    // Whether a status bar would show the same: equal in everything but progress changes
    // smaller than one percent.
    bool showsSameAs(const StatusSnapshot &other) const;
};
