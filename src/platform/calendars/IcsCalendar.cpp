#include "platform/calendars/IcsCalendar.h"

#include "calendar/CalendarRules.h"
#include "platform/calendars/IcsEventDetails.h"

#include <QColor>
#include <QCryptographicHash>
#include <QHash>

#include <libical/ical.h>

#include <algorithm>
#include <mutex>
#include <set>

using namespace Qt::StringLiterals;

namespace {

// Past this many steps a rule is given up (a minutely rule from decades ago, a broken rule).
constexpr int maxRuleSteps = 200'000;

// libical expands a zone's changes from its first observance up to the year asked for, so a year
// far away (an end in the year 4050) costs a walk through every change before it. Times outside
// these years are read as UTC: hours of offset do not matter that far out.
constexpr int firstZonedYear = 1900;
constexpr int lastZonedYear = 2200;

// Real zones change their offset at most a few times a year. A VTIMEZONE whose observances repeat
// more often (hourly, daily) is refused, since expanding it would take libical minutes.
bool observancesRepeatYearly(icaltimezone *zone)
{
    icalcomponent *vtimezone = icaltimezone_get_component(zone);
    if (!vtimezone)
        return true;
    for (icalcomponent *observance =
             icalcomponent_get_first_component(vtimezone, ICAL_ANY_COMPONENT);
         observance; observance = icalcomponent_get_next_component(vtimezone, ICAL_ANY_COMPONENT)) {
        for (icalproperty *rule = icalcomponent_get_first_property(observance, ICAL_RRULE_PROPERTY);
             rule; rule = icalcomponent_get_next_property(observance, ICAL_RRULE_PROPERTY)) {
            const icalrecurrencetype recurrence = icalproperty_get_rrule(rule);
            if (recurrence.freq != ICAL_YEARLY_RECURRENCE || recurrence.interval > 1
                || recurrence.by_hour[0] != ICAL_RECURRENCE_ARRAY_MAX
                || recurrence.by_minute[0] != ICAL_RECURRENCE_ARRAY_MAX)
                return false;
        }
    }
    return true;
}

QString text(const char *utf8)
{
    return utf8 ? QString::fromUtf8(utf8) : QString();
}

const char *tzidOf(icalproperty *property)
{
    icalparameter *parameter =
        property ? icalproperty_get_first_parameter(property, ICAL_TZID_PARAMETER) : nullptr;
    return parameter ? icalparameter_get_tzid(parameter) : nullptr;
}

// libical's errors are reported, never fatal; set once for the process.
void quietLibical()
{
    static std::once_flag once;
    std::call_once(once, [] { icalerror_set_errors_are_fatal(0); });
}

// Where a time of the file stands: in UTC, in a zone, or floating (then in the local zone).
struct Zone
{
    enum class Kind { utc, ical, qt, floating } kind = Kind::floating;
    icaltimezone *ical = nullptr;
    QTimeZone qt;
    QString id; // IANA identifier for the occurrence's time zone
};

} // namespace

struct IcsCalendar::Series
{
    QString id;
    std::vector<icalcomponent *> masters;
    std::vector<icalcomponent *> overrides;
};

// One read of the document: zone look-ups are remembered for its duration.
class IcsCalendar::Expansion
{
public:
    Expansion(const IcsCalendar &calendar, const IcsReadContext &context, const QDateTime &from,
              const QDateTime &to)
        : m_calendar(calendar)
        , m_context(context)
        , m_fromMSecs(from.toMSecsSinceEpoch())
        , m_toMSecs(to.toMSecsSinceEpoch())
    {
        m_localZoneID = QString::fromUtf8(context.localZone.id());
        const QByteArray floating = ianaZoneID(calendar.m_floatingZoneID.toUtf8());
        if (!floating.isEmpty()) {
            m_floating.kind = Zone::Kind::qt;
            m_floating.qt = QTimeZone(floating);
            m_floating.id = QString::fromUtf8(floating);
        } else {
            m_floating.qt = context.localZone;
            m_floating.id = m_localZoneID;
        }
    }

    void expand(const Series &series, QList<ProviderOccurrence> &out);

private:
    struct Moment
    {
        icaltimetype local; // as written, in its zone
        Zone zone;
    };

