#include "shortcuts/ShortcutRecorderModel.h"

#include "l10n/LocaleManager.h"
#include "shortcuts/KeyCodeTable.h"
#include "shortcuts/ShortcutJudge.h"

using namespace Qt::StringLiterals;

namespace {

bool isSuperKey(int key)
{
    return key == Qt::Key_Super_L || key == Qt::Key_Super_R || key == Qt::Key_Meta;
}

} // namespace

ShortcutRecorderModel::ShortcutRecorderModel(const LocaleManager &locale, Capture onCapture,
                                             QObject *parent)
    : QObject(parent)
    , m_locale(locale)
    , m_onCapture(std::move(onCapture))
{
    connect(&m_locale, &LocaleManager::languageChanged, this, [this] {
        Q_EMIT buttonTextChanged();
        if (!m_refusal.key.isEmpty())
            Q_EMIT refusalChanged();
    });
}

QString ShortcutRecorderModel::refusal() const
{
    if (m_refusal.key.isEmpty())
        return {};
    if (m_refusal.argument.isEmpty())
        return m_locale.text(m_refusal.key);
    const QString argument =
        m_refusal.argumentTranslated ? m_locale.text(m_refusal.argument) : m_refusal.argument;
    return m_locale.format(m_refusal.key, {argument});
}

QString ShortcutRecorderModel::buttonText() const
{
    return m_locale.text(m_recording ? u"settings.shortcuts.recording"_s
                                     : u"settings.shortcuts.record"_s);
}

void ShortcutRecorderModel::startRecording()
{
    m_superAlone = false;
    setRecording(true);
}

void ShortcutRecorderModel::stopRecording()
{
    setRecording(false);
}

bool ShortcutRecorderModel::keyPressed(int key, int modifiers)
{
    if (!m_recording)
        return false;
    if (KeyCodeTable::isModifierKey(key)) {
        m_superAlone = isSuperKey(key);
        return true;
    }
    m_superAlone = false;
    const std::optional<quint16> code = KeyCodeTable::codeOf(key);
    if (!code) {
        setRefusal({u"settings.shortcuts.unsupported_key"_s, {}, false});
        return true;
    }
    judge(KeyCombo {*code, KeyModifier::fromQt(Qt::KeyboardModifiers(modifiers))});
    return true;
}

bool ShortcutRecorderModel::keyReleased(int key, int modifiers)
{
    if (!m_recording)
        return false;
    const bool superAlone = m_superAlone && isSuperKey(key)
        && (KeyModifier::fromQt(Qt::KeyboardModifiers(modifiers)) & ~KeyModifier::super) == 0;
    m_superAlone = false;
    if (superAlone)
        judge(KeyCombo {*KeyCodeTable::codeOf(Qt::Key_Super_L), KeyModifier::super});
    return true;
}

void ShortcutRecorderModel::judge(const KeyCombo &pressed)
{
    if (!m_recording)
        return;
    const ShortcutJudgement judgement = judgeRecordedKey(pressed);
    switch (judgement.verdict) {
    case ShortcutJudgement::Verdict::cancel:
        setRecording(false);
        return;
    case ShortcutJudgement::Verdict::invalid:
        setRefusal({u"settings.shortcuts.invalid"_s, {}, false});
        return;
    case ShortcutJudgement::Verdict::reserved:
        setRefusal({u"settings.shortcuts.reserved %@"_s, judgement.reservation.name,
                    judgement.reservation.translated});
        return;
    case ShortcutJudgement::Verdict::capture:
        setRefusal({});
        setRecording(false);
        if (m_onCapture)
            m_onCapture(judgement.combo);
        return;
    }
}

void ShortcutRecorderModel::setRecording(bool recording)
{
    if (recording == m_recording)
        return;
    m_recording = recording;
    Q_EMIT isRecordingChanged();
    Q_EMIT buttonTextChanged();
}

void ShortcutRecorderModel::setRefusal(const Refusal &refusal)
{
    if (refusal == m_refusal)
        return;
    m_refusal = refusal;
    Q_EMIT refusalChanged();
}
