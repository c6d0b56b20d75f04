#pragma once

#include "countdown/CountdownItem.h"
#include "countdown/MenubarChipPresentation.h"
#include "ui/DateSuggester.h"
#include "ui/EditorFields.h"

#include <QDate>
#include <QLoggingCategory>
#include <QObject>
#include <QVariantList>

#include <functional>
#include <optional>

class Clock;
class EventStore;
class LocaleManager;
class SettingsStore;

Q_DECLARE_LOGGING_CATEGORY(lcEventEditor)

// The editor page of the popup: every field of a countdown (or, for a calendar event, what the
// user keeps for its series: icon, note, link, arrival switches and reminders), checked as the
// user types, with the date suggestion found in the title.
//
// Saving a new countdown adds it to the store; saving an existing one updates it with a patch of
// exactly the fields that changed. A save that fails keeps every field as typed and shows why.
// Field checks: a title is needed, dates and times must be real ones, a link must be a URL.
class EventEditorModel : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool active READ isActive NOTIFY activeChanged)
    Q_PROPERTY(bool isNew READ isNew NOTIFY activeChanged)
    Q_PROPERTY(bool isCalendar READ isCalendar NOTIFY activeChanged)

    Q_PROPERTY(QString title READ title WRITE setTitle NOTIFY draftChanged)
    Q_PROPERTY(QString dateText READ dateText WRITE setDateText NOTIFY draftChanged)
    Q_PROPERTY(QDate date READ date WRITE setDate NOTIFY draftChanged)
    Q_PROPERTY(QString timeText READ timeText WRITE setTimeText NOTIFY draftChanged)
    Q_PROPERTY(bool allDay READ allDay WRITE setAllDay NOTIFY draftChanged)
    Q_PROPERTY(QString timeZone READ timeZone WRITE setTimeZone NOTIFY draftChanged)
    Q_PROPERTY(bool countsUp READ countsUp WRITE setCountsUp NOTIFY draftChanged)
    // -1: never; else RecurrenceRule::Frequency (daily, weekly, monthly, yearly).
    Q_PROPERTY(int repeat READ repeat WRITE setRepeat NOTIFY draftChanged)
    Q_PROPERTY(int repeatInterval READ repeatInterval WRITE setRepeatInterval NOTIFY draftChanged)
    // 0: never ends; 1: after repeatCount times; 2: on repeatEndDateText.
    Q_PROPERTY(int repeatEnd READ repeatEnd WRITE setRepeatEnd NOTIFY draftChanged)
    Q_PROPERTY(int repeatCount READ repeatCount WRITE setRepeatCount NOTIFY draftChanged)
    Q_PROPERTY(QString repeatEndDateText READ repeatEndDateText WRITE setRepeatEndDateText NOTIFY
                   draftChanged)
    // The days of the week in the locale's order: {day (1 = Sunday), name, selected}.
    Q_PROPERTY(QVariantList weekdays READ weekdays NOTIFY draftChanged)
    // {minutes, text} of each reminder, soonest last.
    Q_PROPERTY(QVariantList reminders READ reminders NOTIFY draftChanged)
    Q_PROPERTY(QVariantList reminderChoices READ reminderChoices NOTIFY draftChanged)
    Q_PROPERTY(QString symbol READ symbol WRITE setSymbol NOTIFY draftChanged)
    Q_PROPERTY(QStringList symbols READ symbols CONSTANT)
    // The colour's raw name, empty for the default accent.
    Q_PROPERTY(QString color READ color WRITE setColor NOTIFY draftChanged)
    // {name, hex, text} of the default accent and the eight colours.
    Q_PROPERTY(QVariantList colors READ colors NOTIFY draftChanged)
    Q_PROPERTY(QString note READ note WRITE setNote NOTIFY draftChanged)
    Q_PROPERTY(QString link READ link WRITE setLink NOTIFY draftChanged)
    Q_PROPERTY(bool celebrationEnabled READ celebrationEnabled WRITE setCelebrationEnabled NOTIFY
                   draftChanged)
    Q_PROPERTY(bool notifyOnReach READ notifyOnReach WRITE setNotifyOnReach NOTIFY draftChanged)
    Q_PROPERTY(bool milestonesEnabled READ milestonesEnabled WRITE setMilestonesEnabled NOTIFY
                   draftChanged)

    Q_PROPERTY(QString footerText READ footerText NOTIFY draftChanged)
    Q_PROPERTY(QString datePlaceholder READ datePlaceholder NOTIFY draftChanged)
    Q_PROPERTY(QString titleError READ titleError NOTIFY draftChanged)
    Q_PROPERTY(QString dateError READ dateError NOTIFY draftChanged)
    Q_PROPERTY(QString timeError READ timeError NOTIFY draftChanged)
    Q_PROPERTY(QString repeatEndError READ repeatEndError NOTIFY draftChanged)
    Q_PROPERTY(QString linkError READ linkError NOTIFY draftChanged)
    Q_PROPERTY(QString saveError READ saveError NOTIFY draftChanged)
    // Where the chip preview image is served ("image://chip/editor/<revision>").
    Q_PROPERTY(QString chipPreview READ chipPreview NOTIFY draftChanged)

    Q_PROPERTY(bool hasSuggestion READ hasSuggestion NOTIFY suggestionChanged)
    Q_PROPERTY(QString suggestionText READ suggestionText NOTIFY suggestionChanged)

