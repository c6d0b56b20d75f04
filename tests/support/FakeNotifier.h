#pragma once

#include "arrival/CelebrationPresenter.h"
#include "arrival/ReachNotifying.h"

// Records what would have been shown on the desktop.
class FakeNotifier final : public ReachNotifying
{
public:
    void post(const Notice &notice) override { posted.append(notice); }
    void withdrawAll() override { ++withdrawals; }

    QStringList bodies() const
    {
        QStringList result;
        for (const Notice &notice : posted)
            result.append(notice.title + u": " + notice.body);
        return result;
    }

    QList<Notice> posted;
    int withdrawals = 0;
};

// A celebration that stays up until the test dismisses it.
class FakePresenter final : public CelebrationPresenter
{
    Q_OBJECT
public:
    void present(const Celebration &celebration) override
    {
        Q_ASSERT(!showing);
        shown.append(celebration.title);
        showing = true;
    }
    bool isPresenting() const override { return showing; }
    void dismiss()
    {
        showing = false;
        Q_EMIT dismissed();
    }

    QStringList shown;
    bool showing = false;
};
