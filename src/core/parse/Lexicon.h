#pragma once

#include <QList>
#include <QString>
#include <QStringList>
#include <QStringView>

#include <optional>

// The word tables the natural date parser matches against, for the input languages English,
// Turkish, German, Spanish and French. Built once on first use, read-only afterwards and safe to
// read from any thread. Lookups take any case; names are compared lower-cased.
namespace Lexicon {

enum class ModifierKind { none, upcoming, nextWeek, last };
enum class CalendarUnit { day, week, month, year };

struct RelativeDayWord
{
    QString word;
    int offset; // calendar days from today
};

// A relative-count pattern ("in 3 days", "vor 2 Wochen") and where its parts are captured.
struct CountRule
{
    QString pattern;
    int valueGroup;
    int unitGroup;
    int sign; // +1 into the future, -1 into the past
};

// "en", "tr", "de", "es", "fr": the order in which every per-language table is built.
const QStringList &languageCodes();

const QList<RelativeDayWord> &relativeDayWords();
std::optional<int> relativeDayOffset(QStringView word);

const QStringList &nextWeekWords();
const QStringList &lastWords();
ModifierKind classifyModifier(std::optional<QStringView> modifier);

// Weekday numbers run from 1 = Sunday to 7 = Saturday.
std::optional<int> weekdayNumber(QStringView name);
std::optional<int> monthNumber(QStringView name);
// The lower-cased names in the order they were added.
const QStringList &weekdayNames();
const QStringList &monthNames();

// The unit words of the count rules and their meaning.
const QString &unitAlternation();
std::optional<CalendarUnit> unitForWord(QStringView word);
const QList<CountRule> &countRules();

// Longest first (stable), escaped for literal use, joined by "|", without a surrounding group.
QString alternation(const QStringList &words);
const QString &relativeDayAlternation();
const QString &weekdayAlternation();
const QString &monthAlternation();

} // namespace Lexicon
