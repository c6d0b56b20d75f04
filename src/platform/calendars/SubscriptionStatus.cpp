#include "platform/calendars/SubscriptionStatus.h"

#include "l10n/LanguageTable.h"
#include "json/JsonObjectReader.h"
#include "json/JsonWriter.h"

#include <array>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

const std::array<std::pair<SubscriptionProblem, const char *>, 8> problemNames {{
    {SubscriptionProblem::none, "none"},
    {SubscriptionProblem::unreachable, "unreachable"},
    {SubscriptionProblem::timedOut, "timedOut"},
    {SubscriptionProblem::httpStatus, "httpStatus"},
    {SubscriptionProblem::tooLarge, "tooLarge"},
    {SubscriptionProblem::notCalendar, "notCalendar"},
    {SubscriptionProblem::redirectRefused, "redirectRefused"},
    {SubscriptionProblem::fileUnreadable, "fileUnreadable"},
}};

} // namespace

QString problemRawValue(SubscriptionProblem problem)
{
    for (const auto &[value, name] : problemNames) {
        if (value == problem)
            return QString::fromLatin1(name);
    }
    return u"none"_s;
}

std::optional<SubscriptionProblem> problemFromRaw(QStringView raw)
{
    for (const auto &[value, name] : problemNames) {
        if (raw == QLatin1StringView(name))
            return value;
    }
    return std::nullopt;
}

QString problemTextKey(SubscriptionProblem problem)
{
    switch (problem) {
    case SubscriptionProblem::none:
        break;
    case SubscriptionProblem::unreachable:
        return u"calendars.error.unreachable %@"_s;
    case SubscriptionProblem::timedOut:
        return u"calendars.error.timeout"_s;
    case SubscriptionProblem::httpStatus:
        return u"calendars.error.http %@"_s;
    case SubscriptionProblem::tooLarge:
        return u"calendars.error.too_large %@"_s;
    case SubscriptionProblem::notCalendar:
        return u"calendars.error.not_calendar"_s;
    case SubscriptionProblem::redirectRefused:
        return u"calendars.error.redirect %@"_s;
    case SubscriptionProblem::fileUnreadable:
        return u"calendars.error.file %@"_s;
    }
    return QString();
}

SubscriptionStatus SubscriptionStatus::fromJson(const JsonValue &value)
{
    SubscriptionStatus status;
    if (!value.isObject())
        return status;
    QString ignored;
    // Each key on its own: a bad one costs only itself.
    const auto date = [&](QLatin1StringView key) {
        JsonObjectReader one(value, &ignored);
        return one.optionalDate(key).value_or(QDateTime());
    };
    const auto string = [&](QLatin1StringView key) {
        JsonObjectReader one(value, &ignored);
        return one.optionalString(key).value_or(QString());
    };
    status.lastSuccess = date("lastSuccess"_L1);
    status.lastAttempt = date("lastAttempt"_L1);
    status.problem = problemFromRaw(string("problem"_L1)).value_or(SubscriptionProblem::none);
    status.detail = string("detail"_L1);
    status.etag = string("etag"_L1);
    status.lastModified = string("lastModified"_L1);
    return status;
}

QByteArray SubscriptionStatus::toJson() const
{
    JsonWriter writer;
    writer.beginObject();
    if (!detail.isEmpty())
        writer.key("detail"_L1).string(detail);
    if (!etag.isEmpty())
        writer.key("etag"_L1).string(etag);
    if (lastAttempt.isValid())
        writer.key("lastAttempt"_L1).date(lastAttempt);
    if (!lastModified.isEmpty())
        writer.key("lastModified"_L1).string(lastModified);
    if (lastSuccess.isValid())
        writer.key("lastSuccess"_L1).date(lastSuccess);
    writer.key("problem"_L1).string(problemRawValue(problem));
    writer.endObject();
    return writer.finish();
}

QString problemMessage(const SubscriptionStatus &status, const LanguageTable &texts)
{
    const QString key = problemTextKey(status.problem);
    if (key.isEmpty())
        return QString();
    return texts.format(key, {status.detail});
}
