#include "ui/EventEditorModel.h"

#include "l10n/LocaleManager.h"
#include "platform/tray/IconSet.h"
#include "records/TimeZones.h"
#include "storage/EventStore.h"
#include "storage/SettingsStore.h"
#include "time/Clock.h"
#include "time/CountdownFormatter.h"
#include "ui/CountdownRowView.h"
#include "ui/EditorFields.h"
#include "ui/NewCountdown.h"

Q_LOGGING_CATEGORY(lcEventEditor, "EventEditor")

namespace {

constexpr qint64 reminderPresets[] = {5, 15, 30, 60, 120, 1440, 2880, 10080};

std::optional<QString> textOrNothing(const QString &text)
{
    const QString trimmed = text.trimmed();
    return trimmed.isEmpty() ? std::nullopt : std::optional(trimmed);
}

// "5 minutes", "1 hour", "2 days", "1 week": the largest whole unit.
QString leadSpan(qint64 minutes, const LanguageTable &table)
{
    struct Unit
    {
        qint64 minutes;
        const char *singular;
        const char *plural;
    };
    static constexpr Unit units[] = {
        {10080, "countdown.unit.week", "countdown.unit.weeks"},
        {1440, "countdown.unit.day", "countdown.unit.days"},
        {60, "countdown.unit.hour", "countdown.unit.hours"},
        {1, "countdown.unit.minute", "countdown.unit.minutes"},
    };
    for (const Unit &unit : units) {
        if (minutes % unit.minutes == 0) {
            const qint64 count = minutes / unit.minutes;
            return QString::number(count) + u' '
                + table.text(count == 1 ? unit.singular : unit.plural);
        }
    }
    return QString::number(minutes);
}

} // namespace

EventEditorModel::EventEditorModel(EventStore &store, const SettingsStore &settings,
                                   const LocaleManager &locale, const Clock &clock,
                                   DateSuggester::Parser parser, PanelPreview panelPreview,
                                   QObject *parent)
    : QObject(parent)
    , m_store(store)
    , m_settings(settings)
    , m_locale(locale)
    , m_clock(clock)
    , m_parser(parser)
    , m_panelPreview(std::move(panelPreview))
    , m_suggester(clock, std::move(parser))
{
    connect(&m_suggester, &DateSuggester::suggestionChanged, this,
            &EventEditorModel::suggestionChanged);
    connect(&locale, &LocaleManager::languageChanged, this, &EventEditorModel::draftChanged);
    connect(&settings, &SettingsStore::settingsChanged, this, &EventEditorModel::draftChanged);
}

EventEditorModel::~EventEditorModel()
{
    if (m_active)
        previewInPanel(QString());
}

template<typename T>
void EventEditorModel::assign(T &field, const T &value)
{
    if (field == value)
        return;
    field = value;
    ++m_revision;
    Q_EMIT draftChanged();
}

void EventEditorModel::beginNew(const QString &title)
{
    m_original.reset();
    m_occurrence.reset();
    const QTimeZone system = QTimeZone::systemTimeZone();
    const QDateTime now = m_clock.now();
    Event event = newCountdown(title.trimmed(), now, system, m_settings.settings());
    event.targetDate = startOfDay(now.addDays(1), system);
    event.includeTime = false;
    loadEvent(event);
    m_titleEdited = !m_title.isEmpty();
    m_suggester.setText(m_title);
    m_active = true;
    Q_EMIT activeChanged();
    Q_EMIT draftChanged();
}

void EventEditorModel::beginEdit(const CountdownItem &item)
{
    if (const Event *event = item.event()) {
        m_occurrence.reset();
        m_original = *event;
        loadEvent(*event);
    } else {
        m_original.reset();
        m_occurrence = *item.occurrence();
        loadOccurrence(*m_occurrence);
    }
    m_titleEdited = false;
    m_suggester.setText(QString());
    m_active = true;
    Q_EMIT activeChanged();
    Q_EMIT draftChanged();
}

