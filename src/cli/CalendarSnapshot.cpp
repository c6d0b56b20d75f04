#include "cli/CalendarSnapshot.h"

#include "cli/DataFolder.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QEventLoop>
#include <QThread>

CalendarSnapshot::CalendarSnapshot(DataFolder &data, const QDateTime &now,
                                   const LanguageTable &texts, int timeoutMs)
    : m_clock(now)
    , m_backends(data.paths(), data.files(), m_clock, texts)
{
    m_store = std::make_unique<CalendarStore>(m_backends.providers(), data.settings(),
                                              data.events(), &m_backends.subscriptions(), m_clock);
    m_store->setCoalescingDelay(0);
    m_store->setRefreshInterval(0);
    m_store->refresh();
    const int readsBefore = m_store->completedReads();
    m_complete = waitUntil(
        [this, readsBefore] {
            return m_store->isSettled() && m_store->completedReads() > readsBefore;
        },
        timeoutMs);
}

CalendarSnapshot::~CalendarSnapshot() = default;

bool CalendarSnapshot::waitUntil(const std::function<bool()> &done, int timeoutMs)
{
    const QDeadlineTimer deadline(timeoutMs);
    while (!done()) {
        if (deadline.hasExpired())
            return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
        QThread::msleep(5);
    }
    return true;
}
