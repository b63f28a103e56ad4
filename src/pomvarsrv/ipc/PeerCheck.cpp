#include "pomvarsrv/ipc/PeerCheck.h"

#include "pomvarsrv/ipc/SocketDiag.h"

#include <QTcpSocket>

#include <unistd.h>

namespace pomvar::srv {

PeerCheck::PeerCheck(pid_t frontEnd, QObject* parent)
    : QObject(parent)
    , m_frontEnd(frontEnd)
{}

PeerCheck::~PeerCheck() = default;

std::optional<QString> PeerCheck::refusalOf(std::optional<pid_t> holder)
{
    if (!holder)
        return QStringLiteral("no process of this user holds its socket");
    const std::optional<bool> shares = SocketOwner::sharesNamespaces(*holder);
    if (!shares)
        return std::nullopt;
    if (*shares)
        return QString();
    return QStringLiteral("process %1 (%2) runs in another user or mount namespace")
        .arg(*holder)
        .arg(QString::fromStdString(SocketOwner::commandName(*holder)));
}

void PeerCheck::check(const QTcpSocket& socket, QObject* context, Verdict verdict)
{
    // The peer's socket: its local end is our remote one.
    const auto peer = SocketDiag::connection(
        socket.peerAddress(), socket.peerPort(), socket.localAddress(), socket.localPort());
    if (!peer)
        return verdict(QStringLiteral("of unknown owner"));
    if (peer->uid != ::getuid())
        return verdict(QStringLiteral("owned by uid %1").arg(peer->uid));
    // Inode 0: the peer closed its socket already; who held it cannot be told any longer.
    if (peer->inode == 0)
        return verdict(QStringLiteral("closed before it could be checked"));
    if (m_frontEnd > 0 && SocketOwner::holds(m_frontEnd, peer->inode)) {
        if (const auto refusal = refusalOf(m_frontEnd))
            return verdict(*refusal);
    }
    const quint64 ticket = ++m_tickets;
    m_waiting.emplace(ticket, Waiting{ context, std::move(verdict) });
    search(ticket, peer->inode, 0);
}

void PeerCheck::search(quint64 ticket, SocketOwner::Inode inode, int tries)
{
    // The newest holder is found first: often a short-lived child (`cat` in a shell client),
    // which may end before its namespaces are read. Its parent still holds the socket.
    constexpr int kMaxTries = 4;
    m_search.find(inode, [this, ticket, inode, tries](std::optional<pid_t> holder) {
        // On the search thread, which ends before this object does.
        std::optional<QString> refusal = refusalOf(holder);
        if (!refusal && tries + 1 < kMaxTries)
            return search(ticket, inode, tries + 1);
        QMetaObject::invokeMethod(
            this,
            [this, ticket, refusal = refusal.value_or(QStringLiteral("its holders ended"))] {
                decide(ticket, refusal);
            },
            Qt::QueuedConnection);
    });
}

void PeerCheck::decide(quint64 ticket, const QString& refusal)
{
    const auto found = m_waiting.find(ticket);
    if (found == m_waiting.end())
        return;
    Waiting waiting = std::move(found->second);
    m_waiting.erase(found);
    if (waiting.context)
        waiting.verdict(refusal);
}

} // namespace pomvar::srv
