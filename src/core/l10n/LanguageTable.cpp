#include "l10n/LanguageTable.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLoggingCategory>

Q_LOGGING_CATEGORY(lcLanguageTable, "LocaleManager")

LanguageTable LanguageTable::load(const QString &code)
{
    QFile file(QStringLiteral(":/l10n/%1.json").arg(code));
    if (!file.open(QIODevice::ReadOnly)) {
        qCWarning(lcLanguageTable).noquote()
            << QStringLiteral("No interface texts for language %1").arg(code);
        LanguageTable empty;
        empty.m_code = code;
        return empty;
    }
    return fromJson(code, file.readAll());
}

LanguageTable LanguageTable::fromJson(const QString &code, const QByteArray &json)
{
    LanguageTable table;
    table.m_code = code;
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(json, &error);
    if (!document.isObject()) {
        qCWarning(lcLanguageTable).noquote()
            << QStringLiteral("Interface texts for language %1 are not readable: %2")
                   .arg(code, error.errorString());
        return table;
    }
    const QJsonObject object = document.object();
    table.m_texts.reserve(object.size());
    for (auto it = object.constBegin(); it != object.constEnd(); ++it)
        table.m_texts.insert(it.key(), it.value().toString());
    return table;
}

bool LanguageTable::contains(QStringView key) const
{
    return m_texts.contains(key.toString());
}

QString LanguageTable::text(QStringView key) const
{
    const QString name = key.toString();
    const auto it = m_texts.constFind(name);
    return it == m_texts.constEnd() ? name : it.value();
}

QString LanguageTable::format(QStringView key, const QStringList &arguments) const
{
    return substituteArguments(text(key), arguments);
}

QString substituteArguments(const QString &pattern, const QStringList &arguments)
{
    QString result;
    result.reserve(pattern.size() + 16 * arguments.size());
    qsizetype i = 0;
    while (i < pattern.size()) {
        const QChar c = pattern.at(i);
        if (c != u'%' || i + 1 >= pattern.size() || !pattern.at(i + 1).isDigit()) {
            result.append(c);
            ++i;
            continue;
        }
        qsizetype end = i + 1;
        int number = 0;
        while (end < pattern.size() && end < i + 3 && pattern.at(end).isDigit())
            number = number * 10 + pattern.at(end++).digitValue();
        if (number >= 1 && number <= arguments.size())
            result.append(arguments.at(number - 1));
        else
            result.append(QStringView(pattern).mid(i, end - i));
        i = end;
    }
    return result;
}