void EventEditorModel::loadEvent(const Event &event)
{
    const QTimeZone zone = event.zone();
    const QDateTime local = event.targetDate.toTimeZone(zone);
    const QLocale loc = locale();
    m_title = event.title;
    m_dateText = EditorFields::formatDate(local.date(), loc);
    m_allDay = !event.includeTime;
    m_timeText = EditorFields::formatTime(event.includeTime ? local.time() : QTime(9, 0), loc);
    m_timeZone = QString::fromUtf8(zone.id());
    m_countsUp = event.direction == CountdownDirection::since;
    m_repeat = event.recurrence ? int(event.recurrence->frequency) : -1;
    m_repeatInterval = event.recurrence ? int(std::max<qint64>(1, event.recurrence->interval)) : 1;
    m_repeatWeekdays = event.recurrence ? event.recurrence->weekdays : QList<Weekday>();
    m_repeatEnd = 0;
    m_repeatCount = 10;
    m_repeatEndDateText.clear();
    if (event.recurrence && event.recurrence->end) {
        const RecurrenceRule::End &end = *event.recurrence->end;
        if (end.kind == RecurrenceRule::End::Kind::afterOccurrences) {
            m_repeatEnd = 1;
            m_repeatCount = int(end.count);
        } else {
            m_repeatEnd = 2;
            m_repeatEndDateText = EditorFields::formatDate(end.date.toTimeZone(zone).date(), loc);
        }
    }
    m_reminders = event.reminderLeadMinutes;
    m_symbol = event.icon ? event.icon->symbol : QString();
    m_color = event.color ? rawValue(*event.color) : QString();
    m_note = event.note.value_or(QString());
    m_link = event.link.value_or(QString());
    m_celebrationEnabled = event.celebrationEnabled;
    m_notifyOnReach = event.notifyOnReach;
    m_milestonesEnabled = event.milestonesEnabled;
    m_saveAttempted = false;
    m_dismissedDate.reset();
    m_saveError.clear();
    ++m_revision;
}

void EventEditorModel::loadOccurrence(const CalendarOccurrence &occurrence)
{
    const QTimeZone zone = zoneOrSystem(occurrence.timeZoneID);
    const QDateTime local = occurrence.start.toTimeZone(zone);
    const QLocale loc = locale();
    m_title = occurrence.title;
    m_dateText = EditorFields::formatDate(local.date(), loc);
    m_allDay = occurrence.isAllDay;
    m_timeText = EditorFields::formatTime(local.time(), loc);
    m_timeZone = QString::fromUtf8(zone.id());
    m_countsUp = false;
    m_repeat = -1;
    m_reminders = occurrence.reminderLeadMinutes;
    m_symbol = occurrence.icon ? occurrence.icon->symbol : QString();
    m_color.clear();
    m_note = occurrence.note.value_or(QString());
    m_link = occurrence.link.value_or(QString());
    m_celebrationEnabled = occurrence.celebrationEnabled;
    m_notifyOnReach = occurrence.notifyOnReach;
    m_milestonesEnabled = false;
    m_saveAttempted = false;
    m_dismissedDate.reset();
    m_saveError.clear();
    ++m_revision;
}

bool EventEditorModel::submitTitle()
{
    m_suggester.settleNow(); // Enter may come before the pause in typing ran out
    if (!hasSuggestion())
        return save();
    useSuggestion();
    return false;
}

void EventEditorModel::cancel()
{
    close(false);
}

void EventEditorModel::close(bool saved)
{
    if (!m_active)
        return;
    m_active = false;
    m_suggester.setText(QString());
    previewInPanel(QString());
    Q_EMIT activeChanged();
    Q_EMIT finished(saved);
}

QLocale EventEditorModel::locale() const
{
    return m_locale.interfaceLocale();
}

QTimeZone EventEditorModel::zone() const
{
    return zoneOrSystem(m_timeZone);
}

EditorFields::DateWords EventEditorModel::dateWords() const
{
    return [this](const QString &phrase, bool *hasTime) -> std::optional<QDateTime> {
        const std::optional<NaturalDateMatch> match = m_parser(phrase, m_clock.now(), true);
        if (!match)
            return std::nullopt;
        *hasTime = match->includeTime;
        return match->date.toTimeZone(QTimeZone::systemTimeZone());
    };
}

QDate EventEditorModel::parseDate(const QString &text) const
{
    return EditorFields::parseDate(text, locale(), dateWords());
}

QTime EventEditorModel::parseTime(const QString &text) const
{
    return EditorFields::parseTime(text, locale(), dateWords());
}

