#include "json/IsoDate.h"

#include <QTimeZone>

namespace {

// Days since 1970-01-01 of a proleptic Gregorian date (Howard Hinnant's algorithm).
qint64 daysFromCivil(qint64 y, unsigned m, unsigned d)
{
    y -= m <= 2;
    const qint64 era = (y >= 0 ? y : y - 399) / 400;
    const unsigned yoe = unsigned(y - era * 400);
    const unsigned doy = (153 * (m + (m > 2 ? -3 : 9)) + 2) / 5 + d - 1;
    const unsigned doe = yoe * 365 + yoe / 4 - yoe / 100 + doy;
    return era * 146097 + qint64(doe) - 719468;
}

struct Civil
{
    qint64 year;
    unsigned month;
    unsigned day;
};

Civil civilFromDays(qint64 z)
{
    z += 719468;
    const qint64 era = (z >= 0 ? z : z - 146096) / 146097;
    const unsigned doe = unsigned(z - era * 146097);
    const unsigned yoe = (doe - doe / 1460 + doe / 36524 - doe / 146096) / 365;
    const unsigned doy = doe - (365 * yoe + yoe / 4 - yoe / 100);
    const unsigned mp = (5 * doy + 2) / 153;
    const unsigned d = doy - (153 * mp + 2) / 5 + 1;
    const unsigned m = mp < 10 ? mp + 3 : mp - 9;
    return {qint64(yoe) + era * 400 + (m <= 2), m, d};
}

bool isLeap(qint64 y)
{
    return (y % 4 == 0 && y % 100 != 0) || y % 400 == 0;
}

unsigned daysInMonth(qint64 y, unsigned m)
{
    static constexpr unsigned days[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    return m == 2 && isLeap(y) ? 29 : days[m - 1];
}

char *writeDigits(char *out, qint64 value, int width)
{
    char buffer[24];
    int n = 0;
    const bool negative = value < 0;
    quint64 v = negative ? quint64(-value) : quint64(value);
    do {
        buffer[n++] = char('0' + v % 10);
        v /= 10;
    } while (v);
    while (n < width)
        buffer[n++] = '0';
    if (negative)
        *out++ = '-';
    while (n)
        *out++ = buffer[--n];
    return out;
}

// A field of exactly `width` digits (value known to fit).
char *writeFixed(char *out, unsigned value, int width)
{
    for (int i = width - 1; i >= 0; --i) {
        out[i] = char('0' + value % 10);
        value /= 10;
    }
    return out + width;
}

// Reads exactly `count` ASCII digits at `pos`.
template<typename Char>
bool readDigits(const Char *text, qsizetype size, qsizetype &pos, int count, int &value)
{
    if (pos + count > size)
        return false;
    value = 0;
    for (int i = 0; i < count; ++i) {
        const auto c = text[pos + i];
        if (c < '0' || c > '9')
            return false;
        value = value * 10 + int(c - '0');
    }
    pos += count;
    return true;
}

template<typename Char>
bool expect(const Char *text, qsizetype size, qsizetype &pos, char wanted)
{
    if (pos >= size || text[pos] != Char(wanted))
        return false;
    ++pos;
    return true;
}

enum class Parsed { ok, malformed, outOfRange };

struct ParseResult
{
    Parsed status = Parsed::malformed;
    qint64 msecs = 0;
};

// The year: exactly four digits, or (as files of older versions may hold) a sign or more digits,
// which can only name a year outside 0001-9999.
template<typename Char>
bool readYear(const Char *text, qsizetype size, qsizetype &pos, qint64 &year, bool &expanded)
{
    int sign = 1;
    expanded = false;
    if (pos < size && (text[pos] == Char('+') || text[pos] == Char('-'))) {
        sign = text[pos] == Char('-') ? -1 : 1;
        expanded = true;
        ++pos;
    }
    year = 0;
    int digits = 0;
    while (pos < size && text[pos] >= Char('0') && text[pos] <= Char('9')) {
        if (++digits > 6) // beyond any year a QDateTime of an older version could hold
            return false;
        year = year * 10 + qint64(text[pos] - '0');
        ++pos;
    }
    expanded = expanded || digits > 4;
    year *= sign;
    return digits >= 4;
}

template<typename Char>
ParseResult parseChars(const Char *text, qsizetype size)
{
    qsizetype pos = 0;
    qint64 year;
    bool expandedYear;
    int month, day, hour, minute, second;
    if (!readYear(text, size, pos, year, expandedYear) || !expect(text, size, pos, '-')
        || !readDigits(text, size, pos, 2, month) || !expect(text, size, pos, '-')
        || !readDigits(text, size, pos, 2, day))
        return {};
    if (pos >= size || (text[pos] != Char('T') && text[pos] != Char('t')))
        return {};
    ++pos;
    if (!readDigits(text, size, pos, 2, hour) || !expect(text, size, pos, ':')
        || !readDigits(text, size, pos, 2, minute) || !expect(text, size, pos, ':')
        || !readDigits(text, size, pos, 2, second))
        return {};
    int millis = 0;
    if (pos < size && text[pos] == Char('.')) {
        ++pos;
        int digits = 0;
        while (pos < size && text[pos] >= Char('0') && text[pos] <= Char('9')) {
            if (digits < 3)
                millis = millis * 10 + int(text[pos] - '0');
            ++digits;
            ++pos;
        }
        if (digits == 0)
            return {};
        for (int i = digits; i < 3; ++i)
            millis *= 10;
    }
    int offsetMinutes = 0;
    if (pos < size && (text[pos] == Char('Z') || text[pos] == Char('z'))) {
        ++pos;
    } else if (pos < size && (text[pos] == Char('+') || text[pos] == Char('-'))) {
        const int sign = text[pos] == Char('-') ? -1 : 1;
        ++pos;
        int oh, om;
        if (!readDigits(text, size, pos, 2, oh))
            return {};
        expect(text, size, pos, ':');
        if (!readDigits(text, size, pos, 2, om) || oh > 23 || om > 59)
            return {};
        offsetMinutes = sign * (oh * 60 + om);
    } else {
        return {};
    }
    if (pos != size)
        return {};
    if (month < 1 || month > 12 || day < 1 || unsigned(day) > daysInMonth(year, unsigned(month))
        || hour > 23 || minute > 59 || second > 59)
        return {};

    const qint64 seconds = daysFromCivil(year, unsigned(month), unsigned(day)) * 86400 + hour * 3600
        + minute * 60 + second - qint64(offsetMinutes) * 60;
    const qint64 msecs = seconds * 1000 + millis;
    // An offset can carry 9999-12-31T23:30-05:00 into the year 10000 in UTC, which no file holds.
    if (expandedYear || msecs < IsoDate::MinMSecs || msecs > IsoDate::MaxMSecs)
        return {Parsed::outOfRange, msecs};
    return {Parsed::ok, msecs};
}

std::optional<QDateTime> instantOf(const ParseResult &result)
{
    if (result.status != Parsed::ok)
        return std::nullopt;
    return QDateTime::fromMSecsSinceEpoch(result.msecs, Qt::UTC);
}

} // namespace

namespace IsoDate {

char *write(char *out, const QDateTime &instant)
{
    const qint64 ms = instant.toMSecsSinceEpoch();
    qint64 days = ms / 86400000;
    qint64 rest = ms % 86400000;
    if (rest < 0) {
        rest += 86400000;
        --days;
    }
    const Civil civil = civilFromDays(days);
    out = civil.year >= 0 && civil.year <= 9999 ? writeFixed(out, unsigned(civil.year), 4)
                                                : writeDigits(out, civil.year, 4);
    *out++ = '-';
    out = writeFixed(out, civil.month, 2);
    *out++ = '-';
    out = writeFixed(out, civil.day, 2);
    *out++ = 'T';
    out = writeFixed(out, unsigned(rest / 3600000), 2);
    *out++ = ':';
    out = writeFixed(out, unsigned(rest / 60000 % 60), 2);
    *out++ = ':';
    out = writeFixed(out, unsigned(rest / 1000 % 60), 2);
    *out++ = '.';
    out = writeFixed(out, unsigned(rest % 1000), 3);
    *out++ = 'Z';
    return out;
}

void appendTo(QByteArray &out, const QDateTime &instant)
{
    char buffer[MaxLength];
    out.append(buffer, write(buffer, instant) - buffer);
}

QString format(const QDateTime &instant)
{
    char buffer[MaxLength];
    return QString::fromLatin1(buffer, write(buffer, instant) - buffer);
}

std::optional<QDateTime> parse(QStringView text)
{
    return instantOf(parseChars(text.utf16(), text.size()));
}

std::optional<QDateTime> parse(QByteArrayView utf8)
{
    return instantOf(parseChars(reinterpret_cast<const unsigned char *>(utf8.data()), utf8.size()));
}

bool isOutOfRange(QStringView text)
{
    return parseChars(text.utf16(), text.size()).status == Parsed::outOfRange;
}

bool isWritable(const QDateTime &instant)
{
    if (!instant.isValid())
        return false;
    const qint64 msecs = instant.toMSecsSinceEpoch();
    return msecs >= MinMSecs && msecs <= MaxMSecs;
}

QString outOfRangeMessage(const QDateTime &instant)
{
    return QStringLiteral("%1 is outside the years 0001 to 9999 that the data files can hold")
        .arg(instant.isValid() ? format(instant) : QStringLiteral("an invalid date"));
}

QString invalidDateMessage(QStringView text)
{
    return QStringLiteral("Invalid ISO8601 date: ") + text;
}

} // namespace IsoDate
