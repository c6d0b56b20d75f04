#include "platform/calendars/IcsEventDetails.h"

#include "calendar/CalendarRules.h"
#include "calendar/MeetingLinks.h"

#include <QTimeZone>

#include <libical/ical.h>

namespace {

QString text(const char *utf8)
{
    return utf8 ? QString::fromUtf8(utf8) : QString();
}

std::optional<QString> optionalText(const char *utf8)
{
    const QString value = text(utf8).trimmed();
    return value.isEmpty() ? std::nullopt : std::optional(value);
}

AttendeeStatus attendeeStatus(icalproperty *attendee)
{
    icalparameter *partstat = icalproperty_get_first_parameter(attendee, ICAL_PARTSTAT_PARAMETER);
    // Without PARTSTAT the answer is still to come (NEEDS-ACTION).
    switch (partstat ? icalparameter_get_partstat(partstat) : ICAL_PARTSTAT_NEEDSACTION) {
    case ICAL_PARTSTAT_NEEDSACTION:
        return AttendeeStatus::pending;
    case ICAL_PARTSTAT_ACCEPTED:
        return AttendeeStatus::accepted;
    case ICAL_PARTSTAT_DECLINED:
        return AttendeeStatus::declined;
    case ICAL_PARTSTAT_TENTATIVE:
        return AttendeeStatus::tentative;
    case ICAL_PARTSTAT_DELEGATED:
        return AttendeeStatus::delegated;
    case ICAL_PARTSTAT_COMPLETED:
        return AttendeeStatus::completed;
    case ICAL_PARTSTAT_INPROCESS:
        return AttendeeStatus::inProcess;
    default:
        return AttendeeStatus::unknown;
    }
}

} // namespace

void readEventDetails(icalcomponent *event, icalcomponent *master, const QStringList &userAddresses,
                      ProviderOccurrence &occurrence)
{
    // A property the override leaves out is the series' own.
    const auto property = [&](icalproperty_kind kind) {
        icalproperty *found = icalcomponent_get_first_property(event, kind);
        return found || !master || event == master ? found
                                                   : icalcomponent_get_first_property(master, kind);
    };
    if (icalproperty *summary = property(ICAL_SUMMARY_PROPERTY))
        occurrence.title = text(icalproperty_get_summary(summary)).trimmed();
    QString notes;
    if (icalproperty *description = property(ICAL_DESCRIPTION_PROPERTY))
        notes = text(icalproperty_get_description(description));
    if (icalproperty *location = property(ICAL_LOCATION_PROPERTY))
        occurrence.location = optionalText(icalproperty_get_location(location));
    if (icalproperty *url = property(ICAL_URL_PROPERTY)) {
        const QUrl link(text(icalproperty_get_url(url)).trimmed());
        if (link.isValid() && !link.isEmpty())
            occurrence.externalURL = link;
    }
    occurrence.meetingURL = MeetingLinks::findMeetingLink(
        occurrence.externalURL, occurrence.location.value_or(QString()), notes);
    if (icalproperty *created = property(ICAL_CREATED_PROPERTY)) {
        const icaltimetype time = icalproperty_get_created(created);
        if (!icaltime_is_null_time(time))
            occurrence.createdAt =
                QDateTime::fromSecsSinceEpoch(qint64(icaltime_as_timet(time)), Qt::UTC);
    }
    if (icalproperty *status = property(ICAL_STATUS_PROPERTY))
        occurrence.isCancelled = icalproperty_get_status(status) == ICAL_STATUS_CANCELLED;

    if (!userAddresses.isEmpty()) {
        QList<AttendeeFacts> attendees;
        icalcomponent *withAttendees =
            icalcomponent_get_first_property(event, ICAL_ATTENDEE_PROPERTY) || !master ? event
                                                                                       : master;
        for (icalproperty *attendee =
                 icalcomponent_get_first_property(withAttendees, ICAL_ATTENDEE_PROPERTY);
             attendee;
             attendee = icalcomponent_get_next_property(withAttendees, ICAL_ATTENDEE_PROPERTY)) {
            QString address = text(icalproperty_get_attendee(attendee)).trimmed().toLower();
            if (address.startsWith(u"mailto:"))
                address = address.mid(7);
            AttendeeFacts facts;
            facts.isCurrentUser = userAddresses.contains(address);
            facts.status = attendeeStatus(attendee);
            attendees.append(facts);
        }
        occurrence.participation = participation(attendees);
    }
}

QByteArray ianaZoneID(const QByteArray &name)
{
    if (name.isEmpty())
        return {};
    if (QTimeZone::isTimeZoneIdAvailable(name))
        return name;
    const QByteArray windows = QTimeZone::windowsIdToDefaultIanaId(name);
    if (!windows.isEmpty())
        return windows;
    const QList<QByteArray> parts = name.split('/');
    if (parts.size() > 2) {
        const QByteArray tail = parts.at(parts.size() - 2) + '/' + parts.last();
        if (QTimeZone::isTimeZoneIdAvailable(tail))
            return tail;
    }
    return {};
}
