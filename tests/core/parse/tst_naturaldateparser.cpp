#include "parse/NaturalDateParser.h"

#include <QTest>

#include <thread>

namespace {

// Wednesday, 3 June 2026, 10:00 in Istanbul (UTC+3 all year round).
const QString wednesdayMorning = u"2026-06-03T10:00:00+03:00"_qs;
const QString istanbul = u"Europe/Istanbul"_qs;

struct Setting
{
    QString now = wednesdayMorning;
    QString zone = istanbul;
    bool keepsPast = false;
};

void addColumns()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("now");
    QTest::addColumn<QString>("zone");
    QTest::addColumn<bool>("keepsPast");
    QTest::addColumn<QString>("date"); // empty: no match
    QTest::addColumn<bool>("includeTime");
    QTest::addColumn<QString>("title");
}

void addRow(const char *name, const QString &text, const QString &date, bool includeTime,
            const QString &title, const Setting &setting = {})
{
    QTest::newRow(name) << text << setting.now << setting.zone << setting.keepsPast << date
                        << includeTime << title;
}

void addNoMatch(const char *name, const QString &text, const Setting &setting = {})
{
    addRow(name, text, QString(), false, QString(), setting);
}

QDateTime instant(const QString &iso)
{
    const QDateTime parsed = QDateTime::fromString(iso, Qt::ISODate);
    Q_ASSERT(parsed.isValid());
    return parsed;
}

void verifyRow()
{
    QFETCH(QString, text);
    QFETCH(QString, now);
    QFETCH(QString, zone);
    QFETCH(bool, keepsPast);
    QFETCH(QString, date);
    QFETCH(bool, includeTime);
    QFETCH(QString, title);

    const auto match =
        NaturalDateParser::parse(text, instant(now), QTimeZone(zone.toUtf8()), keepsPast);
    if (date.isEmpty()) {
        QVERIFY2(!match,
                 qPrintable(u"unexpected match on "_qs
                            % (match ? match->date.toString(Qt::ISODate) : QString())));
        return;
    }
    QVERIFY(match);
    QCOMPARE(match->date.timeSpec(), Qt::UTC);
    QCOMPARE(match->date.toString(Qt::ISODate), instant(date).toUTC().toString(Qt::ISODate));
    QCOMPARE(match->includeTime, includeTime);
    QCOMPARE(match->cleanedTitle, title);
}

} // namespace

class TestNaturalDateParser : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void english_data();
    void english() { verifyRow(); }
    void turkish_data();
    void turkish() { verifyRow(); }
    void german_data();
    void german() { verifyRow(); }
    void spanish_data();
    void spanish() { verifyRow(); }
    void french_data();
    void french() { verifyRow(); }
    void earlierFamiliesWin_data();
    void earlierFamiliesWin() { verifyRow(); }
    void invalidNumbersAreRefused_data();
    void invalidNumbersAreRefused() { verifyRow(); }
    void weekdaysFromEveryDayOfTheWeek_data();
    void weekdaysFromEveryDayOfTheWeek() { verifyRow(); }
    void pastDatesAndYearRollOver_data();
    void pastDatesAndYearRollOver() { verifyRow(); }
    void titleCleanUp_data();
    void titleCleanUp() { verifyRow(); }
    void daylightSavingDays_data();
    void daylightSavingDays() { verifyRow(); }
    void parallelCallsAgree();
};

void TestNaturalDateParser::english_data()
{
    addColumns();
    addRow("tomorrow at 3pm", u"dentist tomorrow at 3pm"_qs, u"2026-06-04T15:00+03:00"_qs, true,
           u"dentist"_qs);
    addRow("month before day with an ordinal", u"launch on June 12th"_qs,
           u"2026-06-12T00:00+03:00"_qs, false, u"launch"_qs);
    addRow("in three days", u"trip in 3 days"_qs, u"2026-06-06T00:00+03:00"_qs, false, u"trip"_qs);
    addRow("a weekday with a time of day", u"call Friday at 11 am"_qs, u"2026-06-05T11:00+03:00"_qs,
           true, u"call"_qs);
    addRow("next Monday is the coming Monday", u"standup next Monday"_qs,
           u"2026-06-08T00:00+03:00"_qs, false, u"standup"_qs);
    addRow("twelve pm is noon", u"lunch at 12pm"_qs, u"2026-06-03T12:00+03:00"_qs, true,
           u"lunch"_qs);
    addNoMatch("a title without any date", u"buy milk and eggs"_qs);
}

