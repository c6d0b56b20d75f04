#include "l10n/SupportedLanguages.h"

const QStringList &supportedLanguages()
{
    static const QStringList codes {QStringLiteral("en"), QStringLiteral("tr"),
                                    QStringLiteral("de"), QStringLiteral("es"),
                                    QStringLiteral("fr")};
    return codes;
}

bool isSupportedLanguage(QStringView code)
{
    return supportedLanguages().contains(code);
}

QString resolveLanguage(LanguagePref preference, const QStringList &preferredLanguages)
{
    if (preference != LanguagePref::auto_)
        return languageCode(preference);
    for (const QString &language : preferredLanguages) {
        const QString prefix = language.left(2).toLower();
        if (isSupportedLanguage(prefix))
            return prefix;
    }
    return QStringLiteral("en");
}
