#pragma once

#include <QDateTime>
#include <QString>

// A date (and maybe a time of day) found in a typed title, and the title without it.
struct NaturalDateMatch
{
    QDateTime date; // UTC
    bool includeTime = false;
    QString cleanedTitle;

    bool operator==(const NaturalDateMatch &) const = default;
};
