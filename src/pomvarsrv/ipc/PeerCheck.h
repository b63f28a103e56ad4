#pragma once

#include "pomvarsrv/ipc/HolderSearch.h"

#include <QObject>
#include <QPointer>

#include <functional>
#include <sys/types.h>
#include <unordered_map>

class QTcpSocket;

namespace pomvar::srv {

// Who may talk to the server: a process of its own user, in its own user and mount namespaces.
// The peer's socket is looked up exactly by its addresses (SocketDiag): its owner decides at
// once. Then the process holding it must share the server's namespaces, or else it is a sandbox
// sharing the network, whose requests would start apps outside it. The front end that started
// the server is looked at first, on this thread; any other process is searched for on a thread
// of its own (HolderSearch), and the connection waits for the verdict.
class PeerCheck : public QObject
{
    Q_OBJECT

public:
    // `frontEnd`: the process that started the server; 0 when none did.
    explicit PeerCheck(pid_t frontEnd, QObject* parent = nullptr);
    ~PeerCheck() override;

    // Why the connection is refused; empty when it is allowed.
    using Verdict = std::function<void(const QString& refusal)>;
    // Calls `verdict` on this thread, at once or once the holder is found; never after
    // `context` is gone.
    void check(const QTcpSocket& socket, QObject* context, Verdict verdict);

private:
    // Why the holder is refused; empty when it shares our namespaces; nothing when it ended
    // before it could be looked at, so that another holder is to be found. Any thread.
    static std::optional<QString> refusalOf(std::optional<pid_t> holder);
    // Finds the socket's holder on the search thread, then decides.
    void search(quint64 ticket, SocketOwner::Inode inode, int tries);
    void decide(quint64 ticket, const QString& refusal);

    struct Waiting
    {
        QPointer<QObject> context;
        Verdict verdict;
    };

    pid_t m_frontEnd;
    std::unordered_map<quint64, Waiting> m_waiting;
    quint64 m_tickets = 0;
    HolderSearch m_search; // last: its thread ends before the rest goes
};

} // namespace pomvar::srv
