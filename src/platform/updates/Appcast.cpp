#include "platform/updates/Appcast.h"

#include <QXmlStreamReader>

#include <algorithm>

namespace {

const QString sparkleNamespace =
    QStringLiteral("http://www.andymatuschak.org/xml-namespaces/sparkle");

// Only links a browser may open safely become the release page.
QUrl webLink(QStringView text)
{
    const QUrl url(text.trimmed().toString());
    const bool web = url.scheme() == u"https" || url.scheme() == u"http";
    return web && url.isValid() ? url : QUrl();
}

struct ItemFields
{
    QString version, shortVersion, os;
    QUrl link, notes, download;
};

void readItem(QXmlStreamReader &xml, ItemFields &item)
{
    while (xml.readNextStartElement()) {
        const bool sparkle = xml.namespaceUri() == sparkleNamespace;
        const QStringView name = xml.name();
        if (xml.namespaceUri().isEmpty() && name == u"link") {
            item.link = webLink(xml.readElementText());
        } else if (xml.namespaceUri().isEmpty() && name == u"enclosure") {
            const QXmlStreamAttributes attributes = xml.attributes();
            if (attributes.hasAttribute(sparkleNamespace, QStringLiteral("version")))
                item.version = attributes.value(sparkleNamespace, QStringLiteral("version"))
                                   .trimmed()
                                   .toString();
            if (attributes.hasAttribute(sparkleNamespace, QStringLiteral("shortVersionString")))
                item.shortVersion =
                    attributes.value(sparkleNamespace, QStringLiteral("shortVersionString"))
                        .trimmed()
                        .toString();
            item.os = attributes.value(sparkleNamespace, QStringLiteral("os")).toString();
            item.download = webLink(attributes.value(QStringLiteral("url")));
            xml.skipCurrentElement();
        } else if (sparkle && name == u"version") {
            item.version = xml.readElementText().trimmed();
        } else if (sparkle && name == u"shortVersionString") {
            item.shortVersion = xml.readElementText().trimmed();
        } else if (sparkle && name == u"releaseNotesLink") {
            item.notes = webLink(xml.readElementText());
        } else {
            xml.skipCurrentElement();
        }
    }
}

} // namespace

namespace Appcast {

std::optional<QList<Release>> parse(const QByteArray &bytes, QString *error)
{
    QXmlStreamReader xml(bytes);
    if (!xml.readNextStartElement() || xml.name() != u"rss") {
        if (error)
            *error = xml.hasError() ? xml.errorString() : QStringLiteral("not an RSS feed");
        return std::nullopt;
    }
    QList<ItemFields> items;
    QUrl channelLink;
    while (xml.readNextStartElement()) {
        if (xml.name() != u"channel") {
            xml.skipCurrentElement();
            continue;
        }
        while (xml.readNextStartElement()) {
            if (xml.namespaceUri().isEmpty() && xml.name() == u"link") {
                channelLink = webLink(xml.readElementText());
            } else if (xml.name() == u"item") {
                readItem(xml, items.emplace_back());
            } else {
                xml.skipCurrentElement();
            }
        }
    }
    if (xml.hasError()) {
        if (error)
            *error = QStringLiteral("line %1: %2").arg(xml.lineNumber()).arg(xml.errorString());
        return std::nullopt;
    }
    QList<Release> releases;
    for (const ItemFields &item : std::as_const(items)) {
        if (item.version.isEmpty() || (!item.os.isEmpty() && item.os != u"linux"))
            continue;
        QUrl page = item.link;
        for (const QUrl &fallback : {item.notes, channelLink, item.download}) {
            if (page.isEmpty())
                page = fallback;
        }
        releases.append({item.version, item.shortVersion, page});
    }
    return releases;
}

std::optional<Release> newest(const QList<Release> &releases)
{
    const auto found =
        std::max_element(releases.begin(), releases.end(), [](const Release &a, const Release &b) {
            return compareVersions(a.version, b.version) < 0;
        });
    if (found == releases.end())
        return std::nullopt;
    return *found;
}

namespace {

// A version as runs of digits and runs of letters; separators only part them.
QList<QStringView> tokens(QStringView version)
{
    QList<QStringView> parts;
    qsizetype start = -1;
    const auto kindOf = [](QChar c) {
        return c.isDigit() ? 1 : c.isLetter() ? 2 : 0;
    };
    for (qsizetype i = 0; i <= version.size(); ++i) {
        const int kind = i < version.size() ? kindOf(version.at(i)) : 0;
        if (start >= 0 && (kind != kindOf(version.at(start)))) {
            parts.append(version.sliced(start, i - start));
            start = -1;
        }
        if (start < 0 && kind != 0)
            start = i;
    }
    return parts;
}

bool isNumber(QStringView token)
{
    return !token.isEmpty() && token.front().isDigit();
}

// Digit strings of any length, by value.
int compareNumbers(QStringView a, QStringView b)
{
    while (a.size() > 1 && a.front() == u'0')
        a = a.sliced(1);
    while (b.size() > 1 && b.front() == u'0')
        b = b.sliced(1);
    if (a.size() != b.size())
        return a.size() < b.size() ? -1 : 1;
    return a.compare(b);
}

} // namespace

int compareVersions(QStringView a, QStringView b)
{
    const QList<QStringView> left = tokens(a);
    const QList<QStringView> right = tokens(b);
    const qsizetype common = std::min(left.size(), right.size());
    for (qsizetype i = 0; i < common; ++i) {
        const bool leftNumber = isNumber(left.at(i));
        const bool rightNumber = isNumber(right.at(i));
        if (leftNumber != rightNumber)
            return leftNumber ? 1 : -1; // 1.0.1 is newer than 1.0b
        const int order = leftNumber ? compareNumbers(left.at(i), right.at(i))
                                     : left.at(i).compare(right.at(i), Qt::CaseInsensitive);
        if (order != 0)
            return order < 0 ? -1 : 1;
    }
    // The longer one goes on: with letters it is a pre-release, with numbers a later version
    // unless they are all zero ("1.0" is "1.0.0").
    const bool leftLonger = left.size() > right.size();
    const QList<QStringView> rest = (leftLonger ? left : right).sliced(common);
    if (std::all_of(rest.begin(), rest.end(), [](QStringView token) {
            return isNumber(token) && compareNumbers(token, u"0") == 0;
        }))
        return 0;
    const bool continuesWithNumber = isNumber(rest.constFirst());
    return (leftLonger == continuesWithNumber) ? 1 : -1;
}

} // namespace Appcast
