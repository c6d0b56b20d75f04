#pragma once

#include <QHash>
#include <QString>
#include <QStringList>

#include <optional>

// What was announced already, kept across restarts so that a reminder or a milestone is posted
// once: one number (a moment in milliseconds) per key.
class NoticeLog
{
public:
    virtual ~NoticeLog() = default;
    virtual std::optional<qint64> value(const QString &key) const = 0;
    virtual void setValue(const QString &key, qint64 value) = 0;
    virtual void remove(const QString &key) = 0;
    virtual QStringList keys() const = 0;
};

// Kept in memory only: for tests and for runs that must leave no trace.
class MemoryNoticeLog final : public NoticeLog
{
public:
    std::optional<qint64> value(const QString &key) const override
    {
        const auto found = m_values.constFind(key);
        return found == m_values.cend() ? std::nullopt : std::optional(*found);
    }
    void setValue(const QString &key, qint64 value) override { m_values.insert(key, value); }
    void remove(const QString &key) override { m_values.remove(key); }
    QStringList keys() const override { return m_values.keys(); }

private:
    QHash<QString, qint64> m_values;
};

// Kept in the application's user defaults, under "tarrow.notices".
class SettingsNoticeLog final : public NoticeLog
{
public:
    std::optional<qint64> value(const QString &key) const override;
    void setValue(const QString &key, qint64 value) override;
    void remove(const QString &key) override;
    QStringList keys() const override;
};
