#include "platform/session/XdgAutostart.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QSaveFile>
#include <QStandardPaths>

#include <algorithm>

Q_LOGGING_CATEGORY(lcXdgAutostart, "XdgAutostart")

namespace {

// Exec quoting of the desktop entry format: an argument with reserved characters goes in double
// quotes with ", `, $ and \ escaped; the value as a whole then escapes each backslash once more.
QString execArgument(const QString &argument)
{
    static const QString reserved = QStringLiteral(" \t\n\"'\\><~|&;$*?#()`");
    const bool needsQuotes =
        std::any_of(argument.begin(), argument.end(), [](QChar c) { return reserved.contains(c); });
    if (!needsQuotes)
        return argument;
    QString quoted;
    for (const QChar c : argument) {
        if (c == u'"' || c == u'`' || c == u'$' || c == u'\\')
            quoted += u'\\';
        quoted += c;
    }
    quoted.replace(QLatin1String("\\"), QLatin1String("\\\\"));
    return u'"' + quoted + u'"';
}

} // namespace

XdgAutostart::XdgAutostart(QString directory, QString command)
    : m_directory(std::move(directory))
    , m_command(std::move(command))
{
}

QString XdgAutostart::defaultDirectory()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation)
        + QStringLiteral("/autostart");
}

QString XdgAutostart::defaultCommand()
{
    const QString appImage = qEnvironmentVariable("APPIMAGE");
    return appImage.isEmpty() ? QCoreApplication::applicationFilePath() : appImage;
}

QString XdgAutostart::entryPath() const
{
    return QDir(m_directory).filePath(QStringLiteral("tarrow.desktop"));
}

bool XdgAutostart::isEnabled() const
{
    return QFile::exists(entryPath());
}

QByteArray XdgAutostart::entryText(const QString &command)
{
    const QString exec = execArgument(command);
    QString text = QStringLiteral("[Desktop Entry]\n"
                                  "Type=Application\n"
                                  "Name=Tarrow\n"
                                  "Comment=Count down to the dates that matter\n");
    text += QStringLiteral("Exec=") + exec + QStringLiteral(" --autostart\n");
    text += QStringLiteral("TryExec=")
        + QString(command).replace(QLatin1String("\\"), QLatin1String("\\\\")) + u'\n';
    text += QStringLiteral("Icon=" TARROW_APP_ID "\n"
                           "Terminal=false\n"
                           "NoDisplay=true\n"
                           "X-GNOME-Autostart-enabled=true\n"
                           "X-GNOME-Autostart-Delay=2\n"
                           "X-KDE-autostart-after=panel\n");
    return text.toUtf8();
}

void XdgAutostart::setEnabled(bool enabled)
{
    const QString path = entryPath();
    if (!enabled) {
        if (QFile::exists(path) && !QFile::remove(path))
            qCWarning(lcXdgAutostart).noquote()
                << QStringLiteral("Failed to remove the autostart entry %1").arg(path);
        return;
    }
    QSaveFile file(path);
    if (!QDir().mkpath(m_directory) || !file.open(QIODevice::WriteOnly)
        || file.write(entryText(m_command)) < 0 || !file.commit()) {
        qCWarning(lcXdgAutostart).noquote()
            << QStringLiteral("Failed to write the autostart entry %1: %2")
                   .arg(path, file.errorString());
    }
}
