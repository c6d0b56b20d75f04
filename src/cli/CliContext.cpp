#include "cli/CliContext.h"

CliContext::CliContext(QString dataDir, const Clock &clock, QTextStream &out, QTextStream &err,
                       QTextStream &in)
    : m_dataDir(std::move(dataDir))
    , m_clock(clock)
    , m_out(out)
    , m_err(err)
    , m_in(in)
{
}

CliContext::~CliContext() = default;

DataFolder &CliContext::data()
{
    if (!m_data)
        m_data = std::make_unique<DataFolder>(m_dataDir);
    return *m_data;
}

int CliContext::fail(const QString &line)
{
    m_err << "tarrow: " << line << Qt::endl;
    return 1;
}
