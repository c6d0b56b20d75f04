#include "calendar/MeetingLinks.h"

#include <QRegularExpression>
#include <QSet>

namespace {

// The meeting services' link hosts: Zoom, Zoom for Government, Google Meet, Microsoft Teams
// (work and personal accounts), Webex, Whereby, Jitsi Meet, Amazon Chime, BlueJeans, Gather,
// Around, Discord invites, Slack, Tuple, Pop, Riverside.
const QSet<QString> &meetingHosts()
{
    static const QSet<QString> hosts {
        QStringLiteral("zoom.us"),         QStringLiteral("zoomgov.com"),
        QStringLiteral("meet.google.com"), QStringLiteral("teams.microsoft.com"),
        QStringLiteral("teams.live.com"),  QStringLiteral("webex.com"),
        QStringLiteral("whereby.com"),     QStringLiteral("meet.jit.si"),
        QStringLiteral("chime.aws"),       QStringLiteral("bluejeans.com"),
        QStringLiteral("gather.town"),     QStringLiteral("around.co"),
        QStringLiteral("discord.gg"),      QStringLiteral("slack.com"),
        QStringLiteral("tuple.app"),       QStringLiteral("pop.com"),
        QStringLiteral("riverside.fm"),
    };
    return hosts;
}

// The desktop apps of those services register these schemes for their own meeting links.
const QSet<QString> &meetingSchemes()
{
    static const QSet<QString> schemes {
        QStringLiteral("zoommtg"), QStringLiteral("zoomus"), QStringLiteral("msteams"),
        QStringLiteral("webex"),   QStringLiteral("chime"),  QStringLiteral("slack"),
        QStringLiteral("discord"),
    };
    return schemes;
}

std::optional<QUrl> firstMeetingLinkIn(const QString &text)
{
    for (const QUrl &url : MeetingLinks::detectLinks(text)) {
        if (MeetingLinks::isMeetingLink(url))
            return url;
    }
    return std::nullopt;
}

} // namespace

namespace MeetingLinks {

bool isMeetingLink(const QUrl &url)
{
    const QString host = url.host().toLower();
    if (host.isEmpty())
        return false;
    const QSet<QString> &hosts = meetingHosts();
    if (hosts.contains(host))
        return true;
    for (qsizetype dot = host.indexOf(u'.'); dot >= 0; dot = host.indexOf(u'.', dot + 1)) {
        if (hosts.contains(host.mid(dot + 1)))
            return true;
    }
    return false;
}

std::optional<QUrl> findMeetingLink(const std::optional<QUrl> &urlField, const QString &location,
                                    const QString &notes)
{
    if (urlField && isMeetingLink(*urlField))
        return urlField;
    if (auto found = firstMeetingLinkIn(location))
        return found;
    return firstMeetingLinkIn(notes);
}

QList<QUrl> detectLinks(const QString &text)
{
    // A scheme link, a www. link, or a bare "host.tld/path".
    static const QRegularExpression pattern(
        QStringLiteral(R"((?:\b[a-z][a-z0-9+.-]*://|\bwww\.)[^\s<>"]+)"
                       R"(|\b[a-z0-9-]+(?:\.[a-z0-9-]+)*\.[a-z]{2,}/[^\s<>"]*)"),
        QRegularExpression::CaseInsensitiveOption);
    QList<QUrl> links;
    for (auto it = pattern.globalMatch(text); it.hasNext();) {
        QString link = it.next().captured();
        // Sentence punctuation after a link is not part of it.
        while (!link.isEmpty() && QStringView(u".,;:!?)]}'").contains(link.back()))
            link.chop(1);
        if (!link.contains(u"://"))
            link.prepend(u"https://");
        const QUrl url(link, QUrl::TolerantMode);
        if (url.isValid() && !url.host().isEmpty())
            links.append(url);
    }
    return links;
}

bool isSafeToOpen(const QUrl &url)
{
    if (!url.isValid())
        return false;
    const QString scheme = url.scheme().toLower();
    if (scheme == u"http" || scheme == u"https")
        return !url.host().isEmpty();
    return meetingSchemes().contains(scheme);
}

QString labelKey(const QUrl &url)
{
    return isMeetingLink(url) ? QStringLiteral("list.row.join_meeting")
                              : QStringLiteral("list.row.open_link");
}

} // namespace MeetingLinks
