#include "pomvarsrv/app/SearchAnswers.h"

#include "pomvarsrv/model/ServerModel.h"
#include "pomvarsrv/providers/SearchProviderFiles.h"
#include "pomvarsrv/search/Calculator.h"
#include "pomvarsrv/search/ExpressionGuess.h"
#include "pomvarsrv/ui/SearchWindow.h"

namespace pomvar::srv {

namespace {
constexpr qint64 kProvidersLifeMs = 10'000;
} // namespace

SearchAnswers::SearchAnswers(const ServerModel& model, QString calculatorModule, QObject* parent)
    : QObject(parent)
    , m_model(model)
    , m_calculatorModule(std::move(calculatorModule))
{
    connect(
        &m_providers, &SearchProviders::resultsReady, this, &SearchAnswers::showProviderResults);
}

SearchAnswers::~SearchAnswers() = default;

std::vector<SearchProvider> SearchAnswers::installedProviders()
{
    return SearchProviderFiles::installed();
}

void SearchAnswers::attach(SearchWindow& window)
{
    m_window = &window;
    connect(&window, &SearchWindow::queryChanged, this, &SearchAnswers::ask);
    connect(
        &window, &SearchWindow::providerResultActivated, &m_providers, &SearchProviders::activate);
}

void SearchAnswers::settingsChanged()
{
    m_providersRead.invalidate();
}

void SearchAnswers::ask(const QString& query)
{
    calculate(query);
    const SearchPrefs& prefs = m_model.store().searchPrefs();
    if (!prefs.providers || query.trimmed().isEmpty()) {
        m_providers.search({}); // drops the answers still due
        return;
    }
    if (!m_providersRead.isValid() || m_providersRead.elapsed() > kProvidersLifeMs) {
        std::vector<SearchProvider> enabled;
        for (SearchProvider& provider : installedProviders())
            if (prefs.providerEnabled(provider.desktopId.toStdString(), provider.enabledByDefault))
                enabled.push_back(std::move(provider));
        m_providers.setProviders(std::move(enabled));
        m_providersRead.start();
    }
    m_providers.search(query);
}

void SearchAnswers::calculate(const QString& query)
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

void SearchAnswers::showProviderResults(const QString& query,
                                        int order,
                                        std::vector<SearchRow> rows)
{
    const auto& providers = m_providers.providers();
    if (!m_window || order >= int(providers.size()))
        return;
    const SearchProvider& provider = providers[std::size_t(order)];
    // The provider's app as the menus show it; the name from its entry when it is not listed.
    SearchRow header;
    header.key = header.source = provider.desktopId;
    header.name = provider.name;
    header.kind = SearchRow::Kind::providerHeader;
    if (const AppEntry* app = m_model.apps().find(provider.desktopId.toStdString())) {
        header.name = QString::fromStdString(app->name);
        header.icon = QString::fromStdString(app->iconPath);
        header.icon2x = QString::fromStdString(app->iconPath2x);
    }
    for (SearchRow& row : rows) {
        row.icon = header.icon;
        row.icon2x = header.icon2x;
    }
    m_window->showProviderResults(query, order, std::move(header), std::move(rows));
}

} // namespace pomvar::srv
