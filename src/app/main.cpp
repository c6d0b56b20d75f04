#include "app/cli/Cli.h"
#include "time/Clock.h"

#include <QCoreApplication>
#include <QTextStream>

#include <cstdio>
#include <memory>

#ifdef TARROW_HAS_GUI
#include "app/TrayApplication.h"
#include "menubar/platform/RenderChipCommand.h"

#include <QGuiApplication>
#endif

namespace {

QStringList argumentsOf(int argc, char **argv)
{
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments.append(QString::fromLocal8Bit(argv[i]));
    return arguments;
}

// Commands draw with fonts only when they render images; the rest need no GUI at all.
std::unique_ptr<QCoreApplication> commandLineApplication(int &argc, char **argv,
                                                         const QString &command)
{
#ifdef TARROW_HAS_GUI
    if (command == u"render-chip") {
        if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
            qputenv("QT_QPA_PLATFORM", "offscreen");
        return std::make_unique<QGuiApplication>(argc, argv);
    }
#else
    Q_UNUSED(command)
#endif
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
    std::vector<std::unique_ptr<CliCommand>> guiCommands;
#ifdef TARROW_HAS_GUI
    guiCommands.push_back(std::make_unique<RenderChipCommand>());
#endif
    return Cli::run(arguments, std::move(guiCommands), clock, out, err, in);
}

} // namespace

int main(int argc, char **argv)
{
    const QStringList arguments = argumentsOf(argc, argv);
    if (Cli::wantsCommandLine(arguments))
        return runCommandLine(argc, argv, arguments);
#ifdef TARROW_HAS_GUI
    return runTrayApplication(argc, argv);
#else
    std::fprintf(stderr, "tarrow: this build has no tray application; the commands are: %s\n",
                 qPrintable(Cli::commandNames().join(QStringLiteral(", "))));
    return 2;
#endif
}
