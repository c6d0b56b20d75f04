#pragma once

#include "backup/BackupService.h"

#include <QObject>
#include <QUrl>
#include <QVariantList>

class LocaleManager;

// The model of the data page of the settings window (Settings -> Data): export and import of
// backups with the questions and messages as data, so the page only shows them and opens the
// desktop's file chooser.
//
// Export: beginExport() takes the countdowns as they are; when it returns true the page opens a
// save dialog proposing proposedFileName() and calls finishExport() with the chosen file, or
// cancelExport(). Import: the page opens a file dialog and calls importFrom(); a readable backup
// raises the question (merge, replace or cancel), replace asks once more, and answer() takes each
// choice. Every outcome ends in a message. Texts follow the interface language live.
class BackupFlow : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool hasQuestion READ hasQuestion NOTIFY questionChanged)
    Q_PROPERTY(QString questionText READ questionText NOTIFY questionChanged)
    Q_PROPERTY(QString questionDetail READ questionDetail NOTIFY questionChanged)
    // The choices of the question in the order they are shown: maps with "choice" (the word to
    // give answer()), "label" and "role" ("accept", "destructive" or "cancel").
    Q_PROPERTY(QVariantList choices READ choices NOTIFY questionChanged)
    Q_PROPERTY(bool hasMessage READ hasMessage NOTIFY messageChanged)
    Q_PROPERTY(QString messageText READ messageText NOTIFY messageChanged)
    Q_PROPERTY(bool messageIsError READ messageIsError NOTIFY messageChanged)
    // The file dialogs' filter, e.g. "Tarrow backups (*.json)".
    Q_PROPERTY(QStringList nameFilters READ nameFilters NOTIFY languageChanged)

public:
    enum class Stage { none, confirmImport, confirmReplace };

    BackupFlow(BackupService &service, const LocaleManager &locale, const Clock &clock,
               QObject *parent = nullptr);

    Stage stage() const { return m_stage; }
    bool hasQuestion() const { return m_stage != Stage::none; }
    QString questionText() const;
    QString questionDetail() const;
    QVariantList choices() const;
    bool hasMessage() const { return m_message.has_value(); }
    QString messageText() const;
    bool messageIsError() const { return m_message && m_message->isError; }
    const std::optional<BackupMessage> &message() const { return m_message; }
    QStringList nameFilters() const;

    Q_INVOKABLE QString proposedFileName() const;
    Q_INVOKABLE bool beginExport();
    Q_INVOKABLE void finishExport(const QUrl &file);
    Q_INVOKABLE void cancelExport();
    Q_INVOKABLE void importFrom(const QUrl &file);
    // "merge", "replace" or "cancel".
    Q_INVOKABLE void answer(const QString &choice);
    Q_INVOKABLE void dismissMessage();

Q_SIGNALS:
    void questionChanged();
    void messageChanged();
    void languageChanged();

private:
    void setStage(Stage stage);
    void show(const BackupMessage &message);

    BackupService &m_service;
    const LocaleManager &m_locale;
    const Clock &m_clock;
    std::optional<BackupService::Prepared> m_prepared;
    std::optional<BackupArchive> m_pending;
    Stage m_stage = Stage::none;
    std::optional<BackupMessage> m_message;
};
