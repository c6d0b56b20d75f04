#include "platform/automation/AutomationBus.h"

#include <QDBusMetaType>
#include <QDir>
#include <QFileInfo>

namespace AutomationBus {

QString serviceName()
{
    return QStringLiteral(TARROW_APP_ID);
}

QString objectPath()
{
    return u'/' + serviceName().replace(u'.', u'/');
}

QString interfaceName()
{
    return serviceName() + QStringLiteral(".Automation");
}

QString errorName(IntentError::Kind kind)
{
    const auto name = [](const char *suffix) -> QString {
        return serviceName() + QStringLiteral(".Error.") + QLatin1StringView(suffix);
    };
    switch (kind) {
    case IntentError::Kind::notFound:
        return name("NotFound");
    case IntentError::Kind::invalidTitle:
        return name("InvalidTitle");
    case IntentError::Kind::pastDate:
        return name("PastDate");
    case IntentError::Kind::invalidDate:
        return name("InvalidDate");
    case IntentError::Kind::saveFailed:
        break;
    }
    return name("SaveFailed");
}

bool isIntentError(const QString &name)
{
    return name.startsWith(serviceName() + QStringLiteral(".Error."));
}

void registerTypes()
{
    qDBusRegisterMetaType<StoredCountdownEntity>();
    qDBusRegisterMetaType<StoredCountdownEntities>();
}

bool sameFolder(const QString &a, const QString &b)
{
    const auto normal = [](const QString &path) {
        const QString canonical = QFileInfo(path).canonicalFilePath();
        return canonical.isEmpty() ? QDir::cleanPath(QDir(path).absolutePath()) : canonical;
    };
    return normal(a) == normal(b);
}

} // namespace AutomationBus

QDBusArgument &operator<<(QDBusArgument &argument, const StoredCountdownEntity &entity)
{
    argument.beginStructure();
    argument << entity.id.toString(QUuid::WithoutBraces).toUpper() << entity.title;
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, StoredCountdownEntity &entity)
{
    QString id;
    argument.beginStructure();
    argument >> id >> entity.title;
    argument.endStructure();
    entity.id = QUuid::fromString(id);
    return argument;
}
