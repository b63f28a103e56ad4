#include "pomvarsrv/model/StoreFile.h"

#include "pomvarsrv/model/AtomicFile.h"
#include "pomvarsrv/model/ModelLog.h"

#include "wire/UserPaths.h"

#include <nlohmann/json.hpp>

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

namespace pomvar::srv {

StoreFile::StoreFile()
    : StoreFile(defaultPath())
{}

StoreFile::StoreFile(QString path)
    : m_path(std::move(path))
{}

QString StoreFile::defaultPath()
{
    return QString::fromStdString(paths::storeFile());
}

Store StoreFile::load()
{
    m_setAsidePath.clear();
    m_keepOff = false;
    if (const int removed = AtomicFile::removeDebris(m_path))
        qCInfo(lcModel) << "removed" << removed << "unfinished writes of the store";
    QFile file(m_path);
    if (!file.exists())
        return {};
    if (!file.open(QIODevice::ReadOnly)) {
        qCWarning(lcModel) << "cannot read the store" << m_path << file.errorString()
                           << "; starting from defaults, and changes will not be saved";
        m_keepOff = true;
        return {};
    }
    const QByteArray bytes = file.readAll();
    file.close();
    const auto value =
        nlohmann::json::parse(bytes.constData(), bytes.constData() + bytes.size(), nullptr, false);
    if (auto store = Store::fromJson(value))
        return *store;
    setAside(value.is_discarded() ? QStringLiteral("not JSON") : QStringLiteral("not a store"));
    return {};
}

void StoreFile::setAside(const QString& reason)
{
    const QString stamp =
        QDateTime::currentDateTimeUtc().toString(QStringLiteral("yyyyMMddTHHmmss"));
    QString target = m_path + QStringLiteral(".corrupt-") + stamp;
    for (int n = 1; QFileInfo::exists(target); ++n)
        target = m_path + QStringLiteral(".corrupt-") + stamp + u'-' + QString::number(n);
    if (QFile::rename(m_path, target)) {
        m_setAsidePath = target;
        qCWarning(lcModel).noquote() << "the store" << m_path << "is unreadable (" + reason + ");"
                                     << "kept as" << target << "and starting from defaults";
    } else {
        qCWarning(lcModel).noquote() << "the store" << m_path << "is unreadable (" + reason + ")"
                                     << "and cannot be moved aside; starting from defaults";
    }
}

bool StoreFile::save(const Store& store)
{
    if (m_keepOff)
        return false;
    // The folder is made private when it is created, not at every save: a change of its mode
    // makes GIO report the installed apps as changed, and the catalogue would be read again.
    const QString folder = QFileInfo(m_path).absolutePath();
    if (!QFileInfo::exists(folder)) {
        if (!QDir().mkpath(folder)) {
            qCWarning(lcModel) << "cannot create" << folder;
            return false;
        }
        QFile::setPermissions(
            folder, QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
    }
    // A store whose file could not be read is never replaced by this one's defaults: load()
    // has moved it aside before anything was saved.
    QSaveFile file(m_path);
    if (!file.open(QIODevice::WriteOnly)) {
        qCWarning(lcModel) << "cannot write the store" << m_path << file.errorString();
        return false;
    }
    file.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner);
    const std::string text =
        store.toJson().dump(2, ' ', false, nlohmann::json::error_handler_t::replace) + '\n';
    file.write(text.data(), static_cast<qint64>(text.size()));
    if (!file.commit()) {
        qCWarning(lcModel) << "cannot write the store" << m_path << file.errorString();
        return false;
    }
    return true;
}

} // namespace pomvar::srv
