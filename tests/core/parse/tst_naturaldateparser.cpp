#include "parse/Lexicon.h"
#include "parse/NaturalDateParser.h"

#include <QLocale>
#include <QTest>
#include <QtConcurrent/QtConcurrentMap>

namespace {

QDateTime instant(const char *iso)
{
    return QDateTime::fromString(QString::fromLatin1(iso), Qt::ISODate);
}

// Wednesday, 3 June 2026, 10:00 in Istanbul (UTC+3 all year round).
const QDateTime wednesday = instant("2026-06-03T10:00+03:00");
const QTimeZone istanbul("Europe/Istanbul");
const QTimeZone newYork("America/New_York");

struct Setting
{
    QDateTime now = wednesday;
    QTimeZone zone = istanbul;
    bool keepsPast = false;
};

// 10:00 in Istanbul on a day from Monday 1 June 2026 (1) to Sunday 7 June 2026 (7).
Setting on(int day)
{
    return {wednesday.addDays(day - 3)};
}

// `expected` is empty when nothing should be found, a date ("2026-06-04") for a day without a
// time, or a wall time in the setting's zone ("2026-06-04T15:00", with an offset where the wall
// time alone is ambiguous).
void row(const char *name, const char *text, const char *expected, const char *title = "",
         const Setting &setting = {})
{
    QTest::newRow(name) << text << setting << expected << title;
}

QDateTime expectedInstant(const QString &expected, const QTimeZone &zone)
{
    if (expected.size() == 10)
        return QDate::fromString(expected, Qt::ISODate).startOfDay(zone);
    QDateTime value = QDateTime::fromString(expected, Qt::ISODate);
    if (value.timeSpec() == Qt::LocalTime)
        value.setTimeZone(zone);
    return value;
}

} // namespace

class TestNaturalDateParser : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void parse_data();
    void parse();
    void localeMonthNamesAgreeAcrossLanguages();
    void parallelCallsAgree();
    void onlyTheStartOfALongTextIsScanned();
};

