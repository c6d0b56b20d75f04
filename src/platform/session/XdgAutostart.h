#pragma once

#include "storage/LaunchAtLogin.h"

#include <QLoggingCategory>
#include <QString>

Q_DECLARE_LOGGING_CATEGORY(lcXdgAutostart)

// Launch at login on freedesktop desktops: an autostart entry "tarrow.desktop" that starts
// `tarrow --autostart`. The entry's existence is the state; switching off deletes it.
class XdgAutostart final : public LaunchAtLoginController
{
public:
    // `directory` is the autostart folder (see defaultDirectory()); `command` the program to start.
    XdgAutostart(QString directory, QString command);

    // $XDG_CONFIG_HOME/autostart, by default ~/.config/autostart.
    static QString defaultDirectory();
    // The program the entry starts: the AppImage when running from one, else this executable.
    static QString defaultCommand();

    void setEnabled(bool enabled) override;
    bool isEnabled() const override;
    QString entryPath() const;

    // The entry's text; `command` is quoted for the Exec key when it needs it.
    static QByteArray entryText(const QString &command);

private:
    QString m_directory;
    QString m_command;
};
