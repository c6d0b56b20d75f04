#pragma once

#include <QObject>
#include <QVariantList>

class CalendarBackends;
class CalendarStore;
class LocaleManager;
class SettingsStore;
struct CalendarSettings;

// What the calendars page of the settings window binds to: the calendars added by hand (files
// and feeds, with their state and any problem), every calendar grouped by account with its
// switch, the calendar settings (declined, all-day, horizon) and the user's own addresses.
//
// `sources` rows: {id, title, location, isFile, ok, state}; `accounts` rows: {id, title, kind,
// calendars: [{id, title, color, enabled}]}. Actions answer with an empty text when they worked,
// else with the message to show (in the interface language).
class CalendarSettingsModel : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QVariantList sources READ sources NOTIFY sourcesChanged)
    Q_PROPERTY(QVariantList accounts READ accounts NOTIFY accountsChanged)
    Q_PROPERTY(bool skipDeclined READ skipDeclined WRITE setSkipDeclined NOTIFY settingsChanged)
    Q_PROPERTY(bool includeAllDay READ includeAllDay WRITE setIncludeAllDay NOTIFY settingsChanged)
    Q_PROPERTY(int horizonDays READ horizonDays WRITE setHorizonDays NOTIFY settingsChanged)
    Q_PROPERTY(QList<int> horizonChoices READ horizonChoices CONSTANT)
    Q_PROPERTY(QStringList addresses READ addresses NOTIFY addressesChanged)
    Q_PROPERTY(QStringList desktopBackends READ desktopBackends CONSTANT)

public:
    CalendarSettingsModel(CalendarBackends &backends, CalendarStore &store, SettingsStore &settings,
                          const LocaleManager &locale, QObject *parent = nullptr);

    QVariantList sources() const;
    QVariantList accounts() const;
    bool skipDeclined() const;
    bool includeAllDay() const;
    int horizonDays() const;
    QList<int> horizonChoices() const { return {1, 3, 7, 14, 30}; }
    QStringList addresses() const;
    // The desktop calendar backends that answered ("eds"); empty: only added calendars.
    QStringList desktopBackends() const;

    void setSkipDeclined(bool skip);
    void setIncludeAllDay(bool include);
    void setHorizonDays(int days);

    // A file path, a file:// link or an http, https or webcal link.
    Q_INVOKABLE QString addSource(const QString &fileOrLink, const QString &title = QString());
    Q_INVOKABLE QString removeSource(const QString &id);
    Q_INVOKABLE QString renameSource(const QString &id, const QString &title);
    Q_INVOKABLE void reloadSource(const QString &id);
    Q_INVOKABLE QString setCalendarEnabled(const QString &calendarID, bool enabled);
    // Addresses separated by commas, spaces or new lines.
    Q_INVOKABLE QString setAddresses(const QString &text);

Q_SIGNALS:
    void sourcesChanged();
    void accountsChanged();
    void settingsChanged();
    void addressesChanged();

private:
    QString changeSettings(const std::function<void(CalendarSettings &)> &change);
    QString text(const char *key) const;

    CalendarBackends &m_backends;
    CalendarStore &m_store;
    SettingsStore &m_settings;
    const LocaleManager &m_locale;
};