void TestNaturalDateParser::parse_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<Setting>("setting");
    QTest::addColumn<QString>("expected");
    QTest::addColumn<QString>("title");

    // English.
    row("a month name in capitals before the day, with an ordinal", "launch on JUNE 12th",
        "2026-06-12", "launch");
    row("next Monday is the coming Monday", "standup next Monday", "2026-06-08", "standup");
    row("twelve pm is noon", "lunch at 12pm", "2026-06-03T12:00", "lunch");
    // Turkish.
    row("yarın saat 15:00", "dişçi yarın saat 15:00", "2026-06-04T15:00", "dişçi");
    row("yarından sonra is two days ahead, not yarın", "sınav yarından sonra", "2026-06-05",
        "sınav");
    row("a month name with a suffix", "toplantı 3 Haziran'da", "2026-06-03", "toplantı");
    row("a month with its dotless ı typed as i", "yılbaşı 31 aralik", "2026-12-31", "yılbaşı");
    row("a weekday with a suffix after a typographic apostrophe", "Cumartesi’ye piknik",
        "2026-06-06", "piknik");
    row("hafta önce counts back", "konser 2 hafta önce", "2026-05-20", "konser");
    // German.
    row("a full date with Uhr", "Zahnarzt am 3. Juni 2026 um 15 Uhr", "2026-06-03T15:00",
        "Zahnarzt");
    row("vor drei Tagen", "Treffen vor 3 Tagen", "2026-05-31", "Treffen");
    row("übermorgen, not morgen, with a dotted time after um", "Kino übermorgen um 20.15 Uhr",
        "2026-06-05T20:15", "Kino");
    row("a time with Uhr after the minutes", "Anruf 15:30 Uhr", "2026-06-03T15:30", "Anruf");
    row("März with its umlaut written out", "Urlaub 3. maerz", "2027-03-03", "Urlaub");
    // Spanish.
    row("pasado mañana a las 5 has no afternoon guess", "dentista pasado mañana a las 5",
        "2026-06-05T05:00", "dentista");
    row("a date with de and a year", "cena el 3 de junio de 2027", "2027-06-03", "cena");
    row("hace dos días", "boda hace 2 días", "2026-06-01", "boda");
    row("el pasado sabado, typed without its accent, is last Saturday", "reunión el pasado sabado",
        "2026-05-30", "reunión");
    row("the abbreviation sept", "congreso 14 sept", "2026-09-14", "congreso");
    // French.
    row("demain à 15h30", "dentiste demain à 15h30", "2026-06-04T15:30", "dentiste");
    row("aujourd’hui à 20h", "dîner aujourd’hui à 20h", "2026-06-03T20:00", "dîner");
    row("il y a trois ans", "vacances il y a 3 ans", "2023-06-03", "vacances");
    row("vendredi dernier is last Friday", "réunion vendredi dernier", "2026-05-29", "réunion");
    row("jeudi de la semaine prochaine is next week's Thursday",
        "cours jeudi de la semaine prochaine", "2026-06-11", "cours");
    row("févr. with its dot", "loyer 5 févr. 2027", "2027-02-05", "loyer");

    // Families of day phrases are tried in order; the words of a later one stay in the title.
    row("an explicit date beats tomorrow", "tomorrow 3 June", "2026-06-03", "tomorrow");
    row("tomorrow beats a count", "tomorrow or in 3 days", "2026-06-04", "or in 3 days");
    row("a count beats a weekday", "Friday or in 3 days", "2026-06-06", "Friday or");

    // Numbers that make no date or time are refused.
    row("24:00 is not a time", "deadline 24:00", "");
    row("3 Tage is not a count", "Urlaub in 3 Tage", "");
    row("a longer number is not cut into a date", "ticket 12.06.20261", "");
    row("a refused time leaves the day", "dinner tomorrow at 13pm", "2026-06-04", "dinner at 13pm");
    row("31 June is skipped for the next date", "31 June or 1 July", "2026-07-01", "31 June or");

    // Weekdays, from every side of the named day.
    row("Friday typed on a Friday is a week later", "Friday", "2026-06-12", "", on(5));
    row("last Friday typed on a Friday is a week back", "last Friday", "2026-05-29", "", on(5));
    row("haftaya cuma typed on a Monday is in the week after", "haftaya cuma", "2026-06-12", "",
        on(1));
    row("haftaya pazartesi typed on a Sunday is the next day", "haftaya pazartesi", "2026-06-08",
        "", on(7));

    // Days already passed, and the ends of months and years.
    const Setting keeping {wednesday, istanbul, true};
    row("a time already passed today means tomorrow", "at 9", "2026-06-04T09:00");
    row("a time already passed today stays today when keeping the past", "at 9", "2026-06-03T09:00",
        "", keeping);
    row("a date passed this year means next year", "anniversaire le 1er mai", "2027-05-01",
        "anniversaire");
    row("a date passed this year stays when keeping the past", "anniversaire le 1er mai",
        "2026-05-01", "anniversaire", keeping);
    row("yesterday is never moved forward", "yesterday", "2026-06-02");
    row("a two-digit year is in this century", "03.06.27", "2027-06-03");
    row("a passed time on New Year's Eve is next year", "at 9:00", "2027-01-01T09:00", "",
        {instant("2026-12-31T22:00+03:00")});
    row("a month from 31 January is the last day of February", "in 1 month", "2026-02-28", "",
        {instant("2026-01-31T10:00+03:00")});
    row("a year from a leap day is 28 February", "in 1 year", "2029-02-28", "",
        {instant("2028-02-29T10:00+03:00")});
    row("today follows the zone, not UTC", "today", "2026-06-04", "",
        {instant("2026-06-03T22:30:00Z")});

    // What is left of the title.
    row("runs of spaces become one", "  call   mom  tomorrow  at 3pm ", "2026-06-04T15:00",
        "call mom");
    row("an emoji before the date keeps the ranges right", "🎉 party 🎉 tomorrow 🎂", "2026-06-04",
        "🎉 party 🎉 🎂");
    row("a time before the day is removed as well", "3pm: standup, tomorrow", "2026-06-04T15:00",
        "standup");

    // Days on which the clocks change.
    const Setting berlinSpring {instant("2026-03-28T12:00+01:00"), QTimeZone("Europe/Berlin")};
    row("a skipped wall time moves forward by the gap", "tomorrow at 2:30",
        "2026-03-29T03:30+02:00", "", berlinSpring);
    row("the day of the spring change starts at its local midnight", "tomorrow", "2026-03-29", "",
        berlinSpring);
    row("a repeated wall time takes its first occurrence", "tomorrow at 1:30",
        "2026-11-01T01:30-04:00", "", {instant("2026-10-31T12:00-04:00"), newYork});
    row("a skipped midnight starts the day at one", "tomorrow", "2026-09-06", "",
        {instant("2026-09-05T12:00-04:00"), QTimeZone("America/Santiago")});
}

