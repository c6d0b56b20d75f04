// The app's own JSON reader and writer against Qt's: reading what QJsonDocument wrote (indented
// or compact) and writing it again must give exactly the bytes of QJsonDocument::toJson(Indented),
// and malformed text must be refused with a message.
#include "json/JsonDocument.h"
#include "json/JsonWriter.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

// Writes a parsed value back out, whole numbers through integer() as the records write them.
void write(JsonWriter &writer, const JsonValue &value)
{
    if (value.isObject() || value.isArray()) {
        value.isObject() ? writer.beginObject() : writer.beginArray();
        for (auto it = value.elements().begin(); it != value.elements().end(); ++it) {
            if (value.isObject())
                writer.key(QLatin1StringView(it.key().toLatin1()));
            write(writer, *it);
        }
        value.isObject() ? writer.endObject() : writer.endArray();
    } else if (value.isString()) {
        writer.string(value.toString());
    } else if (value.isBool()) {
        writer.boolean(value.toBool());
    } else if (const std::optional<qint64> whole = value.toInt64()) {
        writer.integer(*whole);
    } else if (value.isNumber()) {
        writer.number(value.toDouble());
    } else {
        writer.null();
    }
}

QString withUnits(std::initializer_list<char16_t> units)
{
    return QString(reinterpret_cast<const QChar *>(units.begin()), qsizetype(units.size()));
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
    void sameBytesAsQt_data();
    void sameBytesAsQt();
    void malformedTextIsRefused_data();
    void malformedTextIsRefused();
};

void TestJsonFidelity::sameBytesAsQt_data()
{
    QTest::addColumn<QJsonDocument>("document");
    const auto text = [](const char *name, const char *json) {
        QTest::newRow(name) << QJsonDocument::fromJson(json);
    };
    const auto strings = [](const char *name, const QJsonArray &array) {
        QTest::newRow(name) << QJsonDocument(array);
    };
    text("empty containers inside objects and arrays",
         R"({"a": {}, "b": [], "c": [[], {}, [[]]], "d": {"e": {}}})");
    text("objects and arrays nested in each other, true, false and null",
         R"({"events": [{"id": 1, "tags": ["x", "y"], "end": {"kind": "onDate"}}, {"id": 2}],
             "pin": {"kind": "manual"}, "list": [[1, [2, [3]]], {"k": [true, false, null]}]})");
    text("keys that sort by their bytes",
         R"({"b": 1, "B": 2, "a_": 3, "a": 4, "aa": 5, "Z": 6, "_": 7, "0": 8})");
    text("whole numbers, negative and large, fractions and exponents",
         "[0, -1, 42, 2147483648, 9007199254740993, -9223372036854775807, 9223372036854775807, "
         "1.5, -0.25, 0.1, 3.141592653589793, 1e-7, 2.5e20, -1.0e300, 1e20, 100.0]");
    text("a deep but legal nesting", nested(100, "[{\"k\": ", "1", "}]"));
    strings("quotes, backslashes and control characters",
            {uR"(say "hi" \ C:\path\ and \"both\")"_qs,
             withUnits({u'a', 0x08, 0x0c, u'\n', u'\r', u'\t', 0x01, 0x1f, 0x00, 0x7f, u'/'})});
    strings("non-ASCII text, and emoji beyond the BMP",
            {u"İstanbul çğüş – Straße, 日本語, Ωμέγα"_qs,
             u"🎉 👩‍👩‍👧 𝄞 🏳️‍🌈"_qs});
    strings("byte-order marks inside strings, first and after an escape",
            {withUnits({0xfeff, 0xfeff, u'x'}), withUnits({u'\n', 0xfeff})});
    strings("surrogates without their partner",
            {withUnits({0xd83d}), withUnits({0xde00, u'x'}), withUnits({u'a', 0xd800, u'b'})});
}

void TestJsonFidelity::sameBytesAsQt()
{
    QFETCH(QJsonDocument, document);
    QVERIFY(!document.isNull());
    const QByteArray expected = document.toJson(QJsonDocument::Indented);
    for (const QByteArray &text : {expected, document.toJson(QJsonDocument::Compact)}) {
        QString error;
        const std::optional<JsonDocument> parsed = JsonDocument::parse(text, &error);
        QVERIFY2(parsed, qPrintable(error));
        JsonWriter writer;
        write(writer, parsed->root());
        QCOMPARE(writer.finish(), expected);
    }
}

void TestJsonFidelity::malformedTextIsRefused_data()
{
    QTest::addColumn<QByteArray>("text");
    const auto row = [](const char *name, const QByteArray &text) {
        QTest::newRow(name) << text;
    };
    row("nothing at all", "");
    row("a document cut off in a string", R"({"title": "Dent)");
    row("two documents in a row", "[1] [2]");
    row("objects nested one deeper than allowed",
        nested(JsonDocument::MaxDepth + 1, "{\"k\": ", "1", "}"));
    row("a plus sign in front", "[+1]");
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
