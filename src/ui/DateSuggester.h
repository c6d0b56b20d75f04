#pragma once

#include "parse/NaturalDateMatch.h"

#include <QDateTime>
#include <QObject>
#include <QTimer>

#include <functional>
#include <optional>

class Clock;

// Finds a date in text as it is typed, at most once per pause in typing: each change restarts a
// short wait, and only when it runs out is the text handed to the parser on a worker thread. An
// answer for text that has changed since is dropped. Someone who needs the answer at once (the
// field was submitted mid-pause) asks suggestionNow().
class DateSuggester : public QObject
{
    Q_OBJECT

public:
    // Finds a date in `text` as of `now`; `keepsPast` leaves dates in the past where they are.
    // Runs on a worker thread: it must not touch shared state.
    using Parser = std::function<std::optional<NaturalDateMatch>(
        const QString &text, const QDateTime &now, bool keepsPast)>;

    static constexpr int defaultPauseMs = 250;

    DateSuggester(const Clock &clock, Parser parser, QObject *parent = nullptr);

    void setPause(int milliseconds) { m_pause.setInterval(milliseconds); }
    void setText(const QString &text);
    void setKeepsPast(bool keepsPast);

    const std::optional<NaturalDateMatch> &suggestion() const { return m_suggestion; }
    // The suggestion belongs to the current text (no pause or parse is under way).
    bool isSettled() const { return m_settledGeneration == m_generation; }
    // The current text's suggestion, parsed on the spot when it is not settled yet.
    std::optional<NaturalDateMatch> suggestionNow() const;
    // Parses the current text on the spot when its suggestion is not settled yet, and applies it.
    void settleNow();
    // How many times the parser was started for typed text (not counting suggestionNow()).
    int parseCount() const { return m_parseCount; }

Q_SIGNALS:
    void suggestionChanged();
    // The suggestion for the current text has been applied.
    void settled();

private:
    void restart();
    void parse();
    void apply(quint64 generation, const std::optional<NaturalDateMatch> &suggestion);

    const Clock &m_clock;
    Parser m_parser;
    QTimer m_pause;
    QString m_text;
    bool m_keepsPast = false;
    std::optional<NaturalDateMatch> m_suggestion;
    quint64 m_generation = 0;
    quint64 m_settledGeneration = 0;
    int m_parseCount = 0;
};
