#include "app/AppURLRouter.h"

#include <QUrl>

Q_LOGGING_CATEGORY(lcAppURLRouter, "AppURLRouter")

AppURLRouter::AppURLRouter(std::function<void()> openPopover, std::function<void()> openSettings)
    : m_openPopover(std::move(openPopover))
    , m_openSettings(std::move(openSettings))
{
}

void AppURLRouter::route(const QString &link) const
{
    const QUrl url(link, QUrl::StrictMode);
    if (!url.isValid())
        return;
    const QString scheme = url.scheme();
    if (!scheme.isEmpty() && scheme.toLower() == QLatin1String("tarrow")) {
        if (m_openSettings && url.host().toLower() == QLatin1String("settings"))
            m_openSettings();
        else
            m_openPopover();
        return;
    }
    qCCritical(lcAppURLRouter).noquote()
        << QStringLiteral("Ignored a link Tarrow does not own: %1")
               .arg(scheme.isEmpty() ? QStringLiteral("?") : scheme);
}
