#include "l10n/LanguageTable.h"
#include "records/Event.h"
#include "time/ItemTimeText.h"

#include <QTest>

namespace {

const QDateTime now = QDateTime::fromString(QStringLiteral("2026-03-04T12:00:00Z"), Qt::ISODate);

Event makeEvent(const char *targetUtc, bool includeTime, CountdownDirection direction,
                const char *zone = "Europe/Istanbul")
{
    Event event;
    event.id = QUuid::createUuid();
    event.title = QStringLiteral("Trip");
    event.targetDate = QDateTime::fromString(QString::fromLatin1(targetUtc), Qt::ISODate);
    event.includeTime = includeTime;
    event.timeZone = QString::fromLatin1(zone);
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
    QTest::addColumn<CountdownDisplayFormat>("format");
    QTest::addColumn<QString>("language");
    QTest::addColumn<QString>("expected");

    const auto until = CountdownDirection::until;
    const auto since = CountdownDirection::since;
    const auto automatic = CountdownDisplayFormat::automatic;

    QTest::newRow("a countdown ahead shows what is left")
        << makeEvent("2026-03-07T16:00:00Z", true, until) << automatic << "en"
        << "3d 4h";
    QTest::newRow("a passed countdown shows the time since with a plus")
        << makeEvent("2026-03-04T10:00:00Z", true, until) << automatic << "en"
        << "+2h 0m";
    QTest::newRow("a countdown at its very moment has passed")
        << makeEvent("2026-03-04T12:00:00Z", true, until) << automatic << "en"
        << "+0m";
    QTest::newRow("a count-up shows calendar years and days")
        << makeEvent("2025-03-01T12:00:00Z", true, since) << automatic << "tr"
        << "+1y 3g";
    QTest::newRow("a count-up in days only shows the day count")
        << makeEvent("2025-03-01T12:00:00Z", true, since) << CountdownDisplayFormat::daysOnly
        << "fr"
        << "+368j";
    // 5 March in Auckland starts at 2026-03-04T11:00Z, an hour before now.
    QTest::newRow("an all-day countdown counts from the start of its day in its own zone")
        << makeEvent("2026-03-05T03:00:00Z", false, until, "Pacific/Auckland") << automatic << "en"
        << "+1h 0m";
    QTest::newRow("an all-day countdown in Kolkata is still ahead")
        << makeEvent("2026-03-05T03:00:00Z", false, until, "Asia/Kolkata") << automatic << "en"
        << "6h 30m";
}

void tst_ItemTimeText::text()
{
    QFETCH(Event, event);
    QFETCH(CountdownDisplayFormat, format);
    QFETCH(QString, language);
    QFETCH(QString, expected);
    QCOMPARE(eventTimeText(event, now, format, LanguageTable::load(language)), expected);
}

QTEST_GUILESS_MAIN(tst_ItemTimeText)
#include "tst_itemtimetext.moc"
