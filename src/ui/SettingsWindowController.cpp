#include "ui/SettingsWindowController.h"

#include "ui/SymbolImageProvider.h"

#include <QQmlApplicationEngine>
#include <QTimer>

Q_LOGGING_CATEGORY(lcSettingsWindow, "SettingsWindow")

SettingsWindowController::SettingsWindowController(QVariantMap sceneProperties,
                                                   QList<SceneImageProvider> imageProviders,
                                                   QObject *parent)
    : QObject(parent)
    , m_sceneProperties(std::move(sceneProperties))
    , m_imageProviders(std::move(imageProviders))
{
    m_sceneProperties.insert(QStringLiteral("controller"), QVariant::fromValue(this));
}

SettingsWindowController::~SettingsWindowController()
{
    m_engine.reset();
}

void SettingsWindowController::open(const QString &page)
{
    if (m_initialPage != page) {
        m_initialPage = page;
        Q_EMIT initialPageChanged();
    }
    if (!m_window) {
        m_engine = std::make_unique<QQmlApplicationEngine>();
        m_engine->addImageProvider(QStringLiteral("symbol"), new SymbolImageProvider);
        installImageProviders(*m_engine, m_imageProviders);
        m_engine->setInitialProperties(m_sceneProperties);
        m_engine->load(QUrl(QStringLiteral("qrc:/qt/qml/Tarrow/Ui/SettingsWindow.qml")));
        const auto roots = m_engine->rootObjects();
        m_window = roots.isEmpty() ? nullptr : qobject_cast<QQuickWindow *>(roots.first());
        if (!m_window) {
            qCWarning(lcSettingsWindow) << "Failed to load the settings window";
            m_engine.reset();
            return;
        }
        connect(m_window, &QWindow::visibleChanged, this, [this] {
            Q_EMIT shownChanged();
            // Closed: the scene goes once the close has been handled.
            if (m_window && !m_window->isVisible())
                QTimer::singleShot(0, this, &SettingsWindowController::release);
        });
    }
    m_window->show();
    m_window->raise();
    m_window->requestActivate();
    qCDebug(lcSettingsWindow) << "Opened the settings window";
}

void SettingsWindowController::close()
{
    if (m_window)
        m_window->close();
}

void SettingsWindowController::release()
{
    if (!m_window || m_window->isVisible())
        return;
    m_window = nullptr;
    m_engine.reset();
    qCDebug(lcSettingsWindow) << "Released the settings window";
}

void SettingsWindowController::retranslate()
{
    if (m_engine)
        m_engine->retranslate();
}
