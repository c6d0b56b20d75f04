#include "ui/TableTranslator.h"

#include "l10n/LocaleManager.h"

TableTranslator::TableTranslator(const LocaleManager &locale, QObject *parent)
    : QTranslator(parent)
    , m_locale(locale)
{
}

QString TableTranslator::translate(const char *context, const char *sourceText,
                                   const char *disambiguation, int n) const
{
    Q_UNUSED(disambiguation)
    Q_UNUSED(n)
    // qsTrId() asks without a context; qsTr() strings of Qt's own controls carry one.
    if ((context && *context) || !sourceText)
        return QString();
    const QString key = QString::fromUtf8(sourceText);
    return m_locale.table().contains(key) ? m_locale.table().text(key) : QString();
}
