#pragma once

#include <QLoggingCategory>
#include <QString>

#include <functional>

Q_DECLARE_LOGGING_CATEGORY(lcAppURLRouter)

// Handles links that reach the application (a tarrow:// link opened by a browser, a script or
// `xdg-open`). A link of the "tarrow" scheme opens the popup, except tarrow://settings, which
// opens the settings window; path and query are ignored.
class AppURLRouter
{
public:
    explicit AppURLRouter(std::function<void()> openPopover,
                          std::function<void()> openSettings = {});

    // Routes one link given as text; text that does not parse as a URL is dropped.
    void route(const QString &link) const;

private:
    std::function<void()> m_openPopover;
    std::function<void()> m_openSettings;
};
