// The stored key codes and modifier bits against Qt's keys, and how a combination reads in each
// interface language.
#include "l10n/LanguageTable.h"
#include "shortcuts/KeyCodeTable.h"
#include "shortcuts/KeyComboText.h"
#include "shortcuts/ShortcutAction.h"
#include "shortcuts/ShortcutJudge.h"

#include <QSet>
#include <QTest>

using namespace Qt::StringLiterals;

class tst_KeyCodeTable : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // Files written by earlier versions carry these codes; they must keep meaning the same keys.
    // Every row maps both ways, and no code or key appears twice.
    void storedCodes()
    {
        const std::pair<int, quint16> known[] = {
            {Qt::Key_Space, 49}, {Qt::Key_Tab, 48}, {Qt::Key_Q, 12},   {Qt::Key_W, 13},
            {Qt::Key_H, 4},      {Qt::Key_M, 46},   {Qt::Key_F, 3},    {Qt::Key_3, 20},
            {Qt::Key_4, 21},     {Qt::Key_5, 23},   {Qt::Key_Up, 126}, {Qt::Key_Down, 125},
            {Qt::Key_Escape, 53}};
        for (const auto &[key, code] : known)
            QCOMPARE(KeyCodeTable::codeOf(key), std::optional(code));
        QSet<quint16> codes;
        QSet<int> keys;
        for (const KeyCodeTable::Entry &entry : KeyCodeTable::entries()) {
            codes.insert(entry.code);
            keys.insert(entry.key);
            QCOMPARE(KeyCodeTable::qtKeyOf(entry.code), std::optional(entry.key));
        }
        QCOMPARE(codes.size(), KeyCodeTable::entries().size());
        QCOMPARE(keys.size(), KeyCodeTable::entries().size());
        // Shifted symbols of a US layout are their key; keys outside the table have no code.
        QCOMPARE(KeyCodeTable::codeOf(Qt::Key_Exclam), KeyCodeTable::codeOf(Qt::Key_1));
        QCOMPARE(KeyCodeTable::codeOf(Qt::Key_Question), KeyCodeTable::codeOf(Qt::Key_Slash));
        QCOMPARE(KeyCodeTable::codeOf(Qt::Key_Backtab), KeyCodeTable::codeOf(Qt::Key_Tab));
        QVERIFY(!KeyCodeTable::codeOf(Qt::Key_Odiaeresis));
        QVERIFY(!KeyCodeTable::qtKeyOf(200));
    }

    void modifierBits()
    {
        QCOMPARE(KeyModifier::toQt(0x20000 | 0x80000), Qt::ShiftModifier | Qt::AltModifier);
        QCOMPARE(KeyModifier::fromQt(Qt::ControlModifier | Qt::MetaModifier | Qt::KeypadModifier),
                 quint64(0x140000));
    }

    void comboText_data()
    {
        QTest::addColumn<QString>("language");
        QTest::addColumn<KeyCombo>("combo");
        QTest::addColumn<QString>("expected");
        QTest::newRow("The default toggle in English")
            << u"en"_s << defaultCombo(ShortcutAction::togglePopover) << u"Ctrl+Super+T"_s;
        QTest::newRow("Ctrl is Strg in German")
            << u"de"_s << defaultCombo(ShortcutAction::newCountdown) << u"Strg+Super+N"_s;
        QTest::newRow("Modifiers always in one order, Spanish names")
            << u"es"_s << KeyCombo {117, KeyModifier::mask} << u"Ctrl+Alt+Mayús+Super+Supr"_s;
        QTest::newRow("Arrows, function keys and punctuation")
            << u"fr"_s << KeyCombo {123, KeyModifier::control} << u"Ctrl+←"_s;
        QTest::newRow("The Super key alone") << u"tr"_s << KeyCombo {55, 0x100000} << u"Super"_s;
        QTest::newRow("A code from a newer version")
            << u"en"_s << KeyCombo {200, KeyModifier::control} << u"Ctrl+#200"_s;
    }

    void comboText()
    {
        QFETCH(QString, language);
        QFETCH(KeyCombo, combo);
        QTEST(keyComboText(combo, LanguageTable::load(language)), "expected");
    }

    // The defaults pass the recorder's own rules; an override replaces only its action.
    void defaults()
    {
        for (const ShortcutAction action : allShortcutActions())
            QCOMPARE(judgeRecordedKey(defaultCombo(action)).verdict,
                     ShortcutJudgement::Verdict::capture);
        Settings settings;
        settings.shortcutOverrides.insert(u"newCountdown"_s, KeyCombo {3, 0x40000});
        QCOMPARE(comboIn(settings, ShortcutAction::newCountdown), (KeyCombo {3, 0x40000}));
        QCOMPARE(comboIn(settings, ShortcutAction::togglePopover),
                 defaultCombo(ShortcutAction::togglePopover));
    }
};

QTEST_GUILESS_MAIN(tst_KeyCodeTable)
#include "tst_keycodetable.moc"
