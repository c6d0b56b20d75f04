#pragma once

#include "records/Event.h"
#include "records/PinTarget.h"

#include <QLoggingCategory>
#include <QObject>
#include <QTimer>
#include <QUrl>
#include <QVariantList>

#include <functional>
#include <optional>

class CountdownItem;
class CountdownListModel;
class EventStore;
class LocaleManager;

Q_DECLARE_LOGGING_CATEGORY(lcRowActions)

// What the user can do with a row of the list: pin it to the panel or unpin it (a countdown; a
// calendar event alone or its whole series), edit it, delete it, hide a calendar series, open its
// link, and clear the past section. Deleting is final in the events file, so the last deletion
// can be undone for a few seconds. A failed write is reported in errorText and changes nothing.
class RowActions : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString undoText READ undoText NOTIFY undoChanged)
    Q_PROPERTY(bool canUndo READ canUndo NOTIFY undoChanged)
    Q_PROPERTY(QString errorText READ errorText NOTIFY errorTextChanged)
    Q_PROPERTY(bool canClearPast READ canClearPast NOTIFY canClearPastChanged)

public:
    // Hands a link to the desktop; true when it was taken.
    using LinkOpener = std::function<bool(const QUrl &url)>;

    static constexpr int undoMilliseconds = 8000;

    RowActions(EventStore &store, CountdownListModel &list, const LocaleManager &locale,
               LinkOpener openLink, QObject *parent = nullptr);

    QString undoText() const { return m_undoText; }
    bool canUndo() const { return !m_undoEvents.isEmpty(); }
    QString errorText() const { return m_errorText; }
    bool canClearPast() const;

    // The context menu of a row: a list of {"action", "text"} maps, in menu order; "" as action
    // marks a separator.
    Q_INVOKABLE QVariantList menuFor(int row) const;
    // Runs one action of menuFor(): "edit", "pin", "pinOccurrence", "pinSeries", "unpin",
    // "openLink", "delete", "hideSeries". True when it was done.
    Q_INVOKABLE bool trigger(int row, const QString &action);

    // Pins the row's item (a calendar event alone) or, when it is pinned, unpins it.
    Q_INVOKABLE bool togglePin(int row);
    Q_INVOKABLE bool remove(int row);
    Q_INVOKABLE bool openLink(int row);
    // Deletes every countdown of the past section; undone as one.
    Q_INVOKABLE bool clearPast();
    Q_INVOKABLE void undo();
    Q_INVOKABLE void dismissUndo();
    Q_INVOKABLE void dismissError() { setErrorText(QString()); }

Q_SIGNALS:
    void undoChanged();
    void errorTextChanged();
    void canClearPastChanged();
    void editRequested(int row);

private:
    bool isPinned(const CountdownItem &item) const;
    bool setPin(const std::optional<PinTarget> &pin);
    bool deleteEvents(const QList<Event> &events);
    void offerUndo(QList<Event> events, std::optional<PinTarget> pin, QString text);
    void setErrorText(const QString &text);

    EventStore &m_store;
    CountdownListModel &m_list;
    const LocaleManager &m_locale;
    LinkOpener m_openLink;
    QList<Event> m_undoEvents;
    std::optional<PinTarget> m_undoPin;
    QString m_undoText;
    QString m_errorText;
    QTimer m_undoTimer;
};
