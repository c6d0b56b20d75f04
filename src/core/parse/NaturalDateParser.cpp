#include "parse/NaturalDateParser.h"

#include "parse/Lexicon.h"
#include "parse/NaturalDatePatterns.h"
#include "parse/WallTime.h"

#include <QRegularExpressionMatch>

namespace {

using Patterns = NaturalDatePatterns;

// A span of the input in UTF-16 code units, as QString counts.
struct Range
{
    qsizetype start = 0;
    qsizetype length = 0;

    static Range of(const QRegularExpressionMatch &match)
    {
        return {match.capturedStart(0), match.capturedLength(0)};
    }
    bool overlaps(const Range &other) const
    {
        return start < other.start + other.length && other.start < start + length;
    }
};

struct DayHit
{
    QDate date;
    Range range;
};

struct TimeHit
{
    QTime time;
    Range range;
};

// The input and the moment it is read at; today's date is worked out only when a family needs it.
class Context
{
public:
    Context(const QString &text, const QDateTime &now, const QTimeZone &zone, bool keepsPast)
        : m_text(text)
        , m_now(now)
        , m_zone(zone.isValid() ? zone : QTimeZone::systemTimeZone())
        , m_keepsPast(keepsPast)
    {
    }

    const QString &text() const { return m_text; }
    const QDateTime &now() const { return m_now; }
    const QTimeZone &zone() const { return m_zone; }
    bool keepsPast() const { return m_keepsPast; }
    QDate today() const
    {
        if (!m_today.isValid())
            m_today = m_now.toTimeZone(m_zone).date();
        return m_today;
    }
    // 1 = Sunday … 7 = Saturday.
    int todaysWeekday() const { return today().dayOfWeek() % 7 + 1; }

private:
    const QString &m_text;
    QDateTime m_now;
    QTimeZone m_zone;
    bool m_keepsPast;
    mutable QDate m_today;
};

// The value of a run of decimal digits in any script, or -1 when it holds anything else.
int numberFrom(QStringView digits)
{
    if (digits.isEmpty())
        return -1;
    int value = 0;
    for (const QChar c : digits) {
        const int digit = c.digitValue();
        if (digit < 0)
            return -1;
        value = value * 10 + digit;
    }
    return value;
}

bool containsDigit(const QString &text)
{
    return std::any_of(text.cbegin(), text.cend(), [](QChar c) { return c.isDigit(); });
}

// The first match of `pattern`, in order of position, for which `toHit` gives a hit.
template<typename ToHit>
auto firstHit(const Patterns::Pattern &pattern, const QString &text, ToHit toHit)
    -> decltype(toHit(QRegularExpressionMatch()))
{
    if (!pattern.valid)
        return std::nullopt;
    QRegularExpressionMatchIterator matches = pattern.expression.globalMatch(text);
    while (matches.hasNext()) {
        if (auto hit = toHit(matches.next()))
            return hit;
    }
    return std::nullopt;
}

template<typename Rule, typename ToHit>
auto firstHitOfRules(const QList<Rule> &rules, const QString &text, ToHit toHit)
    -> decltype(toHit(rules.first(), QRegularExpressionMatch()))
{
    for (const Rule &rule : rules) {
        const auto hit = firstHit(rule.pattern, text, [&](const QRegularExpressionMatch &match) {
            return toHit(rule, match);
        });
        if (hit)
            return hit;
    }
    return std::nullopt;
}

std::optional<DayHit> explicitDate(const Context &context)
{
    using Rule = Patterns::ExplicitDate;
    return firstHitOfRules(
        Patterns::instance().explicitDates, context.text(),
        [&](const Rule &rule, const QRegularExpressionMatch &match) -> std::optional<DayHit> {
            const int day = numberFrom(match.capturedView(rule.dayGroup));
            const QStringView monthText = match.capturedView(rule.monthGroup);
            const int month = rule.monthIsName ? Lexicon::monthNumber(monthText).value_or(0)
                                               : numberFrom(monthText);
            if (day < 1 || day > 31 || month < 1 || month > 12)
                return std::nullopt;

            QDate date;
            if (match.hasCaptured(rule.yearGroup)) {
                const QStringView yearText = match.capturedView(rule.yearGroup);
                int year = numberFrom(yearText);
                if (year < 0)
                    return std::nullopt;
                if (yearText.size() == 2)
                    year += 2000;
                date = QDate(year, month, day);
            } else {
                const QDate today = context.today();
                date = QDate(today.year(), month, day);
                if (date.isValid() && date < today && !context.keepsPast())
                    date = QDate(today.year() + 1, month, day);
            }
            // QDate refuses days the month does not have (31 June, 30 February).
            if (!date.isValid())
                return std::nullopt;
            return DayHit {date, Range::of(match)};
        });
}

std::optional<DayHit> relativeDay(const Context &context)
{
    return firstHit(Patterns::instance().relativeDay, context.text(),
                    [&](const QRegularExpressionMatch &match) -> std::optional<DayHit> {
                        const std::optional<int> offset =
                            Lexicon::relativeDayOffset(match.capturedView(1));
                        if (!offset)
                            return std::nullopt;
                        return DayHit {context.today().addDays(*offset), Range::of(match)};
                    });
}

QDate addUnits(QDate date, int count, Lexicon::CalendarUnit unit)
{
    switch (unit) {
    case Lexicon::CalendarUnit::day:
        return date.addDays(count);
    case Lexicon::CalendarUnit::week:
        return date.addDays(qint64(count) * 7);
    case Lexicon::CalendarUnit::month:
        return date.addMonths(count); // the 31st becomes the month's last day
    case Lexicon::CalendarUnit::year:
        return date.addYears(count);
    }
    return date;
}

std::optional<DayHit> relativeCount(const Context &context)
{
    using Rule = Patterns::Count;
    return firstHitOfRules(
        Patterns::instance().counts, context.text(),
        [&](const Rule &rule, const QRegularExpressionMatch &match) -> std::optional<DayHit> {
            const int count = numberFrom(match.capturedView(rule.valueGroup));
            const auto unit = Lexicon::unitForWord(match.capturedView(rule.unitGroup));
            if (count < 0 || !unit)
                return std::nullopt;
            return DayHit {addUnits(context.today(), count * rule.sign, *unit), Range::of(match)};
        });
}

// Days from today (1 = Sunday … 7 = Saturday) to the named weekday under the modifier.
int weekdayOffset(int today, int named, Lexicon::ModifierKind modifier)
{
    switch (modifier) {
    case Lexicon::ModifierKind::none:
    case Lexicon::ModifierKind::upcoming: {
        const int ahead = (named - today + 7) % 7;
        return ahead == 0 ? 7 : ahead;
    }
    case Lexicon::ModifierKind::nextWeek:
        // Shifting by 5 numbers the days Monday = 0 … Sunday = 6: the named day of the
        // Monday-to-Sunday week after this one.
        return 7 + (named + 5) % 7 - (today + 5) % 7;
    case Lexicon::ModifierKind::last: {
        const int back = (today - named + 7) % 7;
        return -(back == 0 ? 7 : back);
    }
    }
    return 0;
}

std::optional<QStringView> capturedIfAny(const QRegularExpressionMatch &match, int group)
{
    return match.hasCaptured(group) ? std::optional<QStringView>(match.capturedView(group))
                                    : std::nullopt;
}

std::optional<DayHit> weekday(const Context &context)
{
    return firstHit(Patterns::instance().weekday, context.text(),
                    [&](const QRegularExpressionMatch &match) -> std::optional<DayHit> {
                        const auto named =
                            Lexicon::weekdayNumber(match.capturedView(Patterns::weekdayName));
                        if (!named)
                            return std::nullopt;
                        auto modifier = capturedIfAny(match, Patterns::weekdayModifierBefore);
                        if (!modifier)
                            modifier = capturedIfAny(match, Patterns::weekdayModifierAfter);
                        const int offset = weekdayOffset(context.todaysWeekday(), *named,
                                                         Lexicon::classifyModifier(modifier));
                        return DayHit {context.today().addDays(offset), Range::of(match)};
                    });
}

std::optional<DayHit> dayHit(const Context &context, bool hasDigit)
{
    // Dates and counts always hold a digit; without one only words can name a day.
    if (hasDigit) {
        if (auto hit = explicitDate(context))
            return hit;
    }
    if (auto hit = relativeDay(context))
        return hit;
    if (hasDigit) {
        if (auto hit = relativeCount(context))
            return hit;
    }
    return weekday(context);
}

std::optional<QTime> validTime(int hour, int minute, QStringView marker)
{
    if (hour < 0 || minute < 0 || minute > 59)
        return std::nullopt;
    const bool pm = marker.compare(u"pm", Qt::CaseInsensitive) == 0;
    if (pm || marker.compare(u"am", Qt::CaseInsensitive) == 0) {
        if (hour < 1 || hour > 12)
            return std::nullopt;
        return QTime(hour % 12 + (pm ? 12 : 0), minute);
    }
    if (hour > 23)
        return std::nullopt;
    return QTime(hour, minute);
}

std::optional<TimeHit> timeOfDay(const Context &context, const std::optional<DayHit> &day)
{
    using Rule = Patterns::TimeOfDay;
    return firstHitOfRules(
        Patterns::instance().times, context.text(),
        [&](const Rule &rule, const QRegularExpressionMatch &match) -> std::optional<TimeHit> {
            const Range range = Range::of(match);
            if (day && range.overlaps(day->range))
                return std::nullopt;
            const int hour = numberFrom(match.capturedView(rule.hourGroup));
            const int minute =
                rule.minuteGroup ? numberFrom(match.capturedView(rule.minuteGroup)) : 0;
            const QStringView marker =
                rule.markerGroup ? match.capturedView(rule.markerGroup) : QStringView();
            const std::optional<QTime> time = validTime(hour, minute, marker);
            if (!time)
                return std::nullopt;
            return TimeHit {*time, range};
        });
}

bool isTrimmed(QChar c)
{
    return c.isSpace() || QStringView(u"-,:;/–—").contains(c);
}

// The text with the ranges taken out, whitespace runs made single spaces, and separators and
// dashes left at either end removed.
QString cleanTitle(const QString &text, QList<Range> ranges)
{
    std::sort(ranges.begin(), ranges.end(),
              [](const Range &a, const Range &b) { return a.start > b.start; });
    QString spaced = text;
    for (const Range &range : ranges)
        spaced.replace(range.start, range.length, u' ');

    QString joined;
    joined.reserve(spaced.size());
    bool pendingSpace = false;
    for (const QChar c : std::as_const(spaced)) {
        if (c.isSpace()) {
            pendingSpace = !joined.isEmpty();
            continue;
        }
        if (pendingSpace)
            joined.append(u' ');
        pendingSpace = false;
        joined.append(c);
    }

    qsizetype first = 0;
    qsizetype last = joined.size();
    while (first < last && isTrimmed(joined.at(first)))
        ++first;
    while (last > first && isTrimmed(joined.at(last - 1)))
        --last;
    return joined.mid(first, last - first);
}

// The start of a long text that the patterns look at, ending between words where it can.
QString scannedPrefix(const QString &text)
{
    if (text.size() <= NaturalDateParser::ScannedLength)
        return text;
    qsizetype end = NaturalDateParser::ScannedLength;
    for (qsizetype i = end; i > end - 32; --i) {
        if (text.at(i).isSpace()) {
            end = i;
            break;
        }
    }
    if (text.at(end - 1).isHighSurrogate())
        --end;
    return text.left(end);
}

} // namespace

