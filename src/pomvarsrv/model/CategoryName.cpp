#include "pomvarsrv/model/CategoryName.h"

#include "pomvarsrv/model/Store.h"

#include <QCoreApplication>

namespace pomvar::srv {

QString CategoryName::problem(const QString& name, const Store& store, const QString& renaming)
{
    if (name.isEmpty())
        return QCoreApplication::translate("pomvar::srv::CategoryName", "A category needs a name.");
    for (const AppCategory& category : store.categories()) {
        const QString taken = QString::fromStdString(category.name);
        if (taken != renaming && taken.compare(name, Qt::CaseInsensitive) == 0)
            return QCoreApplication::translate("pomvar::srv::CategoryName",
                                               "A category named \u201c%1\u201d already exists.")
                .arg(taken);
    }
    return {};
}

} // namespace pomvar::srv
