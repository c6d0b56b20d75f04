#include "app/cli/Cli.h"
#include "time/Clock.h"

#include <QCoreApplication>
#include <QTextStream>

#include <cstdio>

#ifdef TARROW_HAS_GUI
#include "app/TrayApplication.h"
#endif

namespace {

QStringList argumentsOf(int argc, char **argv)
{
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments.append(QString::fromLocal8Bit(argv[i]));
    return arguments;
}

int runCommandLine(int argc, char **argv, const QStringList &arguments)
{
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("tarrow"));
    QCoreApplication::setApplicationVersion(QStringLiteral(TARROW_VERSION));
    QTextStream out(stdout);
    QTextStream err(stderr);
    QTextStream in(stdin);
    const SystemClock clock;
    return Cli::run(arguments, clock, out, err, in);
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