    const Zone &zoneFor(icalproperty *property, const icaltimetype &time);
    Moment moment(icalproperty *property, icaltimetype time)
    {
        return {time, zoneFor(property, time)};
    }
    qint64 msecs(const Moment &moment) const;
    // The key an instance is matched by against EXDATE and RECURRENCE-ID: the day of a date,
    // else the instant.
    qint64 key(const Moment &moment) const;
    QString zoneID(const Moment &moment) const;

    void emitOccurrence(const Series &series, icalcomponent *event, icalcomponent *master,
                        const Moment &start, qint64 durationMSecs, const Moment &scheduled,
                        bool recurring, QList<ProviderOccurrence> &out);
    void addInstances(icalcomponent *master, const Moment &start, qint64 durationMSecs,
                      std::vector<Moment> &instances);

    const IcsCalendar &m_calendar;
    const IcsReadContext &m_context;
    qint64 m_fromMSecs;
    qint64 m_toMSecs;
    QString m_localZoneID;
    Zone m_floating;
    QHash<QByteArray, Zone> m_zones;
};

const Zone &IcsCalendar::Expansion::zoneFor(icalproperty *property, const icaltimetype &time)
{
    static const Zone utc {Zone::Kind::utc, nullptr, QTimeZone::utc(), u"UTC"_s};
    if (icaltime_is_utc(time))
        return utc;
    const QByteArray tzid = QByteArray(tzidOf(property));
    if (tzid.isEmpty())
        return m_floating;
    auto found = m_zones.constFind(tzid);
    if (found != m_zones.cend())
        return *found;

    Zone zone;
    icaltimezone *ical = icalcomponent_get_timezone(m_calendar.m_root, tzid.constData());
    if (ical && !observancesRepeatYearly(ical))
        ical = nullptr;
    if (!ical)
        ical = icaltimezone_get_builtin_timezone_from_tzid(tzid.constData());
    if (!ical)
        ical = icaltimezone_get_builtin_timezone(tzid.constData());
    const QByteArray iana = ianaZoneID(tzid);
    if (!ical && !iana.isEmpty())
        ical = icaltimezone_get_builtin_timezone(iana.constData());
    if (ical) {
        zone.kind = Zone::Kind::ical;
        zone.ical = ical;
        QByteArray location = QByteArray(icaltimezone_get_location(ical));
        zone.id = QString::fromUtf8(!ianaZoneID(location).isEmpty() ? ianaZoneID(location) : iana);
    } else if (!iana.isEmpty()) {
        zone.kind = Zone::Kind::qt;
        zone.qt = QTimeZone(iana);
        zone.id = QString::fromUtf8(iana);
    } else {
        zone = m_floating; // an unknown zone: read as floating
    }
    if (zone.id.isEmpty())
        zone.id = m_localZoneID;
    return *m_zones.insert(tzid, zone);
}

qint64 IcsCalendar::Expansion::msecs(const Moment &moment) const
{
    const icaltimetype &t = moment.local;
    const QDate date(t.year, t.month, t.day);
    if (t.is_date)
        return QDateTime(date, QTime(0, 0), m_context.localZone).toMSecsSinceEpoch();
    const bool farYear = t.year < firstZonedYear || t.year > lastZonedYear;
    switch (farYear ? Zone::Kind::utc : moment.zone.kind) {
    case Zone::Kind::utc:
        return QDateTime(date, QTime(t.hour, t.minute, t.second), Qt::UTC).toMSecsSinceEpoch();
    case Zone::Kind::ical:
        return qint64(icaltime_as_timet_with_zone(t, moment.zone.ical)) * 1000;
    case Zone::Kind::qt:
    case Zone::Kind::floating:
        break;
    }
    const QTimeZone zone = moment.zone.kind == Zone::Kind::qt ? moment.zone.qt : m_floating.qt;
    return QDateTime(date, QTime(t.hour, t.minute, t.second), zone).toMSecsSinceEpoch();
}

qint64 IcsCalendar::Expansion::key(const Moment &moment) const
{
    if (moment.local.is_date)
        return QDate(moment.local.year, moment.local.month, moment.local.day).toJulianDay();
    return msecs(moment);
}

QString IcsCalendar::Expansion::zoneID(const Moment &moment) const
{
    return moment.local.is_date ? m_localZoneID : moment.zone.id;
}

