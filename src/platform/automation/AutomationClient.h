#pragma once

#include "platform/automation/AutomationBus.h"

#include <QDBusConnection>
#include <QVariantList>

#include <optional>

// The command line's side of the running app's automation: finds the app that serves a data
// folder on the session bus and asks it. Every call waits a few seconds at most; an app that
// does not answer counts as not running, so the caller can act on the data folder itself.
class AutomationClient
{
public:
    explicit AutomationClient(QDBusConnection bus);

    // The session bus of this process.
    static AutomationClient sessionBus();

    // Whether a running Tarrow offers automation for `dataDirectory` on this bus.
    bool servesDataDirectory(const QString &dataDirectory) const;

    struct Reply
    {
        enum class Kind {
            answered, // `text` is the answer
            refused, // the app refused: `text` is its localised message
            unreachable, // no app answered (`text` says why)
        };
        Kind kind = Kind::unreachable;
        QString text;
    };
    // Calls one of the intents ("CreateCountdown", "NextCountdown", "TimeUntil").
    Reply call(const QString &method, const QVariantList &arguments = {}) const;
    // The countdowns the app holds; nothing when it does not answer.
    std::optional<StoredCountdownEntities> listCountdowns() const;
    // What the panel shows (the status bar object on one line); nothing when the app does not
    // answer.
    std::optional<QString> status() const;

    QDBusConnection bus() const { return m_bus; }

private:
    std::optional<QVariant> property(const QString &name) const;

    QDBusConnection m_bus;
};
