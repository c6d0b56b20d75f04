#pragma once

#include "automation/IntentError.h"
#include "automation/StoredCountdownQuery.h"

#include <QDateTime>
#include <QLoggingCategory>
#include <QString>
#include <QTimeZone>

#include <optional>

class Clock;
class CountdownRegistry;
class EventStore;
class LocaleManager;
class SettingsStore;

Q_DECLARE_LOGGING_CATEGORY(lcIntents)

// An intent's answer: one localised sentence, or the error that stopped it.
struct IntentAnswer
{
    QString sentence;
    std::optional<IntentError> error;

    bool ok() const { return !error; }
    static IntentAnswer failed(IntentError error) { return {QString(), std::move(error)}; }
};

// The three automation intents (create a countdown, tell the next one, tell the time until one)
// and the query behind their countdown parameter. They act on the store and the registry that
// they are given (the running app's, or those of a data folder opened by the command line) and
// answer in the interface language, with the time texts in the user's display format.
class CountdownIntents
{
public:
    static constexpr qsizetype maximumTitleLength = 40;

    CountdownIntents(EventStore &store, const CountdownRegistry &registry, const Clock &clock,
                     const SettingsStore &settings, const LocaleManager &locale);

    // A new countdown to `date`: its title must have 1 to 40 characters (white space around it
    // does not count) and the date must lie in the future. A date at the very start of its day
    // in the system's zone makes a countdown to the whole day.
    IntentAnswer createCountdown(const QString &title, const QDateTime &date);
    // The same with the date as text: see dateFromText().
    IntentAnswer createCountdown(const QString &title, const QString &dateText);
    // The sentence of the earliest countdown still to come (a calendar event counts when it is
    // not hidden and starts later), or the sentence that there is none.
    QString nextCountdown() const;
    // The sentence of the countdown with this id.
    IntentAnswer timeUntil(const QUuid &id) const;
    // Every countdown of the store, for callers that pick one.
    QList<StoredCountdownEntity> countdowns() const;

    // The message of an error in the interface language.
    QString message(const IntentError &error) const;

    // A date as scripts write one: ISO 8601 ("2026-12-24", "2026-12-24T18:30",
    // "2026-12-24T17:30:00Z"), or a phrase in one of the interface languages that is nothing but
    // a date ("tomorrow at 3pm", "3 Haziran"). A day without a time is the start of that day.
    static std::optional<QDateTime> dateFromText(const QString &text, const QDateTime &now,
                                                 const QTimeZone &zone);

private:
    EventStore &m_store;
    const CountdownRegistry &m_registry;
    const Clock &m_clock;
    const SettingsStore &m_settings;
    const LocaleManager &m_locale;
};
