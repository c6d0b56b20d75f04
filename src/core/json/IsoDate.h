#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QStringView>

#include <optional>

// The one date format of every data file: ISO 8601 internet date-time in UTC with exactly three
// fraction digits when written ("2026-11-14T21:31:24.123Z"); read with or without a fraction,
// with "Z" or a numeric offset. The format holds four-digit years: only instants from
// 0001-01-01T00:00:00.000Z to 9999-12-31T23:59:59.999Z can be written and read back.
namespace IsoDate {

// The first and last instant the format holds, in milliseconds since 1970 UTC.
constexpr qint64 MinMSecs = -62135596800000;
constexpr qint64 MaxMSecs = 253402300799999;

// A valid instant within the years 0001 to 9999 in UTC.
bool isWritable(const QDateTime &instant);
// "<instant> is outside the years 0001 to 9999 that the data files can hold".
QString outOfRangeMessage(const QDateTime &instant);

QString format(const QDateTime &instant);
void appendTo(QByteArray &out, const QDateTime &instant);
// The longest text write() makes (it writes years beyond 9999 with more digits, for messages).
constexpr qsizetype MaxLength = 40;
// Writes the text at `out` and returns the end of it.
char *write(char *out, const QDateTime &instant);

// The instant, or nothing for a malformed text or one outside the years 0001 to 9999.
std::optional<QDateTime> parse(QStringView text);
std::optional<QDateTime> parse(QByteArrayView utf8);
// Well-formed, but outside the years the format holds ("10000-01-01T00:00:00.000Z",
// "-0001-12-31T00:00:00Z", "9999-12-31T23:30:00-05:00"): what older versions could write.
bool isOutOfRange(QStringView text);

// The decoding error for a date that does not parse: "Invalid ISO8601 date: <text>".
QString invalidDateMessage(QStringView text);

} // namespace IsoDate
