#include "parse/Lexicon.h"

#include <QHash>
#include <QLocale>
#include <QRegularExpression>

#include <algorithm>

namespace Lexicon {
namespace {

// Spellings people write that the locale data leaves out: a Spanish variant, the Austrian
// January, the German transliteration of März and the short French forms without the final
// letters. Names typed without accents are added separately (see plainSpelling).
struct ExtraName
{
    const char16_t *name;
    int number;
};
constexpr ExtraName extraMonthNames[] = {
    {u"setiembre", 9}, {u"jänner", 1}, {u"maerz", 3}, {u"fév", 2}, {u"juill", 7},
};

// Languages whose speakers often type names without their accents or Turkish letters
// ("miercoles", "fevrier", "Subat"); German umlauts are written out instead, so it is left out.
const QStringList &plainSpellingLanguages()
{
    static const QStringList codes {QStringLiteral("tr"), QStringLiteral("es"),
                                    QStringLiteral("fr")};
    return codes;
}

QString plainSpelling(const QString &name)
{
    QString decomposed = name.normalized(QString::NormalizationForm_D);
    decomposed.removeIf([](QChar c) { return c.category() == QChar::Mark_NonSpacing; });
    decomposed.replace(QChar(u'ı'), QChar(u'i'));
    return decomposed;
}

// A name table that keeps the first number given for a name and the order names came in.
class NameTable
{
public:
    void add(const QString &name, int number)
    {
        if (m_numbers.contains(name))
            return;
        m_numbers.insert(name, number);
        m_names.append(name);
    }
    std::optional<int> find(QStringView name) const
    {
        const auto it = m_numbers.constFind(name.toString().toLower());
        return it == m_numbers.cend() ? std::nullopt : std::optional<int>(*it);
    }
    const QStringList &names() const { return m_names; }

private:
    QHash<QString, int> m_numbers;
    QStringList m_names;
};

// Qt numbers weekdays Monday = 1 … Sunday = 7; the tables use Sunday = 1 … Saturday = 7.
int sundayFirst(int qtDayOfWeek)
{
    return qtDayOfWeek % 7 + 1;
}

NameTable buildWeekdays()
{
    NameTable table;
    for (const QString &code : languageCodes()) {
        const QLocale locale(code);
        const bool addPlain = plainSpellingLanguages().contains(code);
        for (int day = Qt::Monday; day <= Qt::Sunday; ++day) {
            const QString name = locale.dayName(day, QLocale::LongFormat).toLower();
            table.add(name, sundayFirst(day));
            if (addPlain)
                table.add(plainSpelling(name), sundayFirst(day));
        }
    }
    return table;
}

NameTable buildMonths()
{
    NameTable table;
    for (const QString &code : languageCodes()) {
        const QLocale locale(code);
        const bool addPlain = plainSpellingLanguages().contains(code);
        const auto addList = [&](auto nameOf, QLocale::FormatType format) {
            for (int month = 1; month <= 12; ++month) {
                QString name = (locale.*nameOf)(month, format).toLower();
                while (name.startsWith(u'.'))
                    name.remove(0, 1);
                while (name.endsWith(u'.'))
                    name.chop(1);
                if (name.size() < 3)
                    continue;
                table.add(name, month);
                if (addPlain && format == QLocale::LongFormat)
                    table.add(plainSpelling(name), month);
            }
        };
        addList(&QLocale::monthName, QLocale::LongFormat);
        addList(&QLocale::standaloneMonthName, QLocale::LongFormat);
        addList(&QLocale::monthName, QLocale::ShortFormat);
        addList(&QLocale::standaloneMonthName, QLocale::ShortFormat);
    }
    table.add(QStringLiteral("sept"), 9);
    for (const ExtraName &extra : extraMonthNames)
        table.add(QString::fromUtf16(extra.name), extra.number);
    return table;
}

struct Tables
{
    QHash<QString, int> dayOffsets;
    NameTable weekdays = buildWeekdays();
    NameTable months = buildMonths();
    QString dayAlternation;
    QString weekdayAlternation = alternation(weekdays.names());
    QString monthAlternation = alternation(months.names());

