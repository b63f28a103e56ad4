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

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace pomvar::srv {

namespace {

// Why a file is no store to open, from its lstat() or fstat(); empty when it may be read.
QString unfit(const struct stat& info)
{
    if (S_ISLNK(info.st_mode))
        return QStringLiteral("a symbolic link");
    if (!S_ISREG(info.st_mode))
        return QStringLiteral("not a regular file");
    if (info.st_size > StoreFile::kMaxSize)
        return QStringLiteral("larger than 16 MiB");
    return {};
}

} // namespace

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

std::optional<QByteArray> StoreFile::read()
{
    const QByteArray name = QFile::encodeName(m_path);
    struct stat info;
    if (::lstat(name.constData(), &info) != 0) {
        if (errno != ENOENT) {
            qCWarning(lcModel) << "cannot read the store" << m_path << std::strerror(errno)
                               << "; starting from defaults, and changes will not be saved";
            m_keepOff = true;
        }
        return std::nullopt;
    }
    if (const QString reason = unfit(info); !reason.isEmpty()) {
        setAside(reason);
        return std::nullopt;
    }
    // Should another file take its place meanwhile, neither a link is followed nor a FIFO
    // waited on; what was opened is checked again.
    const int fd = ::open(name.constData(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
    if (fd < 0) {
        qCWarning(lcModel) << "cannot read the store" << m_path << std::strerror(errno)
                           << "; starting from defaults, and changes will not be saved";
        m_keepOff = true;
        return std::nullopt;
    }
    QString reason = ::fstat(fd, &info) == 0 ? unfit(info) : QStringLiteral("gone");
    QByteArray bytes;
    char chunk[64 * 1024];
    ssize_t size = 0;
    while (reason.isEmpty() && (size = ::read(fd, chunk, sizeof chunk)) != 0) {
        if (size < 0 && errno == EINTR)
            continue;
        if (size < 0)
            reason = QString::fromLocal8Bit(std::strerror(errno));
        else if (bytes.size() + size > kMaxSize)
            reason = QStringLiteral("larger than 16 MiB");
        else
            bytes.append(chunk, size);
    }
    ::close(fd);
    if (!reason.isEmpty()) {
        setAside(reason);
        return std::nullopt;
    }
    return bytes;
}

Store StoreFile::load()
{
    m_setAsidePath.clear();
    m_keepOff = false;
    if (const int removed = AtomicFile::removeDebris(m_path))
        qCInfo(lcModel) << "removed" << removed << "unfinished writes of the store";
    const auto bytes = read();
    if (!bytes)
        return {};
    const auto value = nlohmann::json::parse(
        bytes->constData(), bytes->constData() + bytes->size(), nullptr, false);
    if (auto store = Store::fromJson(value))
        return *store;
    setAside(value.is_discarded() ? QStringLiteral("not JSON") : QStringLiteral("not a store"));
    return {};
}

void StoreFile::setAside(const QString& reason)
{
    const QString stamp =
        QDateTime::currentDateTimeUtc().toString(QStringLiteral("yyyyMMddTHHmmss"));
    QString target = m_path + QStringLiteral(".bad-") + stamp;
    for (int n = 1; QFileInfo(target).exists() || QFileInfo(target).isSymLink(); ++n)
        target = m_path + QStringLiteral(".bad-") + stamp + u'-' + QString::number(n);
    // A rename moves the name only: a FIFO or a link is never opened.
    if (::rename(QFile::encodeName(m_path).constData(), QFile::encodeName(target).constData()) ==
        0) {
        m_setAsidePath = target;
        qCWarning(lcModel).noquote() << "the store" << m_path << "is unfit (" + reason + ");"
                                     << "kept as" << target << "and starting from defaults";
        if (m_problem)
            m_problem(Problem::setAside, target);
    } else {
        qCWarning(lcModel).noquote() << "the store" << m_path << "is unfit (" + reason + ")"
                                     << "and cannot be moved aside; starting from defaults";
        m_keepOff = true;
    }
}

bool StoreFile::failSave(const QString& why)
{
    qCWarning(lcModel).noquote() << "cannot write the store" << m_path + u':' << why;
    if (!m_failing && m_problem)
        m_problem(Problem::notSaved, why);
    m_failing = true;
    return false;
}

bool StoreFile::save(const Store& store)
{
    if (m_keepOff)
        return failSave(QStringLiteral("the file there could not be read, and is kept"));
    // The folder is made private when it is created, not at every save: a change of its mode
    // makes GIO report the installed apps as changed, and the catalogue would be read again.
    const QString folder = QFileInfo(m_path).absolutePath();
    if (!QFileInfo::exists(folder)) {
        if (!QDir().mkpath(folder))
            return failSave(QStringLiteral("cannot create ") + folder);
        QFile::setPermissions(
            folder, QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
    }
    // A store whose file could not be read is never replaced by this one's defaults: load()
    // has moved it aside before anything was saved.
    QSaveFile file(m_path);
    if (!file.open(QIODevice::WriteOnly))
        return failSave(file.errorString());
    file.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner);
    const std::string text =
        store.toJson().dump(2, ' ', false, nlohmann::json::error_handler_t::replace) + '\n';
    file.write(text.data(), static_cast<qint64>(text.size()));
    if (!file.commit())
        return failSave(file.errorString());
    m_failing = false;
    return true;
}

} // namespace pomvar::srv
