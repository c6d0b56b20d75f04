#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringView>
#include <QUrl>

#include <optional>

// An appcast: the RSS feed desktop updaters read, one <item> per release with an <enclosure>
// whose sparkle:version attribute (or a <sparkle:version> element) names the release. Items
// meant for another system (sparkle:os other than "linux") are left out.
namespace Appcast {

struct Release
{
    QString version; // compared with the running version
    QString shortVersion; // shown to the user when present
    QUrl releasePage; // the item's link, its release notes, the channel's link or the download

    QString displayVersion() const { return shortVersion.isEmpty() ? version : shortVersion; }
    bool operator==(const Release &) const = default;
};

// The releases of a feed; nothing (with the reason) when the bytes are not an RSS feed.
std::optional<QList<Release>> parse(const QByteArray &xml, QString *error);

// The newest of the releases, if any.
std::optional<Release> newest(const QList<Release> &releases);

// Compares two versions the way updaters do: numbers by value ("1.10" > "1.9"), a missing
// number is older ("1.0" < "1.0.1") unless only zeros are missing ("1.0" = "1.0.0"), and letters
// after a version mark a pre-release ("1.0b1" < "1.0", "1.0-rc1" < "1.0"). Negative, zero or
// positive.
int compareVersions(QStringView a, QStringView b);

} // namespace Appcast
