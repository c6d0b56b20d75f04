#pragma once

#include "records/SettingsTypes.h"

#include <QString>
#include <QStringList>
#include <QStringView>

// The interface languages, as two-letter codes in the order the settings offer them.
const QStringList &supportedLanguages();
bool isSupportedLanguage(QStringView code);

// The language the interface speaks for `preference`. For `auto_` the first of the system's
// preferred languages (BCP 47 or POSIX names such as "de-AT", "pt_BR") whose first two letters,
// lower-cased, name a supported language wins; when none does, English.
QString resolveLanguage(LanguagePref preference, const QStringList &preferredLanguages);