std::optional<QDateTime> EventEditorModel::target() const
{
    const QDate day = parseDate(m_dateText);
    if (!day.isValid())
        return std::nullopt;
    if (m_allDay)
        return startOfDay(QDateTime(day, QTime(12, 0), zone()), zone());
    const QTime time = parseTime(m_timeText);
    if (!time.isValid())
        return std::nullopt;
    return QDateTime(day, time, zone()).toUTC();
}

bool EventEditorModel::targetChanged() const
{
    if (!m_original)
        return true;
    const std::optional<QDateTime> moment = target();
    return !moment || *moment != m_original->effectiveTarget()
        || m_allDay == m_original->includeTime;
}

std::optional<RecurrenceRule> EventEditorModel::draftRecurrence() const
{
    if (m_repeat < 0)
        return std::nullopt;
    RecurrenceRule rule;
    rule.frequency = RecurrenceRule::Frequency(m_repeat);
    rule.interval = std::max(1, m_repeatInterval);
    if (rule.frequency == RecurrenceRule::Frequency::weekly) {
        rule.weekdays = m_repeatWeekdays;
        std::sort(rule.weekdays.begin(), rule.weekdays.end());
        // A weekly rule without days repeats on the target's day.
        const std::optional<QDateTime> moment = target();
        if (rule.weekdays.isEmpty() && moment) {
            if (const auto day =
                    weekdayFromNumber(moment->toTimeZone(zone()).date().dayOfWeek() % 7 + 1))
                rule.weekdays.append(*day);
        }
    }
    if (m_repeatEnd == 1)
        rule.end = RecurrenceRule::End::afterOccurrences(std::max(1, m_repeatCount));
    else if (m_repeatEnd == 2)
        rule.end = RecurrenceRule::End::onDate(
            startOfDay(QDateTime(parseDate(m_repeatEndDateText), QTime(12, 0), zone()), zone()));
    return rule;
}

std::optional<Event> EventEditorModel::draftEvent() const
{
    const std::optional<QDateTime> moment = target();
    if (!moment)
        return std::nullopt;
    Event event = m_original
        ? *m_original
        : newCountdown(QString(), m_clock.now(), zone(), m_settings.settings());
    event.title = m_title.trimmed();
    event.targetDate = *moment;
    event.includeTime = !m_allDay;
    event.timeZone = m_timeZone;
    event.icon = m_symbol.isEmpty() ? std::nullopt : std::optional(IconRef::named(m_symbol));
    // A repeating countdown that already had one keeps its recurrence as it was when the rule is
    // unchanged, so the cycle it is in stays untouched.
    const std::optional<RecurrenceRule> rule = draftRecurrence();
    if (!(m_original && m_original->recurrence == rule))
        event.recurrence = rule;
    event.note = textOrNothing(m_note);
    event.link = textOrNothing(m_link);
    event.reminderLeadMinutes = normalizedReminderLeads(m_reminders);
    event.direction = m_countsUp ? CountdownDirection::since : CountdownDirection::until;
    event.color = eventColorFromRaw(m_color);
    event.celebrationEnabled = m_celebrationEnabled;
    event.notifyOnReach = m_notifyOnReach;
    event.milestonesEnabled = m_milestonesEnabled;
    // A countdown moved to a moment still ahead counts again.
    if (m_original && m_original->reachedAt && !m_countsUp && *moment > m_clock.now()
        && targetChanged()) {
        event.reachedAt.reset();
        event.celebrationAcknowledged = false;
    }
    return event;
}

bool EventEditorModel::save()
{
    if (!m_active)
        return false;
    m_saveAttempted = true;
    setSaveError(QString());
    Q_EMIT draftChanged();
    const bool valid = titleError().isEmpty() && dateError().isEmpty() && timeError().isEmpty()
        && repeatEndError().isEmpty() && linkError().isEmpty();
    if (!valid)
        return false;
    const bool saved = m_occurrence ? saveSeries() : saveCountdown();
    if (saved)
        close(true);
    return saved;
}

