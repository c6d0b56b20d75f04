#pragma once

#include "platform/calendars/SubscriptionStatus.h"

#include <QUuid>

class FileAccess;

// The cache folder of the added calendars: for each feed its last good copy ("<id>.ics") and its
// status ("<id>.json"). Nothing here is the user's data; a lost cache is fetched again.
class SubscriptionCache
{
public:
    SubscriptionCache(QString directory, FileAccess &files);

    // The cache of the user's own data folder is in the user's cache folder; a data folder given
    // on the command line (tests, trials) keeps its cache inside itself.
    static QString directoryFor(const QString &dataDirectory);

    QString directory() const { return m_directory; }
    QString copyPath(const QUuid &id) const;
    SubscriptionStatus status(const QUuid &id) const;
    bool writeStatus(const QUuid &id, const SubscriptionStatus &status, QString *error);
    bool writeCopy(const QUuid &id, const QByteArray &bytes, QString *error);
    void remove(const QUuid &id);

private:
    QString filePath(const QUuid &id, const char *suffix) const;

    QString m_directory;
    FileAccess &m_files;
};
