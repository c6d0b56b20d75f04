#include "ui/celebration/CelebrationOverlay.h"

#include "l10n/LocaleManager.h"
#include "platform/tray/IconSet.h"
#include "storage/SettingsStore.h"
#include "ui/celebration/CelebrationWindow.h"

#include <QGuiApplication>
#include <QProcess>
#include <QRandomGenerator>
#include <QScreen>
#include <QStandardPaths>

Q_LOGGING_CATEGORY(lcCelebrationOverlay, "CelebrationOverlay")

namespace {

// The accent of an item without a colour of its own.
constexpr quint32 DefaultAccent = 0x4A86E8;

} // namespace

CelebrationOverlay::CelebrationOverlay(const SettingsStore &settings, const LocaleManager &locale,
                                       ReducedMotionProbe reducedMotion, SoundPlayer playSound,
                                       QObject *parent)
    : CelebrationPresenter(parent)
    , m_settings(settings)
    , m_locale(locale)
    , m_reducedMotion(std::move(reducedMotion))
    , m_playSound(std::move(playSound))
{
    m_autoDismiss.setSingleShot(true);
    connect(&m_autoDismiss, &QTimer::timeout, this, &CelebrationOverlay::dismiss);
}

CelebrationOverlay::~CelebrationOverlay() = default;

void CelebrationOverlay::present(const Celebration &celebration)
{
    if (isPresenting())
        return;
    const Settings &settings = m_settings.settings();
    CelebrationScene::Confetti confetti = CelebrationScene::Confetti::none;
    if (settings.celebrationConfetti)
        confetti = m_reducedMotion() ? CelebrationScene::Confetti::still
                                     : CelebrationScene::Confetti::falling;
    const CelebrationScene::Texts texts {
        celebration.title,
        m_locale.text(QStringLiteral("celebration.reached")),
        m_locale.text(QStringLiteral("celebration.dismiss_hint")),
    };
    const QString symbol = IconSet::resolvedName(
        celebration.icon ? celebration.icon->symbol : QStringLiteral("party.popper.fill"));
    const QColor accent =
        QColor::fromRgb(celebration.color ? rgbOf(*celebration.color) : DefaultAccent);
    const QPalette palette = m_palette.value_or(QGuiApplication::palette());

    QScreen *primary = QGuiApplication::primaryScreen();
    const quint32 seed = QRandomGenerator::global()->generate();
    for (QScreen *screen : QGuiApplication::screens()) {
        CelebrationScene scene(texts, symbol, accent, palette, screen->geometry().size(), confetti,
                               seed + quint32(m_windows.size()));
        auto window =
            std::make_unique<CelebrationWindow>(std::move(scene), screen, screen == primary);
        connect(window.get(), &CelebrationWindow::dismissRequested, this,
                &CelebrationOverlay::dismiss, Qt::QueuedConnection);
        m_windows.push_back(std::move(window));
    }
    for (const auto &window : m_windows)
        window->show();
    if (settings.celebrationSound && m_playSound && !m_playSound())
        qCDebug(lcCelebrationOverlay) << "No sound player for the celebration";
    if (settings.celebrationAutoDismissSeconds > 0)
        m_autoDismiss.start(std::chrono::seconds(settings.celebrationAutoDismissSeconds));
    qCInfo(lcCelebrationOverlay).noquote()
        << QStringLiteral("Celebrating on %1 screen(s)").arg(m_windows.size());
}

void CelebrationOverlay::dismiss()
{
    if (!isPresenting())
        return;
    m_autoDismiss.stop();
    // Hidden first, destroyed after: keyboard focus goes back to whoever had it.
    for (const auto &window : m_windows)
        window->hide();
    m_windows.clear();
    qCInfo(lcCelebrationOverlay) << "Celebration dismissed";
    Q_EMIT dismissed();
}

bool CelebrationOverlay::playThemeSound()
{
    const QString player = QStandardPaths::findExecutable(QStringLiteral("canberra-gtk-play"));
    if (player.isEmpty())
        return false;
    return QProcess::startDetached(
        player, {QStringLiteral("--id=complete"), QStringLiteral("--description=Tarrow")});
}
