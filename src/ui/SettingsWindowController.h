#pragma once

#include "ui/SceneImageProvider.h"

#include <QLoggingCategory>
#include <QObject>
#include <QPointer>
#include <QQuickWindow>
#include <QVariantMap>

#include <memory>

class QQmlApplicationEngine;

Q_DECLARE_LOGGING_CATEGORY(lcSettingsWindow)

// The settings window: an ordinary, resizable window with the page list on the side. Its QML
// scene is built when it opens and released once it is closed, so settings cost nothing while
// nobody looks at them.
class SettingsWindowController : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool shown READ isShown NOTIFY shownChanged)
    Q_PROPERTY(QString initialPage READ initialPage NOTIFY initialPageChanged)

public:
    // `sceneProperties` go to the window's QML root (the pages and the models they bind to).
    SettingsWindowController(QVariantMap sceneProperties, QList<SceneImageProvider> imageProviders,
                             QObject *parent = nullptr);
    ~SettingsWindowController() override;

    bool isShown() const { return m_window && m_window->isVisible(); }
    QString initialPage() const { return m_initialPage; }

    // Shows the window (on `page` when given) and brings it to the front.
    void open(const QString &page = QString());
    Q_INVOKABLE void close();
    void retranslate();
    QQuickWindow *window() const { return m_window; }

Q_SIGNALS:
    void shownChanged();
    void initialPageChanged();

private:
    void release();

    QVariantMap m_sceneProperties;
    QList<SceneImageProvider> m_imageProviders;
    std::unique_ptr<QQmlApplicationEngine> m_engine;
    QPointer<QQuickWindow> m_window;
    QString m_initialPage;
};
