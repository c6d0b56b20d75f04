// The app's own JSON writer and reader against Qt's: the writer must produce exactly the bytes
// of QJsonDocument::toJson(Indented), the reader must see the same values as QJsonDocument, and
// malformed text must be refused with a message.

#include "json/JsonDocument.h"
#include "json/JsonWriter.h"

#include <QCborValue>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

namespace {

void write(JsonWriter &writer, const QJsonValue &value)
{
    switch (value.type()) {
    case QJsonValue::Object: {
        const QJsonObject object = value.toObject();
        writer.beginObject();
        for (auto it = object.begin(); it != object.end(); ++it) {
            const QByteArray key = it.key().toLatin1();
            writer.key(QLatin1StringView(key));
            write(writer, it.value());
        }
        writer.endObject();
        break;
    }
    case QJsonValue::Array:
        writer.beginArray();
        for (const QJsonValue element : value.toArray())
            write(writer, element);
        writer.endArray();
        break;
    case QJsonValue::String:
        writer.string(value.toString());
        break;
    case QJsonValue::Bool:
        writer.boolean(value.toBool());
        break;
    case QJsonValue::Double: {
        // Qt keeps whole numbers read from text apart from fractions and writes them differently.
        const QCborValue number = QCborValue::fromJsonValue(value);
        if (number.isInteger())
            writer.integer(number.toInteger());
        else
            writer.number(value.toDouble());
        break;
    }
    default:
        writer.null();
        break;
    }
}

QByteArray writeWithJsonWriter(const QJsonDocument &document)
{
    JsonWriter writer;
    write(writer,
          document.isObject() ? QJsonValue(document.object()) : QJsonValue(document.array()));
    return writer.finish();
}

QJsonValue toQJson(const JsonValue &value)
{
    if (value.isObject()) {
        QJsonObject object;
        for (auto it = value.elements().begin(); it != value.elements().end(); ++it)
            object.insert(it.key(), toQJson(*it));
        return object;
    }
    if (value.isArray()) {
        QJsonArray array;
        for (const JsonValue element : value.elements())
            array.append(toQJson(element));
        return array;
    }
    if (value.isString())
        return value.toString();
    if (value.isBool())
        return value.toBool();
    if (value.isNumber()) {
        if (const std::optional<qint64> whole = value.toInt64())
            return QJsonValue(*whole);
        return value.toDouble();
    }
    return QJsonValue::Null;
}

QString withUnits(std::initializer_list<char16_t> units)
{
    QString text;
    for (char16_t unit : units)
        text += QChar(unit);
    return text;
}

QByteArray nested(int depth, const char *open, const char *inner, const char *close)
{
    return QByteArray(open).repeated(depth) + inner + QByteArray(close).repeated(depth);
}

} // namespace

class TestJsonFidelity : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void sameBytesAndValuesAsQt_data();
    void sameBytesAndValuesAsQt();
    void malformedTextIsRefused_data();
    void malformedTextIsRefused();
};

