#include "pomvarsrv/search/Calculator.h"

#include "pomvarsrv/search/CalculatorModule.h"

#include <QLibrary>
#include <QLoggingCategory>
#include <QThread>

#include <array>

namespace pomvar::srv {

namespace {

Q_LOGGING_CATEGORY(lcCalculator, "pomvarsrv.search")

// Long enough for any expression typed by hand; a pathological one gives no answer.
constexpr int kTimeoutMs = 500;

} // namespace

struct Calculator::Module
{
    QLibrary library;
    calculatormodule::Calculate calculate = nullptr;
};

Calculator::Calculator(QString modulePath, Answered answered)
    : m_modulePath(std::move(modulePath))
    , m_answered(std::move(answered))
    , m_receiver(std::make_unique<QObject>())
{}

Calculator::~Calculator()
{
    if (m_thread) {
        m_thread->quit();
        m_thread->wait();
    }
}

void Calculator::ask(const QString& question)
{
    if (!m_thread) {
        m_thread = std::make_unique<QThread>();
        m_thread->setObjectName(QStringLiteral("calculator"));
        m_worker = std::make_unique<QObject>();
        m_worker->moveToThread(m_thread.get());
        m_thread->start();
    }
    const int serial = ++m_latest;
    QMetaObject::invokeMethod(
        m_worker.get(),
        [this, question, serial] { calculate(question, serial); },
        Qt::QueuedConnection);
}

void Calculator::calculate(const QString& question, int serial)
{
    if (serial != m_latest)
        return;
    if (!m_module) {
        m_module = std::make_unique<Module>();
        m_module->library.setFileName(m_modulePath);
        m_module->calculate = reinterpret_cast<calculatormodule::Calculate>(
            m_module->library.resolve(calculatormodule::kSymbol));
        if (!m_module->calculate)
            qCWarning(lcCalculator) << "no calculator:" << m_module->library.errorString();
    }
    std::array<char, 1024> answer{}, readAs{};
    const bool answered = m_module->calculate && m_module->calculate(question.toUtf8().constData(),
                                                                     kTimeoutMs,
                                                                     answer.data(),
                                                                     answer.size(),
                                                                     readAs.data(),
                                                                     readAs.size()) == 1;
    const QString text = answered ? QString::fromUtf8(answer.data()) : QString();
    const QString read = answered ? QString::fromUtf8(readAs.data()) : QString();
    QMetaObject::invokeMethod(
        m_receiver.get(),
        [this, question, text, read] { m_answered(question, text, read); },
        Qt::QueuedConnection);
}

} // namespace pomvar::srv
