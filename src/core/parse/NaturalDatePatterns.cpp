#include "parse/NaturalDatePatterns.h"

#include "parse/Lexicon.h"

#include <QLoggingCategory>

namespace {

#ifndef QT_NO_DEBUG
Q_LOGGING_CATEGORY(lcNaturalDateParser, "NaturalDateParser")
#endif

// No letter or digit directly before / after the match.
const QString leftGuard = QStringLiteral(R"((?<![\p{L}\d]))");
const QString rightGuard = QStringLiteral(R"((?![\p{L}\d]))");
// "on 3 June", "am 3. Juni", "el 3 de junio", "le 3 juin".
const QString dayPreposition = QStringLiteral(R"((?:(?:on|am|el|le)\s+)?)");
// "at", "saat", "um", "a las", "a la", "à" in front of a time of day.
const QString timePrefix = QStringLiteral(R"((?:(?:at|saat|um|a\s+las|a\s+la|à)\s+))");
const QString optionalTimePrefix = timePrefix % u'?';

NaturalDatePatterns::Pattern compile(const QString &text)
{
    NaturalDatePatterns::Pattern pattern;
    pattern.expression = QRegularExpression(text,
                                            QRegularExpression::CaseInsensitiveOption
                                                | QRegularExpression::UseUnicodePropertiesOption);
    pattern.expression.optimize();
    pattern.valid = pattern.expression.isValid();
#ifndef QT_NO_DEBUG
    if (!pattern.valid) {
        qCDebug(lcNaturalDateParser).noquote()
            << QStringLiteral("Pattern does not compile (%1 at %2): %3")
                   .arg(pattern.expression.errorString())
                   .arg(pattern.expression.patternErrorOffset())
                   .arg(pattern.expression.pattern());
    }
#endif
    return pattern;
}

NaturalDatePatterns::Pattern compileGuarded(const QString &body)
{
    return compile(leftGuard % body % rightGuard);
}

} // namespace

NaturalDatePatterns::NaturalDatePatterns()
{
    const QString &months = Lexicon::monthAlternation();
    explicitDates = {
        {compileGuarded(dayPreposition % QStringLiteral(R"((\d{1,2})(?:er)?\.?\s+(?:de\s+)?()")
                        % months
                        % QStringLiteral(R"()\.?(?:['’]\p{L}+)?(?:,?\s+(?:de\s+)?(\d{4}))?)")),
         1, 2, 3, true},
        {compileGuarded(dayPreposition % u'(' % months
                        % QStringLiteral(R"()\.?\s+(\d{1,2})(?:st|nd|rd|th)?(?:,?\s+(\d{4}))?)")),
         2, 1, 3, true},
        {compileGuarded(dayPreposition
                        % QStringLiteral(R"((\d{2})\.(\d{2})(?:\.(\d{4}|\d{2}))?(?!\.?\d))")),
         1, 2, 3, false},
    };

    relativeDay = compileGuarded(u'(' % Lexicon::relativeDayAlternation() % u')');

    for (const Lexicon::CountRule &rule : Lexicon::countRules()) {
        // The count rules are stored whole, guards included.
        counts.append({compile(rule.pattern), rule.valueGroup, rule.unitGroup, rule.sign});
    }

    weekday = compileGuarded(
        dayPreposition
        % QStringLiteral(R"((?:(next|this|last|haftaya|gelecek|geçen|nächsten|nächste|kommenden|)"
                         R"(letzten|el\s+próximo|el\s+pasado|próximo|pasado|este|ce)\s+)?()")
        % Lexicon::weekdayAlternation()
        % QStringLiteral(
            R"()(?:['’]\p{L}+)?(?:\s+(de\s+la\s+semaine\s+prochaine|prochain|dernier))?)"));

    times = {
        {compileGuarded(optionalTimePrefix
                        % QStringLiteral(R"((\d{1,2}):(\d{2})(?:\s*(am|pm|uhr))?)")),
         1, 2, 3},
        {compileGuarded(timePrefix % QStringLiteral(R"((\d{1,2})\.(\d{2})(?:\s*(uhr))?)")), 1, 2,
         3},
        {compileGuarded(optionalTimePrefix % QStringLiteral(R"((\d{1,2})\s*(am|pm))")), 1, 0, 2},
        {compileGuarded(optionalTimePrefix % QStringLiteral(R"((\d{1,2})h(\d{2}))")), 1, 2, 0},
        {compileGuarded(timePrefix % QStringLiteral(R"((\d{1,2})\s?h)")), 1, 0, 0},
        {compileGuarded(QStringLiteral(R"((?:um\s+)?(\d{1,2})\s+(uhr))")), 1, 0, 2},
        {compileGuarded(timePrefix % QStringLiteral(R"((\d{1,2}))")), 1, 0, 0},
    };
}

const NaturalDatePatterns &NaturalDatePatterns::instance()
{
    static const NaturalDatePatterns patterns;
    return patterns;
}
