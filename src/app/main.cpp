#include "app/TrayApplication.h"
#include "cli/Cli.h"
#include "time/Clock.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QTextStream>

#include <cstdio>
#include <memory>

namespace {

QStringList argumentsOf(int argc, char **argv)
{
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments.append(QString::fromLocal8Bit(argv[i]));
    return arguments;
}

bool isHelpRequest(const QStringList &arguments)
{
    const QString command = Cli::commandName(arguments);
    return command.isEmpty() || command == u"help" || command == u"--help" || command == u"-h";
}

bool isVersionRequest(const QStringList &arguments)
{
    return arguments.size() == 1 && arguments.first() == u"--version";
}

// Commands draw with fonts only when they render images; the rest need no GUI at all.
std::unique_ptr<QCoreApplication> commandLineApplication(int &argc, char **argv,
                                                         const QString &command)
{
    if (command == u"render-chip") {
        if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
            qputenv("QT_QPA_PLATFORM", "offscreen");
        return std::make_unique<QGuiApplication>(argc, argv);
    }
    return std::make_unique<QCoreApplication>(argc, argv);
}

int runCommandLine(int argc, char **argv, const QStringList &arguments)
{
    const auto app = commandLineApplication(argc, argv, Cli::commandName(arguments));
    QCoreApplication::setApplicationName(QStringLiteral("tarrow"));
    QCoreApplication::setApplicationVersion(QStringLiteral(TARROW_VERSION));
    QTextStream out(stdout);
    QTextStream err(stderr);
    QTextStream in(stdin);
    const SystemClock clock;
    const int code = Cli::run(arguments, clock, out, err, in);
    // The commands' usage comes from the command line; the options are the tray application's.
    if (code == 0 && isHelpRequest(arguments))
        out << '\n' << TrayLaunchOptions::usage() << Qt::flush;
    return code;
}

} // namespace

int main(int argc, char **argv)
{
    const QStringList arguments = argumentsOf(argc, argv);
    if (isVersionRequest(arguments)) {
        std::fputs("tarrow " TARROW_VERSION "\n", stdout);
        return 0;
    }
    if (Cli::wantsCommandLine(arguments))
        return runCommandLine(argc, argv, arguments);
    return runTrayApplication(argc, argv);
}
