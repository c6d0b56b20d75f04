// The keys a shortcut can use, how a combination reads in each interface language, and the
// recorder's rules, fed with key events as the settings page forwards them.
#include "l10n/LocaleManager.h"
#include "shortcuts/KeyCodeTable.h"
#include "shortcuts/KeyComboText.h"
#include "shortcuts/ShortcutAction.h"
#include "shortcuts/ShortcutJudge.h"
#include "shortcuts/ShortcutRecorderModel.h"
#include "storage/SettingsStore.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace {
constexpr int ctrl = Qt::ControlModifier, alt = Qt::AltModifier, shift = Qt::ShiftModifier,
              super = Qt::MetaModifier;
// A key pressed (modifiers as Qt reports them) or, with `released`, let go.
struct KeyEvent
{
    int key;
    int modifiers;
    bool released = false;
};
} // namespace
Q_DECLARE_METATYPE(QList<KeyEvent>)

class tst_ShortcutRecorderModel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // Files written by earlier versions carry these codes and bits; they must keep meaning the
    // same keys. Every row maps both ways, so no code or key appears twice.
    void storedCodes()
    {
        const std::pair<int, quint16> known[] = {
            {Qt::Key_A, 0}, {Qt::Key_T, 17}, {Qt::Key_N, 45}, {Qt::Key_Escape, 53}};
        for (const auto &[key, code] : known)
            QCOMPARE(KeyCodeTable::codeOf(key), std::optional(code));
        for (const KeyCodeTable::Entry &entry : KeyCodeTable::entries()) {
            QCOMPARE(KeyCodeTable::qtKeyOf(entry.code), std::optional(entry.key));
            QCOMPARE(KeyCodeTable::codeOf(entry.key), std::optional(entry.code));
        }
        QCOMPARE(KeyModifier::toQt(0x20000 | 0x80000), Qt::ShiftModifier | Qt::AltModifier);
        QCOMPARE(KeyModifier::fromQt(Qt::ControlModifier | Qt::MetaModifier | Qt::KeypadModifier),
                 quint64(0x140000));
        for (const ShortcutAction action : allShortcutActions())
            QCOMPARE(judgeRecordedKey(defaultCombo(action)).verdict,
                     ShortcutJudgement::Verdict::capture);
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
        QTest::newRow("Arrows as arrows in French")
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

    void judging_data()
    {
        QTest::addColumn<QList<KeyEvent>>("events");
        QTest::addColumn<QString>("refusal");
        QTest::addColumn<KeyCombo>("captured");
        QTest::addColumn<bool>("recording");
        const QString invalid = u"A shortcut needs Ctrl or Super together with a key."_s;
        const auto reserved = [](const QString &name) {
            return name + u" is already used by the system."_s;
        };
        const auto press = [](int key, int modifiers) {
            return QList<KeyEvent> {{key, modifiers}};
        };
        const KeyCombo none;
        QTest::newRow("Alt+Shift+K lacks Ctrl and Super")
            << press(Qt::Key_K, alt | shift) << invalid << none << true;
        QTest::newRow("Ctrl+Shift+K is taken")
            << press(Qt::Key_K, ctrl | shift) << QString() << KeyCombo {40, 0x60000} << false;
        QTest::newRow("Super+Space is Spotlight")
            << press(Qt::Key_Space, super) << reserved(u"Spotlight"_s) << none << true;
        QTest::newRow("Shift+Super+Space matches no reserved row")
            << press(Qt::Key_Space, shift | super) << QString() << KeyCombo {49, 0x120000} << false;
        QTest::newRow("Ctrl+Shift+1 arrives as ! and records the 1 key")
            << press(Qt::Key_Exclam, ctrl | shift) << QString() << KeyCombo {18, 0x60000} << false;
        QTest::newRow("A key outside the table is refused")
            << press(Qt::Key_Odiaeresis, ctrl)
            << u"This key cannot be part of a global shortcut. Try a letter, a digit or a "
               "function key."_s
            << none << true;
        QTest::newRow("A modifier alone waits for its key")
            << QList<KeyEvent> {{Qt::Key_Control, ctrl}, {Qt::Key_K, ctrl}} << QString()
            << KeyCombo {40, 0x40000} << false;
        QTest::newRow("Escape cancels, leaving the refusal standing")
            << QList<KeyEvent> {{Qt::Key_K, alt}, {Qt::Key_Escape, ctrl}, {Qt::Key_K, ctrl}}
            << invalid << none << false;
        QTest::newRow("Super pressed and released alone is the overview")
            << QList<KeyEvent> {{Qt::Key_Super_L, super}, {Qt::Key_Super_L, 0, true}}
            << reserved(u"Activities overview"_s) << none << true;
        QTest::newRow("Super held for a key that follows records that key")
            << QList<KeyEvent> {{Qt::Key_Super_R, super},
                                {Qt::Key_Y, super},
                                {Qt::Key_Y, super, true},
                                {Qt::Key_Super_R, 0, true}}
            << QString() << KeyCombo {16, 0x100000} << false;
    }

    void judging()
    {
        QFETCH(QList<KeyEvent>, events);
        QFETCH(KeyCombo, captured);
        QList<KeyCombo> seen;
        ShortcutRecorderModel recorder(m_locale, [&seen](const KeyCombo &combo) { seen << combo; });
        recorder.startRecording();
        for (const KeyEvent &event : events) {
            if (event.released)
                recorder.keyReleased(event.key, event.modifiers);
            else
                recorder.keyPressed(event.key, event.modifiers);
        }
        QTEST(recorder.refusal(), "refusal");
        QCOMPARE(seen, captured == KeyCombo() ? QList<KeyCombo>() : QList {captured});
        QTEST(recorder.isRecording(), "recording");
    }

    // A refusal is kept by its meaning: it reads in the new language once that changes.
    void refusalFollowsTheLanguage()
    {
        ShortcutRecorderModel recorder(m_locale, {});
        recorder.startRecording();
        recorder.keyPressed(Qt::Key_D, super);
        QCOMPARE(recorder.refusal(), u"Show desktop is already used by the system."_s);
        Settings german;
        german.language = LanguagePref::de;
        m_store.setSettings(german);
        QCOMPARE(recorder.refusal(), u"Schreibtisch anzeigen ist vom System belegt."_s);
    }

private:
    TempPathProvider m_paths;
    DiskFileAccess m_files;
    SettingsStore m_store {m_paths, m_files};
    LocaleManager m_locale {m_store, [] {
                                return QStringList {u"en-US"_s};
                            }};
};

QTEST_GUILESS_MAIN(tst_ShortcutRecorderModel)
#include "tst_shortcutrecordermodel.moc"
