#pragma once

#include "shortcuts/ShortcutAction.h"

#include <QAbstractListModel>
#include <QVariantList>

#include <memory>
#include <vector>

class LocaleManager;
class ShortcutRecorderModel;
class ShortcutsService;

// What the settings' shortcuts page shows: one row per global action (title, help, its keys as
// text, whether the desktop refused it, and the row's recorder), a note about the desktop's
// hot-key engine (on a desktop without one: how to bind the forwarded commands instead), the
// popup's own keys, and "Restore Defaults". Only one recorder records at a time.
class ShortcutsPageModel : public QAbstractListModel
{
    Q_OBJECT
    // The engine's note: empty on X11; how to change the keys on KDE and with the portal; on a
    // desktop without an engine, the commands to bind in the desktop's keyboard settings.
    Q_PROPERTY(QString engineNote READ engineNote NOTIFY textsChanged)
    // The popup's own keys: a list of {"title", "keys"}.
    Q_PROPERTY(QVariantList popoverKeys READ popoverKeys NOTIFY textsChanged)
    // Some action has a combination other than its default.
    Q_PROPERTY(bool customised READ isCustomised NOTIFY customisedChanged)

public:
    enum Role {
        ActionRole = Qt::UserRole + 1, // raw action name
        TitleRole,
        HelpRole,
        KeysRole, // "Ctrl+Super+T"
        UnavailableRole, // bool
        StatusRole, // "settings.shortcuts.not_registered" for an unavailable action, else empty
        RecorderRole, // the row's ShortcutRecorderModel
    };

    ShortcutsPageModel(ShortcutsService &service, const LocaleManager &locale,
                       QObject *parent = nullptr);
    ~ShortcutsPageModel() override;

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    QString engineNote() const;
    QVariantList popoverKeys() const;
    bool isCustomised() const;
    ShortcutRecorderModel *recorder(ShortcutAction action) const;

    Q_INVOKABLE void restoreDefaults();

Q_SIGNALS:
    void textsChanged();
    void customisedChanged();

private:
    void refreshRows();

    ShortcutsService &m_service;
    const LocaleManager &m_locale;
    std::vector<std::unique_ptr<ShortcutRecorderModel>> m_recorders; // by row
    bool m_customised = false;
};
