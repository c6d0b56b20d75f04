#pragma once

#include "countdown/MenubarChipPresentation.h"
#include "records/Settings.h"

#include <QLoggingCategory>
#include <QObject>

#include <functional>

class LocaleManager;
class SettingsStore;

Q_DECLARE_LOGGING_CATEGORY(lcSettingsModel)

// The general pages of the settings window: panel style and title length (with a preview of the
// chip), time format, language, theme, launch at login and what new countdowns do when they
// arrive (the celebration has a model of its own). Every change is written through the settings
// store at once and takes effect everywhere; a change that cannot be written is taken back and the
// error shown.
class SettingsModel : public QObject
{
    Q_OBJECT
    // Indexes into the choices, in the order of their enumerations.
    Q_PROPERTY(int menubarStyle READ menubarStyle WRITE setMenubarStyle NOTIFY changed)
    Q_PROPERTY(int titleLength READ titleLength WRITE setTitleLength NOTIFY changed)
    Q_PROPERTY(int minimumTitleLength READ minimumTitleLength CONSTANT)
    Q_PROPERTY(int maximumTitleLength READ maximumTitleLength CONSTANT)
    Q_PROPERTY(int displayFormat READ displayFormat WRITE setDisplayFormat NOTIFY changed)
    Q_PROPERTY(int language READ language WRITE setLanguage NOTIFY changed)
    Q_PROPERTY(int theme READ theme WRITE setTheme NOTIFY changed)
    Q_PROPERTY(bool launchAtLogin READ launchAtLogin WRITE setLaunchAtLogin NOTIFY changed)
    Q_PROPERTY(bool newCountdownNotifies READ newCountdownNotifies WRITE setNewCountdownNotifies
                   NOTIFY changed)
    Q_PROPERTY(bool newCountdownCelebrates READ newCountdownCelebrates WRITE
                   setNewCountdownCelebrates NOTIFY changed)
    Q_PROPERTY(QString errorText READ errorText NOTIFY errorTextChanged)
    // "image://chip/settings/<revision>", new whenever the chip would look different.
    Q_PROPERTY(QString chipPreview READ chipPreview NOTIFY changed)
    Q_PROPERTY(QString version READ version CONSTANT)

public:
    // What the panel chip is made of right now (the holder, its state, the settings).
    using CurrentChip = std::function<MenubarChipInputs()>;

    SettingsModel(SettingsStore &store, const LocaleManager &locale, CurrentChip currentChip,
                  QObject *parent = nullptr);

    int menubarStyle() const { return int(settings().menubarStyle); }
    void setMenubarStyle(int style);
    int titleLength() const { return int(settings().menubarTitleLength); }
    void setTitleLength(int length);
    static int minimumTitleLength() { return int(Settings::MinTitleLength); }
    static int maximumTitleLength() { return int(Settings::MaxTitleLength); }
    int displayFormat() const { return int(settings().displayFormat); }
    void setDisplayFormat(int format);
    int language() const { return int(settings().language); }
    void setLanguage(int language);
    int theme() const { return int(settings().theme); }
    void setTheme(int theme);
    bool launchAtLogin() const { return settings().launchAtLogin; }
    void setLaunchAtLogin(bool enabled);
    bool newCountdownNotifies() const { return settings().newCountdownNotifies; }
    void setNewCountdownNotifies(bool enabled);
    bool newCountdownCelebrates() const { return settings().newCountdownCelebrates; }
    void setNewCountdownCelebrates(bool enabled);

    QString errorText() const { return m_errorText; }
    Q_INVOKABLE void dismissError();
    QString chipPreview() const;
    // The chip as it would look with the current settings: the item that holds the panel, or a
    // sample countdown when none does, so style and title length always show.
    MenubarChipPresentation chipPresentation() const;
    static QString version();

Q_SIGNALS:
    void changed();
    void errorTextChanged();

private:
    const Settings &settings() const;
    // Writes the settings with one change; takes it back when the write fails.
    void change(const std::function<void(Settings &)> &edit);
    void setErrorText(const QString &text);

    SettingsStore &m_store;
    const LocaleManager &m_locale;
    CurrentChip m_currentChip;
    QString m_errorText;
    int m_revision = 0;
};