void TestNaturalDateParser::turkish_data()
{
    addColumns();
    addRow("yarın saat 15:00", u"dişçi yarın saat 15:00"_qs, u"2026-06-04T15:00+03:00"_qs, true,
           u"dişçi"_qs);
    addRow("yarından sonra is two days ahead", u"sınav yarından sonra"_qs,
           u"2026-06-05T00:00+03:00"_qs, false, u"sınav"_qs);
    addRow("a day and month name with a suffix", u"toplantı 3 Haziran'da"_qs,
           u"2026-06-03T00:00+03:00"_qs, false, u"toplantı"_qs);
    addRow("a weekday with a suffix", u"doğum günü cuma'ya"_qs, u"2026-06-05T00:00+03:00"_qs, false,
           u"doğum günü"_qs);
    addRow("a weekday with a typographic apostrophe and suffix", u"Cumartesi’ye piknik"_qs,
           u"2026-06-06T00:00+03:00"_qs, false, u"piknik"_qs);
    addRow("haftaya cuma on a Wednesday is nine days ahead", u"maç haftaya cuma"_qs,
           u"2026-06-12T00:00+03:00"_qs, false, u"maç"_qs);
    addRow("gün sonra counts forward", u"tatil 3 gün sonra"_qs, u"2026-06-06T00:00+03:00"_qs, false,
           u"tatil"_qs);
    addRow("hafta önce counts back", u"konser 2 hafta önce"_qs, u"2026-05-20T00:00+03:00"_qs, false,
           u"konser"_qs);
}

void TestNaturalDateParser::german_data()
{
    addColumns();
    addRow("a full date with Uhr", u"Zahnarzt am 3. Juni 2026 um 15 Uhr"_qs,
           u"2026-06-03T15:00+03:00"_qs, true, u"Zahnarzt"_qs);
    addRow("in two weeks", u"Urlaub in 2 Wochen"_qs, u"2026-06-17T00:00+03:00"_qs, false,
           u"Urlaub"_qs);
    addRow("vor drei Tagen", u"Treffen vor 3 Tagen"_qs, u"2026-05-31T00:00+03:00"_qs, false,
           u"Treffen"_qs);
    addRow("nächsten Dienstag with a time", u"Training nächsten Dienstag um 18:30"_qs,
           u"2026-06-09T18:30+03:00"_qs, true, u"Training"_qs);
    addRow("a dotted time needs um", u"Kino morgen um 20.15 Uhr"_qs, u"2026-06-04T20:15+03:00"_qs,
           true, u"Kino"_qs);
    addRow("a time with Uhr after the minutes", u"Anruf 15:30 Uhr"_qs, u"2026-06-03T15:30+03:00"_qs,
           true, u"Anruf"_qs);
}

void TestNaturalDateParser::spanish_data()
{
    addColumns();
    addRow("pasado mañana a las 5 has no afternoon guess", u"dentista pasado mañana a las 5"_qs,
           u"2026-06-05T05:00+03:00"_qs, true, u"dentista"_qs);
    addRow("a date with de and a year", u"cena el 3 de junio de 2027"_qs,
           u"2027-06-03T00:00+03:00"_qs, false, u"cena"_qs);
    addRow("hace dos días", u"boda hace 2 días"_qs, u"2026-06-01T00:00+03:00"_qs, false,
           u"boda"_qs);
    addRow("el próximo viernes", u"reunión el próximo viernes"_qs, u"2026-06-05T00:00+03:00"_qs,
           false, u"reunión"_qs);
    addRow("the abbreviation sept", u"congreso 14 sept"_qs, u"2026-09-14T00:00+03:00"_qs, false,
           u"congreso"_qs);
}

