#pragma once

#include "records/CalendarInfo.h"

#include <QByteArray>
#include <QStringList>

struct icalcomponent_impl;

// Reads what an event says about itself into an occurrence: title, location, notes (for the
// meeting link), URL, creation date, cancellation and the user's answer among the attendees
// (`userAddresses` normalised: lower case, without "mailto:"). For an override of a repeating
// event, a property it leaves out is taken from `master`. Times are the caller's.
void readEventDetails(icalcomponent_impl *event, icalcomponent_impl *master,
                      const QStringList &userAddresses, ProviderOccurrence &occurrence);

// An IANA identifier for a zone name found in a calendar: IANA names as they are, Windows names
// ("W. Europe Standard Time") mapped, prefixed names ("/mozilla.org/…/Europe/Berlin") cut to their
// last two parts; empty when it names no zone.
QByteArray ianaZoneID(const QByteArray &name);
