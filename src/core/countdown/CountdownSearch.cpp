#include "countdown/CountdownSearch.h"

CountdownSearch::CountdownSearch(const QString &query)
    : m_folded(fold(query.trimmed()))
{
}

QString CountdownSearch::fold(const QString &text)
{
    const QString decomposed = text.normalized(QString::NormalizationForm_D);
    QString bare;
    bare.reserve(decomposed.size());
    for (const QChar c : decomposed) {
        if (c.category() != QChar::Mark_NonSpacing)
            bare.append(c);
    }
    return bare.toCaseFolded();
}

bool CountdownSearch::matches(const CountdownItem &item) const
{
    if (m_folded.isEmpty())
        return true;
    if (fold(item.title()).contains(m_folded))
        return true;
    const std::optional<QString> &note = item.note();
    return note && fold(*note).contains(m_folded);
}
