#include "ui/PopoverController.h"

#include "ui/PopupPlacement.h"
#include "ui/SymbolImageProvider.h"

#include <QCursor>
#include <QGuiApplication>
#include <QQmlApplicationEngine>
#include <QQuickWindow>
#include <QScreen>

Q_LOGGING_CATEGORY(lcPopoverController, "PopoverController")

PopoverController::PopoverController(QVariantMap sceneProperties, QObject *parent)
    : QObject(parent)
    , m_sceneProperties(std::move(sceneProperties))
{
    m_sceneProperties.insert(QStringLiteral("controller"), QVariant::fromValue(this));
}

PopoverController::~PopoverController()
{
    close();
    // The scene's bindings point at models owned elsewhere: take it down while they still exist.
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
        return false;
    }
    m_window->setFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);
    connect(m_window, &QWindow::activeChanged, this, &PopoverController::onActiveChanged);
    connect(m_window, &QWindow::visibleChanged, this, [this] { setShown(m_window->isVisible()); });
    return true;
}

QRect PopoverController::anchorFor(std::optional<QRect> anchor)
{
    if (anchor && anchor->isValid())
        m_lastAnchor = anchor;
    if (m_lastAnchor)
        return *m_lastAnchor;
    return QRect(QCursor::pos(), QSize(1, 1));
}

void PopoverController::open(std::optional<QRect> anchor)
{
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
    if (!m_window->isVisible())
        m_shownFor.start();
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
    Q_EMIT shownChanged();
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
