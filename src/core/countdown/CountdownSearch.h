#pragma once

#include "countdown/CountdownItem.h"

#include <QString>

// The popover's search: the query is trimmed of white space and line breaks; an empty query keeps
// every item. Otherwise an item matches when its title or its note contains the query, compared
// without regard to case or diacritics and without any locale (cafe finds Café, CAFÉ finds café).
class CountdownSearch
{
public:
    explicit CountdownSearch(const QString &query);

    bool isEmpty() const { return m_folded.isEmpty(); }
    bool matches(const CountdownItem &item) const;

    // Canonical decomposition, combining marks dropped, case folded.
    static QString fold(const QString &text);

private:
    QString m_folded;
};
