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
    void storedCodes_data()
    {
        QTest::addColumn<int>("qtKey");
        QTest::addColumn<int>("code");
        const std::pair<const char *, std::pair<int, int>> rows[] = {
            {"Space is 49", {Qt::Key_Space, 49}},
            {"Tab is 48", {Qt::Key_Tab, 48}},
            {"Q is 12", {Qt::Key_Q, 12}},
            {"W is 13", {Qt::Key_W, 13}},
            {"H is 4", {Qt::Key_H, 4}},
            {"M is 46", {Qt::Key_M, 46}},
            {"F is 3", {Qt::Key_F, 3}},
            {"The digit 3 is 20", {Qt::Key_3, 20}},
            {"The digit 4 is 21", {Qt::Key_4, 21}},
            {"The digit 5 is 23", {Qt::Key_5, 23}},
            {"Up is 126", {Qt::Key_Up, 126}},
            {"Down is 125", {Qt::Key_Down, 125}},
            {"Escape is 53", {Qt::Key_Escape, 53}},
            {"Return is 36", {Qt::Key_Return, 36}},
            {"F1 is 122", {Qt::Key_F1, 122}},
            {"F12 is 111", {Qt::Key_F12, 111}},
            {"Slash is 44", {Qt::Key_Slash, 44}},
            {"Grave is 50", {Qt::Key_QuoteLeft, 50}},
            {"Print takes F13's place", {Qt::Key_Print, 105}},
        };
        for (const auto &[name, row] : rows)
            QTest::newRow(name) << row.first << row.second;
    }

    // Files written by earlier versions carry these codes; they must keep meaning the same keys.
    void storedCodes()
    {
        QFETCH(int, qtKey);
        QFETCH(int, code);
        QCOMPARE(KeyCodeTable::codeOf(qtKey), std::optional(quint16(code)));
        QCOMPARE(KeyCodeTable::qtKeyOf(quint16(code)), std::optional(Qt::Key(qtKey)));
    }

    void everyRowRoundTripsAndNoCodeIsUsedTwice()
    {
        QSet<quint16> codes;
        QSet<int> keys;
        for (const KeyCodeTable::Entry &entry : KeyCodeTable::entries()) {
            QVERIFY2(!codes.contains(entry.code), qPrintable(QString::number(entry.code)));
            QVERIFY(!keys.contains(entry.key));
            codes.insert(entry.code);
            keys.insert(entry.key);
            QCOMPARE(KeyCodeTable::codeOf(entry.key), std::optional(entry.code));
            QCOMPARE(KeyCodeTable::qtKeyOf(entry.code), std::optional(entry.key));
        }
        QCOMPARE(codes.size(), 26 + 10 + 12 + 4 + 13 + 11);
    }

    void shiftedSymbolsAreTheirKeys_data()
    {
        QTest::addColumn<int>("shifted");
        QTest::addColumn<int>("key");
        QTest::newRow("! is the 1 key") << int(Qt::Key_Exclam) << int(Qt::Key_1);
        QTest::newRow(") is the 0 key") << int(Qt::Key_ParenRight) << int(Qt::Key_0);
        QTest::newRow("? is the / key") << int(Qt::Key_Question) << int(Qt::Key_Slash);
        QTest::newRow("~ is the ` key") << int(Qt::Key_AsciiTilde) << int(Qt::Key_QuoteLeft);
        QTest::newRow("Shift+Tab (Backtab) is Tab") << int(Qt::Key_Backtab) << int(Qt::Key_Tab);
        QTest::newRow("The right Super key is the Super key")
            << int(Qt::Key_Super_R) << int(Qt::Key_Super_L);
    }

    void shiftedSymbolsAreTheirKeys()
    {
        QFETCH(int, shifted);
        QFETCH(int, key);
        QVERIFY(KeyCodeTable::codeOf(key));
        QCOMPARE(KeyCodeTable::codeOf(shifted), KeyCodeTable::codeOf(key));
    }

    void keysOutsideTheTableHaveNoCode()
    {
        QVERIFY(!KeyCodeTable::codeOf(Qt::Key_Odiaeresis));
        QVERIFY(!KeyCodeTable::codeOf(Qt::Key_VolumeUp));
        QVERIFY(!KeyCodeTable::qtKeyOf(200));
    }

    void modifierBitsMapToQtModifiers()
    {
        const std::pair<quint64, Qt::KeyboardModifier> bits[] = {
            {0x20000, Qt::ShiftModifier},
            {0x40000, Qt::ControlModifier},
            {0x80000, Qt::AltModifier},
            {0x100000, Qt::MetaModifier},
        };
        for (const auto &[bit, modifier] : bits) {
            QCOMPARE(KeyModifier::toQt(bit), Qt::KeyboardModifiers(modifier));
            QCOMPARE(KeyModifier::fromQt(modifier), bit);
        }
        QCOMPARE(KeyModifier::fromQt(Qt::KeypadModifier | Qt::GroupSwitchModifier), quint64(0));
        QCOMPARE(KeyModifier::toQt(0x1e0000 | 0x1),
                 Qt::ShiftModifier | Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier);
    }

    void comboText_data()
    {
        QTest::addColumn<QString>("language");
        QTest::addColumn<KeyCombo>("combo");
        QTest::addColumn<QString>("expected");
        const quint64 all = KeyModifier::mask;
        QTest::newRow("The default toggle in English")
            << u"en"_s << defaultCombo(ShortcutAction::togglePopover) << u"Ctrl+Super+T"_s;
        QTest::newRow("Ctrl is Strg in German")
            << u"de"_s << defaultCombo(ShortcutAction::newCountdown) << u"Strg+Super+N"_s;
        QTest::newRow("Modifiers always in one order")
            << u"en"_s << KeyCombo {49, all} << u"Ctrl+Alt+Shift+Super+Space"_s;
        QTest::newRow("Spanish names Shift and Delete")
            << u"es"_s << KeyCombo {117, KeyModifier::control | KeyModifier::shift}
            << u"Ctrl+Mayús+Supr"_s;
        QTest::newRow("French Escape") << u"fr"_s << KeyCombo {53, 0} << u"Échap"_s;
        QTest::newRow("Turkish Space")
            << u"tr"_s << KeyCombo {49, KeyModifier::super} << u"Super+Boşluk"_s;
        QTest::newRow("Arrows are arrows")
            << u"en"_s << KeyCombo {123, KeyModifier::control} << u"Ctrl+←"_s;
        QTest::newRow("Function keys by number")
            << u"en"_s << KeyCombo {111, KeyModifier::super} << u"Super+F12"_s;
        QTest::newRow("Punctuation as itself")
            << u"en"_s << KeyCombo {43, KeyModifier::control} << u"Ctrl+,"_s;
        QTest::newRow("The Super key alone")
            << u"en"_s << KeyCombo {55, KeyModifier::super} << u"Super"_s;
        QTest::newRow("A code from a newer version")
            << u"en"_s << KeyCombo {200, KeyModifier::control} << u"Ctrl+#200"_s;
    }

    void comboText()
    {
        QFETCH(QString, language);
        QFETCH(KeyCombo, combo);
        QTEST(keyComboText(combo, LanguageTable::load(language)), "expected");
    }

    // The defaults must be recordable: Ctrl or Super, and not kept by any desktop.
    void defaultsPassTheRecordersRules()
    {
        for (const ShortcutAction action : allShortcutActions()) {
            QCOMPARE(judgeRecordedKey(defaultCombo(action)).verdict,
                     ShortcutJudgement::Verdict::capture);
        }
        QVERIFY(defaultCombo(ShortcutAction::togglePopover)
                != defaultCombo(ShortcutAction::newCountdown));
        Settings settings;
        settings.shortcutOverrides.insert(u"newCountdown"_s, KeyCombo {3, KeyModifier::control});
        QCOMPARE(comboIn(settings, ShortcutAction::newCountdown), (KeyCombo {3, 0x40000}));
        QCOMPARE(comboIn(settings, ShortcutAction::togglePopover),
                 defaultCombo(ShortcutAction::togglePopover));
    }
};

QTEST_GUILESS_MAIN(tst_KeyCodeTable)
#include "tst_keycodetable.moc"
