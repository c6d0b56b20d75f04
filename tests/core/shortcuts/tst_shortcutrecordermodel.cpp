// The recorder's rules, fed with key events as the settings page forwards them: Ctrl or Super
// required, the reserved combinations refused by name, Escape cancelling, Super alone.
#include "l10n/LocaleManager.h"
#include "shortcuts/ShortcutJudge.h"
#include "shortcuts/ShortcutRecorderModel.h"
#include "storage/SettingsStore.h"

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {
constexpr int ctrl = Qt::ControlModifier;
constexpr int alt = Qt::AltModifier;
constexpr int shift = Qt::ShiftModifier;
constexpr int super = Qt::MetaModifier;
} // namespace

class tst_ShortcutRecorderModel : public QObject
{
    Q_OBJECT

public:
    tst_ShortcutRecorderModel()
        : m_store(m_paths, m_files)
        , m_locale(m_store, [] { return QStringList {u"en-US"_s}; })
    {
    }

private Q_SLOTS:
    void init()
    {
        m_captured.clear();
        m_recorder = std::make_unique<ShortcutRecorderModel>(
            m_locale, [this](const KeyCombo &combo) { m_captured << combo; });
        m_recorder->startRecording();
    }

    void judging_data()
    {
        QTest::addColumn<int>("key");
        QTest::addColumn<int>("modifiers");
        QTest::addColumn<QString>("refusal"); // empty: captured
        QTest::addColumn<KeyCombo>("captured");
        const QString invalid = u"A shortcut needs Ctrl or Super together with a key."_s;
        const auto reserved = [](const char *name) -> QString {
            return QString::fromUtf8(name) + u" is already used by the system."_s;
        };
        const KeyCombo none;
        QTest::newRow("Alt+Shift+K lacks Ctrl and Super")
            << int(Qt::Key_K) << (alt | shift) << invalid << none;
        QTest::newRow("Ctrl+Shift+K is taken")
            << int(Qt::Key_K) << (ctrl | shift) << QString() << KeyCombo {40, 0x60000};
        QTest::newRow("Super+Space is Spotlight")
            << int(Qt::Key_Space) << super << reserved("Spotlight") << none;
        QTest::newRow("Shift+Super+Space matches no reserved row")
            << int(Qt::Key_Space) << (shift | super) << QString() << KeyCombo {49, 0x120000};
        QTest::newRow("Super+Q with Alt added matches no reserved row")
            << int(Qt::Key_Q) << (alt | super) << QString() << KeyCombo {12, 0x180000};
        QTest::newRow("Ctrl+Alt+Delete logs out")
            << int(Qt::Key_Delete) << (ctrl | alt) << reserved("Log out") << none;
        QTest::newRow("Ctrl+Alt+T opens a terminal")
            << int(Qt::Key_T) << (ctrl | alt) << reserved("Terminal") << none;
        QTest::newRow("Ctrl+Alt+F2 switches to a text console")
            << int(Qt::Key_F2) << (ctrl | alt) << reserved("Switch to a text console") << none;
        QTest::newRow("Ctrl+Shift+1 arrives as ! and records the 1 key")
            << int(Qt::Key_Exclam) << (ctrl | shift) << QString() << KeyCombo {18, 0x60000};
        QTest::newRow("A key outside the table is refused")
            << int(Qt::Key_Odiaeresis) << ctrl
            << u"This key cannot be part of a global shortcut. Try a letter, a digit or a "
               "function key."_s
            << none;
    }

    void judging()
    {
        QFETCH(int, key);
        QFETCH(int, modifiers);
        QFETCH(QString, refusal);
        QFETCH(KeyCombo, captured);
        QVERIFY(m_recorder->keyPressed(key, modifiers));
        QCOMPARE(m_recorder->refusal(), refusal);
        QCOMPARE(m_recorder->isRecording(), !refusal.isEmpty());
        QCOMPARE(m_captured, refusal.isEmpty() ? QList<KeyCombo> {captured} : QList<KeyCombo>());
    }

    // Escape stops without capturing and leaves the last refusal standing; a later capture clears
    // it. A modifier pressed alone waits for the key.
    void escapeCancelsAndModifiersWait()
    {
        QSignalSpy recording(m_recorder.get(), &ShortcutRecorderModel::isRecordingChanged);
        QCOMPARE(m_recorder->buttonText(), u"Press the keys…"_s);
        m_recorder->keyPressed(Qt::Key_Control, ctrl);
        QVERIFY(m_recorder->isRecording());
        QVERIFY(m_recorder->refusal().isEmpty());
        m_recorder->keyPressed(Qt::Key_K, alt);
        const QString refusal = m_recorder->refusal();
        QVERIFY(!refusal.isEmpty());
        m_recorder->keyPressed(Qt::Key_Escape, ctrl);
        QVERIFY(!m_recorder->isRecording());
        QCOMPARE(m_recorder->refusal(), refusal);
        QCOMPARE(m_recorder->buttonText(), u"Record Shortcut"_s);
        QCOMPARE(recording.count(), 1);
        QVERIFY(!m_recorder->keyPressed(Qt::Key_K, ctrl)); // not recording: passes by
        m_recorder->startRecording();
        m_recorder->keyPressed(Qt::Key_K, ctrl);
        QCOMPARE(m_captured, (QList<KeyCombo> {{40, 0x40000}}));
        QVERIFY(m_recorder->refusal().isEmpty());
    }

    // Super pressed and released alone is the desktops' overview; Super as the modifier of a key
    // that followed is not.
    void superAloneIsTheOverview()
    {
        m_recorder->keyPressed(Qt::Key_Super_L, super);
        QVERIFY(m_recorder->refusal().isEmpty());
        m_recorder->keyReleased(Qt::Key_Super_L, 0);
        QCOMPARE(m_recorder->refusal(), u"Activities overview is already used by the system."_s);
        QVERIFY(m_recorder->isRecording());

        m_recorder->keyPressed(Qt::Key_Super_R, super);
        m_recorder->keyPressed(Qt::Key_Y, super);
        m_recorder->keyReleased(Qt::Key_Y, super);
        m_recorder->keyReleased(Qt::Key_Super_R, 0);
        QCOMPARE(m_captured, (QList<KeyCombo> {{16, 0x100000}}));
    }

    // A refusal is shown in the interface language, also after the language changes.
    void refusalFollowsTheLanguage()
    {
        m_recorder->keyPressed(Qt::Key_D, super);
        QCOMPARE(m_recorder->refusal(), u"Show desktop is already used by the system."_s);
        QSignalSpy changed(m_recorder.get(), &ShortcutRecorderModel::refusalChanged);
        Settings german = m_store.settings();
        german.language = LanguagePref::de;
        m_store.setSettings(german);
        QCOMPARE(changed.count(), 1);
        QCOMPARE(m_recorder->refusal(), u"Schreibtisch anzeigen ist vom System belegt."_s);
        m_store.setSettings(Settings());
    }

private:
    TempPathProvider m_paths;
    DiskFileAccess m_files;
    SettingsStore m_store;
    LocaleManager m_locale;
    std::unique_ptr<ShortcutRecorderModel> m_recorder;
    QList<KeyCombo> m_captured;
};

QTEST_GUILESS_MAIN(tst_ShortcutRecorderModel)
#include "tst_shortcutrecordermodel.moc"
