#include "storage/PathProvider.h"

#include <QDir>
#include <QStandardPaths>

QString PathProvider::eventFile() const
{
    return QDir(supportDirectory()).filePath(QStringLiteral("event.json"));
}

QString PathProvider::settingsFile() const
{
    return QDir(supportDirectory()).filePath(QStringLiteral("settings.json"));
}

DefaultPathProvider::DefaultPathProvider(const QString &folderName)
{
    QString base = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    if (base.isEmpty() || !QDir().mkpath(base))
        base = QDir::tempPath();
    m_directory = QDir(base).filePath(folderName);
    QDir().mkpath(m_directory);
}

DefaultPathProvider::DefaultPathProvider(ExactFolder, const QString &directory)
    : m_directory(QDir(directory).absolutePath())
{
    QDir().mkpath(m_directory);
}

DefaultPathProvider DefaultPathProvider::inFolder(const QString &folder)
{
    return DefaultPathProvider(ExactFolder {}, folder);
}

TempPathProvider::TempPathProvider()
    : m_dir(std::make_unique<QTemporaryDir>())
{
}
