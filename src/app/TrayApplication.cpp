#include "app/TrayApplication.h"

#include "app/AppDelegate.h"
#include "cli/Cli.h"
#include "platform/session/SingleInstance.h"
#include "storage/PathProvider.h"

#include <QApplication>
#include <QDir>
#include <QIcon>
#include <QQuickWindow>
#include <QSocketNotifier>
#include <QStandardPaths>

#include <csignal>
#include <cstdio>
#include <sys/socket.h>
#include <unistd.h>

namespace {

// Platform plugins that draw without any display server.
const QStringList displaylessPlatforms = {
    QStringLiteral("offscreen"), QStringLiteral("minimal"), QStringLiteral("vnc"),
    QStringLiteral("eglfs"),     QStringLiteral("linuxfb"), QStringLiteral("vkkhrdisplay")};

int signalPipe[2] = {-1, -1};

void forwardSignal(int)
{
    const char byte = 1;
    [[maybe_unused]] const ssize_t written = ::write(signalPipe[0], &byte, 1);
}

// SIGTERM (a logout, `kill`) and SIGINT end the event loop, so the services are released in order
// and the lock and socket are given up as on a normal quit.
void quitOnTerminationSignals(QCoreApplication &app)
{
    if (::socketpair(AF_UNIX, SOCK_STREAM, 0, signalPipe) != 0)
        return;
    auto *notifier = new QSocketNotifier(signalPipe[1], QSocketNotifier::Read, &app);
    QObject::connect(notifier, &QSocketNotifier::activated, &app, [notifier] {
        char byte = 0;
        [[maybe_unused]] const ssize_t read = ::read(signalPipe[1], &byte, 1);
        notifier->setEnabled(false);
        QCoreApplication::quit();
    });
    struct sigaction action = {};
    action.sa_handler = forwardSignal;
    sigemptyset(&action.sa_mask);
    action.sa_flags = SA_RESTART;
    sigaction(SIGTERM, &action, nullptr);
    sigaction(SIGINT, &action, nullptr);
}

void printNoDisplay()
{
    const QStringList names = Cli::commandNames();
    const QString line = QStringLiteral("tarrow: the tray application needs a graphical session "
                                        "(DISPLAY or WAYLAND_DISPLAY is not set); without one, use "
                                        "a subcommand: %1 (see `tarrow help`)\n")
                             .arg(names.join(QStringLiteral(", ")));
    std::fputs(line.toLocal8Bit().constData(), stderr);
}

} // namespace

bool hasGraphicalSession(const QProcessEnvironment &environment)
{
    const bool x11 = !environment.value(QStringLiteral("DISPLAY")).isEmpty();
    const bool wayland = !environment.value(QStringLiteral("WAYLAND_DISPLAY")).isEmpty();
    const QString requested = environment.value(QStringLiteral("QT_QPA_PLATFORM"));
    if (requested.isEmpty())
        return x11 || wayland;
    // A list such as "wayland;xcb" is tried in order; "name:options" carries plugin options.
    const QStringList platforms = requested.split(QLatin1Char(';'), Qt::SkipEmptyParts);
    return std::any_of(platforms.begin(), platforms.end(), [&](const QString &entry) {
        const QString name = entry.section(QLatin1Char(':'), 0, 0).trimmed();
        if (displaylessPlatforms.contains(name))
            return true;
        if (name == QLatin1String("xcb"))
            return x11;
        return name.startsWith(QLatin1String("wayland")) && wayland;
    });
}

TrayLaunchOptions TrayLaunchOptions::parse(const QStringList &arguments)
{
    TrayLaunchOptions options;
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        const QString &argument = arguments.at(i);
        if (argument == QLatin1String("--data-dir") && i + 1 < arguments.size())
            options.dataDirectory = arguments.at(++i);
        else if (argument.startsWith(QLatin1String("--data-dir=")))
            options.dataDirectory = argument.section(QLatin1Char('='), 1);
        else if (argument == QLatin1String("--autostart"))
            options.autostart = true;
        else if (argument == QLatin1String("--ui-test"))
            options.uiTest = true;
        else if (argument == QLatin1String("--toggle-popup"))
            options.togglePopup = true;
        else if (argument == QLatin1String("--new-countdown"))
            options.newCountdown = true;
        else if (argument == QLatin1String("--reset-onboarding"))
            options.resetOnboarding = true;
        else if (argument.startsWith(QLatin1Char('-')))
            options.unknownOptions << argument;
        else
            options.links << argument;
    }
    return options;
}

QString TrayLaunchOptions::usage()
{
    return QStringLiteral(
        "Options:\n"
        "  tarrow [--data-dir DIR] [LINK]  start it, or open the popup of the running one\n"
        "  tarrow --toggle-popup           show or hide the popup\n"
        "  tarrow --new-countdown          open the popup ready for a new countdown\n"
        "  tarrow --autostart              start hidden, as the desktop does at login\n"
        "  tarrow --reset-onboarding       show the welcome page again\n"
        "  tarrow --version                print the version\n");
}

int runTrayApplication(int argc, char **argv)
{
    if (!hasGraphicalSession(QProcessEnvironment::systemEnvironment())) {
        printNoDisplay();
        return 1;
    }

    QApplication app(argc, argv);
    QCoreApplication::setOrganizationName(QStringLiteral("tarrow"));
    QCoreApplication::setApplicationName(QStringLiteral("tarrow"));
    QCoreApplication::setApplicationVersion(QStringLiteral(TARROW_VERSION));
    // The desktop entry and the icon are installed under the app's id; Wayland compositors find
    // both through it. A build that is not installed shows the icon compiled in.
    QGuiApplication::setDesktopFileName(QStringLiteral(TARROW_APP_ID));
    QApplication::setWindowIcon(QIcon::fromTheme(QStringLiteral(TARROW_APP_ID),
                                                 QIcon(QStringLiteral(":/tarrow/tarrow.svg"))));
    QApplication::setQuitOnLastWindowClosed(false);
    // The popup is a small list: drawn in software it loads no GL driver, whose libraries would
    // stay resident for the life of the process once the popup had opened. QT_QUICK_BACKEND
    // still picks another renderer.
    if (qEnvironmentVariableIsEmpty("QT_QUICK_BACKEND"))
        QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);

    const QStringList arguments = QCoreApplication::arguments().mid(1);
    const TrayLaunchOptions options = TrayLaunchOptions::parse(arguments);
    for (const QString &option : options.unknownOptions)
        std::fprintf(stderr, "tarrow: ignored the unknown option %s\n", qPrintable(option));
    const QString dataDirectory = options.dataDirectory.isEmpty()
        ? DefaultPathProvider().supportDirectory()
        : QDir(options.dataDirectory).absolutePath();

    SingleInstance instance(QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation),
                            dataDirectory);
    switch (instance.start(arguments)) {
    case SingleInstance::Role::forwarded:
        return 0;
    case SingleInstance::Role::failed:
        std::fputs("tarrow: another Tarrow is running for this data folder but does not answer\n",
                   stderr);
        return 1;
    case SingleInstance::Role::primary:
        break;
    }

    quitOnTerminationSignals(app);
    AppDelegate delegate(options, dataDirectory);
    QObject::connect(&instance, &SingleInstance::requestReceived, &delegate,
                     [&delegate](const QStringList &request) {
                         delegate.handleRequest(TrayLaunchOptions::parse(request));
                     });
    QObject::connect(&app, &QCoreApplication::aboutToQuit, &delegate, &AppDelegate::terminate);
    delegate.willFinishLaunching();
    delegate.didFinishLaunching();
    return QApplication::exec();
}
