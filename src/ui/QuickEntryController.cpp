#include "ui/QuickEntryController.h"

#include "records/TimeZones.h"
#include "storage/EventStore.h"
#include "storage/SettingsStore.h"
#include "time/Clock.h"
#include "ui/CountdownRowView.h"
#include "ui/NewCountdown.h"

#include <QLocale>
#include <QTimeZone>

Q_LOGGING_CATEGORY(lcQuickEntry, "QuickEntry")

QuickEntryController::QuickEntryController(EventStore &store, const SettingsStore &settings,
                                           const Clock &clock, DateSuggester::Parser parser,
                                           QObject *parent)
    : QObject(parent)
    , m_store(store)
    , m_settings(settings)
    , m_clock(clock)
    , m_suggester(clock, std::move(parser))
{
    connect(&m_suggester, &DateSuggester::suggestionChanged, this,
            &QuickEntryController::suggestionChanged);
    connect(&m_suggester, &DateSuggester::settled, this, &QuickEntryController::suggestionSettled);
}

void QuickEntryController::setText(const QString &text)
{
    if (m_text == text)
        return;
    m_text = text;
    Q_EMIT textChanged();
    setErrorText(QString());
    m_suggester.setText(text);
}

QString QuickEntryController::suggestedTitle() const
{
    const auto &suggestion = m_suggester.suggestion();
    return suggestion ? suggestion->cleanedTitle : QString();
}

QDateTime QuickEntryController::suggestedDate() const
{
    const auto &suggestion = m_suggester.suggestion();
    return suggestion ? suggestion->date : QDateTime();
}

bool QuickEntryController::suggestionIncludesTime() const
{
    const auto &suggestion = m_suggester.suggestion();
    return suggestion && suggestion->includeTime;
}

QString QuickEntryController::suggestionText() const
{
    const auto &suggestion = m_suggester.suggestion();
    if (!suggestion)
        return QString();
    const QString when = rowDateText(suggestion->date, suggestion->includeTime,
                                     QTimeZone::systemTimeZone(), m_clock.now(), QLocale());
    const QString title = suggestion->cleanedTitle.trimmed();
    return title.isEmpty() ? when : title + u" — " + when;
}

bool QuickEntryController::submit()
{
    const QString typed = m_text.trimmed();
    if (typed.isEmpty())
        return false;
    const QDateTime now = m_clock.now();
    // The field may be submitted before the pause in typing ran out.
    const std::optional<NaturalDateMatch> suggestion = m_suggester.suggestionNow();

    const QTimeZone zone = QTimeZone::systemTimeZone();
    Event event = newCountdown(typed, now, zone, m_settings.settings());
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
        setErrorText(error.description);
        return false;
    }
    setText(QString());
    Q_EMIT added(event.id);
    return true;
}

void QuickEntryController::setErrorText(const QString &text)
{
    if (m_errorText == text)
        return;
    m_errorText = text;
    Q_EMIT errorTextChanged();
}
