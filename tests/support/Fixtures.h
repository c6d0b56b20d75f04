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
inline QByteArray fixtureBytes(const QString &relative)
{
    return readFile(QDir(qEnvironmentVariable("TARROW_FIXTURES")).filePath(relative));
}

// Writes a fixture into a data folder under the name the app gives it: "events/..." becomes
// event.json, "settings/..." settings.json.
inline bool installFixture(const QString &relative, const QString &folder)
{
    QFile file(
        QDir(folder).filePath(relative.startsWith(u"events/") ? "event.json" : "settings.json"));
    return file.open(QIODevice::WriteOnly) && file.write(fixtureBytes(relative)) > 0;
}
