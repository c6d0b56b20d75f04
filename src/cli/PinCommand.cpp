#include "cli/PinCommand.h"

#include "cli/CliContext.h"
#include "cli/CommandArguments.h"

namespace {

int setPin(const std::optional<PinTarget> &pin, CliContext &context)
{
    EventStoreError error;
    return context.data().events().setPin(pin, &error) ? 0 : reportStoreError(error, context);
}

} // namespace

int PinCommand::run(const QStringList &arguments, CliContext &context)
{
    CommandArguments args;
    if (!args.parse(arguments, context, 1, 1, usage()))
        return 1;
    const std::optional<QUuid> id = parseEventId(args.positional().constFirst(), context);
    return id ? setPin(PinTarget::manual(*id), context) : 1;
}

int UnpinCommand::run(const QStringList &arguments, CliContext &context)
{
    CommandArguments args;
    if (!args.parse(arguments, context, 0, 0, usage()))
        return 1;
    return setPin(std::nullopt, context);
}
