#pragma once

#include <QString>

#include <sys/types.h>

namespace pomvar::test {

// A virtual X display on a free number for a test program, started before Qt's application
// object so that it can be the program's display; stopped when this goes away.
class XvfbDisplay
{
public:
    XvfbDisplay();
    ~XvfbDisplay();
    XvfbDisplay(const XvfbDisplay&) = delete;
    XvfbDisplay& operator=(const XvfbDisplay&) = delete;

    // ":<n>", empty when Xvfb (package xvfb) did not start.
    const QString& name() const { return m_name; }

private:
    pid_t m_pid = -1;
    QString m_name;
};

} // namespace pomvar::test
