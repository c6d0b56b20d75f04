#include "platform/calendars/eds/EdsProvider.h"

#include "calendar/CalendarRules.h"
#include "calendar/CalendarSubscription.h"
#include "platform/calendars/IcsCalendar.h"
#include "platform/calendars/IcsEventDetails.h"

#include <QtConcurrent/QtConcurrentRun>

// GLib after Qt: the project builds with QT_NO_KEYWORDS, so GDBus's `signals` member is safe.
#include <libecal/libecal.h>
#include <libedataserver/libedataserver.h>

Q_LOGGING_CATEGORY(lcEdsProvider, "EdsProvider")

using namespace Qt::StringLiterals;

namespace {

QString text(const char *utf8)
{
    return utf8 ? QString::fromUtf8(utf8) : QString();
}

bool wasCancelled(const GError *error)
{
    return g_error_matches(error, G_IO_ERROR, G_IO_ERROR_CANCELLED);
}

struct ClientRequest
{
    EdsProvider *provider;
    QString uid;
};

// An instant of EDS's expansion in UTC; dates are days of the local zone.
QDateTime instant(ICalTime *time, const QTimeZone &local, QString *zoneID)
{
    if (i_cal_time_is_date(time)) {
        *zoneID = QString::fromUtf8(local.id());
        return QDateTime(QDate(i_cal_time_get_year(time), i_cal_time_get_month(time),
                               i_cal_time_get_day(time)),
                         QTime(0, 0), local)
            .toUTC();
    }
    ICalTimezone *zone = i_cal_time_get_timezone(time);
    if (i_cal_time_is_utc(time)) {
        *zoneID = u"UTC"_s;
    } else if (zone) {
        const QByteArray location = QByteArray(i_cal_timezone_get_location(zone));
        QByteArray iana = ianaZoneID(location);
        if (iana.isEmpty())
            iana = ianaZoneID(QByteArray(i_cal_timezone_get_tzid(zone)));
        *zoneID = iana.isEmpty() ? QString::fromUtf8(local.id()) : QString::fromUtf8(iana);
    } else {
        *zoneID = QString::fromUtf8(local.id());
        return QDateTime(QDate(i_cal_time_get_year(time), i_cal_time_get_month(time),
                               i_cal_time_get_day(time)),
                         QTime(i_cal_time_get_hour(time), i_cal_time_get_minute(time),
                               i_cal_time_get_second(time)),
                         local)
            .toUTC();
    }
    return QDateTime::fromSecsSinceEpoch(qint64(i_cal_time_as_timet_with_zone(time, zone)),
                                         Qt::UTC);
}

struct Expansion
{
    CalendarInfo calendar;
    QStringList addresses;
    QTimeZone local;
    QList<ProviderOccurrence> *out;
    ECalClient *client;
    GCancellable *cancellable;
    QHash<QString, ICalComponent *> masters; // by UID, for moved occurrences

