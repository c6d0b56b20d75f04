#include "platform/automation/AutomationDBusService.h"

#include "automation/CountdownIntents.h"
#include "automation/StatusFeed.h"

#include <QDBusConnectionInterface>

#include <string_view>

Q_LOGGING_CATEGORY(lcAutomationBus, "AutomationBus")

static_assert(std::string_view(TARROW_APP_ID ".Automation") == "org.tarrow.Tarrow.Automation",
              "the interface named in the class info follows the app id");

AutomationDBusService::AutomationDBusService(CountdownIntents &intents, const StatusFeed *feed,
                                             QString dataDirectory, QObject *parent)
    : QObject(parent)
    , m_intents(intents)
    , m_feed(feed)
    , m_dataDirectory(std::move(dataDirectory))
{
    AutomationBus::registerTypes();
    if (m_feed) {
        connect(m_feed, &StatusFeed::snapshotChanged, this,
                [this] { Q_EMIT StatusChanged(status()); });
    }
}

AutomationDBusService::~AutomationDBusService()
{
    unregister();
}

bool AutomationDBusService::registerOn(QDBusConnection bus)
{
    if (!bus.isConnected()) {
        qCWarning(lcAutomationBus) << "No session bus: automation is not offered";
        return false;
    }
    if (!bus.registerObject(AutomationBus::objectPath(), this,
                            QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllSignals
                                | QDBusConnection::ExportAllProperties)) {
        qCWarning(lcAutomationBus).noquote()
            << QStringLiteral("Could not export %1: %2")
                   .arg(AutomationBus::objectPath(), bus.lastError().message());
        return false;
    }
    const QDBusReply<QDBusConnectionInterface::RegisterServiceReply> reply =
        bus.interface()->registerService(AutomationBus::serviceName(),
                                         QDBusConnectionInterface::DontQueueService,
                                         QDBusConnectionInterface::DontAllowReplacement);
    if (!reply.isValid() || reply.value() != QDBusConnectionInterface::ServiceRegistered) {
        qCWarning(lcAutomationBus).noquote()
            << QStringLiteral("%1 is taken on the session bus (another Tarrow runs for another "
                              "data folder): automation is not offered by this one")
                   .arg(AutomationBus::serviceName());
        bus.unregisterObject(AutomationBus::objectPath());
        return false;
    }
    m_bus = bus;
    qCInfo(lcAutomationBus).noquote() << QStringLiteral("Offering automation as %1 for %2")
                                             .arg(AutomationBus::serviceName(), m_dataDirectory);
    return true;
}

void AutomationDBusService::unregister()
{
    if (!m_bus)
        return;
    m_bus->unregisterService(AutomationBus::serviceName());
    m_bus->unregisterObject(AutomationBus::objectPath());
    m_bus.reset();
}

QString AutomationDBusService::status() const
{
    return m_feed ? QString::fromUtf8(m_feed->snapshot().barLine()) : QString();
}

void AutomationDBusService::logCall(const char *method) const
{
    if (calledFromDBus()) {
        qCDebug(lcAutomationBus).noquote()
            << QStringLiteral("%1 asked by %2").arg(QLatin1StringView(method), message().service());
    }
}

QString AutomationDBusService::answer(const IntentAnswer &answer)
{
    if (answer.ok())
        return answer.sentence;
    if (calledFromDBus()) {
        sendErrorReply(AutomationBus::errorName(answer.error->kind),
                       m_intents.message(*answer.error));
    }
    return QString();
}

QString AutomationDBusService::CreateCountdown(const QString &title, const QString &date)
{
    logCall("CreateCountdown");
    return answer(m_intents.createCountdown(title, date));
}

QString AutomationDBusService::NextCountdown()
{
    logCall("NextCountdown");
    return m_intents.nextCountdown();
}

QString AutomationDBusService::TimeUntil(const QString &id)
{
    logCall("TimeUntil");
    return answer(m_intents.timeUntil(QUuid::fromString(id.trimmed())));
}

StoredCountdownEntities AutomationDBusService::ListCountdowns()
{
    logCall("ListCountdowns");
    return m_intents.countdowns();
}
