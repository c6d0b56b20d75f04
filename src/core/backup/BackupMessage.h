#pragma once

#include <QList>
#include <QString>

class LanguageTable;

// A message of the backup flows (Settings -> Data, `tarrow export|import`): its localisation key
// and the counts it is filled with, kept as data so it can be shown in whatever language is
// active when it is read.
struct BackupMessage
{
    QString key;
    QList<qint64> counts;
    bool isError = false;

    static BackupMessage error(const char *key) { return {QString::fromUtf8(key), {}, true}; }
    static BackupMessage info(const char *key, QList<qint64> counts = {})
    {
        return {QString::fromUtf8(key), std::move(counts), false};
    }

    QString text(const LanguageTable &table) const;

    bool operator==(const BackupMessage &) const = default;
};
