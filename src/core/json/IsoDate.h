#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QStringView>

#include <optional>

// The one date format of every data file: ISO 8601 internet date-time in UTC with exactly three
// fraction digits when written ("2026-11-14T21:31:24.123Z"); read with or without a fraction,
// with "Z" or a numeric offset.
namespace IsoDate {

QString format(const QDateTime &instant);
void appendTo(QByteArray &out, const QDateTime &instant);
// The longest text write() makes (years beyond 9999 take more digits).
constexpr qsizetype MaxLength = 40;
// Writes the text at `out` and returns the end of it.
char *write(char *out, const QDateTime &instant);

std::optional<QDateTime> parse(QStringView text);
std::optional<QDateTime> parse(QByteArrayView utf8);

// The decoding error for a date that does not parse: "Invalid ISO8601 date: <text>".
QString invalidDateMessage(QStringView text);

} // namespace IsoDate
