#pragma once

#include <QAbstractListModel>
#include <QIcon>
#include <QStringList>

#include <vector>

namespace pomvar::srv {

class InstalledApps;

// One list of the organizer: apps (pins, a category's members, the picker's choices) or
// categories. Items are dragged as their keys under a MIME type of their kind. A drop does not
// change the list itself: it asks for the change (placeRequested, fileRequested), which is made
// in the store and then shown by setRows().
class OrganizerListModel : public QAbstractListModel
{
    Q_OBJECT

public:
    static constexpr const char* kAppKeysMime = "application/x-pomvar-appkeys";
    static constexpr const char* kCategoriesMime = "application/x-pomvar-appcats";
    static constexpr int KeyRole = Qt::UserRole + 1;

    enum class Kind
    {
        apps,
        categories,
    };
    struct Row
    {
        QString key;
        QString name;
        QString icon;   // 24 px
        QString icon2x; // 48 px
    };

    // `acceptsDrops`: apps are placed into an app list, and reorder a category list, where they
    // are also filed onto a category.
    OrganizerListModel(Kind kind, bool acceptsDrops, QObject* parent = nullptr);

    void setRows(std::vector<Row> rows);
    // The installed apps among `keys`, in that order.
    void setApps(const std::vector<std::string>& keys, const InstalledApps& apps);
    QString keyAt(int row) const;
    // The row of that key; -1 when it is not listed.
    int rowOf(const QString& key) const;
    QStringList keys() const;

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    Qt::DropActions supportedDragActions() const override;
    Qt::DropActions supportedDropActions() const override;
    QStringList mimeTypes() const override;
    QMimeData* mimeData(const QModelIndexList& indexes) const override;
    bool canDropMimeData(const QMimeData* data,
                         Qt::DropAction action,
                         int row,
                         int column,
                         const QModelIndex& parent) const override;
    bool dropMimeData(const QMimeData* data,
                      Qt::DropAction action,
                      int row,
                      int column,
                      const QModelIndex& parent) override;

    static QStringList keysIn(const QMimeData* data, const char* mime);

Q_SIGNALS:
    // `keys` to go just before `before` (empty: last).
    void placeRequested(const QStringList& keys, const QString& before);
    // Apps dropped onto a category.
    void fileRequested(const QStringList& appkeys, const QString& category);

private:
    const char* ownMime() const;

    Kind m_kind;
    bool m_acceptsDrops;
    std::vector<Row> m_rows;
    // Made when a row is first drawn: a picker lists thousands of apps.
    mutable std::vector<QIcon> m_icons;
};

} // namespace pomvar::srv