void TestNaturalDateParser::french_data()
{
    addColumns();
    addRow("demain à 15h30", u"dentiste demain à 15h30"_qs, u"2026-06-04T15:30+03:00"_qs, true,
           u"dentiste"_qs);
    addRow("aujourd’hui à 20h", u"dîner aujourd’hui à 20h"_qs, u"2026-06-03T20:00+03:00"_qs, true,
           u"dîner"_qs);
    addRow("dans cinq jours", u"rendez-vous dans 5 jours"_qs, u"2026-06-08T00:00+03:00"_qs, false,
           u"rendez-vous"_qs);
    addRow("il y a trois ans", u"vacances il y a 3 ans"_qs, u"2023-06-03T00:00+03:00"_qs, false,
           u"vacances"_qs);
    addRow("lundi prochain is the coming Monday", u"réunion lundi prochain"_qs,
           u"2026-06-08T00:00+03:00"_qs, false, u"réunion"_qs);
    addRow("jeudi de la semaine prochaine is next week's Thursday",
           u"cours jeudi de la semaine prochaine"_qs, u"2026-06-11T00:00+03:00"_qs, false,
           u"cours"_qs);
    addRow("févr. with its dot", u"loyer 5 févr. 2027"_qs, u"2027-02-05T00:00+03:00"_qs, false,
           u"loyer"_qs);
}

void TestNaturalDateParser::earlierFamiliesWin_data()
{
    addColumns();
    addRow("an explicit date beats tomorrow, which stays in the title", u"tomorrow 3 June"_qs,
           u"2026-06-03T00:00+03:00"_qs, false, u"tomorrow"_qs);
    addRow("an explicit date beats a weekday", u"on Friday 12.06"_qs, u"2026-06-12T00:00+03:00"_qs,
           false, u"on Friday"_qs);
    addRow("tomorrow beats a count", u"tomorrow or in 3 days"_qs, u"2026-06-04T00:00+03:00"_qs,
           false, u"or in 3 days"_qs);
    addRow("a count beats a weekday", u"Friday or in 3 days"_qs, u"2026-06-06T00:00+03:00"_qs,
           false, u"Friday or"_qs);
}

void TestNaturalDateParser::invalidNumbersAreRefused_data()
{
    addColumns();
    addNoMatch("13pm is not a time", u"meet at 13pm"_qs);
    addNoMatch("24:00 is not a time", u"deadline 24:00"_qs);
    addNoMatch("31.02 is not a date", u"report 31.02"_qs);
    addNoMatch("3 Tage is not a count", u"Urlaub in 3 Tage"_qs);
    addNoMatch("a longer number is not cut into a date", u"ticket 12.06.20261"_qs);
    addRow("a refused time leaves the day", u"dinner tomorrow at 13pm"_qs,
           u"2026-06-04T00:00+03:00"_qs, false, u"dinner at 13pm"_qs);
    addRow("31 June is skipped for the next date", u"31 June or 1 July"_qs,
           u"2026-07-01T00:00+03:00"_qs, false, u"31 June or"_qs);
}

