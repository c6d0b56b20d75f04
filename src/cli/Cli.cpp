#include "cli/Cli.h"

#include "cli/CliContext.h"
#include "cli/CommandTable.h"

namespace {

const QString DataDirOption = QStringLiteral("--data-dir");

bool isHelp(const QString &argument)
{
    return argument == u"help" || argument == u"--help" || argument == u"-h";
}

struct Invocation
{
    QString dataDir;
    QStringList rest;
    QString error;
};

// Takes the global --data-dir out of the arguments, wherever it stands.
Invocation splitGlobalOptions(const QStringList &arguments)
{
    Invocation invocation;
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        const QString &argument = arguments.at(i);
        if (argument == DataDirOption) {
            if (i + 1 >= arguments.size()) {
                invocation.error = QStringLiteral("--data-dir needs a folder");
                return invocation;
            }
            invocation.dataDir = arguments.at(++i);
        } else if (argument.startsWith(DataDirOption + u'=')) {
            invocation.dataDir = argument.mid(DataDirOption.size() + 1);
        } else {
            invocation.rest.append(argument);
        }
    }
    return invocation;
}

void printUsage(QTextStream &stream, const std::vector<std::unique_ptr<CliCommand>> &commands)
{
    stream << "Usage: tarrow [--data-dir DIR] [COMMAND [ARGS...]]\n"
              "Without a command, tarrow starts the tray application.\n\nCommands:\n";
    for (const auto &command : commands)
        stream << "  tarrow " << command->usage() << '\n';
    stream.flush();
}

} // namespace

namespace Cli {

QStringList commandNames()
{
    QStringList names;
    for (const auto &command : allCliCommands())
        names.append(command->name());
    return names;
}

bool wantsCommandLine(const QStringList &arguments)
{
    const Invocation invocation = splitGlobalOptions(arguments);
    if (!invocation.error.isEmpty())
        return true;
    if (invocation.rest.isEmpty())
        return false;
    // The tray application takes options (--autostart, --ui-test) and links (tarrow://...);
    // any other word is meant as a command, known or not.
    const QString &first = invocation.rest.first();
    return isHelp(first) || (!first.startsWith(u'-') && !first.contains(u':'));
}

QString commandName(const QStringList &arguments)
{
    const Invocation invocation = splitGlobalOptions(arguments);
    return invocation.rest.isEmpty() ? QString() : invocation.rest.first();
}

int run(const QStringList &arguments, const Clock &clock, QTextStream &out, QTextStream &err,
        QTextStream &in)
{
    const auto commands = allCliCommands();
    Invocation invocation = splitGlobalOptions(arguments);
    CliContext context(invocation.dataDir, clock, out, err, in);
    if (!invocation.error.isEmpty())
        return context.fail(invocation.error);
    if (invocation.rest.isEmpty() || isHelp(invocation.rest.first())) {
        printUsage(out, commands);
        return 0;
    }
    const QString name = invocation.rest.takeFirst();
    for (const auto &command : commands) {
        if (command->name() == name) {
            const int code = command->run(invocation.rest, context);
            out.flush();
            return code;
        }
    }
    return context.fail(QStringLiteral("unknown command \"%1\" (see tarrow help)").arg(name));
}

} // namespace Cli
