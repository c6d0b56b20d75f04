#pragma once

#include "ui/SceneImageProvider.h"
#include <QElapsedTimer>

#include <QLoggingCategory>
#include <QObject>
#include <QPointer>
#include <QQuickWindow>
#include <QRect>
#include <QVariantMap>

#include <memory>
#include <optional>

class QQmlApplicationEngine;

Q_DECLARE_LOGGING_CATEGORY(lcPopoverController)

// The popup with the list and quick entry: a frameless window placed next to the tray item, closed
// by Escape and by a click elsewhere (it loses focus). The QML scene is built on the first open, so
// a Tarrow whose popup was never opened does not carry it.
class PopoverController : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool shown READ isShown NOTIFY shownChanged)

public:
    // `sceneProperties` are handed to the QML root (the list and quick-entry models).
    explicit PopoverController(QVariantMap sceneProperties, QObject *parent = nullptr);
    ~PopoverController() override;

    bool isShown() const { return m_shown; }
    // Image providers the scene is built with, besides the item symbols.
    void setImageProviders(QList<SceneImageProvider> providers)
    {
        m_imageProviders = std::move(providers);
    }

    // Opens beside `anchor` (global coordinates: the item's geometry or the click point). Without
    // one, the last anchor seen is used, else the mouse pointer. Opening an open popup keeps it.
    void open(std::optional<QRect> anchor = std::nullopt);
    void toggle(std::optional<QRect> anchor = std::nullopt);
    Q_INVOKABLE void close();
    // Re-reads every translated text of the scene (after the interface language changed).
    void retranslate();

    QQuickWindow *window() const { return m_window; }

Q_SIGNALS:
    void shownChanged();

private:
    bool ensureWindow();
    QRect anchorFor(std::optional<QRect> anchor);
    void setShown(bool shown);
    void onActiveChanged();

    QVariantMap m_sceneProperties;
    QList<SceneImageProvider> m_imageProviders;
    std::unique_ptr<QQmlApplicationEngine> m_engine;
    QPointer<QQuickWindow> m_window;
    std::optional<QRect> m_lastAnchor;
    bool m_shown = false;
    bool m_hadFocus = false;
    QElapsedTimer m_shownFor;
};
