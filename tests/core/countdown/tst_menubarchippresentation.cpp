#include "countdown/MenubarChipPresentation.h"
#include "l10n/LanguageTable.h"

#include <QTest>

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

// Nothing holds the menu bar; the engine's progress is `progress`.
MenubarChipInputs idle(double progress = 0.0)
{
    MenubarChipInputs inputs;
    inputs.progress = progress;
    return inputs;
}

// The dentist renamed `title`, in title-only style with titles cut at `limit`.
MenubarChipInputs titled(const QString &title, qint64 limit)
{
    MenubarChipInputs inputs = dentist(MenubarStyle::titleOnly);
    inputs.subject->title = title;
    inputs.titleLength = limit;
    return inputs;
}

// `shown` is "symbol|title|detail", then the fill when it does not cover the whole chip.
void frameRow(const char *name, const MenubarChipInputs &inputs, const QString &shown)
{
    const QStringList parts = shown.split(QLatin1Char('|'));
    QTest::newRow(name) << inputs
                        << MenubarChipPresentation {parts.at(0), parts.at(1), parts.at(2),
                                                    parts.value(3, "1").toDouble()};
}

} // namespace

class tst_MenubarChipPresentation : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void buildsFrames_data();
    void buildsFrames();
};

void tst_MenubarChipPresentation::buildsFrames_data()
{
    QTest::addColumn<MenubarChipInputs>("inputs");
    QTest::addColumn<MenubarChipPresentation>("expected");

    // The full and compact styles and the idle chip are drawn by the status item's own test.
    using Style = MenubarStyle;
    frameRow("title-only style leaves the time out", dentist(Style::titleOnly),
             "star.fill|Dentist|");
    frameRow("a reached holder shows a check mark in compact style",
             dentist(Style::compact, ReachState::reached(kNow)), "star.fill||✓");

    // Titles are cut to the chosen length in user-perceived characters.
    const QString party = QStringLiteral("🎉");
    frameRow("a title of exactly the limit is left as it is", titled("Twelve chars", 12),
             "star.fill|Twelve chars|");
    frameRow("one character over keeps limit minus one characters and an ellipsis",
             titled("Thirteen char", 12), "star.fill|Thirteen ch…|");
    frameRow("a space before the cut is dropped before the ellipsis", titled("Abcdefghij klmn", 12),
             "star.fill|Abcdefghij…|");
    frameRow("thirteen emoji are cut after eleven, never inside a surrogate pair",
             titled(party.repeated(13), 12), "star.fill|" + party.repeated(11) + "…|");
    frameRow("a family emoji joined by zero-width joiners counts as one character",
             titled("👨‍👩‍👧 Family picnic", 16),
             "star.fill|👨‍👩‍👧 Family picnic|");

    MenubarChipInputs inputs = dentist();
    inputs.subject->icon = std::nullopt;
    frameRow("a holder without an icon shows the hourglass", inputs, "hourglass|Dentist|1d 1h");
    inputs = idle();
    inputs.style = Style::iconOnly;
    inputs.previewIcon = IconRef::named(QStringLiteral("gift.fill"));
    frameRow("the invitation keeps its label and hourglass in every style", inputs,
             "hourglass|New countdown|");

    frameRow("a negative progress, as a count-up has, fills the whole chip", idle(-0.5),
             "hourglass|New countdown||1");
    frameRow("a quarter of the way, and a creep too small to see, leaves three quarters filled",
             idle(0.25004), "hourglass|New countdown||0.75");
    frameRow("progress past the end leaves the chip empty", idle(1.5),
             "hourglass|New countdown||0");
}

void tst_MenubarChipPresentation::buildsFrames()
{
    QFETCH(MenubarChipInputs, inputs);
    QFETCH(MenubarChipPresentation, expected);
    QCOMPARE(MenubarChipPresentation::build(inputs, LanguageTable::load(QStringLiteral("en"))),
             expected);
}

QTEST_GUILESS_MAIN(tst_MenubarChipPresentation)
#include "tst_menubarchippresentation.moc"
