#include "ui/DateSuggester.h"

#include "time/Clock.h"

#include <QFutureWatcher>
#include <QtConcurrent/QtConcurrentRun>

DateSuggester::DateSuggester(const Clock &clock, Parser parser, QObject *parent)
    : QObject(parent)
    , m_clock(clock)
    , m_parser(std::move(parser))
{
    m_pause.setSingleShot(true);
    m_pause.setInterval(defaultPauseMs);
    connect(&m_pause, &QTimer::timeout, this, &DateSuggester::parse);
}

void DateSuggester::setText(const QString &text)
{
    if (m_text == text)
        return;
    m_text = text;
    restart();
}

void DateSuggester::setKeepsPast(bool keepsPast)
{
    if (m_keepsPast == keepsPast)
        return;
    m_keepsPast = keepsPast;
    restart();
}

void DateSuggester::restart()
{
    ++m_generation;
    if (m_text.trimmed().isEmpty()) {
        m_pause.stop();
        apply(m_generation, std::nullopt);
        return;
    }
    m_pause.start();
}

std::optional<NaturalDateMatch> DateSuggester::suggestionNow() const
{
    if (isSettled())
        return m_suggestion;
    return m_parser(m_text, m_clock.now(), m_keepsPast);
}

void DateSuggester::settleNow()
{
    if (isSettled())
        return;
    m_pause.stop();
    const quint64 generation = ++m_generation; // an answer still on its way is dropped
    apply(generation, m_parser(m_text, m_clock.now(), m_keepsPast));
}

void DateSuggester::parse()
{
    ++m_parseCount;
    // The watcher belongs to this object, so an answer that arrives after it is gone is dropped
    // (QFuture::then with a context object asserts in that case in Qt 6.4).
    using Watcher = QFutureWatcher<std::optional<NaturalDateMatch>>;
    auto *watcher = new Watcher(this);
    const quint64 generation = m_generation;
    connect(watcher, &Watcher::finished, this, [this, watcher, generation] {
        apply(generation, watcher->result());
        watcher->deleteLater();
    });
    watcher->setFuture(
        QtConcurrent::run([parser = m_parser, text = m_text, now = m_clock.now(),
                           keepsPast = m_keepsPast] { return parser(text, now, keepsPast); }));
}

void DateSuggester::apply(quint64 generation, const std::optional<NaturalDateMatch> &suggestion)
{
    if (generation != m_generation)
        return;
    m_settledGeneration = generation;
    if (m_suggestion != suggestion) {
        m_suggestion = suggestion;
        Q_EMIT suggestionChanged();
    }
    Q_EMIT settled();
}