void IcsCalendar::Expansion::addInstances(icalcomponent *master, const Moment &start,
                                          qint64 durationMSecs, std::vector<Moment> &instances)
{
    // A rule steps in the wall time of DTSTART's zone, so 09:00 stays 09:00 across DST.
    icaltimetype dtstart = start.local;
    if (start.zone.kind == Zone::Kind::ical)
        icaltime_set_timezone(&dtstart, start.zone.ical);
    const qint64 earliest = m_fromMSecs - durationMSecs;
    for (icalproperty *rule = icalcomponent_get_first_property(master, ICAL_RRULE_PROPERTY); rule;
         rule = icalcomponent_get_next_property(master, ICAL_RRULE_PROPERTY)) {
        const icalrecurrencetype recurrence = icalproperty_get_rrule(rule);
        // A rule that ended before the window adds nothing; stepping through it from a DTSTART
        // centuries ago would cost the whole step budget. (UNTIL is read in DTSTART's zone, so
        // a day of margin covers any offset.)
        if (!icaltime_is_null_time(recurrence.until)
            && msecs({recurrence.until, start.zone}) < earliest - 86'400'000)
            continue;
        icalrecur_iterator *iterator = icalrecur_iterator_new(recurrence, dtstart);
        if (!iterator)
            continue;
        // Without COUNT the iterator can start near the window instead of at DTSTART.
        icaltimezone *stepZone = start.zone.kind == Zone::Kind::ical ? start.zone.ical
            : start.zone.kind == Zone::Kind::utc ? icaltimezone_get_utc_timezone()
                                                 : nullptr;
        if (recurrence.count == 0 && stepZone && !dtstart.is_date
            && msecs(start) < earliest - 86'400'000) {
            const icaltimetype jump =
                icaltime_from_timet_with_zone(time_t((earliest - 86'400'000) / 1000), 0, stepZone);
            icalrecur_iterator_set_start(iterator, jump);
        }
        for (int step = 0; step < maxRuleSteps; ++step) {
            const icaltimetype next = icalrecur_iterator_next(iterator);
            if (icaltime_is_null_time(next))
                break;
            const Moment instance {next, start.zone};
            const qint64 at = msecs(instance);
            if (at >= m_toMSecs)
                break;
            if (at + std::max<qint64>(durationMSecs, 1) > m_fromMSecs)
                instances.push_back(instance);
        }
        icalrecur_iterator_free(iterator);
    }
    for (icalproperty *rdate = icalcomponent_get_first_property(master, ICAL_RDATE_PROPERTY); rdate;
         rdate = icalcomponent_get_next_property(master, ICAL_RDATE_PROPERTY)) {
        const icaldatetimeperiodtype value = icalproperty_get_rdate(rdate);
        const icaltimetype time =
            icaltime_is_null_time(value.time) ? value.period.start : value.time;
        if (icaltime_is_null_time(time))
            continue;
        instances.push_back(moment(rdate, time));
    }
}

