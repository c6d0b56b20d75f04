#pragma once

#include "time/Clock.h"

// A clock that stands still until a test moves it.
class FakeClock final : public Clock
{
public:
    explicit FakeClock(QDateTime start = QDateTime::fromString(
                           QStringLiteral("2026-03-01T12:00:00Z"), Qt::ISODate))
        : m_now(start.toUTC())
    {
    }
    QDateTime now() const override { return m_now; }
    void set(const QDateTime &now) { m_now = now.toUTC(); }
    void advance(qint64 seconds) { m_now = m_now.addSecs(seconds); }

private:
    QDateTime m_now;
};
