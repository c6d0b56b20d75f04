#include "cli/RemoveCommand.h"

#include "cli/CliContext.h"
#include "cli/CommandArguments.h"

int RemoveCommand::run(const QStringList &arguments, CliContext &context)
{
    CommandArguments args;
    if (!args.parse(arguments, context, 1, 1, usage()))
        return 1;
    const std::optional<QUuid> id = parseEventId(args.positional().constFirst(), context);
    if (!id)
        return 1;
    EventStoreError error;
    return context.data().events().deleteEvent(*id, &error) ? 0 : reportStoreError(error, context);
}
