#include "ui/QuickEntryController.h"

#include "records/Event.h"
#include "records/TimeZones.h"
#include "storage/EventStore.h"
#include "time/Clock.h"

#include <QFutureWatcher>
#include <QLocale>
#include <QTimeZone>
#include <QtConcurrent/QtConcurrentRun>

Q_LOGGING_CATEGORY(lcQuickEntry, "QuickEntry")

QuickEntryController::QuickEntryController(EventStore &store, const Clock &clock,
                                           Suggester suggester, QObject *parent)
    : QObject(parent)
    , m_store(store)
    , m_clock(clock)
    , m_suggester(std::move(suggester))
{
}

void QuickEntryController::setText(const QString &text)
{
    if (m_text == text)
        return;
    m_text = text;
    Q_EMIT textChanged();

    const quint64 generation = ++m_generation;
    if (text.trimmed().isEmpty()) {
        applySuggestion(generation, std::nullopt);
        return;
    }
    // Answers may come back out of order; only the one for the newest text is applied. The
    // watcher belongs to this controller, so an answer that arrives after the controller is gone
    // is dropped (QFuture::then with a context object asserts in that case in Qt 6.4).
    using Watcher = QFutureWatcher<std::optional<NaturalDateMatch>>;
    auto *watcher = new Watcher(this);
    connect(watcher, &Watcher::finished, this, [this, watcher, generation] {
        applySuggestion(generation, watcher->result());
        watcher->deleteLater();
    });
    watcher->setFuture(QtConcurrent::run(
        [suggester = m_suggester, text, now = m_clock.now()] { return suggester(text, now); }));
}

void QuickEntryController::applySuggestion(quint64 generation,
                                           const std::optional<NaturalDateMatch> &suggestion)
{
    if (generation != m_generation)
        return;
    setSuggestion(suggestion);
    m_settledGeneration = generation;
    Q_EMIT suggestionSettled();
}

QString QuickEntryController::suggestionText() const
{
    if (!m_suggestion)
        return QString();
    const QLocale locale;
    const QTimeZone zone = QTimeZone::systemTimeZone();
    const QDateTime when = m_suggestion->date.toTimeZone(zone);
    const bool thisYear = when.date().year() == m_clock.now().toTimeZone(zone).date().year();
    QString text = locale.toString(when.date(), thisYear ? u"ddd d MMM" : u"ddd d MMM yyyy");
    if (m_suggestion->includeTime)
        text += u", " + locale.toString(when.time(), QLocale::ShortFormat);
    const QString title = m_suggestion->cleanedTitle.trimmed();
    return title.isEmpty() ? text : title + u" — " + text;
}

void QuickEntryController::setSuggestion(const std::optional<NaturalDateMatch> &suggestion)
{
    if (m_suggestion == suggestion)
        return;
    m_suggestion = suggestion;
    Q_EMIT suggestionChanged();
}

bool QuickEntryController::submit()
{
    const QString typed = m_text.trimmed();
    if (typed.isEmpty())
        return false;
    const QDateTime now = m_clock.now();
    // The field may be submitted before the worker answered for the latest keystroke.
    const std::optional<NaturalDateMatch> suggestion =
        m_settledGeneration == m_generation ? m_suggestion : m_suggester(typed, now);

    const QTimeZone zone = QTimeZone::systemTimeZone();
    Event event = Event::created(typed, now, zone);
    if (suggestion) {
        if (!suggestion->cleanedTitle.trimmed().isEmpty())
            event.title = suggestion->cleanedTitle.trimmed();
        event.targetDate = suggestion->date.toUTC();
        event.includeTime = suggestion->includeTime;
    } else {
        event.targetDate = startOfDay(now.addDays(1), zone);
        event.includeTime = false;
    }
    EventStoreError error;
    if (!m_store.addEvent(event, &error)) {
        qCWarning(lcQuickEntry).noquote()
            << QStringLiteral("Failed to add a countdown: %1").arg(error.description);
        return false;
    }
    setText(QString());
    return true;
}
