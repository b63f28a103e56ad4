#include "XvfbDisplay.h"

#include <csignal>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

namespace pomvar::test {

XvfbDisplay::XvfbDisplay()
{
    int pipeFds[2];
    if (::pipe(pipeFds) != 0)
        return;
    m_pid = ::fork();
    if (m_pid == 0) {
        ::close(pipeFds[0]);
        const std::string fd = std::to_string(pipeFds[1]);
        ::execlp("Xvfb",
                 "Xvfb",
                 "-displayfd",
                 fd.c_str(),
                 "-screen",
                 "0",
                 "1280x800x24",
                 "-nolisten",
                 "tcp",
                 static_cast<char*>(nullptr));
        ::_exit(127);
    }
    ::close(pipeFds[1]);
    // Xvfb writes the display number once it accepts connections.
    std::string number;
    char c = 0;
    while (m_pid > 0 && ::read(pipeFds[0], &c, 1) == 1 && c != '\n')
        number += c;
    ::close(pipeFds[0]);
    if (!number.empty())
        m_name = QStringLiteral(":") + QString::fromStdString(number);
}

XvfbDisplay::~XvfbDisplay()
{
    if (m_pid <= 0)
        return;
    ::kill(m_pid, SIGTERM);
    ::waitpid(m_pid, nullptr, 0);
}

} // namespace pomvar::test
