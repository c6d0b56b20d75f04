#include "parse/Lexicon.h"

#include <QLocale>
#include <QRegularExpression>
#include <QTest>

using Lexicon::ModifierKind;

class TestLexicon : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void longerDayWordsWinOverTheirParts_data();
    void longerDayWordsWinOverTheirParts();
    void monthNamesAsPeopleWriteThem_data();
    void monthNamesAsPeopleWriteThem();
    void localeMonthNamesAgreeAcrossLanguages();
    void weekdaysAreNumberedFromSunday_data();
    void weekdaysAreNumberedFromSunday();
    void modifiersAreClassified_data();
    void modifiersAreClassified();
    void alternationIsLongestFirstStableAndEscaped();
};

void TestLexicon::longerDayWordsWinOverTheirParts_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("offset");

    QTest::newRow("pasado mañana is two days, not mañana") << u"pasado mañana"_qs << 2;
    QTest::newRow("yarından sonra is two days, not yarın") << u"yarından sonra"_qs << 2;
    QTest::newRow("übermorgen is two days, not morgen") << u"übermorgen"_qs << 2;
    QTest::newRow("aujourd’hui with a typographic apostrophe is today") << u"aujourd’hui"_qs << 0;
    QTest::newRow("aujourd'hui with a plain apostrophe is today") << u"aujourd'hui"_qs << 0;
}

void TestLexicon::longerDayWordsWinOverTheirParts()
{
    QFETCH(QString, text);
    QFETCH(int, offset);

    const QRegularExpression words(u'(' % Lexicon::relativeDayAlternation() % u')',
                                   QRegularExpression::CaseInsensitiveOption
                                       | QRegularExpression::UseUnicodePropertiesOption);
    const QRegularExpressionMatch match = words.match(text);
    QVERIFY(match.hasMatch());
    QCOMPARE(match.captured(1), text);
    QCOMPARE(Lexicon::relativeDayOffset(match.captured(1)), std::optional<int>(offset));
}

void TestLexicon::monthNamesAsPeopleWriteThem_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<std::optional<int>>("month");

    const auto row = [](const char *what, const QString &name, std::optional<int> month) {
        QTest::newRow(what) << name << month;
    };
    row("English abbreviation", u"Sep"_qs, 9);
    row("sept as an abbreviation in any language", u"sept"_qs, 9);
    row("Turkish full name with its own letters", u"Şubat"_qs, 2);
    row("Turkish name typed without Turkish letters", u"subat"_qs, 2);
    row("German März with umlaut", u"März"_qs, 3);
    row("German short Mär", u"mär"_qs, 3);
    row("German März written out as Maerz", u"maerz"_qs, 3);
    row("Austrian Jänner", u"jänner"_qs, 1);
    row("Spanish setiembre variant", u"setiembre"_qs, 9);
    row("French févr without its dot", u"févr"_qs, 2);
    row("French juil without its dot", u"juil"_qs, 7);
    row("French août typed without accent", u"aout"_qs, 8);
    row("upper-case input", u"DEZEMBER"_qs, 12);
    row("a name kept with its dot is not a key", u"janv."_qs, std::nullopt);
    row("two-letter names are skipped", u"ma"_qs, std::nullopt);
}

void TestLexicon::monthNamesAsPeopleWriteThem()
{
    QFETCH(QString, name);
    QFETCH(std::optional<int>, month);
    QCOMPARE(Lexicon::monthNumber(name), month);
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

void TestLexicon::weekdaysAreNumberedFromSunday_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<std::optional<int>>("weekday");

    const auto row = [](const char *what, const QString &name, std::optional<int> day) {
        QTest::newRow(what) << name << day;
    };
    row("English Sunday is 1", u"sunday"_qs, 1);
    row("Turkish pazar is 1", u"pazar"_qs, 1);
    row("Turkish cumartesi is 7", u"cumartesi"_qs, 7);
    row("Turkish carsamba typed plainly is 4", u"carsamba"_qs, 4);
    row("German Sonntag is 1", u"Sonntag"_qs, 1);
    row("Spanish miércoles is 4", u"miércoles"_qs, 4);
    row("Spanish sabado without accent is 7", u"sabado"_qs, 7);
    row("French dimanche is 1", u"dimanche"_qs, 1);
    row("abbreviations are not weekday names", u"fri"_qs, std::nullopt);
}

void TestLexicon::weekdaysAreNumberedFromSunday()
{
    QFETCH(QString, name);
    QFETCH(std::optional<int>, weekday);
    QCOMPARE(Lexicon::weekdayNumber(name), weekday);
}

void TestLexicon::modifiersAreClassified_data()
{
    QTest::addColumn<std::optional<QString>>("modifier");
    QTest::addColumn<ModifierKind>("kind");

    const auto row = [](const char *what, std::optional<QString> text, ModifierKind kind) {
        QTest::newRow(what) << text << kind;
    };
    row("no modifier", std::nullopt, ModifierKind::none);
    row("English next is the coming weekday", u"next"_qs, ModifierKind::upcoming);
    row("German nächsten is the coming weekday", u"Nächsten"_qs, ModifierKind::upcoming);
    row("French prochain is the coming weekday", u"prochain"_qs, ModifierKind::upcoming);
    row("Turkish haftaya is next week", u"haftaya"_qs, ModifierKind::nextWeek);
    row("French de la semaine prochaine is next week", u"de la semaine prochaine"_qs,
        ModifierKind::nextWeek);
    row("English last", u"last"_qs, ModifierKind::last);
    row("Spanish el pasado with two spaces", u"el  pasado"_qs, ModifierKind::last);
    row("French dernier", u"Dernier"_qs, ModifierKind::last);
}

void TestLexicon::modifiersAreClassified()
{
    QFETCH(std::optional<QString>, modifier);
    QFETCH(ModifierKind, kind);
    const std::optional<QStringView> view =
        modifier ? std::optional<QStringView>(*modifier) : std::nullopt;
    QCOMPARE(Lexicon::classifyModifier(view), kind);
}

void TestLexicon::alternationIsLongestFirstStableAndEscaped()
{
    QCOMPARE(Lexicon::alternation({u"x"_qs, u"a.b"_qs, u"yy"_qs, u"abc"_qs, u"z"_qs}),
             uR"(a\.b|abc|yy|x|z)"_qs);
}

QTEST_GUILESS_MAIN(TestLexicon)
#include "tst_lexicon.moc"