    ~Expansion()
    {
        for (ICalComponent *master : std::as_const(masters))
            g_clear_object(&master);
    }
    // The series' own event, whose properties a moved occurrence leaves out.
    icalcomponent *master(const QString &uid)
    {
        auto found = masters.constFind(uid);
        if (found == masters.cend()) {
            ICalComponent *component = nullptr;
            e_cal_client_get_object_sync(client, uid.toUtf8().constData(), nullptr, &component,
                                         cancellable, nullptr);
            found = masters.insert(uid, component);
        }
        return *found ? static_cast<icalcomponent *>(i_cal_object_get_native(I_CAL_OBJECT(*found)))
                      : nullptr;
    }
};

gboolean addInstance(ICalComponent *component, ICalTime *start, ICalTime *end, gpointer data,
                     GCancellable *, GError **)
{
    auto *expansion = static_cast<Expansion *>(data);
    auto *native = static_cast<icalcomponent *>(i_cal_object_get_native(I_CAL_OBJECT(component)));
    ProviderOccurrence occurrence;
    occurrence.calendarID = expansion->calendar.id;
    occurrence.calendarTitle = expansion->calendar.title;
    occurrence.accountTitle = expansion->calendar.accountTitle;
    occurrence.tint = expansion->calendar.tint;
    occurrence.start = instant(start, expansion->local, &occurrence.timeZoneID);
    QString ignored;
    const QDateTime until = instant(end, expansion->local, &ignored);
    if (until > occurrence.start)
        occurrence.end = until;
    occurrence.isAllDay = i_cal_time_is_date(start);
    const QString uid = text(i_cal_component_get_uid(component));
    occurrence.ref.series = {expansion->calendar.id, seriesIdentifier(uid, QString())};
    icalcomponent *master = nullptr;
    occurrence.ref.occurrenceDate = occurrence.start;
    // A moved occurrence keeps the start it was scheduled for.
    if (ICalProperty *id =
            i_cal_component_get_first_property(component, I_CAL_RECURRENCEID_PROPERTY)) {
        ICalTime *scheduled = i_cal_property_get_recurrenceid(id);
        if (scheduled && !i_cal_time_is_null_time(scheduled)) {
            if (!i_cal_time_get_timezone(scheduled) && !i_cal_time_is_utc(scheduled)
                && !i_cal_time_is_date(scheduled))
                i_cal_time_set_timezone(scheduled, i_cal_time_get_timezone(start));
            occurrence.ref.occurrenceDate = instant(scheduled, expansion->local, &ignored);
        }
        g_clear_object(&scheduled);
        g_object_unref(id);
        occurrence.isRecurring = true;
        master = expansion->master(uid);
    }
    if (ICalProperty *rule = i_cal_component_get_first_property(component, I_CAL_RRULE_PROPERTY)) {
        occurrence.isRecurring = true;
        g_object_unref(rule);
    }
    readEventDetails(native, master, expansion->addresses, occurrence);
    expansion->out->append(std::move(occurrence));
    return TRUE;
}

} // namespace

struct EdsCallbacks
{
    static void registryReady(GObject *, GAsyncResult *result, gpointer data)
    {
        GError *error = nullptr;
        ESourceRegistry *registry = e_source_registry_new_finish(result, &error);
        if (wasCancelled(error)) {
            g_error_free(error);
            return;
        }
        auto *self = static_cast<EdsProvider *>(data);
        if (!registry) {
            qCInfo(lcEdsProvider).noquote()
                << u"Evolution Data Server is not available: %1"_s.arg(text(error->message));
            g_error_free(error);
            self->done();
            return;
        }
        self->m_registry = registry;
        for (const char *signal : {"source-added", "source-removed", "source-changed",
                                   "source-enabled", "source-disabled"})
            g_signal_connect(registry, signal, G_CALLBACK(sourcesChanged), self);
        self->followSources();
        self->done();
    }

    static void sourcesChanged(ESourceRegistry *, ESource *, gpointer self)
    {
        static_cast<EdsProvider *>(self)->followSources();
    }

    static void clientReady(GObject *, GAsyncResult *result, gpointer data)
    {
        std::unique_ptr<ClientRequest> request(static_cast<ClientRequest *>(data));
        GError *error = nullptr;
        EClient *client = e_cal_client_connect_finish(result, &error);
        if (wasCancelled(error)) {
            g_error_free(error);
            return;
        }
        EdsProvider *self = request->provider;
        const auto connection = self->m_connections.find(request->uid);
        if (!client || connection == self->m_connections.end()) {
            if (error)
                qCWarning(lcEdsProvider).noquote() << u"Could not open the calendar %1: %2"_s.arg(
                    request->uid, text(error->message));
            g_clear_error(&error);
            g_clear_object(&client);
            self->done();
            return;
        }
        connection->client = E_CAL_CLIENT(client);
        ++self->m_pending;
        e_cal_client_get_view(connection->client, "#t", self->m_cancellable, viewReady,
                              request.release());
        self->announceChange();
        self->done();
    }

