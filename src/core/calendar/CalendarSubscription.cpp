#include "calendar/CalendarSubscription.h"

#include "json/JsonObjectReader.h"
#include "json/JsonWriter.h"

#include <QDir>
#include <QFileInfo>

using namespace Qt::StringLiterals;

QString CalendarSubscription::calendarID() const
{
    return u"ics-"_s + shortID();
}

QString CalendarSubscription::shortID() const
{
    return id.toString(QUuid::WithoutBraces);
}

std::optional<CalendarSubscription> CalendarSubscription::fromJson(const JsonValue &value,
                                                                   QString *error)
{
    if (!value.isObject()) {
        *error = u"a calendar is %1, not an object"_s.arg(describeJsonType(value));
        return std::nullopt;
    }
    JsonObjectReader reader(value, error);
    CalendarSubscription subscription;
    subscription.id = reader.uuid("id"_L1);
    subscription.url = QUrl(reader.string("url"_L1), QUrl::StrictMode);
    subscription.title = reader.optionalString("title"_L1).value_or(QString());
    subscription.addedAt = reader.optionalDate("addedAt"_L1).value_or(QDateTime());
    if (reader.ok() && !subscription.url.isValid())
        reader.fail(u"the calendar link \"%1\" is not valid"_s.arg(subscription.url.toString()));
    if (!reader.ok())
        return std::nullopt;
    return subscription;
}

void CalendarSubscription::toJson(JsonWriter &writer) const
{
    writer.beginObject();
    if (addedAt.isValid())
        writer.key("addedAt"_L1).date(addedAt);
    writer.key("id"_L1).uuid(id);
    if (!title.isEmpty())
        writer.key("title"_L1).string(title);
    writer.key("url"_L1).string(url.toString(QUrl::FullyEncoded));
    writer.endObject();
}

const CalendarSubscription *CalendarSubscriptionList::find(const QUuid &id) const
{
    for (const CalendarSubscription &subscription : subscriptions) {
        if (subscription.id == id)
            return &subscription;
    }
    return nullptr;
}

std::optional<CalendarSubscriptionList> CalendarSubscriptionList::fromJson(const JsonValue &value,
                                                                           QString *error)
{
    if (!value.isObject()) {
        *error = u"the file holds %1, not an object"_s.arg(describeJsonType(value));
        return std::nullopt;
    }
    JsonObjectReader reader(value, error);
    CalendarSubscriptionList list;
    list.userAddresses = reader.optionalStringList("addresses"_L1).value_or(QStringList());
    list.subscriptions = reader.recordList("subscriptions"_L1, CalendarSubscription::fromJson);
    if (!reader.ok())
        return std::nullopt;
    return list;
}

QByteArray CalendarSubscriptionList::toJson() const
{
    JsonWriter writer;
    writer.beginObject();
    writer.key("addresses"_L1).beginArray();
    for (const QString &address : userAddresses)
        writer.string(address);
    writer.endArray();
    writer.key("subscriptions"_L1).beginArray();
    for (const CalendarSubscription &subscription : subscriptions)
        subscription.toJson(writer);
    writer.endArray();
    writer.endObject();
    return writer.finish();
}

std::optional<QUrl> subscriptionURL(const QString &input, const QString &workingDirectory,
                                    QString *error)
{
    const QString text = input.trimmed();
    if (text.isEmpty()) {
        *error = u"give a file or a link"_s;
        return std::nullopt;
    }
    const QUrl url(text, QUrl::StrictMode);
    const QString scheme = url.scheme().toLower();
    QString path;
    if (scheme == u"http" || scheme == u"https" || scheme == u"webcal" || scheme == u"webcals") {
        if (url.host().isEmpty()) {
            *error = u"the link \"%1\" has no host"_s.arg(text);
            return std::nullopt;
        }
        return url.adjusted(QUrl::NormalizePathSegments);
    }
    if (scheme == u"file") {
        path = url.toLocalFile();
    } else if (scheme.size() > 1) {
        *error =
            u"only iCalendar files and http, https or webcal links can be added, not \"%1\""_s.arg(
                text);
        return std::nullopt;
    } else {
        path = text; // a path (a one-letter "scheme" is a drive letter)
    }
    const QFileInfo file(QDir(workingDirectory), path);
    if (!file.exists()) {
        *error = u"no file \"%1\""_s.arg(file.absoluteFilePath());
        return std::nullopt;
    }
    if (!file.isFile() || !file.isReadable()) {
        *error = u"\"%1\" is not a readable file"_s.arg(file.absoluteFilePath());
        return std::nullopt;
    }
    return QUrl::fromLocalFile(file.canonicalFilePath());
}

QString normalizedAddress(const QString &input)
{
    QString address = input.trimmed().toLower();
    if (address.startsWith(u"mailto:"))
        address = address.mid(7).trimmed();
    const qsizetype at = address.indexOf(u'@');
    if (at <= 0 || at == address.size() - 1 || address.contains(u' '))
        return QString();
    return address;
}