bool EventEditorModel::saveCountdown()
{
    const std::optional<Event> edited = draftEvent();
    if (!edited)
        return false;
    EventStoreError error;
    bool ok = true;
    if (!m_original) {
        ok = m_store.addEvent(*edited, &error);
    } else {
        const EventPatch patch = EventPatch::between(*m_original, *edited);
        ok = patch.isEmpty() || m_store.updateEvent(m_original->id, patch, &error);
    }
    if (ok)
        return true;
    qCWarning(lcEventEditor).noquote()
        << QStringLiteral("Failed to save %1: %2")
               .arg(edited->id.toString(QUuid::WithoutBraces), error.description);
    setSaveError(error.kind == EventStoreError::Kind::noEvent
                     ? m_locale.table().text("intents.error.not_found")
                     : m_locale.table().format("edit.error.save_failed %@", {error.description}));
    return false;
}

bool EventEditorModel::saveSeries()
{
    const CalendarOccurrence &occurrence = *m_occurrence;
    const CalendarSeriesRef &series = occurrence.ref.series;
    EventStoreError error;
    bool ok = true;
    const std::optional<IconRef> icon =
        m_symbol.isEmpty() ? std::nullopt : std::optional(IconRef::named(m_symbol));
    if (icon != occurrence.icon)
        ok = m_store.setCalendarIcon(series, icon, &error);
    const CalendarAnnotation annotation {textOrNothing(m_note), textOrNothing(m_link)};
    if (ok && (annotation.note != occurrence.note || annotation.link != occurrence.link))
        ok = m_store.setCalendarAnnotation(
            series, annotation.isEmpty() ? std::nullopt : std::optional(annotation), &error);
    CalendarReachSignals reach = m_store.calendarReach().value(series);
    const CalendarReachSignals before = reach;
    reach.celebrationEnabled = m_celebrationEnabled;
    reach.notifyOnReach = m_notifyOnReach;
    reach.reminderLeadMinutes = normalizedReminderLeads(m_reminders);
    if (ok && reach != before)
        ok = m_store.setCalendarReach(series, reach, &error);
    if (ok)
        return true;
    qCWarning(lcEventEditor).noquote()
        << QStringLiteral("Failed to save the calendar series %1: %2")
               .arg(series.seriesID, error.description);
    setSaveError(m_locale.table().format("edit.error.save_failed %@", {error.description}));
    return false;
}

void EventEditorModel::setSaveError(const QString &text)
{
    if (m_saveError == text)
        return;
    m_saveError = text;
    Q_EMIT draftChanged();
}

void EventEditorModel::previewInPanel(const QString &symbol)
{
    if (m_panelPreview)
        m_panelPreview(symbol);
}

// Fields

void EventEditorModel::setTitle(const QString &title)
{
    if (m_title == title)
        return;
    m_titleEdited = true;
    assign(m_title, title);
    if (!m_occurrence)
        m_suggester.setText(title);
}

void EventEditorModel::setDateText(const QString &text)
{
    assign(m_dateText, text);
}

QDate EventEditorModel::date() const
{
    return parseDate(m_dateText);
}

void EventEditorModel::setDate(const QDate &date)
{
    if (date.isValid())
        setDateText(EditorFields::formatDate(date, locale()));
}

void EventEditorModel::setTimeText(const QString &text)
{
    assign(m_timeText, text);
}

void EventEditorModel::setAllDay(bool allDay)
{
    assign(m_allDay, allDay);
}

void EventEditorModel::setTimeZone(const QString &zoneId)
{
    if (QTimeZone::isTimeZoneIdAvailable(zoneId.toUtf8()))
        assign(m_timeZone, zoneId);
}

void EventEditorModel::setCountsUp(bool countsUp)
{
    assign(m_countsUp, countsUp);
    m_suggester.setKeepsPast(countsUp);
}

void EventEditorModel::setRepeat(int frequency)
{
    assign(m_repeat, std::clamp(frequency, -1, int(RecurrenceRule::Frequency::yearly)));
}

void EventEditorModel::setRepeatInterval(int interval)
{
    assign(m_repeatInterval, std::clamp(interval, 1, 999));
}

void EventEditorModel::setRepeatEnd(int end)
{
    assign(m_repeatEnd, std::clamp(end, 0, 2));
}

void EventEditorModel::setRepeatCount(int count)
{
    assign(m_repeatCount, std::clamp(count, 1, 999));
}

void EventEditorModel::setRepeatEndDateText(const QString &text)
{
    assign(m_repeatEndDateText, text);
}

