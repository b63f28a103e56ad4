#pragma once

#include "pomvarsrv/providers/SearchProvider.h"
#include "pomvarsrv/providers/SearchProviders.h"

#include <QElapsedTimer>
#include <QObject>
#include <QPointer>

#include <memory>
#include <vector>

namespace pomvar::srv {

class Calculator;
class SearchWindow;
class ServerModel;

// What the search window shows beyond the apps, asked at every new query and shown when it comes:
// the calculator's answer for a query that looks like an expression, and the results of the
// desktop's search providers that the settings leave on, each under its app's name and icon.
class SearchAnswers : public QObject
{
    Q_OBJECT

public:
    // Without a module path there is no calculator.
    SearchAnswers(const ServerModel& model, QString calculatorModule, QObject* parent = nullptr);
    ~SearchAnswers() override;

    void attach(SearchWindow& window);
    // The providers chosen in the settings changed.
    void settingsChanged();
    // The providers installed now, on or off.
    static std::vector<SearchProvider> installedProviders();

private:
    void ask(const QString& query);
    void calculate(const QString& query);
    void showProviderResults(const QString& query, int order, std::vector<SearchRow> rows);

    const ServerModel& m_model;
    QString m_calculatorModule;
    QPointer<SearchWindow> m_window;
    std::unique_ptr<Calculator> m_calculator;
    SearchProviders m_providers;
    // The provider files are read again after a while: an app installed meanwhile joins.
    QElapsedTimer m_providersRead;
};

} // namespace pomvar::srv
