#include "automation/IntentError.h"

#include "l10n/LanguageTable.h"

QString IntentError::key() const
{
    switch (kind) {
    case Kind::notFound:
        return QStringLiteral("intents.error.not_found");
    case Kind::invalidTitle:
        return QStringLiteral("intents.error.invalid_title");
    case Kind::pastDate:
        return QStringLiteral("intents.error.past_date");
    case Kind::invalidDate:
        return QStringLiteral("intents.error.invalid_date");
    case Kind::saveFailed:
        break;
    }
    return QStringLiteral("intents.error.save_failed %@");
}

QString IntentError::message(const LanguageTable &table) const
{
    return table.format(key(), {reason});
}
