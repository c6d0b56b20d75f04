#pragma once

#include "ui/DateSuggester.h"

#include <QDateTime>
#include <QLoggingCategory>
#include <QObject>
#include <QString>

class Clock;
class EventStore;
class SettingsStore;

Q_DECLARE_LOGGING_CATEGORY(lcQuickEntry)

// The popup's quick-entry field: while the user types, the title is scanned for a date (once per
// pause in typing) and the answer is shown; submitting adds a countdown to the event store.
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
    Q_PROPERTY(QString errorText READ errorText NOTIFY errorTextChanged)

public:
    QuickEntryController(EventStore &store, const SettingsStore &settings, const Clock &clock,
                         DateSuggester::Parser parser, QObject *parent = nullptr);

    QString text() const { return m_text; }
    void setText(const QString &text);

    bool hasSuggestion() const { return m_suggester.suggestion().has_value(); }
    QString suggestedTitle() const;
    QDateTime suggestedDate() const;
    bool suggestionIncludesTime() const;
    QString suggestionText() const;
    QString errorText() const { return m_errorText; }
    DateSuggester &suggester() { return m_suggester; }

    // Adds a countdown titled by the text, on the suggested date or else all day tomorrow, and
    // clears the field. Blank text adds nothing. Returns whether a countdown was added.
    Q_INVOKABLE bool submit();

Q_SIGNALS:
    void textChanged();
    void suggestionChanged();
    // The suggestion for the current text has been applied.
    void suggestionSettled();
    void errorTextChanged();
    // A countdown was added from the field.
    void added(const QUuid &id);

private:
    void setErrorText(const QString &text);

    EventStore &m_store;
    const SettingsStore &m_settings;
    const Clock &m_clock;
    DateSuggester m_suggester;
    QString m_text;
    QString m_errorText;
};
