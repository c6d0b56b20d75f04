#pragma once

#include <QHash>
#include <QString>
#include <QStringList>
#include <QStringView>

// The interface texts of one language, keyed by dotted localisation keys
// ("countdown.unit.short.day", "list.row.since %@"). A key the table lacks answers with the key
// itself, so a missing text shows up on screen instead of disappearing. Texts with arguments mark
// them %1, %2, ... in the order of the key's own placeholders.
class LanguageTable
{
public:
    LanguageTable() = default;

    // The compiled-in table of a supported language code ("en", "tr", "de", "es", "fr"); an
    // unknown code gives an empty table that answers every key with itself.
    static LanguageTable load(const QString &code);

    // A table from the JSON object text of a resource file (one flat object of key to text).
    static LanguageTable fromJson(const QString &code, const QByteArray &json);

    QString code() const { return m_code; }
    QStringList keys() const { return m_texts.keys(); }
    bool contains(QStringView key) const;

    QString text(QStringView key) const;
    QString text(const char *key) const { return text(QString::fromUtf8(key)); }

    // The text of `key` with its %1, %2, ... markers replaced by `arguments` in one pass, so an
    // argument that itself contains "%2" is left as it is.
    QString format(QStringView key, const QStringList &arguments) const;
    QString format(const char *key, const QStringList &arguments) const
    {
        return format(QString::fromUtf8(key), arguments);
    }

    bool operator==(const LanguageTable &) const = default;

private:
    QString m_code;
    QHash<QString, QString> m_texts;
};

// Replaces the markers %1 ... %99 of `pattern` by the matching entry of `arguments`; markers
// without an argument stay as they are.
QString substituteArguments(const QString &pattern, const QStringList &arguments);
