#include "ui/SettingsPageList.h"

namespace {

const QString aboutPage = QStringLiteral("about");

} // namespace

QUrl SettingsPageList::pageFile(const char *name)
{
    return QUrl(QStringLiteral("qrc:/qt/qml/Tarrow/Ui/%1.qml").arg(QLatin1String(name)));
}

SettingsPageList::SettingsPageList(QObject *parent)
    : QAbstractListModel(parent)
{
}

SettingsPageList *SettingsPageList::withGeneralPages(QObject *parent)
{
    auto *pages = new SettingsPageList(parent);
    pages->addPage(QStringLiteral("general"), QStringLiteral("settings.page.general"),
                   pageFile("GeneralSettingsPage"), QStringLiteral("house.fill"));
    pages->addPage(QStringLiteral("panel"), QStringLiteral("settings.page.panel"),
                   pageFile("PanelSettingsPage"), QStringLiteral("hourglass"));
    pages->addPage(QStringLiteral("arrivals"), QStringLiteral("settings.page.arrivals"),
                   pageFile("ArrivalSettingsPage"), QStringLiteral("bell.fill"));
    pages->addPage(aboutPage, QStringLiteral("settings.page.about"), pageFile("AboutSettingsPage"),
                   QStringLiteral("star.fill"));
    return pages;
}

int SettingsPageList::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : count();
}

QVariant SettingsPageList::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return {};
    const Page &page = m_pages.at(index.row());
    switch (role) {
    case PageIdRole:
        return page.id;
    case TitleKeyRole:
        return page.titleKey;
    case SourceRole:
        return page.source;
    case SymbolRole:
        return page.symbol;
    default:
        return {};
    }
}

QHash<int, QByteArray> SettingsPageList::roleNames() const
{
    return {{PageIdRole, "pageId"},
            {TitleKeyRole, "titleKey"},
            {SourceRole, "source"},
            {SymbolRole, "symbol"}};
}

void SettingsPageList::addPage(const QString &id, const QString &titleKey, const QUrl &source,
                               const QString &symbol)
{
    const int existing = indexOf(id);
    if (existing >= 0) {
        m_pages[existing] = {id, titleKey, source, symbol};
        Q_EMIT dataChanged(index(existing), index(existing));
        return;
    }
    const int about = indexOf(aboutPage);
    const int row = about >= 0 ? about : count();
    beginInsertRows({}, row, row);
    m_pages.insert(row, {id, titleKey, source, symbol});
    endInsertRows();
    Q_EMIT countChanged();
}

int SettingsPageList::indexOf(const QString &id) const
{
    for (qsizetype i = 0; i < m_pages.size(); ++i) {
        if (m_pages.at(i).id == id)
            return int(i);
    }
    return -1;
}

QUrl SettingsPageList::sourceAt(int row) const
{
    return row >= 0 && row < m_pages.size() ? m_pages.at(row).source : QUrl();
}
