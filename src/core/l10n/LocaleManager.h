#pragma once

#include "l10n/LanguageTable.h"

#include <QLocale>
#include <QObject>
#include <QStringList>

#include <functional>

class SettingsStore;

// Turns the language setting into the language the interface speaks and keeps its text table.
// A change of the setting (or, with the automatic choice, of the system's languages after
// refresh()) switches the texts at once; languageChanged() tells views and the panel item to
// redraw, and is emitted only when the language really changes.
class LocaleManager : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString activeLanguage READ activeLanguage NOTIFY languageChanged)

public:
    // The system's preferred interface languages, most preferred first.
    using PreferredLanguages = std::function<QStringList()>;

    // What the desktop asks for: QLocale::system().uiLanguages(), which honours LANGUAGE and LANG.
    static QStringList systemPreferredLanguages();

    explicit LocaleManager(const SettingsStore &settings,
                           PreferredLanguages preferredLanguages = &systemPreferredLanguages,
                           QObject *parent = nullptr);

    QString activeLanguage() const { return m_table.code(); }
    const LanguageTable &table() const { return m_table; }
    // Formats of dates and numbers in the interface language: the system's own locale when it
    // speaks that language (so an English interface on en_GB keeps day-month order), else the
    // language's default locale.
    QLocale interfaceLocale() const;

    Q_INVOKABLE QString text(const QString &key) const { return m_table.text(key); }
    Q_INVOKABLE QString format(const QString &key, const QStringList &arguments) const
    {
        return m_table.format(key, arguments);
    }

public Q_SLOTS:
    // Resolves the setting again, e.g. after the system's languages changed.
    void refresh();

Q_SIGNALS:
    void languageChanged();

private:
    const SettingsStore &m_settings;
    PreferredLanguages m_preferredLanguages;
    LanguageTable m_table;
};
