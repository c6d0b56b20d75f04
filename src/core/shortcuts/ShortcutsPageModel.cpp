#include "shortcuts/ShortcutsPageModel.h"

#include "l10n/LocaleManager.h"
#include "shortcuts/KeyCodeTable.h"
#include "shortcuts/KeyComboText.h"
#include "shortcuts/ShortcutRecorderModel.h"
#include "shortcuts/ShortcutsService.h"

using namespace Qt::StringLiterals;

ShortcutsPageModel::ShortcutsPageModel(ShortcutsService &service, const LocaleManager &locale,
                                       QObject *parent)
    : QAbstractListModel(parent)
    , m_service(service)
    , m_locale(locale)
{
    for (const ShortcutAction action : allShortcutActions()) {
        auto recorder = std::make_unique<ShortcutRecorderModel>(
            m_locale, [this, action](const KeyCombo &combo) { m_service.setCombo(action, combo); });
        ShortcutRecorderModel *started = recorder.get();
        connect(started, &ShortcutRecorderModel::isRecordingChanged, this, [this, started] {
            if (!started->isRecording())
                return;
            for (const auto &other : m_recorders) {
                if (other.get() != started)
                    other->stopRecording();
            }
        });
        m_recorders.push_back(std::move(recorder));
    }
    connect(&m_service, &ShortcutsService::combosChanged, this, &ShortcutsPageModel::refreshRows);
    connect(&m_service, &ShortcutsService::unavailableChanged, this,
            &ShortcutsPageModel::refreshRows);
    connect(&m_locale, &LocaleManager::languageChanged, this, [this] {
        refreshRows();
        Q_EMIT textsChanged();
    });
    m_customised = isCustomised();
}

ShortcutsPageModel::~ShortcutsPageModel() = default;

int ShortcutsPageModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(allShortcutActions().size());
}

QVariant ShortcutsPageModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return {};
    const ShortcutAction action = allShortcutActions().at(index.row());
    switch (role) {
    case ActionRole:
        return rawValue(action);
    case Qt::DisplayRole:
    case TitleRole:
        return m_locale.text(titleKey(action));
    case HelpRole:
        return m_locale.text(helpKey(action));
    case KeysRole:
        return keyComboText(m_service.combo(action), m_locale.table());
    case UnavailableRole:
        return m_service.isUnavailable(action);
    case StatusRole:
        return m_service.isUnavailable(action)
            ? m_locale.text(u"settings.shortcuts.not_registered"_s)
            : QString();
    case RecorderRole:
        return QVariant::fromValue<QObject *>(m_recorders.at(size_t(index.row())).get());
    default:
        return {};
    }
}

QHash<int, QByteArray> ShortcutsPageModel::roleNames() const
{
    return {{ActionRole, "action"},
            {TitleRole, "title"},
            {HelpRole, "help"},
            {KeysRole, "keys"},
            {UnavailableRole, "unavailable"},
            {StatusRole, "status"},
            {RecorderRole, "recorder"}};
}

QString ShortcutsPageModel::engineNote() const
{
    const std::optional<GlobalHotkeyController::Engine> engine = m_service.engine();
    if (!engine)
        return m_locale.format(u"settings.shortcuts.no_engine %@ %@"_s,
                               {u"tarrow --toggle-popup"_s, u"tarrow --new-countdown"_s});
    switch (*engine) {
    case GlobalHotkeyController::Engine::x11:
        return {};
    case GlobalHotkeyController::Engine::kglobalaccel:
        return m_locale.text(u"settings.shortcuts.engine.kglobalaccel"_s);
    case GlobalHotkeyController::Engine::portal:
        return m_locale.text(u"settings.shortcuts.engine.portal"_s);
    }
    return {};
}

QVariantList ShortcutsPageModel::popoverKeys() const
{
    const auto row = [this](const QString &titleKey, int qtKey, quint64 modifiers) {
        const KeyCombo combo {*KeyCodeTable::codeOf(qtKey), modifiers};
        return QVariantMap {{u"title"_s, m_locale.text(titleKey)},
                            {u"keys"_s, keyComboText(combo, m_locale.table())}};
    };
    return {row(u"settings.shortcuts.popover.settings"_s, Qt::Key_Comma, KeyModifier::control),
            row(u"settings.shortcuts.popover.close"_s, Qt::Key_Escape, 0)};
}

bool ShortcutsPageModel::isCustomised() const
{
    const QMap<ShortcutAction, KeyCombo> combos = m_service.combos();
    for (auto it = combos.cbegin(); it != combos.cend(); ++it) {
        if (it.value() != defaultCombo(it.key()))
            return true;
    }
    return false;
}

ShortcutRecorderModel *ShortcutsPageModel::recorder(ShortcutAction action) const
{
    return m_recorders.at(size_t(allShortcutActions().indexOf(action))).get();
}

void ShortcutsPageModel::restoreDefaults()
{
    for (const auto &recorder : m_recorders)
        recorder->stopRecording();
    m_service.restoreDefaults();
}

void ShortcutsPageModel::refreshRows()
{
    Q_EMIT dataChanged(index(0), index(rowCount() - 1));
    const bool customised = isCustomised();
    if (customised != m_customised) {
        m_customised = customised;
        Q_EMIT customisedChanged();
    }
}
