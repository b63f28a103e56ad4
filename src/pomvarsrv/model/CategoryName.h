#pragma once

#include <QString>

namespace pomvar::srv {

class Store;

// The one rule for a category's name, whether new or renamed: trimmed, not empty, and not
// already taken by another category, ignoring case.
class CategoryName
{
public:
    // What is wrong with `name` (already trimmed) for the user to read; empty when it can be
    // used. `renaming` is the category being renamed: it may keep its name or change its case.
    static QString problem(const QString& name, const Store& store, const QString& renaming = {});
};

} // namespace pomvar::srv
