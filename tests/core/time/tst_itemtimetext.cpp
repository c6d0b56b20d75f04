#include "l10n/LanguageTable.h"
#include "records/Event.h"
#include "time/ItemTimeText.h"

#include <QTest>

namespace {

const QDateTime now = QDateTime::fromString(QStringLiteral("2026-03-04T12:00:00Z"), Qt::ISODate);

// An event at `targetUtc` in Istanbul, or on the day of `targetUtc` in `allDayZone`.
Event eventAt(const char *targetUtc, CountdownDirection direction = CountdownDirection::until,
              const char *allDayZone = nullptr)
{
    Event event;
    event.targetDate = QDateTime::fromString(QString::fromLatin1(targetUtc), Qt::ISODate);
    event.includeTime = !allDayZone;
    event.timeZone = QString::fromLatin1(allDayZone ? allDayZone : "Europe/Istanbul");
    event.direction = direction;
    return event;
}

} // namespace

class tst_ItemTimeText : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void text_data();
    void text();
};

void tst_ItemTimeText::text_data()
{
    QTest::addColumn<Event>("event");
    QTest::addColumn<QString>("language");
    QTest::addColumn<CountdownDisplayFormat>("format");
    QTest::addColumn<QString>("expected");

    const auto automatic = CountdownDisplayFormat::automatic;
    QTest::newRow("a countdown ahead shows what is left")
        << eventAt("2026-03-07T16:00:00Z") << "en" << automatic << "3d 4h";
    QTest::newRow("a passed countdown shows the time since with a plus")
        << eventAt("2026-03-04T10:00:00Z") << "en" << automatic << "+2h 0m";
    QTest::newRow("a countdown at its very moment has passed")
        << eventAt("2026-03-04T12:00:00Z") << "en" << automatic << "+0m";
    QTest::newRow("a count-up in days only shows the day count")
        << eventAt("2025-03-01T12:00:00Z", CountdownDirection::since) << "fr"
        << CountdownDisplayFormat::daysOnly << "+368j";
    // 5 March in Auckland starts at 2026-03-04T11:00Z, an hour before now (in Istanbul it would
    // still be nine hours away).
    QTest::newRow("an all-day countdown counts from the start of its day in its own zone")
        << eventAt("2026-03-05T03:00:00Z", CountdownDirection::until, "Pacific/Auckland") << "en"
        << automatic << "+1h 0m";
}

void tst_ItemTimeText::text()
{
    QFETCH(Event, event);
    QFETCH(QString, language);
    QFETCH(CountdownDisplayFormat, format);
    QFETCH(QString, expected);
    QCOMPARE(eventTimeText(event, now, format, LanguageTable::load(language)), expected);
}

QTEST_GUILESS_MAIN(tst_ItemTimeText)
#include "tst_itemtimetext.moc"