void TestNaturalDateParser::parse()
{
    QFETCH(QString, text);
    QFETCH(Setting, setting);
    QFETCH(QString, expected);
    QFETCH(QString, title);

    const auto match = NaturalDateParser::parse(text, setting.now, setting.zone, setting.keepsPast);
    QCOMPARE(match.has_value(), !expected.isEmpty());
    if (!match)
        return;
    QCOMPARE(match->date.timeSpec(), Qt::UTC);
    QCOMPARE(match->date, expectedInstant(expected, setting.zone));
    QCOMPARE(match->includeTime, expected.size() > 10);
    QCOMPARE(match->cleanedTitle, title);
}

void TestNaturalDateParser::localeMonthNamesAgreeAcrossLanguages()
{
    // A name shared by two languages keeps the number it was first given; check that no
    // language would have given it another one.
    for (const QString &code : Lexicon::languageCodes()) {
        const QLocale locale(code);
        for (int month = 1; month <= 12; ++month) {
            QString name = locale.standaloneMonthName(month, QLocale::ShortFormat).toLower();
            name.remove(u'.');
            if (name.size() >= 3)
                QVERIFY2(Lexicon::monthNumber(name) == month, qPrintable(code % u": " % name));
        }
    }
}

void TestNaturalDateParser::parallelCallsAgree()
{
    // Quick entry parses off the interface thread while the field may parse on it: the compiled
    // patterns and tables are shared.
    const auto parse = [](const QString &title) {
        return NaturalDateParser::parse(title, wednesday, istanbul, false);
    };
    QStringList titles;
    for (int round = 0; round < 50; ++round)
        titles << u"dentist tomorrow at 3pm"_qs << u"maç haftaya cuma"_qs
               << u"Zahnarzt am 3. Juni um 15 Uhr"_qs << u"vacances il y a 3 ans"_qs;
    const auto together = QtConcurrent::blockingMapped(titles, parse);
    for (qsizetype i = 0; i < titles.size(); ++i)
        QVERIFY(together.at(i) == parse(titles.at(i)));
}

void TestNaturalDateParser::onlyTheStartOfALongTextIsScanned()
{
    // Megabytes of text cost what a long title costs; a date near the start is still found and
    // the rest of the text stays in the title.
    const QString filler = u" lorem ipsum"_qs.repeated(100000);
    const auto found = NaturalDateParser::parse(u"dentist tomorrow at 3pm"_qs + filler, wednesday,
                                                istanbul, false);
    QVERIFY(found && found->includeTime);
    QCOMPARE(found->cleanedTitle, u"dentist"_qs + filler);

    // Past the first ScannedLength characters nothing is looked for, and a word that the limit
    // would cut is left out whole rather than read in part ("at 30" is no "at 3").
    QString plain = u"x"_qs.repeated(NaturalDateParser::ScannedLength - 5);
    QVERIFY(!NaturalDateParser::parse(plain + u" lorem tomorrow"_qs, wednesday, istanbul, false));
    QVERIFY(!NaturalDateParser::parse(plain + u" at 30th street"_qs, wednesday, istanbul, false));
    QVERIFY(
        NaturalDateParser::parse(plain.left(200) + u" tomorrow"_qs, wednesday, istanbul, false));
}

QTEST_GUILESS_MAIN(TestNaturalDateParser)
#include "tst_naturaldateparser.moc"