public:
    // Shows `symbol` in the panel chip while the editor is open; an empty symbol ends it.
    using PanelPreview = std::function<void(const QString &symbol)>;

    EventEditorModel(EventStore &store, const SettingsStore &settings, const LocaleManager &locale,
                     const Clock &clock, DateSuggester::Parser parser,
                     PanelPreview panelPreview = {}, QObject *parent = nullptr);
    ~EventEditorModel() override;

    bool isActive() const { return m_active; }
    bool isNew() const { return m_active && !m_original && !m_occurrence; }
    bool isCalendar() const { return m_occurrence.has_value(); }

    // Opens the editor on a new countdown (tomorrow, all day), with `title` typed already.
    Q_INVOKABLE void beginNew(const QString &title = QString());
    // Opens the editor on an item of the list.
    void beginEdit(const CountdownItem &item);
    // Checks the fields and saves; true when saved (the editor then closes).
    Q_INVOKABLE bool save();
    // Closes the editor without saving.
    Q_INVOKABLE void cancel();
    // Enter in the title field: takes the date found in the title when there is one (reading
    // the title at once if typing has not paused yet), else saves.
    Q_INVOKABLE bool submitTitle();

    Q_INVOKABLE void useSuggestion();
    Q_INVOKABLE void dismissSuggestion();
    Q_INVOKABLE void toggleWeekday(int day);
    Q_INVOKABLE void addReminder(int minutes);
    Q_INVOKABLE void removeReminder(int minutes);

    QString title() const { return m_title; }
    void setTitle(const QString &title);
    QString dateText() const { return m_dateText; }
    void setDateText(const QString &text);
    QDate date() const;
    void setDate(const QDate &date);
    QString timeText() const { return m_timeText; }
    void setTimeText(const QString &text);
    bool allDay() const { return m_allDay; }
    void setAllDay(bool allDay);
    QString timeZone() const { return m_timeZone; }
    void setTimeZone(const QString &zone);
    bool countsUp() const { return m_countsUp; }
    void setCountsUp(bool countsUp);
    int repeat() const { return m_repeat; }
    void setRepeat(int frequency);
    int repeatInterval() const { return m_repeatInterval; }
    void setRepeatInterval(int interval);
    int repeatEnd() const { return m_repeatEnd; }
    void setRepeatEnd(int end);
    int repeatCount() const { return m_repeatCount; }
    void setRepeatCount(int count);
    QString repeatEndDateText() const { return m_repeatEndDateText; }
    void setRepeatEndDateText(const QString &text);
    QVariantList weekdays() const;
    QVariantList reminders() const;
    QVariantList reminderChoices() const;
    QString symbol() const { return m_symbol; }
    void setSymbol(const QString &symbol);
    QStringList symbols() const;
    QString color() const { return m_color; }
    void setColor(const QString &color);
    QVariantList colors() const;
    QString note() const { return m_note; }
    void setNote(const QString &note);
    QString link() const { return m_link; }
    void setLink(const QString &link);
    bool celebrationEnabled() const { return m_celebrationEnabled; }
    void setCelebrationEnabled(bool enabled);
    bool notifyOnReach() const { return m_notifyOnReach; }
    void setNotifyOnReach(bool enabled);
    bool milestonesEnabled() const { return m_milestonesEnabled; }
    void setMilestonesEnabled(bool enabled);

    QString footerText() const;
    QString datePlaceholder() const;
    QString titleError() const;
    QString dateError() const;
    QString timeError() const;
    QString repeatEndError() const;
    QString linkError() const;
    QString saveError() const { return m_saveError; }
    QString chipPreview() const;
    // The chip the preview shows: the panel's style and title length, with this draft's symbol,
    // title and time.
    MenubarChipPresentation chipPresentation() const;

    bool hasSuggestion() const;
    QString suggestionText() const;
    DateSuggester &suggester() { return m_suggester; }

Q_SIGNALS:
    void activeChanged();
    void draftChanged();
    void suggestionChanged();
    // The editor closed; `saved` tells whether it saved.
    void finished(bool saved);

private:
    template<typename T>
    void assign(T &field, const T &value);
    void close(bool saved);
    void loadEvent(const Event &event);
    void loadOccurrence(const CalendarOccurrence &occurrence);
    bool saveCountdown();
    bool saveSeries();
    // The draft as an event: the original with every field of the draft laid over it.
    std::optional<Event> draftEvent() const;
    std::optional<RecurrenceRule> draftRecurrence() const;
    std::optional<QDateTime> target() const;
    QTimeZone zone() const;
    QLocale locale() const;
    // Dates and times in words, read by the date parser (relative to now, past dates kept).
    EditorFields::DateWords dateWords() const;
    QDate parseDate(const QString &text) const;
    QTime parseTime(const QString &text) const;
    bool targetChanged() const;
    void setSaveError(const QString &text);
    void previewInPanel(const QString &symbol);

    EventStore &m_store;
    const SettingsStore &m_settings;
    const LocaleManager &m_locale;
    const Clock &m_clock;
    DateSuggester::Parser m_parser;
    PanelPreview m_panelPreview;
    DateSuggester m_suggester;

    bool m_active = false;
    std::optional<Event> m_original;
    std::optional<CalendarOccurrence> m_occurrence;
    bool m_titleEdited = false;
    bool m_saveAttempted = false;
    std::optional<QDateTime> m_dismissedDate;
    int m_revision = 0;

    QString m_title;
    QString m_dateText;
    QString m_timeText;
    bool m_allDay = true;
    QString m_timeZone;
    bool m_countsUp = false;
    int m_repeat = -1;
    int m_repeatInterval = 1;
    QList<Weekday> m_repeatWeekdays;
    int m_repeatEnd = 0;
    int m_repeatCount = 10;
    QString m_repeatEndDateText;
    QList<qint64> m_reminders;
    QString m_symbol;
    QString m_color;
    QString m_note;
    QString m_link;
    bool m_celebrationEnabled = false;
    bool m_notifyOnReach = false;
    bool m_milestonesEnabled = false;
    QString m_saveError;
};
