#pragma once

#include "automation/CountdownIntents.h"
#include "platform/automation/AutomationBus.h"

#include <QDBusConnection>
#include <QDBusContext>
#include <QLoggingCategory>
#include <QObject>

class StatusFeed;

Q_DECLARE_LOGGING_CATEGORY(lcAutomationBus)

// The running app's automation on the session bus: the intents (create a countdown, the next
// countdown, the time until one), the list of countdowns to pick from, and what the panel shows,
// at AutomationBus::objectPath() under the well-known name AutomationBus::serviceName().
//
// Answers are the intents' localised sentences; an intent's error comes back as a D-Bus error
// named after it (org.tarrow.Tarrow.Error.NotFound, ...) carrying its localised message.
// DataDirectory tells clients which data folder this app serves, so a command line working on
// another folder leaves it alone.
class AutomationDBusService : public QObject, protected QDBusContext
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.tarrow.Tarrow.Automation")
    Q_CLASSINFO("D-Bus Introspection",
                "  <interface name=\"org.tarrow.Tarrow.Automation\">\n"
                "    <method name=\"CreateCountdown\">\n"
                "      <arg name=\"title\" type=\"s\" direction=\"in\"/>\n"
                "      <arg name=\"date\" type=\"s\" direction=\"in\"/>\n"
                "      <arg name=\"answer\" type=\"s\" direction=\"out\"/>\n"
                "    </method>\n"
                "    <method name=\"NextCountdown\">\n"
                "      <arg name=\"answer\" type=\"s\" direction=\"out\"/>\n"
                "    </method>\n"
                "    <method name=\"TimeUntil\">\n"
                "      <arg name=\"id\" type=\"s\" direction=\"in\"/>\n"
                "      <arg name=\"answer\" type=\"s\" direction=\"out\"/>\n"
                "    </method>\n"
                "    <method name=\"ListCountdowns\">\n"
                "      <arg name=\"countdowns\" type=\"a(ss)\" direction=\"out\"/>\n"
                "      <annotation name=\"org.qtproject.QtDBus.QtTypeName.Out0\" "
                "value=\"StoredCountdownEntities\"/>\n"
                "    </method>\n"
                "    <signal name=\"StatusChanged\">\n"
                "      <arg name=\"status\" type=\"s\"/>\n"
                "    </signal>\n"
                "    <property name=\"DataDirectory\" type=\"s\" access=\"read\"/>\n"
                "    <property name=\"Status\" type=\"s\" access=\"read\"/>\n"
                "  </interface>\n")
    Q_PROPERTY(QString DataDirectory READ dataDirectory)
    Q_PROPERTY(QString Status READ status)

public:
    // `feed` may be null: Status is then empty and StatusChanged never sent.
    AutomationDBusService(CountdownIntents &intents, const StatusFeed *feed, QString dataDirectory,
                          QObject *parent = nullptr);
    ~AutomationDBusService() override;

    // Exports the object and takes the well-known name. False (and nothing exported) when the bus
    // is not there or another process owns the name, e.g. a Tarrow for another data folder.
    bool registerOn(QDBusConnection bus);

    QString dataDirectory() const { return m_dataDirectory; }
    // The status bar object of what the panel shows, on one line.
    QString status() const;

public Q_SLOTS:
    QString CreateCountdown(const QString &title, const QString &date);
    QString NextCountdown();
    QString TimeUntil(const QString &id);
    StoredCountdownEntities ListCountdowns();

Q_SIGNALS:
    void StatusChanged(const QString &status);

private:
    QString answer(const IntentAnswer &answer);
    void logCall(const char *method) const;
    void unregister();

    CountdownIntents &m_intents;
    const StatusFeed *m_feed;
    QString m_dataDirectory;
    std::optional<QDBusConnection> m_bus;
};
