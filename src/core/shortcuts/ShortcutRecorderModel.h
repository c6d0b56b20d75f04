#pragma once

#include "records/Settings.h"

#include <QObject>
#include <QString>

#include <functional>

class LocaleManager;

// The recorder of one shortcut in the settings. While it records, the page hands it every key
// event (Keys.onPressed / onReleased forward event.key and event.modifiers); the next key pressed
// with Ctrl or Super is captured, Escape cancels, and a combination that needs another modifier
// or that the system keeps is refused with a reason while recording goes on. Modifier keys alone
// wait for the key that follows; Super pressed and released alone is judged as such (the desktops
// keep it for their overview).
class ShortcutRecorderModel : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool isRecording READ isRecording NOTIFY isRecordingChanged)
    // Why the last combination was refused, in the interface language; empty when none was.
    Q_PROPERTY(QString refusal READ refusal NOTIFY refusalChanged)
    // "Record Shortcut" / "Press the keys…"
    Q_PROPERTY(QString buttonText READ buttonText NOTIFY buttonTextChanged)

public:
    using Capture = std::function<void(const KeyCombo &)>;

    ShortcutRecorderModel(const LocaleManager &locale, Capture onCapture,
                          QObject *parent = nullptr);

    bool isRecording() const { return m_recording; }
    QString refusal() const;
    QString buttonText() const;

    Q_INVOKABLE void startRecording();
    Q_INVOKABLE void stopRecording();
    // Qt key and modifiers of a key event; true when the recorder used the event.
    Q_INVOKABLE bool keyPressed(int key, int modifiers);
    Q_INVOKABLE bool keyReleased(int key, int modifiers);

    // Judges one key press given as a stored combination (what keyPressed() does after mapping
    // the key).
    void judge(const KeyCombo &pressed);

Q_SIGNALS:
    void isRecordingChanged();
    void refusalChanged();
    void buttonTextChanged();

private:
    // A refusal is kept as its localisation key and argument, so it follows a language change.
    struct Refusal
    {
        QString key;
        QString argument;
        bool argumentTranslated = false;
        bool operator==(const Refusal &) const = default;
    };

    void setRecording(bool recording);
    void setRefusal(const Refusal &refusal);

    const LocaleManager &m_locale;
    Capture m_onCapture;
    bool m_recording = false;
    bool m_superAlone = false; // Super is down and no other key came since
    Refusal m_refusal;
};
