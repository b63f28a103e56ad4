#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <system_error>
#include <thread>
#include <vector>

namespace pomvar {

// One TCP client connection served by its own thread, the connection's serial queue.
// Every callback (state changes, send and receive completions) runs on that thread and
// nothing else does. Writes made before the connection is up are kept and written once it
// is. Reads deliver exactly the number of bytes asked for.
//
// Writes go straight to the socket from the caller's thread when nothing is queued ahead of
// them, and the reply wakes the queue thread directly from poll(): a request-reply exchange
// costs one thread hop more than a blocking socket, not a round of event-loop dispatching.
class RuntimeConnection
{
public:
    enum class State
    {
        setup,
        preparing,
        waiting, // could not connect; the error says why
        ready,
        failed, // the established connection broke
    };
    using StateHandler = std::function<void(State, std::error_code)>;
    using SendCompletion = std::function<void(std::error_code)>;
    // `data` is empty when the stream ended or failed before enough bytes came.
    using ReceiveCompletion = std::function<void(std::optional<std::string> data, std::error_code)>;

    struct Chunk
    {
        std::string bytes;
        SendCompletion completion;
    };

    RuntimeConnection(std::string host, std::uint16_t port, std::string queueLabel);
    ~RuntimeConnection();
    RuntimeConnection(const RuntimeConnection&) = delete;
    RuntimeConnection& operator=(const RuntimeConnection&) = delete;

    // Set before start(); runs on the queue.
    void setStateHandler(StateHandler handler);
    // Starts the queue thread, which resolves the host and connects.
    void start();
    // Writes the chunks back to back, as one write where possible. Any thread.
    void send(std::vector<Chunk> batch);
    // Reads exactly `length` bytes (length > 0). Any thread; the completion runs on the queue.
    void receive(std::size_t length, ReceiveCompletion completion);
    // Takes back the bytes of a large receive once read, to hold the next large one: memory
    // already in use is much cheaper to fill than fresh memory. Any thread.
    void recycle(std::string buffer);

    bool isQueueThread() const { return std::this_thread::get_id() == m_thread.get_id(); }

private:
    struct PendingReceive
    {
        std::size_t length;
        ReceiveCompletion completion;
    };

    void run();
    void wakeLocked();
    void setState(State state, std::error_code error = {});
    void connectNext();
    void finishConnect();
    void writeLocked(std::vector<Chunk>* batch);
    void failWritesLocked(std::error_code error);
    void readSome();
    void deliverReceives();
    std::size_t bufferedLocked() const { return m_inEnd - m_inStart; }
    bool wantsInputLocked() const;

    const std::string m_host;
    const std::uint16_t m_port;
    const std::string m_queueLabel;
    StateHandler m_stateHandler;

    std::thread m_thread;
    int m_wakeFd = -1;
    int m_fd = -1;

    // Owned by the queue thread.
    std::vector<std::vector<unsigned char>> m_addresses; // sockaddr storage per candidate
    std::vector<unsigned> m_addressLengths;
    std::size_t m_nextAddress = 0;
    std::error_code m_firstConnectError;
    bool m_refused = false;
    bool m_connecting = false;

    mutable std::mutex m_mutex;
    State m_state = State::setup;
    bool m_stopping = false;
    bool m_pollingInput = false;
    bool m_connected = false;
    std::vector<std::function<void()>> m_tasks;
    // Outgoing bytes not yet written, with the completion due when each chunk's end is written.
    std::string m_out;
    std::deque<std::pair<std::size_t, SendCompletion>> m_outCompletions; // end offset in m_out
    // Incoming bytes read ahead of the receives that will take them.
    // Bytes [m_inStart, m_inEnd) of m_in are buffered; the rest is room for the next read.
    std::string m_in;
    std::size_t m_inStart = 0;
    std::size_t m_inEnd = 0;
    std::string m_spareIn; // a recycled buffer, the largest given back
    bool m_inputEnded = false;
    std::error_code m_readError;
    std::deque<PendingReceive> m_receives;
};

} // namespace pomvar