void EventEditorModel::toggleWeekday(int day)
{
    const std::optional<Weekday> weekday = weekdayFromNumber(day);
    if (!weekday)
        return;
    QList<Weekday> days = m_repeatWeekdays;
    if (!days.removeOne(*weekday))
        days.append(*weekday);
    std::sort(days.begin(), days.end());
    assign(m_repeatWeekdays, days);
}

QVariantList EventEditorModel::weekdays() const
{
    const QLocale loc = locale();
    QVariantList days;
    for (int i = 0; i < 7; ++i) {
        const int qtDay = (int(loc.firstDayOfWeek()) - 1 + i) % 7 + 1; // Monday = 1
        const int day = qtDay % 7 + 1; // Sunday = 1
        days.append(
            QVariantMap {{QStringLiteral("day"), day},
                         {QStringLiteral("name"), loc.dayName(qtDay, QLocale::ShortFormat)},
                         {QStringLiteral("selected"), m_repeatWeekdays.contains(Weekday(day))}});
    }
    return days;
}

void EventEditorModel::addReminder(int minutes)
{
    if (minutes >= 1)
        assign(m_reminders, normalizedReminderLeads(m_reminders + QList<qint64> {minutes}));
}

void EventEditorModel::removeReminder(int minutes)
{
    QList<qint64> reminders = m_reminders;
    reminders.removeAll(minutes);
    assign(m_reminders, reminders);
}

QVariantList EventEditorModel::reminders() const
{
    QVariantList list;
    const LanguageTable &table = m_locale.table();
    for (auto it = m_reminders.crbegin(); it != m_reminders.crend(); ++it)
        list.append(
            QVariantMap {{QStringLiteral("minutes"), *it},
                         {QStringLiteral("text"),
                          table.format("edit.reminder.before %@", {leadSpan(*it, table)})}});
    return list;
}

QVariantList EventEditorModel::reminderChoices() const
{
    QVariantList list;
    const LanguageTable &table = m_locale.table();
    for (const qint64 minutes : reminderPresets) {
        if (!m_reminders.contains(minutes))
            list.append(QVariantMap {
                {QStringLiteral("minutes"), minutes},
                {QStringLiteral("text"),
                 table.format("edit.reminder.before %@", {leadSpan(minutes, table)})}});
    }
    return list;
}

void EventEditorModel::setSymbol(const QString &symbol)
{
    assign(m_symbol, symbol);
    if (m_active)
        previewInPanel(symbol.isEmpty() ? MenubarChipPresentation::defaultSymbol : symbol);
}

QStringList EventEditorModel::symbols() const
{
    return IconSet::names();
}

void EventEditorModel::setColor(const QString &color)
{
    assign(m_color, eventColorFromRaw(color) ? color : QString());
}

QVariantList EventEditorModel::colors() const
{
    const LanguageTable &table = m_locale.table();
    QVariantList list = {QVariantMap {{QStringLiteral("name"), QString()},
                                      {QStringLiteral("hex"), QString()},
                                      {QStringLiteral("text"), table.text(displayNameKey({}))}}};
    for (const EventColor color : AllEventColors)
        list.append(QVariantMap {{QStringLiteral("name"), rawValue(color)},
                                 {QStringLiteral("hex"), QColor::fromRgb(rgbOf(color)).name()},
                                 {QStringLiteral("text"), table.text(displayNameKey(color))}});
    return list;
}

void EventEditorModel::setNote(const QString &note)
{
    assign(m_note, note);
}

void EventEditorModel::setLink(const QString &link)
{
    assign(m_link, link);
}

void EventEditorModel::setCelebrationEnabled(bool enabled)
{
    assign(m_celebrationEnabled, enabled);
}

void EventEditorModel::setNotifyOnReach(bool enabled)
{
    assign(m_notifyOnReach, enabled);
}

void EventEditorModel::setMilestonesEnabled(bool enabled)
{
    assign(m_milestonesEnabled, enabled);
}

// Derived texts

QString EventEditorModel::footerText() const
{
    const std::optional<QDateTime> moment = target();
    if (!moment || m_occurrence)
        return QString();
    const QDateTime now = m_clock.now();
    const LanguageTable &table = m_locale.table();
    if (m_countsUp && *moment <= now)
        return table.format("edit.footer.elapsed %@",
                            {CountdownFormatter::daysDetail(*moment, now, zone(), table)});
    if (!m_countsUp && now.secsTo(*moment) >= 60)
        return table.format("edit.footer.remaining %@",
                            {CountdownFormatter::daysDetail(now, *moment, zone(), table)});
    return QString();
}

