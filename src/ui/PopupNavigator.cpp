#include "ui/PopupNavigator.h"

#include "ui/CountdownListModel.h"
#include "ui/EventEditorModel.h"
#include "ui/RowActions.h"

Q_LOGGING_CATEGORY(lcPopupNavigator, "PopupNavigator")

PopupNavigator::PopupNavigator(CountdownListModel &list, RowActions &actions,
                               EventEditorModel &editor, QObject *parent)
    : QObject(parent)
    , m_list(list)
    , m_actions(actions)
    , m_editor(editor)
{
    connect(&actions, &RowActions::editRequested, this, &PopupNavigator::editRow);
    connect(&editor, &EventEditorModel::finished, this, [this] { setPage(m_pageBeforeEditor); });
}

QString PopupNavigator::page() const
{
    switch (m_page) {
    case Page::list:
        return QStringLiteral("list");
    case Page::editor:
        return QStringLiteral("editor");
    case Page::welcome:
        return QStringLiteral("welcome");
    }
    return {};
}

void PopupNavigator::setPage(Page page)
{
    if (m_page == page)
        return;
    m_page = page;
    qCDebug(lcPopupNavigator).noquote() << QStringLiteral("Showing the %1 page").arg(this->page());
    Q_EMIT pageChanged();
}

void PopupNavigator::newCountdown(const QString &title)
{
    if (m_page != Page::editor)
        m_pageBeforeEditor = m_page == Page::welcome ? Page::list : m_page;
    m_editor.beginNew(title);
    setPage(Page::editor);
}

void PopupNavigator::editRow(int row)
{
    const std::optional<CountdownItem> item = m_list.itemAt(row);
    if (!item)
        return;
    m_list.setCurrentRow(row);
    m_pageBeforeEditor = Page::list;
    m_editor.beginEdit(*item);
    setPage(Page::editor);
}

void PopupNavigator::editKey(const QString &key)
{
    const std::optional<CountdownItem> item = m_list.itemForKey(key);
    if (!item)
        return;
    m_pageBeforeEditor = Page::list;
    m_editor.beginEdit(*item);
    setPage(Page::editor);
}

void PopupNavigator::showWelcome()
{
    if (m_editor.isActive())
        m_editor.cancel();
    setPage(Page::welcome);
}

void PopupNavigator::showList()
{
    if (m_editor.isActive())
        m_editor.cancel();
    setPage(Page::list);
}

void PopupNavigator::back()
{
    if (m_page == Page::editor) {
        m_editor.cancel();
    } else if (m_page == Page::list && !m_list.searchText().isEmpty()) {
        m_list.setSearchText(QString());
    } else {
        Q_EMIT closeRequested();
    }
}

bool PopupNavigator::handleKey(int key, int modifiers, const QString &text, const QString &from)
{
    const bool ctrl = modifiers & Qt::ControlModifier;
    if (key == Qt::Key_Escape) {
        back();
        return true;
    }
    if (ctrl && key == Qt::Key_Comma) {
        openSettings();
        return true;
    }
    if (m_page == Page::editor) {
        if (ctrl && (key == Qt::Key_S || key == Qt::Key_Return || key == Qt::Key_Enter)) {
            m_editor.save();
            return true;
        }
        return false;
    }
    if (m_page == Page::list)
        return handleListKey(key, modifiers, text, from);
    return false;
}

bool PopupNavigator::handleListKey(int key, int modifiers, const QString &text, const QString &from)
{
    const bool ctrl = modifiers & Qt::ControlModifier;
    const bool inTextField = from != u"list";
    const int current = m_list.currentRow();
    if (from == u"entry" && !ctrl)
        return false; // the entry field types, submits with Enter and moves its cursor
    switch (key) {
    case Qt::Key_Down:
        return m_list.moveCurrent(1) || true;
    case Qt::Key_Up:
        return m_list.moveCurrent(-1) || true;
    case Qt::Key_PageDown:
        return m_list.moveCurrent(8) || true;
    case Qt::Key_PageUp:
        return m_list.moveCurrent(-8) || true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (current < 0)
            return false;
        editRow(current);
        return true;
    case Qt::Key_Delete:
        if (inTextField || current < 0)
            return false;
        return m_actions.remove(current) || true;
    case Qt::Key_Menu:
        if (current < 0)
            return false;
        Q_EMIT rowMenuRequested(current);
        return true;
    default:
        break;
    }
    if (ctrl) {
        switch (key) {
        case Qt::Key_N:
            newCountdown();
            return true;
        case Qt::Key_F:
            Q_EMIT searchRequested();
            return true;
        case Qt::Key_P:
            return current >= 0 && m_actions.togglePin(current);
        case Qt::Key_Z:
            if (!m_actions.canUndo())
                return false;
            m_actions.undo();
            return true;
        default:
            return false;
        }
    }
    // Typing on the list starts a search with what was typed.
    if (!inTextField && !text.isEmpty() && text.at(0).isPrint() && !(modifiers & Qt::AltModifier)) {
        m_list.setSearchText(m_list.searchText() + text);
        Q_EMIT searchRequested();
        return true;
    }
    return false;
}
