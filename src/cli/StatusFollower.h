#pragma once

#include "platform/automation/AutomationClient.h"

#include <QDBusServiceWatcher>
#include <QFileSystemWatcher>
#include <QObject>
#include <QTextStream>
#include <QTimer>

#include <memory>

class Clock;
class TickScheduler;

// `tarrow status --follow`: prints one line whenever what the panel shows changes, for status
// bar modules (waybar, polybar, i3blocks). While a running Tarrow serves the data folder the
// lines are its own (its StatusChanged signal); otherwise the follower runs the panel's engine
// over the folder itself, reading the files again when they change and never writing them. It
// moves between the two as the app starts and quits. With `json` each line is the status bar
// object ({"text", "tooltip", "class", "percentage", ...}), else only its text.
class StatusFollower : public QObject
{
    Q_OBJECT

public:
    StatusFollower(QString dataDirectory, const Clock &clock, TickScheduler &scheduler,
                   AutomationClient client, bool json, QTextStream &out, QObject *parent = nullptr);
    ~StatusFollower() override;

    // Prints the first line and follows from then on.
    void start();
    bool followsApp() const { return m_followsApp; }

private Q_SLOTS:
    void takeAppStatus(const QString &line);

private:
    class FolderView;

    void followApp();
    void followFolder();
    void reloadFolder();
    void print(const QString &line);

    QString m_dataDirectory;
    const Clock &m_clock;
    TickScheduler &m_scheduler;
    AutomationClient m_client;
    bool m_json;
    QTextStream &m_out;
    bool m_followsApp = false;
    QString m_lastPrinted;
    QDBusServiceWatcher m_appWatcher;
    QFileSystemWatcher m_folderWatcher;
    QTimer m_reload;
    std::unique_ptr<FolderView> m_folder;
};