void TestNaturalDateParser::weekdaysFromEveryDayOfTheWeek_data()
{
    addColumns();
    struct Day
    {
        const char *name;
        QString now;
        QString friday;
        QString lastFriday;
        QString fridayNextWeek;
    };
    // Monday 1 June 2026 to Sunday 7 June 2026.
    const Day days[] = {
        {"Monday", u"2026-06-01T10:00+03:00"_qs, u"2026-06-05"_qs, u"2026-05-29"_qs,
         u"2026-06-12"_qs},
        {"Tuesday", u"2026-06-02T10:00+03:00"_qs, u"2026-06-05"_qs, u"2026-05-29"_qs,
         u"2026-06-12"_qs},
        {"Wednesday", u"2026-06-03T10:00+03:00"_qs, u"2026-06-05"_qs, u"2026-05-29"_qs,
         u"2026-06-12"_qs},
        {"Thursday", u"2026-06-04T10:00+03:00"_qs, u"2026-06-05"_qs, u"2026-05-29"_qs,
         u"2026-06-12"_qs},
        {"Friday", u"2026-06-05T10:00+03:00"_qs, u"2026-06-12"_qs, u"2026-05-29"_qs,
         u"2026-06-12"_qs},
        {"Saturday", u"2026-06-06T10:00+03:00"_qs, u"2026-06-12"_qs, u"2026-06-05"_qs,
         u"2026-06-12"_qs},
        {"Sunday", u"2026-06-07T10:00+03:00"_qs, u"2026-06-12"_qs, u"2026-06-05"_qs,
         u"2026-06-12"_qs},
    };
    const auto midnight = [](const QString &date) {
        return date % u"T00:00+03:00";
    };
    for (const Day &day : days) {
        const Setting on {day.now};
        QTest::addRow("Friday typed on a %s", day.name)
            << u"Friday"_qs << on.now << on.zone << false << midnight(day.friday) << false
            << QString();
        QTest::addRow("last Friday typed on a %s", day.name)
            << u"last Friday"_qs << on.now << on.zone << false << midnight(day.lastFriday) << false
            << QString();
        QTest::addRow("haftaya cuma typed on a %s", day.name)
            << u"haftaya cuma"_qs << on.now << on.zone << false << midnight(day.fridayNextWeek)
            << false << QString();
    }
    addRow("haftaya pazartesi on a Sunday is the next day", u"haftaya pazartesi"_qs,
           u"2026-06-08T00:00+03:00"_qs, false, QString(), {u"2026-06-07T10:00+03:00"_qs});
    addRow("Sunday typed on a Sunday is a week later", u"Sunday"_qs, u"2026-06-14T00:00+03:00"_qs,
           false, QString(), {u"2026-06-07T10:00+03:00"_qs});
}

void TestNaturalDateParser::pastDatesAndYearRollOver_data()
{
    addColumns();
    const Setting keeping {wednesdayMorning, istanbul, true};
    addRow("a time already passed today means tomorrow", u"at 9"_qs, u"2026-06-04T09:00+03:00"_qs,
           true, QString());
    addRow("a time already passed today stays today when keeping the past", u"at 9"_qs,
           u"2026-06-03T09:00+03:00"_qs, true, QString(), keeping);
    addRow("a date passed this year means next year", u"anniversaire le 1er mai"_qs,
           u"2027-05-01T00:00+03:00"_qs, false, u"anniversaire"_qs);
    addRow("a date passed this year stays when keeping the past", u"anniversaire le 1er mai"_qs,
           u"2026-05-01T00:00+03:00"_qs, false, u"anniversaire"_qs, keeping);
    addRow("yesterday is never moved forward", u"yesterday"_qs, u"2026-06-02T00:00+03:00"_qs, false,
           QString());
    addRow("a two-digit year is in this century", u"03.06.27"_qs, u"2027-06-03T00:00+03:00"_qs,
           false, QString());
    const Setting newYearsEve {u"2026-12-31T22:00+03:00"_qs};
    addRow("tomorrow on New Year's Eve is next year", u"tomorrow"_qs, u"2027-01-01T00:00+03:00"_qs,
           false, QString(), newYearsEve);
    addRow("a passed time on New Year's Eve is next year", u"at 9:00"_qs,
           u"2027-01-01T09:00+03:00"_qs, true, QString(), newYearsEve);
    addRow("a month from 31 January is the last day of February", u"in 1 month"_qs,
           u"2026-02-28T00:00+03:00"_qs, false, QString(), {u"2026-01-31T10:00+03:00"_qs});
    addRow("a year from a leap day is 28 February", u"in 1 year"_qs, u"2029-02-28T00:00+03:00"_qs,
           false, QString(), {u"2028-02-29T10:00+03:00"_qs});
    addRow("today follows the zone, not UTC", u"today"_qs, u"2026-06-04T00:00+03:00"_qs, false,
           QString(), {u"2026-06-03T22:30:00Z"_qs});
}

