#pragma once

#include <QLoggingCategory>
#include <QObject>

class QuickEntryController;

Q_DECLARE_LOGGING_CATEGORY(lcOnboarding)

// The welcome page shown at the first launch: what is typed there becomes the first countdown, and
// finishing or skipping marks onboarding done ("tarrow.onboarding.completed" in the application's
// settings), after which the popup opens by itself at launch. Support can bring the page back
// with `tarrow --reset-onboarding`.
class OnboardingModel : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool completed READ isCompleted NOTIFY completedChanged)

public:
    static const QString completedKey; // "tarrow.onboarding.completed"

    explicit OnboardingModel(QuickEntryController &entry, QObject *parent = nullptr);

    static bool isCompleted();
    // Forgets that onboarding was done.
    static void reset();

    // Adds the typed countdown (if any) and marks onboarding done. False, with the page kept, when
    // the countdown could not be added.
    Q_INVOKABLE bool finish();
    // Marks onboarding done without adding anything.
    Q_INVOKABLE void skip();

Q_SIGNALS:
    void completedChanged();
    void finished();

private:
    void complete();

    QuickEntryController &m_entry;
};
