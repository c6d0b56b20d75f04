#pragma once

#include <QLoggingCategory>
#include <QObject>
#include <QString>

class Clock;
class CountdownRegistry;
class FileAccess;
class StatusFeed;

Q_DECLARE_LOGGING_CATEGORY(lcWidgetSnapshot)

// Keeps "widget-snapshot.json" in the user's runtime folder up to date for desktop widgets and
// conky: what the panel shows (the status bar object of StatusFeed under "status") and the first
// items of the list with their dates, so a widget can count on its own between two writes. The
// file is rewritten atomically whenever either changes and removed when the writer goes (a
// widget that finds no file knows Tarrow is not running).
class WidgetSnapshotWriter : public QObject
{
    Q_OBJECT

public:
    // How many list items the file carries.
    static constexpr qsizetype maximumItems = 20;

    WidgetSnapshotWriter(const StatusFeed &feed, const CountdownRegistry &registry,
                         const Clock &clock, FileAccess &files, QString path,
                         QObject *parent = nullptr);
    ~WidgetSnapshotWriter() override;

    QString path() const { return m_path; }

    // "<runtime>/tarrow/widget-snapshot.json" for the user's own data folder; another folder
    // (--data-dir) gets a file of its own, named after it.
    static QString defaultPath(const QString &runtimeDirectory, const QString &dataDirectory,
                               bool usersOwnFolder);

    // The file's bytes.
    QByteArray encode() const;

public Q_SLOTS:
    void write();

private:
    const StatusFeed &m_feed;
    const CountdownRegistry &m_registry;
    const Clock &m_clock;
    FileAccess &m_files;
    QString m_path;
    bool m_lastWriteFailed = false;
};
