#include "model/UserDefaults.h"

#include <QSettings>

namespace pomvar {

namespace {

const QString kLastMenu = QStringLiteral("LastMenu");
const QString kExpandedAppCats = QStringLiteral("ExpandedAppCats");

QSettings store()
{
    return QSettings(QSettings::IniFormat,
                     QSettings::UserScope,
                     QStringLiteral("pomvar"),
                     QStringLiteral("pomvar"));
}

} // namespace

long long UserDefaults::lastMenu()
{
    const QVariant value = store().value(kLastMenu);
    bool ok = false;
    const long long menu = value.toLongLong(&ok);
    return ok ? menu : 0;
}

void UserDefaults::setLastMenu(long long menu)
{
    store().setValue(kLastMenu, menu);
}

std::optional<UserDefaults::ExpansionMap> UserDefaults::expandedAppCats()
{
    // The map is stored as a typed QVariantMap, so a value that is not a map of booleans is
    // told apart from one that is.
    const QVariant value = store().value(kExpandedAppCats);
    if (value.typeId() != QMetaType::QVariantMap)
        return std::nullopt;
    ExpansionMap expanded;
    const QVariantMap map = value.toMap();
    for (auto entry = map.cbegin(); entry != map.cend(); ++entry) {
        if (entry.value().typeId() != QMetaType::Bool)
            return std::nullopt;
        expanded.emplace(entry.key().toStdString(), entry.value().toBool());
    }
    return expanded;
}

void UserDefaults::setExpandedAppCats(const ExpansionMap& expanded)
{
    QVariantMap map;
    for (const auto& [name, isExpanded] : expanded)
        map.insert(QString::fromStdString(name), isExpanded);
    store().setValue(kExpandedAppCats, map);
}

} // namespace pomvar
