// The shortcuts page's model: its rows in the interface language, the "not registered" text of a
// refused action, the engine's note, one recorder at a time, "Restore Defaults".
#include "l10n/LocaleManager.h"
#include "shortcuts/ShortcutRecorderModel.h"
#include "shortcuts/ShortcutsPageModel.h"
#include "shortcuts/ShortcutsService.h"
#include "storage/SettingsStore.h"

#include "support/FakeHotkeyController.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;
using Engine = GlobalHotkeyController::Engine;

class tst_ShortcutsPageModel : public QObject
{
    Q_OBJECT

private:
    struct Page
    {
        Page(SettingsStore &store, const LocaleManager &locale,
             std::unique_ptr<FakeHotkeyController> controller)
            : engine(controller.get())
            , service(store, std::move(controller), {})
            , model(service, locale)
            , tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest)
        {
            service.start();
        }
        QVariant data(ShortcutAction action, int role) const
        {
            return model.data(model.index(int(allShortcutActions().indexOf(action))), role);
        }

        FakeHotkeyController *engine;
        ShortcutsService service;
        ShortcutsPageModel model;
        QAbstractItemModelTester tester;
    };

    void setLanguage(LanguagePref language)
    {
        Settings settings = m_store->settings();
        settings.language = language;
        m_store->setSettings(settings);
    }

    TempPathProvider m_paths;
    DiskFileAccess m_files;
    std::unique_ptr<SettingsStore> m_store;
    std::unique_ptr<LocaleManager> m_locale;

private Q_SLOTS:
    void init()
    {
        QFile::remove(m_paths.settingsFile());
        m_store = std::make_unique<SettingsStore>(m_paths, m_files);
        m_locale = std::make_unique<LocaleManager>(*m_store, [] { return QStringList {u"en"_s}; });
    }

    // Each row reads in the interface language and follows a change of it; a refused action
    // says so.
    void rowsInTheInterfaceLanguage()
    {
        auto engine = std::make_unique<FakeHotkeyController>();
        engine->refused = {defaultCombo(ShortcutAction::newCountdown)};
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"newCountdown shortcut"_s));
        Page page(*m_store, *m_locale, std::move(engine));
        using R = ShortcutsPageModel;
        QCOMPARE(page.model.rowCount(), 2);
        QCOMPARE(page.data(ShortcutAction::togglePopover, R::TitleRole).toString(),
                 u"Show or hide countdowns"_s);
        QCOMPARE(page.data(ShortcutAction::togglePopover, R::KeysRole).toString(),
                 u"Ctrl+Super+T"_s);
        QCOMPARE(page.data(ShortcutAction::togglePopover, R::StatusRole).toString(), QString());
        QCOMPARE(page.data(ShortcutAction::newCountdown, R::StatusRole).toString(),
                 u"Not available: another application already uses this shortcut."_s);
        QVERIFY(page.model.engineNote().isEmpty()); // X11 grabs need no explanation

        QSignalSpy rows(&page.model, &QAbstractItemModel::dataChanged);
        setLanguage(LanguagePref::de);
        QVERIFY(!rows.isEmpty());
        QCOMPARE(page.data(ShortcutAction::newCountdown, R::KeysRole).toString(),
                 u"Strg+Super+N"_s);
        QCOMPARE(page.model.popoverKeys(),
                 (QVariantList {QVariantMap {{u"title"_s, u"Einstellungen öffnen"_s},
                                             {u"keys"_s, u"Strg+,"_s}},
                                QVariantMap {{u"title"_s, u"Countdown-Fenster schließen"_s},
                                             {u"keys"_s, u"Esc"_s}}}));
    }

    // Without an engine the page tells how to bind the forwarded commands; KDE's and the
    // portal's notes point to the desktop's own settings.
    void engineNotes()
    {
        ShortcutsService none(*m_store, nullptr, {});
        ShortcutsPageModel page(none, *m_locale);
        QCOMPARE(page.engineNote(),
                 u"Your desktop does not let apps register global keys: bind a key to “tarrow "
                 "--toggle-popup” (and one to “tarrow --new-countdown” for a new countdown) in "
                 "your desktop’s keyboard settings."_s);
        Page kde(*m_store, *m_locale, std::make_unique<FakeHotkeyController>(Engine::kglobalaccel));
        QVERIFY(kde.model.engineNote().contains(u"System Settings"_s));
    }

    // Starting one recorder stops the other; what it captures becomes the action's keys, and
    // "Restore Defaults" takes them back.
    void recordAndRestore()
    {
        Page page(*m_store, *m_locale, std::make_unique<FakeHotkeyController>());
        ShortcutRecorderModel *toggle = page.model.recorder(ShortcutAction::togglePopover);
        ShortcutRecorderModel *create = page.model.recorder(ShortcutAction::newCountdown);
        QVERIFY(!page.model.isCustomised());
        toggle->startRecording();
        create->startRecording();
        QVERIFY(!toggle->isRecording());
        QSignalSpy customised(&page.model, &ShortcutsPageModel::customisedChanged);
        create->keyPressed(Qt::Key_F5, Qt::ControlModifier | Qt::ShiftModifier);
        QCOMPARE(page.data(ShortcutAction::newCountdown, ShortcutsPageModel::KeysRole).toString(),
                 u"Ctrl+Shift+F5"_s);
        QCOMPARE(page.engine->registered.value(ShortcutAction::newCountdown),
                 (KeyCombo {96, 0x60000}));
        QVERIFY(page.model.isCustomised());

        toggle->startRecording();
        page.model.restoreDefaults();
        QVERIFY(!toggle->isRecording());
        QVERIFY(!page.model.isCustomised());
        QCOMPARE(customised.count(), 2);
        QCOMPARE(page.data(ShortcutAction::newCountdown, ShortcutsPageModel::KeysRole).toString(),
                 u"Ctrl+Super+N"_s);
    }
};

QTEST_GUILESS_MAIN(tst_ShortcutsPageModel)
#include "tst_shortcutspagemodel.moc"
