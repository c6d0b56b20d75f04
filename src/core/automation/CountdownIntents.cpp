#include "automation/CountdownIntents.h"

#include "automation/TimeSentence.h"
#include "countdown/CountdownRegistry.h"
#include "l10n/LocaleManager.h"
#include "parse/DateText.h"
#include "parse/NaturalDateParser.h"
#include "records/TimeZones.h"
#include "storage/EventStore.h"
#include "storage/SettingsStore.h"
#include "time/Clock.h"
#include "time/CountdownFormatter.h"

#include <QTextBoundaryFinder>

Q_LOGGING_CATEGORY(lcIntents, "Intents")

namespace {

// User-perceived characters: "👍🏽" and "é" written as e + accent are one each.
qsizetype characterCount(const QString &text)
{
    qsizetype count = 0;
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    while (finder.toNextBoundary() > 0)
        ++count;
    return count;
}

} // namespace

CountdownIntents::CountdownIntents(EventStore &store, const CountdownRegistry &registry,
                                   const Clock &clock, const SettingsStore &settings,
                                   const LocaleManager &locale)
    : m_store(store)
    , m_registry(registry)
    , m_clock(clock)
    , m_settings(settings)
    , m_locale(locale)
{
}

std::optional<QDateTime> CountdownIntents::dateFromText(const QString &text, const QDateTime &now,
                                                        const QTimeZone &zone)
{
    if (const std::optional<DateText> date = parseDateText(text, zone))
        return date->instant;
    const std::optional<NaturalDateMatch> match =
        NaturalDateParser::parse(text.trimmed(), now, zone, false);
    if (!match || !match->cleanedTitle.trimmed().isEmpty())
        return std::nullopt;
    return match->includeTime ? match->date : startOfDay(match->date, zone);
}

IntentAnswer CountdownIntents::createCountdown(const QString &title, const QString &dateText)
{
    const QDateTime now = m_clock.now();
    const std::optional<QDateTime> date = dateFromText(dateText, now, QTimeZone::systemTimeZone());
    if (!date)
        return IntentAnswer::failed({IntentError::Kind::invalidDate, {}});
    return createCountdown(title, *date);
}

IntentAnswer CountdownIntents::createCountdown(const QString &title, const QDateTime &date)
{
    const QString trimmed = title.trimmed();
    const qsizetype length = characterCount(trimmed);
    if (length < 1 || length > maximumTitleLength)
        return IntentAnswer::failed({IntentError::Kind::invalidTitle, {}});
    const QDateTime now = m_clock.now();
    if (!date.isValid() || date <= now)
        return IntentAnswer::failed({IntentError::Kind::pastDate, {}});

    const QTimeZone zone = QTimeZone::systemTimeZone();
    Event event = Event::created(trimmed, now, zone);
    event.targetDate = date.toUTC();
    event.includeTime = date != startOfDay(date, zone);
    event.direction = CountdownDirection::until;
    EventStoreError storeError;
    if (!m_store.addEvent(event, &storeError)) {
        qCWarning(lcIntents).noquote()
            << QStringLiteral("Failed to create a countdown: %1").arg(storeError.description);
        return IntentAnswer::failed({IntentError::Kind::saveFailed, storeError.description});
    }
    const QString left =
        CountdownFormatter::compact(Remaining::until(event.effectiveTarget(), now),
                                    m_settings.settings().displayFormat, m_locale.table());
    return {m_locale.table().format("intents.create.done %@ %@", {event.title, left}), {}};
}

QString CountdownIntents::nextCountdown() const
{
    const QDateTime now = m_clock.now();
    const qint64 nowMSecs = now.toMSecsSinceEpoch();
    const CountdownItem *next = nullptr;
    for (const CountdownItem &item : m_registry.items()) {
        const bool candidate = item.isManual() ? item.isUpcoming(nowMSecs)
                                               : !item.isHidden() && item.isUpcoming(nowMSecs);
        if (candidate && (!next || item.dateMSecs() < next->dateMSecs()))
            next = &item;
    }
    if (!next)
        return m_locale.text(QStringLiteral("intents.next.none"));
    return timeSentence(*next, now, m_settings.settings().displayFormat, m_locale.table());
}

IntentAnswer CountdownIntents::timeUntil(const QUuid &id) const
{
    const Event *event = id.isNull() ? nullptr : m_store.event(id);
    if (!event)
        return IntentAnswer::failed({IntentError::Kind::notFound, {}});
    return {timeSentence(CountdownItem::manual(*event), m_clock.now(),
                         m_settings.settings().displayFormat, m_locale.table()),
            {}};
}

QList<StoredCountdownEntity> CountdownIntents::countdowns() const
{
    return StoredCountdownQuery::all(m_store);
}

QString CountdownIntents::message(const IntentError &error) const
{
    return error.message(m_locale.table());
}
