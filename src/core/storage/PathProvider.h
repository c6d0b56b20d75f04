#pragma once

#include <QString>
#include <QTemporaryDir>

#include <memory>

// Where the data files live.
class PathProvider
{
public:
    virtual ~PathProvider() = default;
    virtual QString supportDirectory() const = 0;
    QString eventFile() const; // "event.json" in the support folder
    QString settingsFile() const; // "settings.json" in the support folder
};

// The user's data folder for the app (~/.local/share/<folderName>), or a given folder (what
// --data-dir selects). The folder is created when missing; if that fails the first write
// reports it.
class DefaultPathProvider final : public PathProvider
{
public:
    explicit DefaultPathProvider(const QString &folderName = QStringLiteral("tarrow"));
    static DefaultPathProvider inFolder(const QString &folder);
    QString supportDirectory() const override { return m_directory; }

private:
    struct ExactFolder
    {
    };
    DefaultPathProvider(ExactFolder, const QString &directory);
    QString m_directory;
};

// A throw-away folder, removed with the provider: for runs that must not touch the user's files.
class TempPathProvider final : public PathProvider
{
public:
    TempPathProvider();
    QString supportDirectory() const override { return m_dir->path(); }

private:
    std::unique_ptr<QTemporaryDir> m_dir;
};
