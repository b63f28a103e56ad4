#include "pomvarsrv/app/SearchAnswers.h"

#include "pomvarsrv/search/Calculator.h"
#include "pomvarsrv/search/ExpressionGuess.h"
#include "pomvarsrv/ui/SearchWindow.h"

namespace pomvar::srv {

SearchAnswers::SearchAnswers(QString calculatorModule, QObject* parent)
    : QObject(parent)
    , m_calculatorModule(std::move(calculatorModule))
{}

SearchAnswers::~SearchAnswers() = default;

void SearchAnswers::attach(SearchWindow& window)
{
    m_window = &window;
    connect(&window, &SearchWindow::queryChanged, this, &SearchAnswers::ask);
}

void SearchAnswers::ask(const QString& query)
{
    if (m_calculatorModule.isEmpty() || !ExpressionGuess::looksLikeExpression(query))
        return;
    if (!m_calculator)
        m_calculator = std::make_unique<Calculator>(
            m_calculatorModule,
            [this](const QString& question, const QString& answer, const QString& readAs) {
                if (!m_window || answer.isEmpty())
                    return;
                SearchRow row{ answer,
                               answer,
                               //: The calculator's row in the search: the expression as it was
                               //: read, then what Enter does.
                               tr("%1 · Enter copies the answer").arg(readAs),
                               QStringLiteral(":/pomvarsrv/calculator.svg"),
                               QStringLiteral(":/pomvarsrv/calculator.svg"),
                               SearchRow::Kind::calculation };
                m_window->showCalculation(question, std::move(row));
            });
    m_calculator->ask(query);
}

} // namespace pomvar::srv