void IcsCalendar::Expansion::expand(const Series &series, QList<ProviderOccurrence> &out)
{
    // Overrides by the instance they replace.
    QHash<qint64, icalcomponent *> overrides;
    for (icalcomponent *override : series.overrides) {
        icalproperty *property =
            icalcomponent_get_first_property(override, ICAL_RECURRENCEID_PROPERTY);
        overrides.insert(key(moment(property, icalproperty_get_recurrenceid(property))), override);
    }

    icalcomponent *firstMaster = series.masters.empty() ? nullptr : series.masters.front();
    for (icalcomponent *master : series.masters) {
        icalproperty *startProperty =
            icalcomponent_get_first_property(master, ICAL_DTSTART_PROPERTY);
        if (!startProperty)
            continue;
        const Moment start = moment(startProperty, icalproperty_get_dtstart(startProperty));
        const qint64 duration = [&]() -> qint64 {
            if (icalproperty *end = icalcomponent_get_first_property(master, ICAL_DTEND_PROPERTY))
                return std::max<qint64>(
                    0, msecs(moment(end, icalproperty_get_dtend(end))) - msecs(start));
            if (icalproperty *length =
                    icalcomponent_get_first_property(master, ICAL_DURATION_PROPERTY))
                return qint64(icaldurationtype_as_int(icalproperty_get_duration(length))) * 1000;
            return start.local.is_date ? 86'400'000 : 0;
        }();

        const bool recurring = icalcomponent_get_first_property(master, ICAL_RRULE_PROPERTY)
            || icalcomponent_get_first_property(master, ICAL_RDATE_PROPERTY);
        std::vector<Moment> instances;
        if (recurring)
            addInstances(master, start, duration, instances);
        instances.push_back(start); // DTSTART is always the first instance

        std::set<qint64> excluded;
        for (icalproperty *exdate = icalcomponent_get_first_property(master, ICAL_EXDATE_PROPERTY);
             exdate; exdate = icalcomponent_get_next_property(master, ICAL_EXDATE_PROPERTY))
            excluded.insert(key(moment(exdate, icalproperty_get_exdate(exdate))));

        std::set<qint64> seen;
        for (const Moment &instance : instances) {
            const qint64 instanceKey = key(instance);
            if (!seen.insert(instanceKey).second || excluded.count(instanceKey)
                || overrides.contains(instanceKey))
                continue;
            const qint64 at = msecs(instance);
            if (at >= m_toMSecs || at + std::max<qint64>(duration, 1) <= m_fromMSecs)
                continue;
            emitOccurrence(series, master, master, instance, duration, instance, recurring, out);
        }
    }

    // An override counts where it now stands, even when the instance it replaces is outside the
    // window.
    for (icalcomponent *override : series.overrides) {
        icalproperty *startProperty =
            icalcomponent_get_first_property(override, ICAL_DTSTART_PROPERTY);
        icalproperty *idProperty =
            icalcomponent_get_first_property(override, ICAL_RECURRENCEID_PROPERTY);
        const Moment scheduled = moment(idProperty, icalproperty_get_recurrenceid(idProperty));
        const Moment start = startProperty
            ? moment(startProperty, icalproperty_get_dtstart(startProperty))
            : scheduled;
        qint64 duration = start.local.is_date ? 86'400'000 : 0;
        if (icalproperty *end = icalcomponent_get_first_property(override, ICAL_DTEND_PROPERTY))
            duration =
                std::max<qint64>(0, msecs(moment(end, icalproperty_get_dtend(end))) - msecs(start));
        else if (icalproperty *length =
                     icalcomponent_get_first_property(override, ICAL_DURATION_PROPERTY))
            duration = qint64(icaldurationtype_as_int(icalproperty_get_duration(length))) * 1000;
        const qint64 at = msecs(start);
        if (at >= m_toMSecs || at + std::max<qint64>(duration, 1) <= m_fromMSecs)
            continue;
        emitOccurrence(series, override, firstMaster ? firstMaster : override, start, duration,
                       scheduled, true, out);
    }
}

void IcsCalendar::Expansion::emitOccurrence(const Series &series, icalcomponent *event,
                                            icalcomponent *master, const Moment &start,
                                            qint64 durationMSecs, const Moment &scheduled,
                                            bool recurring, QList<ProviderOccurrence> &out)
{
    ProviderOccurrence occurrence;
    occurrence.ref.series = {m_context.calendarID, series.id};
    occurrence.ref.occurrenceDate = QDateTime::fromMSecsSinceEpoch(msecs(scheduled), Qt::UTC);
    occurrence.start = QDateTime::fromMSecsSinceEpoch(msecs(start), Qt::UTC);
    if (durationMSecs > 0)
        occurrence.end = occurrence.start.addMSecs(durationMSecs);
    occurrence.isAllDay = start.local.is_date;
    occurrence.timeZoneID = zoneID(start);
    occurrence.calendarID = m_context.calendarID;
    occurrence.calendarTitle = m_context.calendarTitle;
    occurrence.accountTitle = m_context.accountTitle;
    occurrence.tint = m_context.tint;
    occurrence.isRecurring = recurring;

    readEventDetails(event, master, m_context.userAddresses, occurrence);
    out.append(std::move(occurrence));
}

IcsCalendar::~IcsCalendar()
{
    if (m_root)
        icalcomponent_free(m_root);
}

