#pragma once

#include "automation/IntentError.h"
#include "automation/StoredCountdownQuery.h"

#include <QDBusArgument>
#include <QList>
#include <QMetaType>
#include <QString>

// The names under which the running app offers automation on the session bus, and the coding of
// what travels there. One name serves the desktop entry, the bus and backup files: the app's
// reverse-domain id.
namespace AutomationBus {

// "org.tarrow.Tarrow"
QString serviceName();
// "/org/tarrow/Tarrow"
QString objectPath();
// "org.tarrow.Tarrow.Automation"
QString interfaceName();
// The D-Bus error an intent's error travels as: "org.tarrow.Tarrow.Error.NotFound", ...
QString errorName(IntentError::Kind kind);
// Whether an error name is one of ours (an answer of the app rather than a failure of the bus).
bool isIntentError(const QString &name);

// Registers the D-Bus coding of the types below; call once before using them on a bus.
void registerTypes();

// Whether two paths name the same folder (following links where the folders exist).
bool sameFolder(const QString &a, const QString &b);

} // namespace AutomationBus

using StoredCountdownEntities = QList<StoredCountdownEntity>;

// A countdown on the bus: (id, title), the id in canonical upper-case text.
QDBusArgument &operator<<(QDBusArgument &argument, const StoredCountdownEntity &entity);
const QDBusArgument &operator>>(const QDBusArgument &argument, StoredCountdownEntity &entity);

Q_DECLARE_METATYPE(StoredCountdownEntity)
