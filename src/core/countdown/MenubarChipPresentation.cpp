#include "countdown/MenubarChipPresentation.h"

#include "l10n/LanguageTable.h"
#include "time/CountdownFormatter.h"

#include <QList>
#include <QTextBoundaryFinder>

#include <algorithm>
#include <cmath>

namespace {

// Positions (in UTF-16 units) where each user-perceived character of `text` starts.
QList<qsizetype> graphemeStarts(const QString &text)
{
    QList<qsizetype> starts;
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    for (qsizetype position = finder.toNextBoundary(); position > 0 && position < text.size();
         position = finder.toNextBoundary()) {
        starts.append(position);
    }
    starts.prepend(0);
    return starts;
}

bool showsTitle(MenubarStyle style)
{
    return style == MenubarStyle::full || style == MenubarStyle::titleOnly;
}

bool showsDetail(MenubarStyle style)
{
    return style == MenubarStyle::full || style == MenubarStyle::compact;
}

} // namespace

const QString MenubarChipPresentation::defaultSymbol = QStringLiteral("hourglass");

MenubarChipPresentation MenubarChipPresentation::build(const MenubarChipInputs &inputs,
                                                       const LanguageTable &table)
{
    MenubarChipPresentation presentation;
    const QTimeZone zone = inputs.subject ? inputs.subject->timeZone : QTimeZone::systemTimeZone();
    if (!inputs.subject) {
        presentation.symbolName = defaultSymbol;
        presentation.title = table.text("menubar.idle.label");
    } else {
        const std::optional<IconRef> &icon =
            inputs.previewIcon ? inputs.previewIcon : inputs.subject->icon;
        presentation.symbolName = icon && !icon->symbol.isEmpty() ? icon->symbol : defaultSymbol;
        if (showsTitle(inputs.style)) {
            presentation.title = truncatedTitle(inputs.subject->title, inputs.titleLength);
        }
    }
    if (showsDetail(inputs.style)) {
        presentation.detail = detailText(inputs.state, zone, inputs.displayFormat, table);
    }
    presentation.remaining = fillFraction(inputs.progress);
    return presentation;
}

QString MenubarChipPresentation::detailText(const ReachState &state, const QTimeZone &zone,
                                            CountdownDisplayFormat format,
                                            const LanguageTable &table)
{
    switch (state.kind) {
    case ReachState::Kind::counting:
        return CountdownFormatter::compact(state.remaining, format, table);
    case ReachState::Kind::reached:
    case ReachState::Kind::acknowledged:
        return QString(QChar(0x2713));
    case ReachState::Kind::elapsed:
        return QLatin1Char('+')
            + CountdownFormatter::compactElapsed(state.since, state.at, zone, format, table);
    case ReachState::Kind::idle:
        break;
    }
    return QString();
}

QString MenubarChipPresentation::accessibleLabel() const
{
    if (title.isEmpty() || detail.isEmpty()) {
        return title + detail;
    }
    return title + QStringLiteral(", ") + detail;
}

QString MenubarChipPresentation::truncatedTitle(const QString &title, qint64 titleLength)
{
    const qint64 limit = std::clamp(titleLength, minimumTitleLength, maximumTitleLength);
    if (title.isEmpty()) {
        return title;
    }
    const QList<qsizetype> starts = graphemeStarts(title);
    if (starts.size() <= limit) {
        return title;
    }
    // starts[limit - 1] is where the limit-th character begins, so everything before it is the
    // first limit - 1 characters.
    const QString prefix = title.left(starts.at(limit - 1)).trimmed();
    return prefix + QChar(0x2026);
}

double MenubarChipPresentation::fillFraction(double progress)
{
    if (!(progress > 0.0)) { // also catches NaN
        return 1.0;
    }
    // Kept in steps of a thousandth of the chip, finer than a device pixel of any chip, so the
    // progress creeping on at every tick does not count as a change until it can be seen.
    return std::round((1.0 - std::min(progress, 1.0)) * fillSteps) / fillSteps;
}
