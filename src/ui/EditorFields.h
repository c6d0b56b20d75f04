#pragma once

#include <QDate>
#include <QDateTime>
#include <QLocale>
#include <QString>
#include <QTime>

#include <functional>
#include <optional>

// Reading and writing the editor's date, time and link fields. Dates and times are written in the
// interface language's short forms (with a four-digit year) and read back from those, from ISO
// forms, and from words the date parser understands ("tomorrow", "3 June", "15h30").
namespace EditorFields {

// Finds a date (and maybe a time) in free text, as the natural date parser does.
using DateWords = std::function<std::optional<QDateTime>(const QString &text, bool *hasTime)>;

QString dateFormat(const QLocale &locale);
QString formatDate(const QDate &date, const QLocale &locale);
QString formatTime(const QTime &time, const QLocale &locale);

// The date in `text`; invalid when there is none. `words` is asked last and may be empty.
QDate parseDate(const QString &text, const QLocale &locale, const DateWords &words);
// The time of day in `text` ("15:30", "3:30 PM", "9", "3pm"); invalid when there is none.
QTime parseTime(const QString &text, const QLocale &locale, const DateWords &words);

// Whether `text` is a link someone can open: a URL with a scheme and a host (or a mail or
// telephone address), or a web address such as "example.com/page" or "www.example.com".
bool isLink(const QString &text);

} // namespace EditorFields
