#include "ui/PopoverController.h"

#include "ui/PopupPlacement.h"
#include "ui/SymbolImageProvider.h"

#include <QGuiApplication>
#include <QQmlApplicationEngine>
#include <QQuickWindow>
#include <QScreen>

#ifdef __GLIBC__
#include <malloc.h>
#endif

Q_LOGGING_CATEGORY(lcPopoverController, "PopoverController")

PopoverController::PopoverController(QVariantMap sceneProperties, QObject *parent)
    : QObject(parent)
    , m_sceneProperties(std::move(sceneProperties))
{
    m_sceneProperties.insert(QStringLiteral("controller"), QVariant::fromValue(this));
    m_releaseTimer.setSingleShot(true);
    m_releaseTimer.setInterval(std::chrono::seconds(3));
    connect(&m_releaseTimer, &QTimer::timeout, this, &PopoverController::releaseScene);
}

PopoverController::~PopoverController()
{
    close();
    // The scene's bindings point at models owned elsewhere: take it down while they still exist.
    if (m_window)
        m_window->disconnect(this);
    m_engine.reset();
}

bool PopoverController::ensureWindow()
{
    if (m_window)
        return true;
    m_engine = std::make_unique<QQmlApplicationEngine>();
    m_engine->addImageProvider(QStringLiteral("symbol"), new SymbolImageProvider);
    installImageProviders(*m_engine, m_imageProviders);
    m_engine->setInitialProperties(m_sceneProperties);
    m_engine->load(QUrl(QStringLiteral("qrc:/qt/qml/Tarrow/Ui/Popover.qml")));
    const auto roots = m_engine->rootObjects();
    m_window = roots.isEmpty() ? nullptr : qobject_cast<QQuickWindow *>(roots.first());
    if (!m_window) {
        qCWarning(lcPopoverController) << "Failed to load the popup scene";
        m_engine.reset();
        return false;
    }
    m_window->setFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);
    connect(m_window, &QWindow::activeChanged, this, &PopoverController::onActiveChanged);
    connect(m_window, &QWindow::visibleChanged, this, [this] { setShown(m_window->isVisible()); });
    // Emitted on the render thread where there is one.
    connect(m_window, &QQuickWindow::frameSwapped, this, &PopoverController::onFrameSwapped,
            Qt::QueuedConnection);
    return true;
}

QRect PopoverController::anchorFor(std::optional<QRect> anchor)
{
    if (anchor && anchor->isValid())
        m_lastAnchor = anchor;
    if (m_lastAnchor)
        return *m_lastAnchor;
    QScreen *screen = QGuiApplication::primaryScreen();
    if (!screen)
        return QRect(0, 0, 1, 1);
    return PopupPlacement::panelCorner(screen->geometry(), screen->availableGeometry());
}

void PopoverController::open(std::optional<QRect> anchor)
{
    m_openRequested.start();
    m_releaseTimer.stop();
    const QRect where = anchorFor(anchor);
    if (!ensureWindow())
        return;
    QScreen *screen = QGuiApplication::screenAt(where.center());
    if (!screen)
        screen = QGuiApplication::primaryScreen();
    if (screen) {
        m_window->setScreen(screen);
        m_window->setPosition(
            PopupPlacement::topLeft(screen->availableGeometry(), where, m_window->size()));
    }
    if (!m_window->isVisible()) {
        m_shownFor.start();
        m_awaitingFirstFrame = true;
    }
    m_window->show();
    m_window->raise();
    m_window->requestActivate();
    qCDebug(lcPopoverController).noquote()
        << QStringLiteral("Opened the popup at %1,%2").arg(m_window->x()).arg(m_window->y());
}

void PopoverController::toggle(std::optional<QRect> anchor)
{
    if (m_shown)
        close();
    else
        open(anchor);
}

void PopoverController::close()
{
    m_hadFocus = false;
    if (m_window && m_window->isVisible()) {
        m_window->hide();
        qCDebug(lcPopoverController) << "Closed the popup";
    }
}

void PopoverController::retranslate()
{
    if (m_engine)
        m_engine->retranslate();
}

void PopoverController::setShown(bool shown)
{
    if (m_shown == shown)
        return;
    m_shown = shown;
    if (shown)
        m_releaseTimer.stop();
    else
        m_releaseTimer.start();
    Q_EMIT shownChanged();
}

void PopoverController::onFrameSwapped()
{
    if (!m_awaitingFirstFrame || !m_shown)
        return;
    m_awaitingFirstFrame = false;
    qCDebug(lcPopoverController).noquote()
        << QStringLiteral("Showed the popup %1 ms after the request")
               .arg(m_openRequested.elapsed());
}

void PopoverController::releaseScene()
{
    if (m_shown || !m_engine)
        return;
    // The engine owns the window: both go, with the scene graph and its render thread.
    if (m_window)
        m_window->disconnect(this);
    m_window = nullptr;
    m_engine.reset();
#ifdef __GLIBC__
    // Hand the freed pages back to the system, so the resident size falls back right away.
    malloc_trim(0);
#endif
    qCDebug(lcPopoverController) << "Released the popup's scene";
    Q_EMIT sceneReleased();
}

void PopoverController::onActiveChanged()
{
    // A click elsewhere takes the focus away; close then, but not before the popup ever had it
    // (some window managers activate a new window only after it is mapped). Focus that moves on
    // in the first moments after opening (X11 without a window manager hands it back to the
    // window under the pointer) is taken back instead.
    constexpr qint64 settleMs = 400;
    if (m_window->isActive())
        m_hadFocus = true;
    else if (m_hadFocus && m_shownFor.isValid() && m_shownFor.elapsed() < settleMs)
        m_window->requestActivate();
    else if (m_hadFocus)
        close();
}
