#include "arrival/ReminderScheduler.h"

#include "arrival/Milestones.h"
#include "arrival/NoticeLog.h"
#include "arrival/ReachNotifying.h"
#include "countdown/CountdownRegistry.h"
#include "l10n/LocaleManager.h"
#include "time/Clock.h"

Q_LOGGING_CATEGORY(lcReminderScheduler, "ReminderScheduler")

namespace {

// A milestone missed while the computer was off is still worth a notice this long after it.
constexpr qint64 MilestoneGraceMSecs = 3 * 86400 * 1000LL;
// Reminders of targets longer ago than this are forgotten.
constexpr qint64 ForgetAfterMSecs = 2 * 86400 * 1000LL;
// The timer never waits longer than this, so a long wait is re-checked now and then.
constexpr qint64 LongestWaitMSecs = 6 * 3600 * 1000LL;

const QString reminderPrefix = QStringLiteral("reminder.");

QUuid noticeIDOf(const CountdownItem &item)
{
    if (const Event *event = item.event())
        return event->id;
    return noticeIDForSeries(item.occurrence()->ref.series);
}

QString idText(const QUuid &id)
{
    return id.toString(QUuid::WithoutBraces);
}

} // namespace

ReminderScheduler::ReminderScheduler(CountdownRegistry &registry, const Clock &clock,
                                     ReachNotifying &notifier, NoticeLog &log,
                                     const LocaleManager &locale, QObject *parent)
    : QObject(parent)
    , m_registry(registry)
    , m_clock(clock)
    , m_notifier(notifier)
    , m_log(log)
    , m_locale(locale)
{
    m_timer.setSingleShot(true);
    m_timer.setTimerType(Qt::PreciseTimer);
    connect(&m_timer, &QTimer::timeout, this, &ReminderScheduler::runPass);
    connect(&registry, &CountdownRegistry::itemsChanged, this, &ReminderScheduler::runPass);
    QMetaObject::invokeMethod(this, &ReminderScheduler::runPass, Qt::QueuedConnection);
}

void ReminderScheduler::runPass()
{
    const QDateTime now = m_clock.now();
    m_nextMoment.reset();
    for (const CountdownItem &item : m_registry.items()) {
        const Event *event = item.event();
        if (event && event->direction == CountdownDirection::since) {
            if (event->milestonesEnabled)
                markMilestones(item, now);
        } else if (item.isUpcoming(now) && item.dateMSecs() > now.toMSecsSinceEpoch()
                   && !item.isHidden()) {
            remindOf(item, now);
        }
    }
    forgetPastReminders(now);

    if (!m_nextMoment) {
        m_timer.stop();
        return;
    }
    const qint64 wait = std::clamp<qint64>(now.msecsTo(*m_nextMoment), 0, LongestWaitMSecs);
    m_timer.start(std::chrono::milliseconds(wait));
}

void ReminderScheduler::remindOf(const CountdownItem &item, const QDateTime &now)
{
    const Event *event = item.event();
    const QList<qint64> &leads =
        event ? event->reminderLeadMinutes : item.occurrence()->reminderLeadMinutes;
    if (leads.isEmpty())
        return;
    const QUuid noticeID = noticeIDOf(item);
    const QDateTime target = item.date();
    const qint64 targetMSecs = item.dateMSecs();

    bool fresh = false;
    QStringList dueKeys;
    for (qint64 lead : leads) {
        if (lead < 1)
            continue;
        const QDateTime moment = target.addSecs(-lead * 60);
        if (moment > now) {
            consider(moment);
            continue;
        }
        const QString key = reminderPrefix + idText(noticeID) + u'.' + QString::number(lead);
        dueKeys.append(key);
        fresh = fresh || m_log.value(key) != targetMSecs;
    }
    if (!fresh)
        return;
    for (const QString &key : std::as_const(dueKeys))
        m_log.setValue(key, targetMSecs);

    std::optional<QString> link;
    if (event) {
        link = event->link;
    } else {
        const CalendarOccurrence &occurrence = *item.occurrence();
        link = occurrence.link;
        if (!link && occurrence.meetingURL)
            link = occurrence.meetingURL->toString();
    }
    m_notifier.post(Notice::reminder(noticeID, item.title(), target, now, item.zone(), link,
                                     item.id(), m_locale.table()));
    qCInfo(lcReminderScheduler).noquote()
        << QStringLiteral("Posted a reminder for %1").arg(idText(noticeID));
}

void ReminderScheduler::markMilestones(const CountdownItem &item, const QDateTime &now)
{
    const QString key = QStringLiteral("milestone.") + idText(noticeIDOf(item));
    const QDateTime start = item.date();
    if (const std::optional<Milestone> next = Milestones::next(start, item.zone(), now))
        consider(next->moment);
    const std::optional<Milestone> latest = Milestones::latest(start, item.zone(), now);
    if (!latest)
        return;
    const qint64 moment = latest->moment.toMSecsSinceEpoch();
    const std::optional<qint64> announced = m_log.value(key);
    if (announced && *announced >= moment)
        return;
    m_log.setValue(key, moment);
    if (now.toMSecsSinceEpoch() - moment > MilestoneGraceMSecs)
        return; // long past (milestones were just switched on): noted, not announced

    Notice notice;
    notice.kind = Notice::Kind::milestone;
    notice.identifier = Notice::identifierFor(Notice::Kind::milestone, noticeIDOf(item));
    notice.title = item.title();
    notice.body = latest->text(m_locale.table());
    notice.link = Notice::parseLink(item.event()->link);
    notice.item = item.id();
    m_notifier.post(notice);
    qCInfo(lcReminderScheduler).noquote()
        << QStringLiteral("Posted a milestone for %1").arg(idText(noticeIDOf(item)));
}

void ReminderScheduler::consider(const QDateTime &moment)
{
    if (!m_nextMoment || moment < *m_nextMoment)
        m_nextMoment = moment;
}

void ReminderScheduler::forgetPastReminders(const QDateTime &now)
{
    const qint64 cutoff = now.toMSecsSinceEpoch() - ForgetAfterMSecs;
    for (const QString &key : m_log.keys()) {
        if (key.startsWith(reminderPrefix) && m_log.value(key).value_or(0) < cutoff)
            m_log.remove(key);
    }
}
