#pragma once

#include "records/CalendarInfo.h"

#include <QStringList>

struct icalcomponent_impl;

// Reads what an event says about itself into an occurrence: title, location, notes (for the
// meeting link), URL, creation date, cancellation and the user's answer among the attendees
// (`userAddresses` normalised: lower case, without "mailto:"). For an override of a repeating
// event, a property it leaves out is taken from `master`. Times are the caller's.
void readEventDetails(icalcomponent_impl *event, icalcomponent_impl *master,
                      const QStringList &userAddresses, ProviderOccurrence &occurrence);
