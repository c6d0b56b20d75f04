#include "backup/BackupMessage.h"

#include "l10n/LanguageTable.h"

QString BackupMessage::text(const LanguageTable &table) const
{
    QStringList arguments;
    for (const qint64 count : counts)
        arguments.append(QString::number(count));
    return table.format(key, arguments);
}
