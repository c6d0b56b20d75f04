#include "cli/IntentCommands.h"

#include "automation/CountdownIntents.h"
#include "cli/CliContext.h"
#include "cli/CommandArguments.h"
#include "countdown/SinglePassEngine.h"
#include "l10n/LocaleManager.h"
#include "platform/automation/AutomationClient.h"

#include <memory>

namespace {

// The intents over the data folder, after the same engine pass the app would have run: arrivals
// stamped, spent pins cleared.
class FolderIntents
{
public:
    explicit FolderIntents(CliContext &context)
        : m_pass(context.data().events(), context.clock().now())
        , m_locale(context.data().settings())
        , m_intents(context.data().events(), m_pass.registry(), context.clock(),
                    context.data().settings(), m_locale)
    {
    }
    CountdownIntents &intents() { return m_intents; }

private:
    SinglePassEngine m_pass;
    LocaleManager m_locale;
    CountdownIntents m_intents;
};

// Where an intent is answered: by the running app when it serves this data folder, else here.
class IntentTarget
{
public:
    explicit IntentTarget(CliContext &context)
        : m_context(context)
        , m_client(AutomationClient::sessionBus())
        , m_viaApp(m_client.servesDataDirectory(context.dataDirectory()))
    {
    }

    bool viaApp() const { return m_viaApp; }
    const AutomationClient &app() const { return m_client; }
    CountdownIntents &folder()
    {
        if (!m_folder)
            m_folder = std::make_unique<FolderIntents>(m_context);
        return m_folder->intents();
    }

    int print(const AutomationClient::Reply &reply)
    {
        switch (reply.kind) {
        case AutomationClient::Reply::Kind::answered:
            m_context.out() << reply.text << '\n';
            return 0;
        case AutomationClient::Reply::Kind::refused:
            return m_context.fail(reply.text);
        case AutomationClient::Reply::Kind::unreachable:
            break;
        }
        return m_context.fail(
            QStringLiteral("the running Tarrow did not answer (%1)").arg(reply.text));
    }

    int print(const IntentAnswer &answer)
    {
        if (!answer.ok())
            return m_context.fail(folder().message(*answer.error));
        m_context.out() << answer.sentence << '\n';
        return 0;
    }

private:
    CliContext &m_context;
    AutomationClient m_client;
    bool m_viaApp;
    std::unique_ptr<FolderIntents> m_folder;
};

} // namespace

int CreateCommand::run(const QStringList &arguments, CliContext &context)
{
    CommandArguments args;
    if (!args.parse(arguments, context, 2, 2, usage()))
        return 1;
    const QString title = args.positional().at(0);
    const QString date = args.positional().at(1);
    IntentTarget target(context);
    if (target.viaApp())
        return target.print(target.app().call(QStringLiteral("CreateCountdown"), {title, date}));
    return target.print(target.folder().createCountdown(title, date));
}

int NextCommand::run(const QStringList &arguments, CliContext &context)
{
    CommandArguments args;
    if (!args.parse(arguments, context, 0, 0, usage()))
        return 1;
    IntentTarget target(context);
    if (target.viaApp())
        return target.print(target.app().call(QStringLiteral("NextCountdown")));
    return target.print(IntentAnswer {target.folder().nextCountdown(), {}});
}

int TimeUntilCommand::run(const QStringList &arguments, CliContext &context)
{
    CommandArguments args;
    if (!args.parse(arguments, context, 1, 1, usage()))
        return 1;
    const QString given = args.positional().constFirst();
    IntentTarget target(context);

    // A title stands for the one countdown that carries it; an unknown one is not found.
    QUuid id = QUuid::fromString(given.trimmed());
    if (id.isNull()) {
        const std::optional<StoredCountdownEntities> listed = target.viaApp()
            ? target.app().listCountdowns()
            : std::optional(target.folder().countdowns());
        const StoredCountdownEntities matches =
            StoredCountdownQuery::titled(listed.value_or(StoredCountdownEntities()), given);
        if (matches.size() > 1)
            return context.fail(
                QStringLiteral("%1 countdowns are called \"%2\": give the id of one (see tarrow "
                               "list)")
                    .arg(matches.size())
                    .arg(given.trimmed()));
        if (matches.size() == 1)
            id = matches.constFirst().id;
    }
    if (target.viaApp()) {
        return target.print(
            target.app().call(QStringLiteral("TimeUntil"), {id.toString(QUuid::WithoutBraces)}));
    }
    return target.print(target.folder().timeUntil(id));
}