void TestNaturalDateParser::titleCleanUp_data()
{
    addColumns();
    const QString tomorrow = u"2026-06-04T00:00+03:00"_qs;
    addRow("an en dash and a trailing comma are trimmed", u"dentist – tomorrow,"_qs, tomorrow,
           false, u"dentist"_qs);
    addRow("an em dash is trimmed", u"dentist — tomorrow"_qs, tomorrow, false, u"dentist"_qs);
    addRow("runs of spaces become one", u"  call   mom  tomorrow  at 3pm "_qs,
           u"2026-06-04T15:00+03:00"_qs, true, u"call mom"_qs);
    addRow("a date alone leaves an empty title", u"Tomorrow"_qs, tomorrow, false, QString());
    addRow("an emoji before the date keeps the ranges right", u"🎉 party 🎉 tomorrow 🎂"_qs, tomorrow,
           false, u"🎉 party 🎉 🎂"_qs);
    addRow("the day before the time are both removed", u"3pm: standup, tomorrow"_qs,
           u"2026-06-04T15:00+03:00"_qs, true, u"standup"_qs);
}

void TestNaturalDateParser::daylightSavingDays_data()
{
    addColumns();
    const Setting berlinSpring {u"2026-03-28T12:00+01:00"_qs, u"Europe/Berlin"_qs};
    addRow("a skipped wall time moves forward by the gap", u"tomorrow at 2:30"_qs,
           u"2026-03-29T03:30+02:00"_qs, true, QString(), berlinSpring);
    addRow("the day of the change starts at its local midnight", u"tomorrow"_qs,
           u"2026-03-29T00:00+01:00"_qs, false, QString(), berlinSpring);
    addRow("a time-only entry in the gap lands after it", u"at 2:30"_qs,
           u"2026-03-29T03:30+02:00"_qs, true, QString(),
           {u"2026-03-29T00:30+01:00"_qs, u"Europe/Berlin"_qs});
    const Setting newYorkFall {u"2026-10-31T12:00-04:00"_qs, u"America/New_York"_qs};
    addRow("a repeated wall time takes its first occurrence", u"tomorrow at 1:30"_qs,
           u"2026-11-01T01:30-04:00"_qs, true, QString(), newYorkFall);
    addRow("a time after the fall-back is standard time", u"tomorrow at 3:00"_qs,
           u"2026-11-01T03:00-05:00"_qs, true, QString(), newYorkFall);
    addRow("a skipped midnight starts the day at one", u"tomorrow"_qs, u"2026-09-06T01:00-03:00"_qs,
           false, QString(), {u"2026-09-05T12:00-04:00"_qs, u"America/Santiago"_qs});
}

void TestNaturalDateParser::parallelCallsAgree()
{
    const QStringList titles {u"dentist tomorrow at 3pm"_qs,       u"maç haftaya cuma"_qs,
                              u"Zahnarzt am 3. Juni um 15 Uhr"_qs, u"buy milk"_qs,
                              u"vacances il y a 3 ans"_qs,         u"cena el 3 de junio"_qs};
    const QDateTime now = QDateTime::fromString(wednesdayMorning, Qt::ISODate);
    const QTimeZone zone(istanbul.toUtf8());

    // The compiled patterns and tables are shared by every thread.
    QList<QList<std::optional<NaturalDateMatch>>> results(4);
    std::vector<std::thread> threads;
    for (auto &perThread : results) {
        threads.emplace_back([&] {
            for (int round = 0; round < 50; ++round) {
                for (const QString &title : titles)
                    perThread.append(NaturalDateParser::parse(title, now, zone, false));
            }
        });
    }
    for (std::thread &thread : threads)
        thread.join();

    for (qsizetype i = 0; i < titles.size(); ++i) {
        const auto expected = NaturalDateParser::parse(titles.at(i), now, zone, false);
        for (const auto &perThread : std::as_const(results)) {
            for (qsizetype at = i; at < perThread.size(); at += titles.size())
                QVERIFY(perThread.at(at) == expected);
        }
    }
}

QTEST_GUILESS_MAIN(TestNaturalDateParser)
#include "tst_naturaldateparser.moc"
