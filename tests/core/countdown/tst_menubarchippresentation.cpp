#include "countdown/MenubarChipPresentation.h"
#include "l10n/LanguageTable.h"

#include <QTest>

#include <cmath>

Q_DECLARE_METATYPE(MenubarChipInputs)

namespace {

const QDateTime kNow = QDateTime::fromString(QStringLiteral("2026-03-01T12:00:00Z"), Qt::ISODate);

QString repeated(const QString &piece, int times)
{
    QString text;
    for (int i = 0; i < times; ++i) {
        text += piece;
    }
    return text;
}

MenubarSubject subject(const QString &title, std::optional<IconRef> icon = std::nullopt)
{
    return MenubarSubject {title, std::move(icon), QTimeZone("Europe/Istanbul")};
}

ReachState countingFor(qint64 seconds)
{
    return ReachState::counting(Remaining::fromInterval(double(seconds)));
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
    void idleLabelFollowsTheLanguage();
};

void tst_MenubarChipPresentation::cutsTitles_data()
{
    QTest::addColumn<QString>("title");
    QTest::addColumn<qint64>("limit");
    QTest::addColumn<QString>("expected");

    const QString ellipsis(QChar(0x2026));
    QTest::newRow("A title of exactly the limit is left as it is")
        << QStringLiteral("Twelve chars") << qint64(12) << QStringLiteral("Twelve chars");
    QTest::newRow("One character over keeps limit minus one characters and an ellipsis")
        << QStringLiteral("Thirteen char") << qint64(12)
        << QString(QStringLiteral("Thirteen ch") + ellipsis);
    QTest::newRow("A space before the cut is dropped before the ellipsis")
        << QStringLiteral("Abcdefghij klmn") << qint64(12)
        << QString(QStringLiteral("Abcdefghij") + ellipsis);
    QTest::newRow("Leading spaces of a cut title are trimmed too")
        << QStringLiteral("  Abcdefghijklmn") << qint64(12)
        << QString(QStringLiteral("Abcdefghi") + ellipsis);
    QTest::newRow("A limit below 12 behaves as 12")
        << QStringLiteral("Thirteen char") << qint64(5)
        << QString(QStringLiteral("Thirteen ch") + ellipsis);
    QTest::newRow("A limit above 24 behaves as 24")
        << repeated(QStringLiteral("x"), 30) << qint64(40)
        << QString(repeated(QStringLiteral("x"), 23) + ellipsis);
    QTest::newRow("Twelve emoji fit a limit of twelve")
        << repeated(QStringLiteral("🎉"), 12) << qint64(12) << repeated(QStringLiteral("🎉"), 12);
    QTest::newRow("Thirteen emoji are cut after eleven, never inside a surrogate pair")
        << repeated(QStringLiteral("🎉"), 13) << qint64(12)
        << QString(repeated(QStringLiteral("🎉"), 11) + ellipsis);
    QTest::newRow("A family emoji joined by zero-width joiners counts as one character")
        << QString(QStringLiteral("👨‍👩‍👧 Family picnic")) << qint64(16)
        << QString(QStringLiteral("👨‍👩‍👧 Family picnic"));
    QTest::newRow("A letter with a combining accent counts as one character")
        << repeated(QStringLiteral("e\u0301"), 13) << qint64(12)
        << QString(repeated(QStringLiteral("e\u0301"), 11) + ellipsis);
    QTest::newRow("A flag of two regional indicators counts as one character")
        << QString(repeated(QStringLiteral("🇹🇷"), 13)) << qint64(12)
        << QString(repeated(QStringLiteral("🇹🇷"), 11) + ellipsis);
    QTest::newRow("An empty title stays empty") << QString() << qint64(16) << QString();
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
    QTest::addColumn<QString>("symbol");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("detail");

    const QString check(QChar(0x2713));
    MenubarChipInputs dentist;
    dentist.subject =
        subject(QStringLiteral("Dentist"), IconRef::named(QStringLiteral("star.fill")));
    dentist.state = countingFor(90061);
    dentist.progress = 0.25;

    MenubarChipInputs inputs = dentist;
    QTest::newRow("Full style shows the symbol, the title and the time left")
        << inputs << "star.fill"
        << "Dentist"
        << "1d 1h";
    inputs.style = MenubarStyle::compact;
    QTest::newRow("Compact style leaves the title out") << inputs << "star.fill"
                                                        << ""
                                                        << "1d 1h";
    inputs.style = MenubarStyle::titleOnly;
    QTest::newRow("Title-only style leaves the time out") << inputs << "star.fill"
                                                          << "Dentist"
                                                          << "";
    inputs.style = MenubarStyle::iconOnly;
    QTest::newRow("Icon-only style shows just the symbol") << inputs << "star.fill"
                                                           << ""
                                                           << "";

    inputs = dentist;
    inputs.subject->title = QStringLiteral("Appointment with the dentist");
    inputs.titleLength = 12;
    QTest::newRow("A long title is cut to the chosen length")
        << inputs << "star.fill" << QString(QStringLiteral("Appointment") + QChar(0x2026))
        << "1d 1h";

    inputs = dentist;
    inputs.state = ReachState::reached(kNow);
    QTest::newRow("A reached holder shows a check mark in full style") << inputs << "star.fill"
                                                                       << "Dentist" << check;
    inputs.style = MenubarStyle::compact;
    QTest::newRow("A reached holder shows a check mark in compact style") << inputs << "star.fill"
                                                                          << "" << check;
    inputs.style = MenubarStyle::titleOnly;
    QTest::newRow("A reached holder in title-only style shows no mark") << inputs << "star.fill"
                                                                        << "Dentist"
                                                                        << "";
    inputs = dentist;
    inputs.state = ReachState::acknowledged();
    QTest::newRow("An acknowledged holder shows a check mark") << inputs << "star.fill"
                                                               << "Dentist" << check;

    inputs = dentist;
    inputs.state = ReachState::elapsed(kNow.addSecs(-(3 * 86400 + 4 * 3600)), kNow);
    QTest::newRow("A count-up shows a plus before the time passed") << inputs << "star.fill"
                                                                    << "Dentist"
                                                                    << "+3d 4h";
    inputs.state = ReachState::elapsed(kNow.addYears(-1).addDays(-3), kNow);
    QTest::newRow("A count-up over a year counts calendar years") << inputs << "star.fill"
                                                                  << "Dentist"
                                                                  << "+1y 3d";

    inputs = dentist;
    inputs.state = countingFor(16 * 86400);
    inputs.displayFormat = CountdownDisplayFormat::weeksDays;
    QTest::newRow("The weeks-and-days format writes weeks") << inputs << "star.fill"
                                                            << "Dentist"
                                                            << "2w 2d";
    inputs.state = countingFor(59);
    QTest::newRow("The last minute counts in clock form") << inputs << "star.fill"
                                                          << "Dentist"
                                                          << "0:59";

    inputs = dentist;
    inputs.subject->icon = std::nullopt;
    QTest::newRow("A holder without an icon shows the hourglass") << inputs << "hourglass"
                                                                  << "Dentist"
                                                                  << "1d 1h";
    inputs.previewIcon = IconRef::named(QStringLiteral("gift.fill"));
    QTest::newRow("A previewed icon replaces the holder's icon") << inputs << "gift.fill"
                                                                 << "Dentist"
                                                                 << "1d 1h";

    MenubarChipInputs idle;
    QTest::newRow("With nothing to show the chip invites a new countdown") << idle << "hourglass"
                                                                           << "New countdown"
                                                                           << "";
    idle.style = MenubarStyle::iconOnly;
    idle.previewIcon = IconRef::named(QStringLiteral("gift.fill"));
    QTest::newRow("The idle invitation keeps its label and hourglass in every style")
        << idle << "hourglass"
        << "New countdown"
        << "";
}

void tst_MenubarChipPresentation::buildsFrames()
{
    QFETCH(MenubarChipInputs, inputs);
    QFETCH(QString, symbol);
    QFETCH(QString, title);
    QFETCH(QString, detail);

    const MenubarChipPresentation frame =
        MenubarChipPresentation::build(inputs, LanguageTable::load(QStringLiteral("en")));
    QCOMPARE(frame.symbolName, symbol);
    QCOMPARE(frame.title, title);
    QCOMPARE(frame.detail, detail);
}

void tst_MenubarChipPresentation::fillsFromProgress_data()
{
    QTest::addColumn<double>("progress");
    QTest::addColumn<double>("remaining");

    QTest::newRow("No progress yet fills the whole chip") << 0.0 << 1.0;
    QTest::newRow("A negative progress fills the whole chip") << -0.5 << 1.0;
    QTest::newRow("A quarter of the way leaves three quarters filled") << 0.25 << 0.75;
    QTest::newRow("Arrival leaves the chip empty") << 1.0 << 0.0;
    QTest::newRow("Progress past the end leaves the chip empty") << 1.5 << 0.0;
    QTest::newRow("A progress that is not a number fills the whole chip") << std::nan("") << 1.0;
}

void tst_MenubarChipPresentation::fillsFromProgress()
{
    QFETCH(double, progress);
    QFETCH(double, remaining);
    MenubarChipInputs inputs;
    inputs.progress = progress;
    QCOMPARE(MenubarChipPresentation::build(inputs, LanguageTable()).remaining, remaining);
}

void tst_MenubarChipPresentation::idleLabelFollowsTheLanguage()
{
    const MenubarChipInputs idle;
    const MenubarChipPresentation english =
        MenubarChipPresentation::build(idle, LanguageTable::load(QStringLiteral("en")));
    const MenubarChipPresentation turkish =
        MenubarChipPresentation::build(idle, LanguageTable::load(QStringLiteral("tr")));
    QCOMPARE(turkish.title, QStringLiteral("Yeni geri sayım"));
    QVERIFY(english != turkish);
}

QTEST_GUILESS_MAIN(tst_MenubarChipPresentation)
#include "tst_menubarchippresentation.moc"
