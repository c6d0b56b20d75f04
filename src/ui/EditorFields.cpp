#include "ui/EditorFields.h"

#include <QRegularExpression>
#include <QUrl>

QString EditorFields::dateFormat(const QLocale &locale)
{
    // The short form with the year written out, so a date reads back as the same year.
    QString format = locale.dateFormat(QLocale::ShortFormat);
    if (!format.contains(u"yyyy"))
        format.replace(QRegularExpression(QStringLiteral("y+")), QStringLiteral("yyyy"));
    return format;
}

QString EditorFields::formatDate(const QDate &date, const QLocale &locale)
{
    return date.isValid() ? locale.toString(date, dateFormat(locale)) : QString();
}

QString EditorFields::formatTime(const QTime &time, const QLocale &locale)
{
    return time.isValid() ? locale.toString(time, QLocale::ShortFormat) : QString();
}

QDate EditorFields::parseDate(const QString &text, const QLocale &locale, const DateWords &words)
{
    const QString trimmed = text.trimmed();
    if (trimmed.isEmpty())
        return {};
    for (const QString &format :
         {dateFormat(locale), QStringLiteral("yyyy-MM-dd"), locale.dateFormat(QLocale::ShortFormat),
          QStringLiteral("d MMM yyyy"), QStringLiteral("d MMMM yyyy")}) {
        const QDate date = locale.toDate(trimmed, format);
        if (date.isValid())
            return date;
    }
    // Day-first and month-first numeric forms that do not fit the locale's own form are refused
    // rather than guessed; words such as "tomorrow" or "3 June" go to the parser.
    if (words) {
        bool hasTime = false;
        if (const std::optional<QDateTime> found = words(trimmed, &hasTime))
            return found->date();
    }
    return {};
}

QTime EditorFields::parseTime(const QString &text, const QLocale &locale, const DateWords &words)
{
    const QString trimmed = text.trimmed();
    if (trimmed.isEmpty())
        return {};
    for (const QString &format :
         {locale.timeFormat(QLocale::ShortFormat), QStringLiteral("H:mm"), QStringLiteral("H.mm"),
          QStringLiteral("h:mm AP"), QStringLiteral("h:mmAP"), QStringLiteral("H")}) {
        const QTime time = locale.toTime(trimmed, format);
        if (time.isValid())
            return time;
    }
    if (words) {
        // The parser reads a bare "3pm" only as a time phrase, with its "at".
        bool hasTime = false;
        for (const QString &phrase : {trimmed, QString(QStringLiteral("at ") + trimmed)}) {
            const std::optional<QDateTime> found = words(phrase, &hasTime);
            if (found && hasTime)
                return found->time();
        }
    }
    return {};
}

bool EditorFields::isLink(const QString &text)
{
    const QString trimmed = text.trimmed();
    if (trimmed.isEmpty() || trimmed.contains(QRegularExpression(QStringLiteral("\\s"))))
        return false;
    const QUrl url(trimmed, QUrl::StrictMode);
    const QString scheme = url.scheme().toLower();
    if (url.isValid() && (scheme == u"mailto" || scheme == u"tel"))
        return !url.path().isEmpty();
    if (url.isValid() && !scheme.isEmpty() && trimmed.contains(u"://"))
        return !url.host().isEmpty();
    // No scheme: a host name with a dot and a top-level domain, maybe with a path.
    static const QRegularExpression webAddress(
        QStringLiteral("^(?:[a-z0-9-]+\\.)+[a-z]{2,}(?::\\d+)?(?:[/?#].*)?$"),
        QRegularExpression::CaseInsensitiveOption);
    return webAddress.match(trimmed).hasMatch();
}
