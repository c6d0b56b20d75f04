#include "countdown/MenubarChipPresentation.h"
#include "l10n/LanguageTable.h"

#include <QTest>

#include <cmath>

Q_DECLARE_METATYPE(MenubarChipInputs)

namespace {

const QDateTime kNow = QDateTime::fromString(QStringLiteral("2026-03-01T12:00:00Z"), Qt::ISODate);

// The dentist, 1 day 1 hour 1 minute 1 second ahead, with a star.
MenubarChipInputs
dentist(MenubarStyle style = MenubarStyle::full,
        const ReachState &state = ReachState::counting(Remaining::fromInterval(90061)))
{
    MenubarChipInputs inputs;
    inputs.subject =
        MenubarSubject {QStringLiteral("Dentist"), IconRef::named(QStringLiteral("star.fill")),
                        QTimeZone("Europe/Istanbul")};
    inputs.style = style;
    inputs.state = state;
    return inputs;
}

// `shown` is "symbol|title|detail".
void frameRow(const char *name, const MenubarChipInputs &inputs, const char *shown)
{
    QTest::newRow(name) << inputs << QString::fromUtf8(shown).split(QLatin1Char('|'));
}

void cutRow(const char *name, const QString &title, qint64 limit, const QString &expected)
{
    QTest::newRow(name) << title << limit << expected;
}

} // namespace

class tst_MenubarChipPresentation : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cutsTitles_data();
    void cutsTitles();
    void buildsFrames_data();
    void buildsFrames();
    void fillsFromProgress_data();
    void fillsFromProgress();
};

void tst_MenubarChipPresentation::cutsTitles_data()
{
    QTest::addColumn<QString>("title");
    QTest::addColumn<qint64>("limit");
    QTest::addColumn<QString>("expected");

    const QString party = QStringLiteral("🎉"), accented = QStringLiteral("e\u0301");
    cutRow("a title of exactly the limit is left as it is", "Twelve chars", 12, "Twelve chars");
    cutRow("one character over keeps limit minus one characters and an ellipsis", "Thirteen char",
           12, "Thirteen ch…");
    cutRow("a space before the cut is dropped before the ellipsis", "Abcdefghij klmn", 12,
           "Abcdefghij…");
    cutRow("a limit below 12 behaves as 12", "Thirteen char", 5, "Thirteen ch…");
    cutRow("a limit above 24 behaves as 24", QString(30, u'x'), 40, QString(23, u'x') + "…");
    cutRow("thirteen emoji are cut after eleven, never inside a surrogate pair", party.repeated(13),
           12, party.repeated(11) + "…");
    cutRow("a letter with a combining accent counts as one character", accented.repeated(13), 12,
           accented.repeated(11) + "…");
    cutRow("a family emoji joined by zero-width joiners counts as one character",
           "👨‍👩‍👧 Family picnic", 16, "👨‍👩‍👧 Family picnic");
    cutRow("an empty title stays empty", QString(), 16, QString());
}

void tst_MenubarChipPresentation::cutsTitles()
{
    QFETCH(QString, title);
    QFETCH(qint64, limit);
    QFETCH(QString, expected);
    QCOMPARE(MenubarChipPresentation::truncatedTitle(title, limit), expected);
}

void tst_MenubarChipPresentation::buildsFrames_data()
{
    QTest::addColumn<MenubarChipInputs>("inputs");
    QTest::addColumn<QStringList>("shown");

    using Style = MenubarStyle;
    const ReachState reached = ReachState::reached(kNow);
    frameRow("full style shows the symbol, the title and the time left", dentist(),
             "star.fill|Dentist|1d 1h");
    frameRow("compact style leaves the title out", dentist(Style::compact), "star.fill||1d 1h");
    frameRow("title-only style leaves the time out", dentist(Style::titleOnly),
             "star.fill|Dentist|");
    frameRow("icon-only style shows just the symbol", dentist(Style::iconOnly), "star.fill||");
    frameRow("a reached holder shows a check mark in compact style",
             dentist(Style::compact, reached), "star.fill||✓");
    frameRow("a reached holder in title-only style shows no mark",
             dentist(Style::titleOnly, reached), "star.fill|Dentist|");
    frameRow("an acknowledged holder shows a check mark",
             dentist(Style::full, ReachState::acknowledged()), "star.fill|Dentist|✓");
    frameRow("a count-up shows a plus before the time passed",
             dentist(Style::full, ReachState::elapsed(kNow.addSecs(-(3 * 86400 + 4 * 3600)), kNow)),
             "star.fill|Dentist|+3d 4h");

    MenubarChipInputs inputs = dentist();
    inputs.subject->title = QStringLiteral("Appointment with the dentist");
    inputs.titleLength = 12;
    frameRow("a long title is cut to the chosen length", inputs, "star.fill|Appointment…|1d 1h");
    inputs = dentist();
    inputs.subject->icon = std::nullopt;
    frameRow("a holder without an icon shows the hourglass", inputs, "hourglass|Dentist|1d 1h");

    MenubarChipInputs idle;
    frameRow("with nothing to show the chip invites a new countdown", idle,
             "hourglass|New countdown|");
    idle.style = Style::iconOnly;
    idle.previewIcon = IconRef::named(QStringLiteral("gift.fill"));
    frameRow("the invitation keeps its label and hourglass in every style", idle,
             "hourglass|New countdown|");
}

void tst_MenubarChipPresentation::buildsFrames()
{
    QFETCH(MenubarChipInputs, inputs);
    QFETCH(QStringList, shown);

    const MenubarChipPresentation frame =
        MenubarChipPresentation::build(inputs, LanguageTable::load(QStringLiteral("en")));
    QCOMPARE((QStringList {frame.symbolName, frame.title, frame.detail}), shown);
}

void tst_MenubarChipPresentation::fillsFromProgress_data()
{
    QTest::addColumn<double>("progress");
    QTest::addColumn<double>("remaining");

    QTest::newRow("a negative progress fills the whole chip") << -0.5 << 1.0;
    QTest::newRow("a progress that is not a number fills the whole chip") << std::nan("") << 1.0;
    QTest::newRow("a quarter of the way leaves three quarters filled") << 0.25 << 0.75;
    QTest::newRow("a creep too small to see keeps the fill") << 0.25004 << 0.75;
    QTest::newRow("progress past the end leaves the chip empty") << 1.5 << 0.0;
}

void tst_MenubarChipPresentation::fillsFromProgress()
{
    QFETCH(double, progress);
    QFETCH(double, remaining);
    MenubarChipInputs inputs;
    inputs.progress = progress;
    QCOMPARE(MenubarChipPresentation::build(inputs, LanguageTable()).remaining, remaining);
}

QTEST_GUILESS_MAIN(tst_MenubarChipPresentation)
#include "tst_menubarchippresentation.moc"
