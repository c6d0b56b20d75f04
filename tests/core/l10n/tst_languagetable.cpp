#include "l10n/LanguageTable.h"
#include "l10n/SupportedLanguages.h"

#include <QFile>
#include <QRegularExpression>
#include <QTest>

namespace {

// Every key the application looks up, one a line. A key missing from a table shows on screen as
// the raw key, so this list is the contract the tables are checked against.
QStringList requiredKeys()
{
    QFile file(QStringLiteral(TARROW_L10N_KEYS));
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        qFatal("Cannot read the list of localisation keys");
    return QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts);
}

// The argument markers of a text, as a sorted list ("%1", "%2").
QStringList markers(const QString &text)
{
    static const QRegularExpression marker(QStringLiteral("%\\d+"));
    QStringList found;
    for (const auto &match : marker.globalMatch(text))
        found.append(match.captured());
    found.sort();
    return found;
}

// The markers a key's own placeholders ("%@", "%lld", "%d") ask for: %1 ... %n.
QStringList markersOfKey(const QString &key)
{
    static const QRegularExpression placeholder(QStringLiteral("%(@|lld|ld|d)"));
    QStringList expected;
    for (auto it = placeholder.globalMatch(key); it.hasNext(); it.next())
        expected.append(QStringLiteral("%%1").arg(expected.size() + 1));
    return expected;
}

} // namespace

class tst_LanguageTable : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyLanguageIsComplete_data();
    void everyLanguageIsComplete();
    void argumentsFillTheLanguagesOwnOrderOnce();
};

void tst_LanguageTable::everyLanguageIsComplete_data()
{
    QTest::addColumn<QString>("code");
    for (const QString &code : supportedLanguages())
        QTest::newRow(qPrintable(code + QStringLiteral(" has a text for every key"))) << code;
}

void tst_LanguageTable::everyLanguageIsComplete()
{
    QFETCH(QString, code);
    const LanguageTable table = LanguageTable::load(code);
    const QStringList keys = requiredKeys();
    QVERIFY(keys.size() > 100);
    for (const QString &key : keys) {
        QVERIFY2(table.contains(key), qPrintable(code + u": missing " + key));
        QVERIFY2(!table.text(key).trimmed().isEmpty(), qPrintable(code + u": empty " + key));
        QVERIFY2(markers(table.text(key)) == markersOfKey(key),
                 qPrintable(code + u": the arguments of " + key + u" do not match the key"));
    }
}

void tst_LanguageTable::argumentsFillTheLanguagesOwnOrderOnce()
{
    const QString key = QStringLiteral("intents.time.until %@ %@");
    QCOMPARE(LanguageTable::load(QStringLiteral("de")).format(key, {u"Urlaub"_qs, u"3T 4Std"_qs}),
             u"Noch 3T 4Std bis „Urlaub“."_qs);
    // An argument that looks like a marker is left alone.
    QCOMPARE(LanguageTable::load(QStringLiteral("en")).format(key, {u"50%2 off"_qs, u"1d 2h"_qs}),
             u"1d 2h until “50%2 off”."_qs);
}

QTEST_GUILESS_MAIN(tst_LanguageTable)
#include "tst_languagetable.moc"
