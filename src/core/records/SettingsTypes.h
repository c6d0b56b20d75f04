#pragma once

#include <QString>
#include <QStringView>

#include <optional>

// The choices of the settings file, stored by their raw texts.
enum class LanguagePref { auto_, en, tr, de, es, fr };
enum class ThemePref { auto_, light, dark };
enum class MenubarStyle { full, compact, titleOnly, iconOnly };
enum class CountdownDisplayFormat { automatic, daysOnly, weeksDays };

QString rawValue(LanguagePref value);
QString rawValue(ThemePref value);
QString rawValue(MenubarStyle value);
QString rawValue(CountdownDisplayFormat value);

std::optional<LanguagePref> languagePrefFromRaw(QStringView raw);
std::optional<ThemePref> themePrefFromRaw(QStringView raw);
std::optional<MenubarStyle> menubarStyleFromRaw(QStringView raw);
std::optional<CountdownDisplayFormat> displayFormatFromRaw(QStringView raw);

// The two-letter code of a specific language ("en" ... "fr"); empty for auto_.
QString languageCode(LanguagePref value);
