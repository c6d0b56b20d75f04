#include "cli/CliContext.h"

#include "l10n/LocaleManager.h"
#include "l10n/SupportedLanguages.h"

#include <QDir>

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

QString CliContext::dataDirectory() const
{
    if (m_data)
        return m_data->paths().supportDirectory();
    return m_dataDir.isEmpty() ? DefaultPathProvider().supportDirectory()
                               : QDir(m_dataDir).absolutePath();
}

LanguageTable CliContext::table()
{
    return LanguageTable::load(resolveLanguage(data().settings().settings().language,
                                               LocaleManager::systemPreferredLanguages()));
}

int CliContext::fail(const QString &line)
{
    m_err << "tarrow: " << line << Qt::endl;
    return 1;
}
