#pragma once

#include "cli/DataFolder.h"
#include "l10n/LanguageTable.h"
#include "time/Clock.h"

#include <QTextStream>

#include <memory>

// What a subcommand works with: the output streams, the clock and the data folder.
class CliContext
{
public:
    CliContext(QString dataDir, const Clock &clock, QTextStream &out, QTextStream &err,
               QTextStream &in);
    ~CliContext();

    QTextStream &out() { return m_out; }
    QTextStream &err() { return m_err; }
    QTextStream &in() { return m_in; }
    const Clock &clock() const { return m_clock; }
    QString dataDir() const { return m_dataDir; }
    // The data folder as an absolute path (the user's own when none was given).
    QString dataDirectory() const;

    // Opens the data folder on first use.
    DataFolder &data();
    // The texts of the interface language the settings choose (or the system's).
    LanguageTable table();

    // One line "tarrow: <line>" on stderr; the exit code of a failed command.
    int fail(const QString &line);

private:
    QString m_dataDir;
    const Clock &m_clock;
    QTextStream &m_out;
    QTextStream &m_err;
    QTextStream &m_in;
    std::unique_ptr<DataFolder> m_data;
};
