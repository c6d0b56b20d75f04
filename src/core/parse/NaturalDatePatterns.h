#pragma once

#include <QList>
#include <QRegularExpression>

// The compiled expressions of the natural date parser, built once for the process and only read
// afterwards (matching a compiled, optimized QRegularExpression from several threads is safe).
// Group numbers of 0 mean "the pattern has no such group".
struct NaturalDatePatterns
{
    struct Pattern
    {
        QRegularExpression expression;
        bool valid = false; // a pattern that failed to compile finds nothing
    };
    struct ExplicitDate
    {
        Pattern pattern;
        int dayGroup;
        int monthGroup;
        int yearGroup;
        bool monthIsName;
    };
    struct Count
    {
        Pattern pattern;
        int valueGroup;
        int unitGroup;
        int sign;
    };
    struct TimeOfDay
    {
        Pattern pattern;
        int hourGroup;
        int minuteGroup;
        int markerGroup;
    };

    // Groups of the weekday pattern.
    static constexpr int weekdayModifierBefore = 1;
    static constexpr int weekdayName = 2;
    static constexpr int weekdayModifierAfter = 3;

    QList<ExplicitDate> explicitDates;
    Pattern relativeDay; // group 1: the day word
    QList<Count> counts;
    Pattern weekday;
    QList<TimeOfDay> times;

    static const NaturalDatePatterns &instance();

private:
    NaturalDatePatterns();
};
