#pragma once

#include <QObject>
#include <QPointer>

#include <memory>

namespace pomvar::srv {

class Calculator;
class SearchWindow;

// What the search window shows beyond the apps, asked at every new query and shown when it comes:
// the calculator's answer for a query that looks like an expression.
class SearchAnswers : public QObject
{
    Q_OBJECT

public:
    // Without a module path there is no calculator.
    explicit SearchAnswers(QString calculatorModule, QObject* parent = nullptr);
    ~SearchAnswers() override;

    void attach(SearchWindow& window);

private:
    void ask(const QString& query);

    QString m_calculatorModule;
    QPointer<SearchWindow> m_window;
    std::unique_ptr<Calculator> m_calculator;
};

} // namespace pomvar::srv
