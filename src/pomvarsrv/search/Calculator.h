#pragma once

#include <QObject>
#include <QString>

#include <atomic>
#include <functional>
#include <memory>

class QThread;

namespace pomvar::srv {

// The search's calculator: expressions and unit conversions answered by libqalculate, in a module
// of its own (CalculatorModule.h) loaded on the first question, on a thread of its own. Until
// then the server neither maps the library nor reads its definitions; a slow expression never
// holds the typing up. Only the latest question is worked on: one asked meanwhile is dropped.
class Calculator
{
public:
    // The answer, empty when there is none, and the expression as it was read.
    using Answered =
        std::function<void(const QString& question, const QString& answer, const QString& readAs)>;

    // `answered` is called on the thread that made the calculator.
    Calculator(QString modulePath, Answered answered);
    ~Calculator();

    void ask(const QString& question);

private:
    void calculate(const QString& question, int serial);

    QString m_modulePath;
    Answered m_answered;
    // The thread's own: the module, once loaded (null when it cannot be).
    struct Module;
    std::unique_ptr<Module> m_module;
    std::unique_ptr<QThread> m_thread;
    std::unique_ptr<QObject> m_worker;   // lives on m_thread
    std::unique_ptr<QObject> m_receiver; // lives here: answers for a gone calculator are dropped
    std::atomic<int> m_latest = 0;
};

} // namespace pomvar::srv
