#include "ui/MyAppsDrop.h"

#include "model/MenuList.h"
#include "wire/Protocol.h"

#include <algorithm>

namespace pomvar {

namespace {

// The top-level rows that are categories (or pinned apps when `categories` is false).
std::vector<QModelIndex> topLevel(const MenuList& myApps, bool categories)
{
    std::vector<QModelIndex> rows;
    for (int row = 0; row < myApps.rowCount(); ++row) {
        if (myApps.items()[std::size_t(row)].isCategory() == categories)
            rows.push_back(myApps.index(row, 0));
    }
    return rows;
}

std::vector<QModelIndex> children(const MenuList& myApps, const QModelIndex& category)
{
    std::vector<QModelIndex> rows;
    for (int row = 0; row < myApps.rowCount(category); ++row)
        rows.push_back(myApps.index(row, 0, category));
    return rows;
}

int position(const std::vector<QModelIndex>& level, const QModelIndex& row)
{
    const auto found = std::find(level.begin(), level.end(), row);
    return found == level.end() ? -1 : int(found - level.begin());
}

} // namespace

MyAppsDrop MyAppsDrop::among(const MenuList& myApps,
                             const std::vector<QModelIndex>& level,
                             int hovered,
                             bool lowerHalf,
                             std::string* beforeKey)
{
    MyAppsDrop drop;
    const int count = int(level.size());
    const int before = hovered < 0 ? count : hovered + (lowerHalf ? 1 : 0);
    if (before < count) {
        *beforeKey = myApps.item(level[std::size_t(before)]).id;
        drop.markerRow = level[std::size_t(before)];
    } else if (count > 0) {
        drop.markerRow = level.back();
        drop.edge = Edge::below;
    }
    return drop;
}

MyAppsDrop MyAppsDrop::at(const MenuList& myApps,
                          const QModelIndex& row,
                          bool lowerHalf,
                          const TreeItem& dragged)
{
    std::string before;
    const bool child = row.isValid() && row.parent().isValid();
    const bool category = row.isValid() && !child && myApps.item(row).isCategory();
    if (dragged.isCategory()) {
        const auto categories = topLevel(myApps, true);
        MyAppsDrop drop;
        if (child) // among its category's apps: after the category
            drop = among(myApps, categories, position(categories, row.parent()), true, &before);
        else if (category)
            drop = among(myApps, categories, position(categories, row), lowerHalf, &before);
        else if (row.isValid()) // a pinned app: before every category
            drop = among(myApps, categories, categories.empty() ? -1 : 0, false, &before);
        else
            drop = among(myApps, categories, -1, false, &before);
        drop.request = request::placeAppcat(dragged.id, before);
        return drop;
    }
    if (category) {
        MyAppsDrop drop{ request::placeAppcatApp(dragged.id, myApps.item(row).id, {}), row };
        drop.edge = Edge::onto;
        return drop;
    }
    if (child) {
        const auto apps = children(myApps, row.parent());
        MyAppsDrop drop = among(myApps, apps, position(apps, row), lowerHalf, &before);
        drop.request = request::placeAppcatApp(dragged.id, myApps.item(row.parent()).id, before);
        return drop;
    }
    const auto pins = topLevel(myApps, false);
    MyAppsDrop drop =
        among(myApps, pins, row.isValid() ? position(pins, row) : -1, lowerHalf, &before);
    // No pinned app yet: they go above the categories.
    if (pins.empty() && myApps.rowCount() > 0)
        drop.markerRow = myApps.index(0, 0);
    drop.request = request::placePinnedApp(dragged.id, before);
    return drop;
}

} // namespace pomvar
