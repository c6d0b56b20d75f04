#pragma once

#include <QString>

#include <optional>

class JsonValue;
class JsonWriter;

// The icon of a countdown: the name of a symbol of the bundled icon set ("party.popper.fill").
struct IconRef
{
    QString symbol;

    static IconRef named(const QString &symbol) { return IconRef {symbol}; }
    // Files of older versions stored emoji and other kinds; they all become the party popper.
    static std::optional<IconRef> fromJson(const JsonValue &value, QString *error);
    void toJson(JsonWriter &writer) const;

    bool operator==(const IconRef &) const = default;
};