    Tables()
    {
        QStringList dayWords;
        for (const RelativeDayWord &entry : relativeDayWords()) {
            dayOffsets.insert(entry.word, entry.offset);
            dayWords.append(entry.word);
        }
        dayAlternation = alternation(dayWords);
    }
};

const Tables &tables()
{
    static const Tables instance;
    return instance;
}

struct UnitWord
{
    const char16_t *word;
    CalendarUnit unit;
};
constexpr UnitWord unitWords[] = {
    {u"day", CalendarUnit::day},       {u"days", CalendarUnit::day},
    {u"gün", CalendarUnit::day},       {u"tag", CalendarUnit::day},
    {u"tagen", CalendarUnit::day},     {u"día", CalendarUnit::day},
    {u"días", CalendarUnit::day},      {u"jour", CalendarUnit::day},
    {u"jours", CalendarUnit::day},     {u"week", CalendarUnit::week},
    {u"weeks", CalendarUnit::week},    {u"hafta", CalendarUnit::week},
    {u"woche", CalendarUnit::week},    {u"wochen", CalendarUnit::week},
    {u"semana", CalendarUnit::week},   {u"semanas", CalendarUnit::week},
    {u"semaine", CalendarUnit::week},  {u"semaines", CalendarUnit::week},
    {u"month", CalendarUnit::month},   {u"months", CalendarUnit::month},
    {u"ay", CalendarUnit::month},      {u"monat", CalendarUnit::month},
    {u"monaten", CalendarUnit::month}, {u"mes", CalendarUnit::month},
    {u"meses", CalendarUnit::month},   {u"mois", CalendarUnit::month},
    {u"year", CalendarUnit::year},     {u"years", CalendarUnit::year},
    {u"yıl", CalendarUnit::year},      {u"jahr", CalendarUnit::year},
    {u"jahren", CalendarUnit::year},   {u"año", CalendarUnit::year},
    {u"años", CalendarUnit::year},     {u"an", CalendarUnit::year},
    {u"ans", CalendarUnit::year},      {u"année", CalendarUnit::year},
    {u"années", CalendarUnit::year},
};

} // namespace

const QStringList &languageCodes()
{
    static const QStringList codes {QStringLiteral("en"), QStringLiteral("tr"),
                                    QStringLiteral("de"), QStringLiteral("es"),
                                    QStringLiteral("fr")};
    return codes;
}

const QList<RelativeDayWord> &relativeDayWords()
{
    static const QList<RelativeDayWord> words {
        {QStringLiteral("today"), 0},
        {QStringLiteral("tomorrow"), 1},
        {QStringLiteral("day after tomorrow"), 2},
        {QStringLiteral("yesterday"), -1},
        {QStringLiteral("bugün"), 0},
        {QStringLiteral("yarın"), 1},
        {QStringLiteral("öbür gün"), 2},
        {QStringLiteral("yarından sonra"), 2},
        {QStringLiteral("dün"), -1},
        {QStringLiteral("heute"), 0},
        {QStringLiteral("morgen"), 1},
        {QStringLiteral("übermorgen"), 2},
        {QStringLiteral("gestern"), -1},
        {QStringLiteral("hoy"), 0},
        {QStringLiteral("mañana"), 1},
        {QStringLiteral("pasado mañana"), 2},
        {QStringLiteral("ayer"), -1},
        {QStringLiteral("aujourd’hui"), 0},
        {QStringLiteral("aujourd'hui"), 0},
        {QStringLiteral("demain"), 1},
        {QStringLiteral("après-demain"), 2},
        {QStringLiteral("après demain"), 2},
        {QStringLiteral("hier"), -1},
    };
    return words;
}

std::optional<int> relativeDayOffset(QStringView word)
{
    const auto &offsets = tables().dayOffsets;
    const auto it = offsets.constFind(word.toString().toLower());
    return it == offsets.cend() ? std::nullopt : std::optional<int>(*it);
}

const QStringList &nextWeekWords()
{
    static const QStringList words {QStringLiteral("haftaya"), QStringLiteral("gelecek")};
    return words;
}

const QStringList &lastWords()
{
    static const QStringList words {QStringLiteral("last"), QStringLiteral("geçen"),
                                    QStringLiteral("letzten"), QStringLiteral("pasado"),
                                    QStringLiteral("dernier")};
    return words;
}

ModifierKind classifyModifier(std::optional<QStringView> modifier)
{
    if (!modifier)
        return ModifierKind::none;
    const QString lowered = modifier->toString().toLower();
    if (nextWeekWords().contains(lowered) || lowered.contains(u"semaine"))
        return ModifierKind::nextWeek;
    if (lastWords().contains(lowered) || lowered.endsWith(u"pasado"))
        return ModifierKind::last;
    return ModifierKind::upcoming;
}

std::optional<int> weekdayNumber(QStringView name)
{
    return tables().weekdays.find(name);
}

std::optional<int> monthNumber(QStringView name)
{
    return tables().months.find(name);
}

const QStringList &weekdayNames()
{
    return tables().weekdays.names();
}

const QStringList &monthNames()
{
    return tables().months.names();
}

const QString &unitAlternation()
{
    static const QString units = QStringLiteral(
        "days?|weeks?|months?|years?|gün|hafta|ay|yıl|tag(?:en)?|wochen?|monat(?:en)?|jahr(?:en)?|"
        "días?|semanas?|mes(?:es)?|años?|jours?|semaines?|mois|années?|ans?");
    return units;
}

std::optional<CalendarUnit> unitForWord(QStringView word)
{
    const QString lowered = word.toString().toLower();
    for (const UnitWord &entry : unitWords) {
        if (lowered == QStringView(entry.word))
            return entry.unit;
    }
    return std::nullopt;
}

const QList<CountRule> &countRules()
{
    static const QList<CountRule> rules = [] {
        const QString u = unitAlternation();
        const QString left = QStringLiteral(R"((?<![\p{L}\d]))");
        const QString right = QStringLiteral(R"((?![\p{L}\d]))");
        return QList<CountRule> {
            {left % QStringLiteral(R"((?:in|en|dans)\s+(\d{1,3})\s+()") % u % u')' % right, 1, 2,
             +1},
            {left % QStringLiteral(R"((\d{1,3})\s+()") % u % QStringLiteral(R"()\s+sonra)") % right,
             1, 2, +1},
            {left % QStringLiteral(R"((\d{1,3})\s+()") % u % QStringLiteral(R"()\s+(?:ago|önce))")
                 % right,
             1, 2, -1},
            {left % QStringLiteral(R"((?:vor|hace|il\s+y\s+a)\s+(\d{1,3})\s+()") % u % u')' % right,
             1, 2, -1},
        };
    }();
    return rules;
}

QString alternation(const QStringList &words)
{
    QStringList sorted = words;
    std::stable_sort(sorted.begin(), sorted.end(),
                     [](const QString &a, const QString &b) { return a.size() > b.size(); });
    for (QString &word : sorted)
        word = QRegularExpression::escape(word);
    return sorted.join(u'|');
}

const QString &relativeDayAlternation()
{
    return tables().dayAlternation;
}

const QString &weekdayAlternation()
{
    return tables().weekdayAlternation;
}

const QString &monthAlternation()
{
    return tables().monthAlternation;
}

} // namespace Lexicon
