#include "arrival/NoticeLog.h"

#include <QSettings>

namespace {

const QString group = QStringLiteral("tarrow.notices");

QString path(const QString &key)
{
    return group + u'/' + key;
}

} // namespace

std::optional<qint64> SettingsNoticeLog::value(const QString &key) const
{
    bool ok = false;
    const qint64 number = QSettings().value(path(key)).toLongLong(&ok);
    return ok ? std::optional(number) : std::nullopt;
}

void SettingsNoticeLog::setValue(const QString &key, qint64 value)
{
    QSettings().setValue(path(key), value);
}

void SettingsNoticeLog::remove(const QString &key)
{
    QSettings().remove(path(key));
}

QStringList SettingsNoticeLog::keys() const
{
    QSettings settings;
    settings.beginGroup(group);
    return settings.childKeys();
}
