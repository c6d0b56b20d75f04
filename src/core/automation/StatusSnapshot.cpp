#include "automation/StatusSnapshot.h"

#include "automation/TimeSentence.h"
#include "l10n/LanguageTable.h"
#include "json/JsonWriter.h"

#include <QJsonDocument>

#include <cmath>

using namespace Qt::StringLiterals;

namespace {

void writeHolder(JsonWriter &writer, const std::optional<CountdownItem> &holder)
{
    if (!holder) {
        writer.null();
        return;
    }
    writer.beginObject();
    writer.key("id"_L1);
    if (const Event *event = holder->event())
        writer.uuid(event->id);
    else
        holder->occurrence()->ref.toJson(writer);
    if (const CalendarOccurrence *occurrence = holder->occurrence();
        occurrence && occurrence->meetingURL)
        writer.key("meetingURL"_L1).string(occurrence->meetingURL->toString());
    writer.key("title"_L1).string(holder->title());
    writer.endObject();
}

} // namespace

StatusSnapshot StatusSnapshot::of(const std::optional<CountdownItem> &holder,
                                  const MenubarChipInputs &inputs, const QDateTime &now,
                                  const LanguageTable &table)
{
    StatusSnapshot snapshot;
    snapshot.holder = holder;
    snapshot.state = inputs.state.kind;
    snapshot.progress = inputs.progress;
    const QTimeZone zone = holder ? holder->zone() : QTimeZone::systemTimeZone();
    snapshot.detail =
        MenubarChipPresentation::detailText(inputs.state, zone, inputs.displayFormat, table);
    const MenubarChipPresentation chip = MenubarChipPresentation::build(inputs, table);
    snapshot.text = QStringList {chip.title, chip.detail}.join(u' ').trimmed();
    snapshot.tooltip = holder ? timeSentence(*holder, now, inputs.displayFormat, table)
                              : table.text("intents.next.none");
    return snapshot;
}

QString StatusSnapshot::stateWord() const
{
    switch (state) {
    case ReachState::Kind::counting:
        return QStringLiteral("counting");
    case ReachState::Kind::reached:
        return QStringLiteral("reached");
    case ReachState::Kind::elapsed:
        return QStringLiteral("elapsed");
    case ReachState::Kind::idle:
        break;
    case ReachState::Kind::acknowledged:
        return QStringLiteral("acknowledged");
    }
    return QStringLiteral("idle");
}

int StatusSnapshot::percentage() const
{
    if (!(progress > 0.0)) // also NaN
        return 0;
    return int(std::lround(std::min(progress, 1.0) * 100.0));
}

void StatusSnapshot::write(JsonWriter &writer, bool barFields) const
{
    writer.beginObject(); // keys in sorted order
    if (barFields)
        writer.key("class"_L1).string(stateWord());
    writer.key("detail"_L1).string(detail);
    writer.key("holder"_L1);
    writeHolder(writer, holder);
    if (barFields)
        writer.key("percentage"_L1).integer(percentage());
    writer.key("progress"_L1).number(progress);
    writer.key("state"_L1).string(stateWord());
    if (barFields) {
        writer.key("text"_L1).string(text);
        writer.key("tooltip"_L1).string(tooltip);
    }
    writer.endObject();
}

QByteArray StatusSnapshot::barLine() const
{
    JsonWriter writer;
    write(writer, true);
    return QJsonDocument::fromJson(writer.finish()).toJson(QJsonDocument::Compact);
}

bool StatusSnapshot::showsSameAs(const StatusSnapshot &other) const
{
    return holder == other.holder && state == other.state && detail == other.detail
        && text == other.text && tooltip == other.tooltip && percentage() == other.percentage();
}
