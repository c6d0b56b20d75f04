#pragma once

#include <QDir>
#include <QFile>
#include <QString>

inline QByteArray readFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// Small data files kept under tests/fixtures, as earlier versions of the app wrote them.
inline QString fixturePath(const QString &relative)
{
    return QDir(qEnvironmentVariable("TARROW_FIXTURES")).filePath(relative);
}

inline QByteArray fixtureBytes(const QString &relative)
{
    return readFile(fixturePath(relative));
}

// Copies a fixture into a data folder under the name the app gives it: "events/..." becomes
// event.json, "settings/..." settings.json.
inline bool installFixture(const QString &relative, const QString &folder)
{
    const QString target =
        QDir(folder).filePath(relative.startsWith(u"events/") ? QStringLiteral("event.json")
                                                              : QStringLiteral("settings.json"));
    QFile::remove(target);
    return QFile::copy(fixturePath(relative), target)
        && QFile(target).setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner);
}
