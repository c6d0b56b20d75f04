#pragma once

#include <QDateTime>
#include <QLoggingCategory>
#include <QObject>
#include <QTimer>

#include <optional>

class Clock;
class CountdownItem;
class CountdownRegistry;
class LocaleManager;
class NoticeLog;
class ReachNotifying;

Q_DECLARE_LOGGING_CATEGORY(lcReminderScheduler)

// Posts the reminders before upcoming items and the milestone notices of count-ups.
//
// Reminders: every lead time of a countdown that is still to come (or of a calendar series) gives
// one notice at target − lead ("In 15 minutes"). A reminder whose moment passed while the computer
// slept or Tarrow was not running is posted at the next pass only while its target is still
// ahead; when several leads of one item are due at once, one notice covers them.
//
// Milestones: a count-up with milestones switched on gets a notice at each round figure
// (Milestones), posted on its day or within the next three days when the computer was off.
//
// Each is posted once: what was posted is kept in the notice log, so a restart or a wake from
// sleep does not repeat it. A pass runs when the list changes, at the next reminder or milestone
// moment (a precise timer), and when asked (after a wake or a clock change).
class ReminderScheduler : public QObject
{
    Q_OBJECT

public:
    ReminderScheduler(CountdownRegistry &registry, const Clock &clock, ReachNotifying &notifier,
                      NoticeLog &log, const LocaleManager &locale, QObject *parent = nullptr);

    // When the next reminder or milestone falls due; absent when nothing is ahead.
    std::optional<QDateTime> nextMoment() const { return m_nextMoment; }

public Q_SLOTS:
    // Posts whatever is due now and arms the timer for the next moment.
    void runPass();

private:
    void remindOf(const CountdownItem &item, const QDateTime &now);
    void markMilestones(const CountdownItem &item, const QDateTime &now);
    void consider(const QDateTime &moment);
    void forgetPastReminders(const QDateTime &now);

    CountdownRegistry &m_registry;
    const Clock &m_clock;
    ReachNotifying &m_notifier;
    NoticeLog &m_log;
    const LocaleManager &m_locale;
    QTimer m_timer;
    std::optional<QDateTime> m_nextMoment;
};