std::shared_ptr<IcsCalendar> IcsCalendar::parse(const QByteArray &bytes, QString *error)
{
    quietLibical();
    if (!bytes.contains("BEGIN:VCALENDAR")) {
        *error = u"not an iCalendar file"_s;
        return nullptr;
    }
    icalcomponent *root = icalparser_parse_string(bytes.constData());
    if (!root) {
        *error = u"not an iCalendar file"_s;
        return nullptr;
    }
    std::shared_ptr<IcsCalendar> calendar(new IcsCalendar);
    calendar->m_root = root;

    // One VCALENDAR, or several under an XROOT.
    std::vector<icalcomponent *> calendars;
    if (icalcomponent_isa(root) == ICAL_VCALENDAR_COMPONENT) {
        calendars.push_back(root);
    } else {
        for (icalcomponent *c = icalcomponent_get_first_component(root, ICAL_VCALENDAR_COMPONENT);
             c; c = icalcomponent_get_next_component(root, ICAL_VCALENDAR_COMPONENT))
            calendars.push_back(c);
    }
    if (calendars.empty()) {
        *error = u"not an iCalendar file"_s;
        return nullptr;
    }

    QHash<QString, size_t> seriesIndex;
    for (icalcomponent *vcalendar : calendars) {
        for (icalproperty *p = icalcomponent_get_first_property(vcalendar, ICAL_ANY_PROPERTY); p;
             p = icalcomponent_get_next_property(vcalendar, ICAL_ANY_PROPERTY)) {
            const QByteArray name = QByteArray(icalproperty_get_property_name(p)).toUpper();
            const QString value = text(icalproperty_get_value_as_string(p)).trimmed();
            if ((name == "X-WR-CALNAME" || name == "NAME") && calendar->m_name.isEmpty())
                calendar->m_name = value;
            else if ((name == "X-APPLE-CALENDAR-COLOR" || name == "COLOR") && !calendar->m_color)
                calendar->m_color = tintFromColorText(value);
            else if (name == "X-WR-TIMEZONE" && calendar->m_floatingZoneID.isEmpty())
                calendar->m_floatingZoneID = value;
        }
        for (icalcomponent *event =
                 icalcomponent_get_first_component(vcalendar, ICAL_VEVENT_COMPONENT);
             event; event = icalcomponent_get_next_component(vcalendar, ICAL_VEVENT_COMPONENT)) {
            icalproperty *startProperty =
                icalcomponent_get_first_property(event, ICAL_DTSTART_PROPERTY);
            if (!startProperty)
                continue;
            QString localID;
            const QString uid = text(icalcomponent_get_uid(event)).trimmed();
            if (uid.isEmpty()) {
                // Without a UID the series is named by what it is: its title and start.
                QCryptographicHash hash(QCryptographicHash::Sha1);
                hash.addData(QByteArrayView(icalcomponent_get_summary(event)));
                hash.addData(QByteArrayView(icalproperty_as_ical_string(startProperty)));
                localID = u"local-"_s + QString::fromLatin1(hash.result().toHex().left(16));
            }
            const QString id = seriesIdentifier(uid, localID);
            auto index = seriesIndex.constFind(id);
            if (index == seriesIndex.cend()) {
                index = seriesIndex.insert(id, calendar->m_series.size());
                calendar->m_series.push_back({id, {}, {}});
            }
            Series &series = calendar->m_series[*index];
            if (icalcomponent_get_first_property(event, ICAL_RECURRENCEID_PROPERTY))
                series.overrides.push_back(event);
            else
                series.masters.push_back(event);
        }
    }
    return calendar;
}

QList<ProviderOccurrence> IcsCalendar::occurrences(const IcsReadContext &context,
                                                   const QDateTime &from, const QDateTime &to) const
{
    QList<ProviderOccurrence> out;
    Expansion expansion(*this, context, from, to);
    for (const Series &series : m_series)
        expansion.expand(series, out);
    return out;
}

std::optional<CalendarTint> tintFromColorText(const QString &text)
{
    QString value = text.trimmed();
    // "#rrggbbaa" (Apple) carries alpha last, which QColor reads first.
    if (value.size() == 9 && value.startsWith(u'#'))
        value.chop(2);
    const QColor color = QColor::fromString(value);
    if (!color.isValid())
        return std::nullopt;
    return CalendarTint {color.redF(), color.greenF(), color.blueF()};
}

qsizetype IcsCalendar::seriesCount() const
{
    return qsizetype(m_series.size());
}