void TestJsonFidelity::sameBytesAndValuesAsQt_data()
{
    QTest::addColumn<QJsonDocument>("document");

    const auto fromText = [](const char *json) {
        return QJsonDocument::fromJson(json);
    };
    const auto holding = [](const QString &text) {
        return QJsonDocument(QJsonObject {{"text", text}});
    };

    QTest::newRow("an empty object at the top") << fromText("{}");
    QTest::newRow("an empty array at the top") << fromText("[]");
    QTest::newRow("empty containers inside objects and arrays")
        << fromText(R"({"a": {}, "b": [], "c": [[], {}, [[]]], "d": {"e": {}}})");
    QTest::newRow("objects and arrays nested in each other") << fromText(
        R"({"events": [{"id": 1, "tags": ["x", "y"], "end": {"kind": "onDate"}}, {"id": 2}],
                        "pin": {"kind": "manual"}, "list": [[1, [2, [3]]], {"k": [true]}]})");
    QTest::newRow("keys that sort by their bytes")
        << fromText(R"({"b": 1, "B": 2, "a_": 3, "a": 4, "aa": 5, "Z": 6, "_": 7, "0": 8})");
    QTest::newRow("true, false and null") << fromText(R"([true, false, null, {"n": null}])");
    QTest::newRow("quotes and backslashes") << holding(uR"(say "hi" \ C:\path\ and \"both\")"_qs);
    QTest::newRow("control characters") << holding(
        withUnits({u'a', 0x08, 0x0c, u'\n', u'\r', u'\t', 0x01, 0x1f, 0x00, 0x7f, u'/', u'z'}));
    QTest::newRow("non-ASCII text") << holding(u"İstanbul çğüş – Straße, 日本語, Ωμέγα"_qs);
    QTest::newRow("emoji and other characters beyond the BMP")
        << holding(u"🎉 👩‍👩‍👧 𝄞 🏳️‍🌈"_qs);
    QTest::newRow("surrogates without their partner") << QJsonDocument(QJsonArray {
        withUnits({0xd83d}), withUnits({0xde00, u'x'}), withUnits({u'a', 0xd800, u'b'})});
    QTest::newRow("whole numbers, negative and large")
        << fromText("[0, -1, 42, -42, 2147483648, 9007199254740993, -9223372036854775807, "
                    "9223372036854775807]");
    QTest::newRow("fractions and exponents")
        << fromText("[1.5, -0.25, 0.1, 3.141592653589793, 1e-7, 2.5e20, -1.0e300, 1e20, 100.0]");
    QTest::newRow("a deep but legal nesting") << fromText(nested(100, "[{\"k\": ", "1", "}]"));
}

void TestJsonFidelity::sameBytesAndValuesAsQt()
{
    QFETCH(QJsonDocument, document);
    QVERIFY(!document.isNull());

    const QByteArray expected = document.toJson(QJsonDocument::Indented);
    QCOMPARE(writeWithJsonWriter(document), expected);

    for (const QByteArray &text : {expected, document.toJson(QJsonDocument::Compact)}) {
        QString error;
        const std::optional<JsonDocument> parsed = JsonDocument::parse(text, &error);
        QVERIFY2(parsed, qPrintable(error));
        const QJsonValue root = toQJson(parsed->root());
        QCOMPARE(root,
                 document.isObject() ? QJsonValue(document.object())
                                     : QJsonValue(document.array()));
    }
}

void TestJsonFidelity::malformedTextIsRefused_data()
{
    QTest::addColumn<QByteArray>("text");

    QTest::newRow("nothing at all") << QByteArray();
    QTest::newRow("a document cut off in an array") << QByteArray(R"({"a": [1, 2)");
    QTest::newRow("a document cut off in a string") << QByteArray(R"({"title": "Dent)");
    QTest::newRow("a document cut off after a key") << QByteArray(R"({"title")");
    QTest::newRow("a trailing comma in an array") << QByteArray("[1, 2,]");
    QTest::newRow("a trailing comma in an object") << QByteArray(R"({"a": 1,})");
    QTest::newRow("an unknown escape") << QByteArray(R"(["bad \x escape"])");
    QTest::newRow("a short unicode escape") << QByteArray(R"(["\u12"])");
    QTest::newRow("a unicode escape with a non-hex digit") << QByteArray(R"(["\u12g4"])");
    QTest::newRow("a raw control character in a string") << QByteArray("[\"tab\there\"]");
    QTest::newRow("a key without quotes") << QByteArray("{a: 1}");
    QTest::newRow("a misspelt literal") << QByteArray("[tru]");
    QTest::newRow("a number with two points") << QByteArray("[1.2.3]");
    QTest::newRow("a lone minus sign") << QByteArray("[-]");
    QTest::newRow("two documents in a row") << QByteArray("[1] [2]");
    QTest::newRow("arrays nested 1000 deep") << nested(1000, "[", "", "]");
    QTest::newRow("objects nested 1000 deep") << nested(1000, "{\"k\": ", "1", "}");
}

void TestJsonFidelity::malformedTextIsRefused()
{
    QFETCH(QByteArray, text);
    QString error;
    QVERIFY(!JsonDocument::parse(text, &error));
    QVERIFY2(error.startsWith(u"Malformed JSON at byte "), qPrintable(error));
}

QTEST_GUILESS_MAIN(TestJsonFidelity)
#include "tst_jsonfidelity.moc"
