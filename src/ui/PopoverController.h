#pragma once

#include "ui/SceneImageProvider.h"
#include <QElapsedTimer>

#include <QLoggingCategory>
#include <QObject>
#include <QPointer>
#include <QQuickWindow>
#include <QRect>
#include <QTimer>
#include <QVariantMap>

#include <chrono>
#include <memory>
#include <optional>

class QQmlApplicationEngine;

Q_DECLARE_LOGGING_CATEGORY(lcPopoverController)

// The popup with the list and quick entry: a frameless window placed next to the tray item, closed
// by Escape and by a click elsewhere (it loses focus). The QML scene is built when the popup opens
// and released a few seconds after it closed, so a Tarrow that sits in the panel carries no scene
// (a scene with its window holds around a hundred megabytes). What the user was typing lives in
// the models, not in the scene, and is there again at the next open.
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
    // one, the last anchor seen is used, else the end of the panel found from the screen's work
    // area (never the pointer: a link or a second launch may come with it anywhere). Opening an
    // open popup keeps it.
    void open(std::optional<QRect> anchor = std::nullopt);
    void toggle(std::optional<QRect> anchor = std::nullopt);
    Q_INVOKABLE void close();
    // Re-reads every translated text of the scene (after the interface language changed).
    void retranslate();

    // The popup's window; null while no scene is loaded.
    QQuickWindow *window() const { return m_window; }
    bool hasScene() const { return bool(m_engine); }
    // How long a closed popup keeps its scene (3 s unless set).
    void setReleaseDelay(std::chrono::milliseconds delay) { m_releaseTimer.setInterval(delay); }

Q_SIGNALS:
    void shownChanged();
    // The scene was dropped after the popup had been closed for the release delay.
    void sceneReleased();

private:
    bool ensureWindow();
    QRect anchorFor(std::optional<QRect> anchor);
    void setShown(bool shown);
    void onActiveChanged();
    void onFrameSwapped();
    void releaseScene();

    QVariantMap m_sceneProperties;
    QList<SceneImageProvider> m_imageProviders;
    std::unique_ptr<QQmlApplicationEngine> m_engine;
    QPointer<QQuickWindow> m_window;
    std::optional<QRect> m_lastAnchor;
    bool m_shown = false;
    bool m_hadFocus = false;
    QElapsedTimer m_shownFor;
    // From the open request to the first frame on screen, for the log.
    QElapsedTimer m_openRequested;
    bool m_awaitingFirstFrame = false;
    QTimer m_releaseTimer;
};
