#include "ui/CalendarSettingsModel.h"

#include "calendar/CalendarRules.h"
#include "calendar/CalendarStore.h"
#include "l10n/LocaleManager.h"
#include "platform/calendars/CalendarBackends.h"
#include "storage/SettingsStore.h"

#include <QColor>
#include <QDir>
#include <QRegularExpression>

using namespace Qt::StringLiterals;

CalendarSettingsModel::CalendarSettingsModel(CalendarBackends &backends, CalendarStore &store,
                                             SettingsStore &settings, const LocaleManager &locale,
                                             QObject *parent)
    : QObject(parent)
    , m_backends(backends)
    , m_store(store)
    , m_settings(settings)
    , m_locale(locale)
{
    SubscriptionStore &subscriptions = backends.subscriptions();
    connect(&subscriptions, &SubscriptionStore::changed, this, [this] {
        Q_EMIT sourcesChanged();
        Q_EMIT addressesChanged();
    });
    connect(&backends.ics(), &IcsProvider::statusChanged, this,
            &CalendarSettingsModel::sourcesChanged);
    connect(&store, &CalendarStore::calendarsChanged, this, [this] {
        Q_EMIT accountsChanged();
        Q_EMIT sourcesChanged(); // names read from the calendars
    });
    connect(&settings, &SettingsStore::settingsChanged, this, [this] {
        Q_EMIT settingsChanged();
        Q_EMIT accountsChanged(); // the switches
    });
    connect(&locale, &LocaleManager::languageChanged, this, [this] {
        Q_EMIT sourcesChanged();
        Q_EMIT accountsChanged();
    });
}

QString CalendarSettingsModel::text(const char *key) const
{
    return m_locale.table().text(key);
}

QVariantList CalendarSettingsModel::sources() const
{
    IcsProvider &ics = m_backends.ics();
    const QList<CalendarInfo> calendars = ics.calendars();
    QVariantList rows;
    for (const CalendarSubscription &subscription : m_backends.subscriptions().subscriptions()) {
        const SubscriptionStatus status = ics.status(subscription.id);
        QString title = subscription.title;
        for (const CalendarInfo &calendar : calendars) {
            if (calendar.id == subscription.calendarID())
                title = calendar.title;
        }
        const bool ok = status.problem == SubscriptionProblem::none;
        QString state;
        if (!ok)
            state = problemMessage(status, m_locale.table());
        else if (ics.hasCopy(subscription.id))
            state = m_locale.table().format(
                "settings.calendars.status.ok %@",
                {QLocale().toString(status.lastSuccess.toLocalTime(), QLocale::ShortFormat)});
        else
            state = text("settings.calendars.status.pending");
        rows.append(QVariantMap {
            {u"id"_s, subscription.shortID()},
            {u"title"_s, title},
            {u"location"_s,
             subscription.isLocalFile() ? subscription.url.toLocalFile()
                                        : subscription.url.toDisplayString()},
            {u"isFile"_s, subscription.isLocalFile()},
            {u"ok"_s, ok},
            {u"state"_s, state},
        });
    }
    return rows;
}

QVariantList CalendarSettingsModel::accounts() const
{
    const CalendarSettings &settings = m_settings.settings().calendars;
    QVariantList rows;
    for (const CalendarAccountGroup &group : m_store.accountGroups()) {
        QVariantList calendars;
        for (const CalendarInfo &calendar : group.calendars) {
            const CalendarTint tint = calendar.tint.value_or(CalendarTint {0.5, 0.5, 0.5});
            calendars.append(QVariantMap {
                {u"id"_s, calendar.id},
                {u"title"_s, calendar.title},
                {u"color"_s,
                 QColor::fromRgbF(float(tint.red), float(tint.green), float(tint.blue))},
                {u"enabled"_s, !settings.disabledCalendarIDs.contains(calendar.id)},
            });
        }
        rows.append(QVariantMap {
            {u"id"_s, group.id},
            {u"title"_s, group.title},
            {u"kind"_s, accountKindRawValue(group.kind)},
            {u"calendars"_s, calendars},
        });
    }
    return rows;
}

