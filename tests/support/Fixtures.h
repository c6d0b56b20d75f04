#pragma once

#include <QDir>
#include <QFile>
#include <QString>

// Small data files kept under tests/fixtures, as earlier versions of the app wrote them.
inline QString fixturePath(const QString &relative)
{
    return QDir(qEnvironmentVariable("TARROW_FIXTURES")).filePath(relative);
}

inline QByteArray fixtureBytes(const QString &relative)
{
    QFile file(fixturePath(relative));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// Copies a fixture into a data folder under the name the app uses ("event.json", ...).
inline bool installFixture(const QString &relative, const QString &folder, const QString &asName)
{
    const QString target = QDir(folder).filePath(asName);
    QFile::remove(target);
    return QFile::copy(fixturePath(relative), target)
        && QFile(target).setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner);
}

inline QByteArray readFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}
