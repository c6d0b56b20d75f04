#pragma once

#include <QLoggingCategory>
#include <QObject>

class CountdownListModel;
class EventEditorModel;
class RowActions;

Q_DECLARE_LOGGING_CATEGORY(lcPopupNavigator)

// Which page the popup shows (the list, the editor, the welcome page) and what the keys do there.
// On the list: the arrows move the current row, Enter edits it, Delete deletes it, Ctrl+P pins or
// unpins it, the Menu key opens its menu, Ctrl+N starts a new countdown, Ctrl+F (or just typing)
// searches, Ctrl+, opens the settings. Escape steps back: from the editor to the list, from a
// search to the whole list, then closes the popup.
class PopupNavigator : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString page READ page NOTIFY pageChanged)

public:
    PopupNavigator(CountdownListModel &list, RowActions &actions, EventEditorModel &editor,
                   QObject *parent = nullptr);

    // "list", "editor" or "welcome".
    QString page() const;

    // Handles a key pressed in the popup, `from` the list itself ("list"), the search field
    // ("search") or the quick-entry field ("entry"). A text field keeps the keys that edit text
    // (letters, Backspace, Delete...), and the entry field its Enter and arrows. True when the key
    // was used.
    Q_INVOKABLE bool handleKey(int key, int modifiers, const QString &text, const QString &from);

    Q_INVOKABLE void newCountdown(const QString &title = QString());
    Q_INVOKABLE void editRow(int row);
    // Edits the item with the row key `key`, shown in the list or not (the next-up card's).
    Q_INVOKABLE void editKey(const QString &key);
    Q_INVOKABLE void showWelcome();
    // Leaves the welcome page for the list.
    Q_INVOKABLE void showList();
    Q_INVOKABLE void openSettings() { Q_EMIT settingsRequested(); }
    // Escape: the editor closes, a search is cleared, else the popup closes.
    Q_INVOKABLE void back();

Q_SIGNALS:
    void pageChanged();
    void closeRequested();
    void settingsRequested();
    // The search field should take the focus.
    void searchRequested();
    // The current row's context menu should open.
    void rowMenuRequested(int row);

private:
    enum class Page { list, editor, welcome };
    void setPage(Page page);
    bool handleListKey(int key, int modifiers, const QString &text, const QString &from);

    CountdownListModel &m_list;
    RowActions &m_actions;
    EventEditorModel &m_editor;
    Page m_page = Page::list;
    Page m_pageBeforeEditor = Page::list;
};
