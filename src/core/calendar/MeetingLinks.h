#pragma once

#include <QString>
#include <QUrl>

#include <optional>

// Links to video meetings. A link counts as a meeting when its host is one of the known meeting
// services' hosts or a sub-domain of one ("acme.zoom.us"); any other link is a plain link.
namespace MeetingLinks {

bool isMeetingLink(const QUrl &url);

// The event's meeting link: its URL field when that is a meeting link, else the first meeting
// link found in its location, then in its notes.
std::optional<QUrl> findMeetingLink(const std::optional<QUrl> &urlField, const QString &location,
                                    const QString &notes);

// The links written in free text, in order: "https://…", "www.…" and bare "host.tld/path".
QList<QUrl> detectLinks(const QString &text);

// Whether Tarrow may hand the link to the desktop to open: web links and the meeting apps' own
// schemes only, never files, scripts or other programs' handlers.
bool isSafeToOpen(const QUrl &url);

// The row's label key for a link: "list.row.join_meeting" for a meeting, else "list.row.open_link".
QString labelKey(const QUrl &url);

} // namespace MeetingLinks
