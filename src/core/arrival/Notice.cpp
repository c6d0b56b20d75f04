#include "arrival/Notice.h"

#include "l10n/LanguageTable.h"
#include "time/CountdownFormatter.h"

namespace {

QString prefix(Notice::Kind kind)
{
    switch (kind) {
    case Notice::Kind::arrival:
        return QStringLiteral("tarrow.reached.");
    case Notice::Kind::reminder:
        return QStringLiteral("tarrow.reminder.");
    case Notice::Kind::milestone:
        return QStringLiteral("tarrow.milestone.");
    }
    return QString();
}

} // namespace

Notice Notice::arrival(const Event &record, const std::optional<CountdownID> &item,
                       const LanguageTable &table)
{
    Notice notice;
    notice.kind = Kind::arrival;
    notice.identifier = identifierFor(Kind::arrival, record.id);
    notice.title = record.title;
    notice.body = table.text("notification.reached.body");
    notice.link = parseLink(record.link);
    notice.item = item;
    return notice;
}

Notice Notice::reminder(const QUuid &noticeID, const QString &title, const QDateTime &target,
                        const QDateTime &now, const QTimeZone &zone,
                        const std::optional<QString> &link, const CountdownID &item,
                        const LanguageTable &table)
{
    Notice notice;
    notice.kind = Kind::reminder;
    notice.identifier = identifierFor(Kind::reminder, noticeID);
    notice.title = title;
    // Whole minutes, rounded up, so "in 15 minutes" at the reminder's own moment.
    const qint64 seconds = now.secsTo(target);
    const QDateTime from = target.addSecs(-((seconds + 59) / 60) * 60);
    notice.body = table.format("notification.reminder.body %@",
                               {CountdownFormatter::detail(from, target, zone, 2, table)});
    notice.link = parseLink(link);
    notice.item = item;
    return notice;
}

std::optional<QUrl> Notice::parseLink(const std::optional<QString> &link)
{
    if (!link)
        return std::nullopt;
    const QUrl url(link->trimmed(), QUrl::StrictMode);
    if (!url.isValid() || url.scheme().isEmpty() || url.isRelative())
        return std::nullopt;
    return url;
}

QString Notice::identifierFor(Kind kind, const QUuid &id)
{
    return prefix(kind) + id.toString(QUuid::WithoutBraces).toUpper();
}

QUuid noticeIDForSeries(const CalendarSeriesRef &series)
{
    static const QUuid seriesNamespace(QStringLiteral("7f1d3c52-9a4e-4f0b-8a51-3e2b6c0d9f17"));
    return QUuid::createUuidV5(seriesNamespace, series.calendarID + u'\n' + series.seriesID);
}
