#include "records/SettingsTypes.h"

#include <array>

namespace {

template<typename Enum, size_t N>
QString rawOf(const std::array<const char16_t *, N> &names, Enum value)
{
    return QString::fromUtf16(names[size_t(value)]);
}

template<typename Enum, size_t N>
std::optional<Enum> fromRaw(const std::array<const char16_t *, N> &names, QStringView raw)
{
    for (size_t i = 0; i < N; ++i) {
        if (raw == QStringView(names[i]))
            return Enum(i);
    }
    return std::nullopt;
}

constexpr std::array<const char16_t *, 6> LanguageNames = {u"auto", u"en", u"tr",
                                                           u"de",   u"es", u"fr"};
constexpr std::array<const char16_t *, 3> ThemeNames = {u"auto", u"light", u"dark"};
constexpr std::array<const char16_t *, 4> StyleNames = {u"full", u"compact", u"titleOnly",
                                                        u"iconOnly"};
constexpr std::array<const char16_t *, 3> FormatNames = {u"automatic", u"daysOnly", u"weeksDays"};

} // namespace

QString rawValue(LanguagePref value)
{
    return rawOf(LanguageNames, value);
}
QString rawValue(ThemePref value)
{
    return rawOf(ThemeNames, value);
}
QString rawValue(MenubarStyle value)
{
    return rawOf(StyleNames, value);
}
QString rawValue(CountdownDisplayFormat value)
{
    return rawOf(FormatNames, value);
}

std::optional<LanguagePref> languagePrefFromRaw(QStringView raw)
{
    return fromRaw<LanguagePref>(LanguageNames, raw);
}
std::optional<ThemePref> themePrefFromRaw(QStringView raw)
{
    return fromRaw<ThemePref>(ThemeNames, raw);
}
std::optional<MenubarStyle> menubarStyleFromRaw(QStringView raw)
{
    return fromRaw<MenubarStyle>(StyleNames, raw);
}
std::optional<CountdownDisplayFormat> displayFormatFromRaw(QStringView raw)
{
    return fromRaw<CountdownDisplayFormat>(FormatNames, raw);
}

QString languageCode(LanguagePref value)
{
    return value == LanguagePref::auto_ ? QString() : rawValue(value);
}