std::optional<NaturalDateMatch> NaturalDateParser::parse(const QString &text, const QDateTime &now,
                                                         const QTimeZone &zone, bool keepsPast)
{
    if (text.isEmpty() || !now.isValid())
        return std::nullopt;
    // No one types a date after the first few hundred characters: a huge text costs no more
    // than a long title.
    const QString scanned = scannedPrefix(text);
    const Context context(scanned, now, zone, keepsPast);
    // Every time of day holds a digit too.
    const bool hasDigit = containsDigit(scanned);
    const std::optional<DayHit> day = dayHit(context, hasDigit);
    const std::optional<TimeHit> time = hasDigit ? timeOfDay(context, day) : std::nullopt;

    NaturalDateMatch match;
    QList<Range> ranges;
    if (day && time) {
        match.date = WallTime::toInstant(day->date, time->time, context.zone());
    } else if (day) {
        match.date = WallTime::startOfDay(day->date, context.zone());
    } else if (time) {
        match.date = WallTime::toInstant(context.today(), time->time, context.zone());
        if (match.date < now && !keepsPast)
            match.date =
                WallTime::toInstant(context.today().addDays(1), time->time, context.zone());
    } else {
        return std::nullopt;
    }
    match.includeTime = time.has_value();
    if (day)
        ranges.append(day->range);
    if (time)
        ranges.append(time->range);
    match.cleanedTitle = cleanTitle(text, ranges);
    return match;
}
