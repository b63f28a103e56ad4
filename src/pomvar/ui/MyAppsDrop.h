#pragma once

#include "model/TreeItem.h"

#include <QModelIndex>

#include <optional>
#include <string>
#include <vector>

namespace pomvar {

class MenuList;

// Where a row dragged within the panel lands in My Apps, and the request that puts it there. An
// app goes among the pinned apps, or into a category: onto the category's row (last), or among
// its apps; a category goes among the categories. Upper half of a row: before it; lower half:
// after it. Anywhere else on My Apps (below the rows, its empty state, its selector): last.
struct MyAppsDrop
{
    enum class Edge
    {
        above,
        below,
        onto,
    };

    std::string request; // place-pinned-app, place-appcat or place-appcat-app
    // The row the drop marker is drawn at; none when My Apps is empty.
    QModelIndex markerRow;
    Edge edge = Edge::above;

    // `row`: the row of My Apps under the pointer, or none.
    static MyAppsDrop at(const MenuList& myApps,
                         const QModelIndex& row,
                         bool lowerHalf,
                         const TreeItem& dragged);

private:
    // Among `level` (rows of one list, in order), at `hovered` (-1: after the last).
    static MyAppsDrop among(const MenuList& myApps,
                            const std::vector<QModelIndex>& level,
                            int hovered,
                            bool lowerHalf,
                            std::string* beforeKey);
};

} // namespace pomvar