QString EventEditorModel::datePlaceholder() const
{
    return EditorFields::formatDate(m_clock.now().toTimeZone(zone()).date().addDays(1), locale());
}

QString EventEditorModel::titleError() const
{
    if (m_occurrence || !m_saveAttempted || !m_title.trimmed().isEmpty())
        return QString();
    return m_locale.table().text("edit.error.title_empty");
}

QString EventEditorModel::dateError() const
{
    if (m_occurrence)
        return QString();
    const LanguageTable &table = m_locale.table();
    if (m_dateText.trimmed().isEmpty())
        return m_saveAttempted ? table.text("edit.error.date_missing") : QString();
    if (!parseDate(m_dateText).isValid())
        return table.text("edit.error.date_invalid");
    const std::optional<QDateTime> moment = target();
    if (moment && !m_countsUp && targetChanged() && *moment <= m_clock.now())
        return table.text("edit.error.date_past");
    return QString();
}

QString EventEditorModel::timeError() const
{
    if (m_occurrence || m_allDay || parseTime(m_timeText).isValid())
        return QString();
    return m_locale.table().text("edit.error.time_invalid");
}

QString EventEditorModel::repeatEndError() const
{
    if (m_occurrence || m_repeat < 0 || m_repeatEnd != 2
        || parseDate(m_repeatEndDateText).isValid())
        return QString();
    return m_locale.table().text("edit.error.date_invalid");
}

QString EventEditorModel::linkError() const
{
    if (m_link.trimmed().isEmpty() || EditorFields::isLink(m_link))
        return QString();
    return m_locale.table().text("edit.error.link_invalid");
}

QString EventEditorModel::chipPreview() const
{
    return QStringLiteral("image://chip/editor/%1").arg(m_revision);
}

MenubarChipPresentation EventEditorModel::chipPresentation() const
{
    const Settings &settings = m_settings.settings();
    const QDateTime now = m_clock.now();
    const QDateTime moment = target().value_or(now);
    MenubarChipInputs inputs;
    const QString title = m_title.trimmed();
    inputs.subject = MenubarSubject {
        title.isEmpty() ? m_locale.table().text("menubar.idle.label") : title,
        m_symbol.isEmpty() ? std::nullopt : std::optional(IconRef::named(m_symbol)), zone()};
    inputs.state = m_countsUp ? ReachState::elapsed(moment, now)
                              : ReachState::counting(Remaining::until(moment, now));
    inputs.style = settings.menubarStyle;
    inputs.titleLength = settings.menubarTitleLength;
    inputs.displayFormat = settings.displayFormat;
    return MenubarChipPresentation::build(inputs, m_locale.table());
}

// Suggestion

bool EventEditorModel::hasSuggestion() const
{
    const std::optional<NaturalDateMatch> &suggestion = m_suggester.suggestion();
    return m_active && m_titleEdited && suggestion && suggestion->date != m_dismissedDate;
}

QString EventEditorModel::suggestionText() const
{
    const std::optional<NaturalDateMatch> &suggestion = m_suggester.suggestion();
    if (!suggestion)
        return QString();
    return rowDateText(suggestion->date, suggestion->includeTime, zone(), m_clock.now(), locale());
}

void EventEditorModel::useSuggestion()
{
    if (!hasSuggestion())
        return;
    const NaturalDateMatch match = *m_suggester.suggestion();
    const QDateTime local = match.date.toTimeZone(zone());
    m_dateText = EditorFields::formatDate(local.date(), locale());
    m_allDay = !match.includeTime;
    if (match.includeTime)
        m_timeText = EditorFields::formatTime(local.time(), locale());
    // What is left of the title is kept; the chip goes until the title yields another date.
    m_dismissedDate = match.date;
    if (!match.cleanedTitle.trimmed().isEmpty()) {
        m_title = match.cleanedTitle.trimmed();
        m_suggester.setText(m_title);
    }
    ++m_revision;
    Q_EMIT draftChanged();
    Q_EMIT suggestionChanged();
}

void EventEditorModel::dismissSuggestion()
{
    if (!hasSuggestion())
        return;
    m_dismissedDate = m_suggester.suggestion()->date;
    Q_EMIT suggestionChanged();
}
