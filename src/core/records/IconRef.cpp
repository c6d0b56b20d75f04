#include "records/IconRef.h"

#include "json/JsonObjectReader.h"
#include "json/JsonWriter.h"

using namespace Qt::StringLiterals;

std::optional<IconRef> IconRef::fromJson(const JsonValue &value, QString *error)
{
    JsonObjectReader reader(value, error);
    const QString kind = reader.sharedString("kind"_L1);
    const QString symbol = reader.sharedString("value"_L1);
    if (!reader.ok())
        return std::nullopt;
    if (kind == "symbol"_L1)
        return IconRef {symbol};
    if (kind == "emoji"_L1 || kind == "sfSymbol"_L1)
        return IconRef {QStringLiteral("party.popper.fill")};
    if (error)
        *error = QStringLiteral("Unknown IconRef kind: ") + kind;
    return std::nullopt;
}

void IconRef::toJson(JsonWriter &writer) const
{
    writer.beginObject();
    writer.key("kind"_L1).string(u"symbol");
    writer.key("value"_L1).string(symbol);
    writer.endObject();
}
