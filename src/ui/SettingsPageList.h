#pragma once

#include <QAbstractListModel>
#include <QUrl>

// The pages of the settings window, in the order of its sidebar. The window shows whatever pages
// are listed, so a feature adds its page with one call: an id, the key of its title, the QML file
// of the page and a symbol. Pages find their models among the window's scene properties.
class SettingsPageList : public QAbstractListModel
{
    Q_OBJECT
    Q_PROPERTY(int count READ count NOTIFY countChanged)

public:
    enum Role { PageIdRole = Qt::UserRole + 1, TitleKeyRole, SourceRole, SymbolRole };

    explicit SettingsPageList(QObject *parent = nullptr);

    // The general pages: panel, general, arrivals, about.
    static SettingsPageList *withGeneralPages(QObject *parent = nullptr);
    // The QML file of a page of the interface's own module ("CalendarSettingsPage").
    static QUrl pageFile(const char *name);

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;
    int count() const { return int(m_pages.size()); }

    // Adds a page before the about page (which stays last); a page with the same id is replaced.
    void addPage(const QString &id, const QString &titleKey, const QUrl &source,
                 const QString &symbol);
    Q_INVOKABLE int indexOf(const QString &id) const;
    // The QML file of the page at `row`; empty out of range.
    Q_INVOKABLE QUrl sourceAt(int row) const;

Q_SIGNALS:
    void countChanged();

private:
    struct Page
    {
        QString id;
        QString titleKey;
        QUrl source;
        QString symbol;
    };
    QList<Page> m_pages;
};