bool CalendarSettingsModel::skipDeclined() const
{
    return m_settings.settings().calendars.skipDeclined;
}

bool CalendarSettingsModel::includeAllDay() const
{
    return m_settings.settings().calendars.includeAllDay;
}

int CalendarSettingsModel::horizonDays() const
{
    return int(m_settings.settings().calendars.horizonDays);
}

QStringList CalendarSettingsModel::addresses() const
{
    return m_backends.subscriptions().userAddresses();
}

QStringList CalendarSettingsModel::desktopBackends() const
{
    return m_backends.pluginBackends();
}

QString CalendarSettingsModel::changeSettings(const std::function<void(CalendarSettings &)> &change)
{
    Settings next = m_settings.settings();
    change(next.calendars);
    m_settings.setSettings(next);
    return m_settings.lastSaveFailed() ? text("settings.calendars.save_failed") : QString();
}

void CalendarSettingsModel::setSkipDeclined(bool skip)
{
    changeSettings([skip](CalendarSettings &settings) { settings.skipDeclined = skip; });
}

void CalendarSettingsModel::setIncludeAllDay(bool include)
{
    changeSettings([include](CalendarSettings &settings) { settings.includeAllDay = include; });
}

void CalendarSettingsModel::setHorizonDays(int days)
{
    changeSettings(
        [days](CalendarSettings &settings) { settings.horizonDays = std::clamp(days, 1, 366); });
}

QString CalendarSettingsModel::setCalendarEnabled(const QString &calendarID, bool enabled)
{
    return changeSettings([&](CalendarSettings &settings) {
        settings.hasEverChosen = true;
        if (enabled)
            settings.disabledCalendarIDs.remove(calendarID);
        else
            settings.disabledCalendarIDs.insert(calendarID);
    });
}

QString CalendarSettingsModel::addSource(const QString &fileOrLink, const QString &title)
{
    SubscriptionStore &subscriptions = m_backends.subscriptions();
    QString error;
    const std::optional<QUrl> url = subscriptionURL(fileOrLink, QDir::homePath(), &error);
    if (!url)
        return text("settings.calendars.add.invalid");
    for (const CalendarSubscription &existing : subscriptions.subscriptions()) {
        if (existing.url == *url)
            return text("settings.calendars.add.duplicate");
    }
    if (!subscriptions.add(fileOrLink, title, QDir::homePath(), &error))
        return text("settings.calendars.save_failed");
    return QString();
}

QString CalendarSettingsModel::removeSource(const QString &id)
{
    QString error;
    SubscriptionStore &subscriptions = m_backends.subscriptions();
    const std::optional<CalendarSubscription> found = subscriptions.findByID(id, &error);
    if (!found || !subscriptions.remove(found->id, &error))
        return text("settings.calendars.save_failed");
    return QString();
}

QString CalendarSettingsModel::renameSource(const QString &id, const QString &title)
{
    QString error;
    SubscriptionStore &subscriptions = m_backends.subscriptions();
    const std::optional<CalendarSubscription> found = subscriptions.findByID(id, &error);
    if (!found || !subscriptions.rename(found->id, title, &error))
        return text("settings.calendars.save_failed");
    return QString();
}

void CalendarSettingsModel::reloadSource(const QString &id)
{
    QString error;
    if (const auto found = m_backends.subscriptions().findByID(id, &error))
        m_backends.ics().reload(found->id);
}

QString CalendarSettingsModel::setAddresses(const QString &text)
{
    static const QRegularExpression separators(u"[,;\\s]+"_s);
    const QStringList addresses = text.split(separators, Qt::SkipEmptyParts);
    for (const QString &address : addresses) {
        if (normalizedAddress(address).isEmpty())
            return m_locale.table().format("settings.calendars.addresses.invalid %@", {address});
    }
    QString error;
    if (!m_backends.subscriptions().setUserAddresses(addresses, &error))
        return this->text("settings.calendars.save_failed");
    return QString();
}
