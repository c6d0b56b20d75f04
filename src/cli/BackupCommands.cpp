#include "cli/BackupCommands.h"

#include "backup/BackupService.h"
#include "cli/CliContext.h"
#include "cli/CommandArguments.h"

#include <QDir>
#include <QFileInfo>

namespace {

int report(const BackupMessage &message, CliContext &context)
{
    const QString text = message.text(context.table());
    if (message.isError || message.key == u"settings.data.import.empty")
        return context.fail(text);
    context.out() << text << '\n';
    return 0;
}

} // namespace

int ExportCommand::run(const QStringList &arguments, CliContext &context)
{
    CommandArguments args;
    if (!args.parse(arguments, context, 1, 1, usage()))
        return 1;
    QString path = args.positional().constFirst();
    if (QFileInfo(path).isDir())
        path = QDir(path).filePath(BackupService::proposedFileName(context.clock().now()));
    DiskFileAccess files;
    BackupService service(context.data().events(), files, context.clock());
    return report(service.writeExport(service.prepareExport(), path), context);
}

int ImportCommand::run(const QStringList &arguments, CliContext &context)
{
    const QString merge = QStringLiteral("merge");
    const QString replace = QStringLiteral("replace");
    CommandArguments args({QCommandLineOption(merge), QCommandLineOption(replace)});
    if (!args.parse(arguments, context, 1, 1, usage()))
        return 1;
    if (args.isSet(merge) == args.isSet(replace))
        return context.fail(
            QStringLiteral("say how to import: --merge or --replace (usage: tarrow %1)")
                .arg(usage()));
    DiskFileAccess files;
    BackupService service(context.data().events(), files, context.clock());
    const BackupService::Reading reading = service.read(args.positional().constFirst());
    if (!reading.archive)
        return report(reading.refusal, context);
    return report(
        service.import(*reading.archive,
                       args.isSet(merge) ? BackupImportMode::merge : BackupImportMode::replace),
        context);
}