    static void viewReady(GObject *client, GAsyncResult *result, gpointer data)
    {
        std::unique_ptr<ClientRequest> request(static_cast<ClientRequest *>(data));
        GError *error = nullptr;
        ECalClientView *view = nullptr;
        e_cal_client_get_view_finish(E_CAL_CLIENT(client), result, &view, &error);
        if (wasCancelled(error)) {
            g_error_free(error);
            return;
        }
        EdsProvider *self = request->provider;
        const auto connection = self->m_connections.find(request->uid);
        if (view && connection != self->m_connections.end()) {
            connection->view = view;
            for (const char *signal : {"objects-added", "objects-modified", "objects-removed"})
                g_signal_connect(view, signal, G_CALLBACK(objectsChanged), self);
            e_cal_client_view_start(view, &error);
        } else {
            g_clear_object(&view);
        }
        if (error)
            qCWarning(lcEdsProvider).noquote()
                << u"No live view of the calendar %1: %2"_s.arg(request->uid, text(error->message));
        g_clear_error(&error);
        self->done();
    }

    static void objectsChanged(ECalClientView *, gpointer, gpointer self)
    {
        static_cast<EdsProvider *>(self)->announceChange();
    }
};

EdsProvider::EdsProvider()
    : m_cancellable(g_cancellable_new())
{
    m_worker.setMaxThreadCount(1);
    m_pending = 1;
    e_source_registry_new(m_cancellable, EdsCallbacks::registryReady, this);
}

EdsProvider::~EdsProvider()
{
    g_cancellable_cancel(m_cancellable);
    m_worker.waitForDone();
    for (Connection &connection : m_connections)
        release(connection);
    if (m_registry) {
        g_signal_handlers_disconnect_by_data(m_registry, this);
        g_object_unref(m_registry);
    }
    g_object_unref(m_cancellable);
}

void EdsProvider::done()
{
    if (m_pending > 0)
        --m_pending;
}

void EdsProvider::release(Connection &connection)
{
    if (connection.view) {
        g_signal_handlers_disconnect_by_data(connection.view, this);
        e_cal_client_view_stop(connection.view, nullptr);
        g_object_unref(connection.view);
        connection.view = nullptr;
    }
    g_clear_object(&connection.client);
}

CalendarInfo EdsProvider::info(ESource *source) const
{
    CalendarInfo info;
    const QString uid = text(e_source_get_uid(source));
    info.id = u"eds-"_s + uid;
    info.title = text(e_source_get_display_name(source));
    auto *calendar = static_cast<ESourceSelectable *>(
        e_source_get_extension(source, E_SOURCE_EXTENSION_CALENDAR));
    gchar *color = e_source_selectable_dup_color(calendar);
    info.tint = tintFromColorText(text(color));
    g_free(color);
    const QString backend = text(e_source_backend_get_backend_name(E_SOURCE_BACKEND(calendar)));

    // The account: the collection the calendar belongs to, else its parent ("On This Computer").
    CalendarAccountFacts facts;
    QString collectionBackend;
    ESource *account =
        e_source_registry_find_extension(m_registry, source, E_SOURCE_EXTENSION_COLLECTION);
    if (account) {
        collectionBackend = text(e_source_backend_get_backend_name(
            E_SOURCE_BACKEND(e_source_get_extension(account, E_SOURCE_EXTENSION_COLLECTION))));
    } else if (const char *parent = e_source_get_parent(source)) {
        account = e_source_registry_ref_source(m_registry, parent);
    }
    info.accountID = account ? u"eds-"_s + text(e_source_get_uid(account)) : info.id;
    info.accountTitle = account ? text(e_source_get_display_name(account)) : info.title;
    g_clear_object(&account);

    facts.isBirthdayCalendar = backend == u"contacts";
    facts.isSubscribed = backend == u"webcal";
    facts.sourceTitle = info.accountTitle;
    if (backend == u"local") {
        facts.sourceType = CalendarSourceType::local;
    } else if (collectionBackend == u"google") {
        facts.sourceType = CalendarSourceType::calDAV;
        facts.sourceTitle = u"google "_s + info.accountTitle;
    } else if (backend == u"ews" || backend == u"microsoft365" || collectionBackend == u"outlook"
               || collectionBackend == u"ews" || collectionBackend == u"microsoft365") {
        facts.sourceType = CalendarSourceType::exchange;
    } else if (backend == u"caldav") {
        facts.sourceType = CalendarSourceType::calDAV;
    } else if (!backend.isEmpty()) {
        facts.sourceType = CalendarSourceType::other;
    }
    info.accountKind = accountKind(facts);
    info.isSubscribed = facts.isSubscribed;
    info.isBirthdays = facts.isBirthdayCalendar;
    return info;
}

