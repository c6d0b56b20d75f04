#include "parse/Lexicon.h"

#include <QLocale>
#include <QTest>

class TestLexicon : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void namesAsPeopleWriteThem_data();
    void namesAsPeopleWriteThem();
    void localeMonthNamesAgreeAcrossLanguages();
    void alternationIsLongestFirstStableAndEscaped();
};

void TestLexicon::namesAsPeopleWriteThem_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<std::optional<int>>("month");
    QTest::addColumn<std::optional<int>>("weekday"); // 1 = Sunday … 7 = Saturday

    const auto row = [](const char *what, const char *name, std::optional<int> month,
                        std::optional<int> weekday) {
        QTest::newRow(what) << name << month << weekday;
    };
    const std::nullopt_t none = std::nullopt;
    row("a Turkish month typed without Turkish letters", "subat", 2, none);
    row("a dotless ı typed as i", "aralik", 12, none);
    row("a Spanish weekday typed without its accent", "sabado", none, 7);
    row("an umlaut written out", "maerz", 3, none);
    row("names in upper case", "DEZEMBER", 12, none);
    row("two-letter month names are skipped", "ma", none, none);
    row("weekday abbreviations are not names", "fri", none, none);
}

void TestLexicon::namesAsPeopleWriteThem()
{
    QFETCH(QString, name);
    QTEST(Lexicon::monthNumber(name), "month");
    QTEST(Lexicon::weekdayNumber(name), "weekday");
}

void TestLexicon::localeMonthNamesAgreeAcrossLanguages()
{
    // A name shared by two languages keeps the number it was first given; check that no
    // language would have given it another one.
    for (const QString &code : Lexicon::languageCodes()) {
        const QLocale locale(code);
        for (int month = 1; month <= 12; ++month) {
            QString name = locale.standaloneMonthName(month, QLocale::ShortFormat).toLower();
            name.remove(u'.');
            if (name.size() < 3)
                continue;
            QVERIFY2(Lexicon::monthNumber(name) == month, qPrintable(code % u": " % name));
        }
    }
}

void TestLexicon::alternationIsLongestFirstStableAndEscaped()
{
    QCOMPARE(Lexicon::alternation({u"x"_qs, u"a.b"_qs, u"yy"_qs, u"abc"_qs, u"z"_qs}),
             uR"(a\.b|abc|yy|x|z)"_qs);
}

QTEST_GUILESS_MAIN(TestLexicon)
#include "tst_lexicon.moc"
