#pragma once

#include "parse/NaturalDateMatch.h"

#include <QDateTime>
#include <QLoggingCategory>
#include <QObject>
#include <QString>

#include <functional>
#include <optional>

class Clock;
class EventStore;

Q_DECLARE_LOGGING_CATEGORY(lcQuickEntry)

// The popup's quick-entry field: while the user types, the title is scanned for a date on a worker
// thread and the newest answer is shown; submitting adds a countdown to the event store.
class QuickEntryController : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString text READ text WRITE setText NOTIFY textChanged)
    Q_PROPERTY(bool hasSuggestion READ hasSuggestion NOTIFY suggestionChanged)
    Q_PROPERTY(QString suggestedTitle READ suggestedTitle NOTIFY suggestionChanged)
    Q_PROPERTY(QDateTime suggestedDate READ suggestedDate NOTIFY suggestionChanged)
    Q_PROPERTY(bool suggestionIncludesTime READ suggestionIncludesTime NOTIFY suggestionChanged)
    // "Dentist — Tue 24 Nov, 15:00" in the default locale (the interface language's).
    Q_PROPERTY(QString suggestionText READ suggestionText NOTIFY suggestionChanged)

public:
    // Finds a date in `text` as of `now`. Called on a worker thread: it must not touch shared
    // state.
    using Suggester =
        std::function<std::optional<NaturalDateMatch>(const QString &text, const QDateTime &now)>;

    QuickEntryController(EventStore &store, const Clock &clock, Suggester suggester,
                         QObject *parent = nullptr);

    QString text() const { return m_text; }
    void setText(const QString &text);

    bool hasSuggestion() const { return m_suggestion.has_value(); }
    QString suggestedTitle() const { return m_suggestion ? m_suggestion->cleanedTitle : QString(); }
    QDateTime suggestedDate() const { return m_suggestion ? m_suggestion->date : QDateTime(); }
    bool suggestionIncludesTime() const { return m_suggestion && m_suggestion->includeTime; }
    QString suggestionText() const;

    // Adds a countdown titled by the text, on the suggested date or else all day tomorrow, and
    // clears the field. Blank text adds nothing. Returns whether a countdown was added.
    Q_INVOKABLE bool submit();

Q_SIGNALS:
    void textChanged();
    void suggestionChanged();
    // Every suggestion computed for the current text has been applied.
    void suggestionSettled();

private:
    void applySuggestion(quint64 generation, const std::optional<NaturalDateMatch> &suggestion);
    void setSuggestion(const std::optional<NaturalDateMatch> &suggestion);

    EventStore &m_store;
    const Clock &m_clock;
    Suggester m_suggester;
    QString m_text;
    std::optional<NaturalDateMatch> m_suggestion;
    quint64 m_generation = 0;
    quint64 m_settledGeneration = 0;
};