void EdsProvider::followSources()
{
    QHash<QString, Connection> kept;
    QList<CalendarInfo> calendars;
    GList *sources = e_source_registry_list_enabled(m_registry, E_SOURCE_EXTENSION_CALENDAR);
    for (GList *item = sources; item; item = item->next) {
        auto *source = static_cast<ESource *>(item->data);
        auto *extension = static_cast<ESourceBackend *>(
            e_source_get_extension(source, E_SOURCE_EXTENSION_CALENDAR));
        if (text(e_source_backend_get_backend_name(extension)) == u"weather")
            continue; // forecasts, not events
        const QString uid = text(e_source_get_uid(source));
        const CalendarInfo calendar = info(source);
        calendars.append(calendar);
        if (m_connections.contains(uid)) {
            Connection connection = m_connections.take(uid);
            connection.info = calendar;
            kept.insert(uid, connection);
            continue;
        }
        kept.insert(uid, Connection {calendar, nullptr, nullptr});
        ++m_pending;
        // (guint32)-1: do not wait for the backend to come online (a remote one may never).
        e_cal_client_connect(source, E_CAL_CLIENT_SOURCE_TYPE_EVENTS, guint32(-1), m_cancellable,
                             EdsCallbacks::clientReady, new ClientRequest {this, uid});
    }
    g_list_free_full(sources, g_object_unref);
    for (Connection &gone : m_connections)
        release(gone);
    m_connections = kept;
    if (calendars != m_calendars) {
        m_calendars = calendars;
        announceChange();
    }
}

QFuture<QList<ProviderOccurrence>> EdsProvider::occurrences(const OccurrenceQuery &query)
{
    struct Job
    {
        CalendarInfo calendar;
        ECalClient *client;
    };
    QList<Job> jobs;
    for (const Connection &connection : std::as_const(m_connections)) {
        if (connection.client && query.calendarIDs.contains(connection.info.id))
            jobs.append({connection.info, E_CAL_CLIENT(g_object_ref(connection.client))});
    }
    QStringList addresses;
    for (const QString &address : query.userAddresses)
        addresses.append(normalizedAddress(address));
    GCancellable *cancellable = G_CANCELLABLE(g_object_ref(m_cancellable));
    return QtConcurrent::run(
        &m_worker, [jobs, addresses, cancellable, from = query.from, to = query.to] {
            QList<ProviderOccurrence> all;
            for (const Job &job : jobs) {
                Expansion expansion {
                    job.calendar, addresses, QTimeZone::systemTimeZone(), &all, job.client,
                    cancellable,  {}};
                e_cal_client_generate_instances_sync(job.client, time_t(from.toSecsSinceEpoch()),
                                                     time_t(to.toSecsSinceEpoch()), cancellable,
                                                     addInstance, &expansion);
                g_object_unref(job.client);
            }
            g_object_unref(cancellable);
            return all;
        });
}
