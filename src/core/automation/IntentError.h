#pragma once

#include <QString>

class LanguageTable;

// Why an automation intent gave no answer. Each case has a localised message; a failed save also
// carries the file system's reason.
struct IntentError
{
    enum class Kind {
        notFound, // the countdown asked about is not in the store
        invalidTitle, // the title is empty or longer than 40 characters
        pastDate, // the date is not in the future
        invalidDate, // the date text is not a date
        saveFailed, // the store could not write the new countdown
    };

    Kind kind = Kind::notFound;
    QString reason; // saveFailed: the store's description

    // "intents.error.not_found", ...
    QString key() const;
    QString message(const LanguageTable &table) const;

    bool operator==(const IntentError &) const = default;
};
