#include "pomvarsrv/ui/SearchWindow.h"

#include "pomvarsrv/ui/SearchResultDelegate.h"
#include "pomvarsrv/ui/WindowAccessible.h"
#include "pomvarsrv/ui/WindowPresenter.h"

#include <QApplication>
#include <QClipboard>
#include <QKeyEvent>
#include <QLineEdit>
#include <QListView>
#include <QScopedValueRollback>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace pomvar::srv {

namespace {

constexpr int kHandOverLimitMs = 2000;

SearchRow::Kind kindOf(const QModelIndex& index)
{
    return SearchRow::Kind(index.data(SearchResults::KindRole).toInt());
}

} // namespace

SearchWindow::SearchWindow(Results results, Actions actions, QWidget* parent)
    : QWidget(parent, Qt::Window | Qt::FramelessWindowHint)
    , m_results(std::move(results))
    , m_actions(std::move(actions))
    , m_field(new QLineEdit(this))
    , m_list(new QListView(this))
{
    WindowAccessible::install();
    setObjectName(QStringLiteral("searchWindow"));
    setWindowTitle(tr("Search Apps"));
    setAccessibleName(windowTitle());
    setFixedSize(kWidth, kHeight);
    m_field->setObjectName(QStringLiteral("searchField"));
    m_field->setPlaceholderText(windowTitle());
    m_field->setAccessibleName(windowTitle());
    m_field->installEventFilter(this);
    m_list->setObjectName(QStringLiteral("searchResults"));
    m_list->setAccessibleName(tr("Results"));
    m_list->setModel(&m_model);
    m_list->setItemDelegate(new SearchResultDelegate(m_list));
    m_list->setUniformItemSizes(true);
    m_list->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_list->setContextMenuPolicy(Qt::CustomContextMenu);
    m_list->installEventFilter(this);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(8, 8, 8, 8);
    layout->addWidget(m_field);
    layout->addWidget(m_list, 1);
    m_handOverEnd.setSingleShot(true);
    m_handOverEnd.setInterval(kHandOverLimitMs);
    connect(&m_handOverEnd, &QTimer::timeout, this, &SearchWindow::endHandOver);
    connect(m_field, &QLineEdit::textChanged, this, [this] {
        m_actionsOf.clear();
        refresh();
    });
    connect(m_list, &QListView::clicked, this, &SearchWindow::activate);
    connect(m_list, &QListView::customContextMenuRequested, this, [this](const QPoint& at) {
        showActions(m_list->indexAt(at));
    });
}

void SearchWindow::present()
{
    m_actionsOf.clear();
    refresh();
    WindowPresenter::present(*this, WindowPresenter::Placement::upperThird);
    m_field->setFocus();
    m_field->selectAll();
}

void SearchWindow::presentAt(const QPoint& topLeft)
{
    m_actionsOf.clear();
    if (m_field->text().isEmpty())
        refresh();
    else
        m_field->clear();
    WindowPresenter::presentAt(*this, topLeft);
    m_field->setFocus();
}

QString SearchWindow::query() const
{
    return m_field->text();
}

void SearchWindow::beginHandOver()
{
    m_handingOver = true;
    m_kept.clear();
    m_handOverEnd.start();
}

void SearchWindow::replayKey(int key, int modifiers, const QString& text)
{
    type({ key, modifiers, text });
}

void SearchWindow::endHandOver()
{
    if (!m_handingOver)
        return;
    m_handingOver = false;
    m_handOverEnd.stop();
    const std::vector<Key> kept = std::exchange(m_kept, {});
    for (const Key& key : kept)
        type(key);
}

void SearchWindow::type(const Key& key)
{
    const QScopedValueRollback replaying(m_replaying, true);
    QKeyEvent press(QEvent::KeyPress, key.key, Qt::KeyboardModifiers(key.modifiers), key.text);
    QCoreApplication::sendEvent(m_field, &press);
}

void SearchWindow::refresh()
{
    const QString query = m_field->text();
    m_sections.reset(query, m_results(query));
    m_model.setRows(m_sections.rows());
    select(0);
    Q_EMIT queryChanged(query);
}

void SearchWindow::showCalculation(const QString& query, std::optional<SearchRow> answer)
{
    if (query != m_sections.query())
        return;
    m_sections.setCalculation(std::move(answer));
    showSections();
}

void SearchWindow::showProviderResults(const QString& query,
                                       int order,
                                       SearchRow header,
                                       std::vector<SearchRow> results)
{
    if (query != m_sections.query())
        return;
    m_sections.setProviderResults(order, std::move(header), std::move(results));
    showSections();
}

void SearchWindow::showSections()
{
    if (!m_actionsOf.isEmpty())
        return;
    // The first row stays selected as rows come in above it; another row keeps the selection.
    const QModelIndex current = m_list->currentIndex();
    const bool first = !current.isValid() || current.row() == m_model.selectableRow(0, 1);
    const SearchRow kept = first ? SearchRow() : m_model.rows()[std::size_t(current.row())];
    m_model.setRows(m_sections.rows());
    const auto& rows = m_model.rows();
    const auto at = std::find(rows.begin(), rows.end(), kept);
    select(first || at == rows.end() ? 0 : int(at - rows.begin()));
}

void SearchWindow::select(int row, int step)
{
    const int rows = m_model.rowCount();
    if (rows == 0)
        return;
    row = std::clamp(row, 0, rows - 1);
    int selectable = m_model.selectableRow(row, step);
    if (selectable < 0)
        selectable = m_model.selectableRow(row, -step);
    if (selectable >= 0)
        m_list->setCurrentIndex(m_model.index(selectable));
}

void SearchWindow::showActions(const QModelIndex& index)
{
    if (!index.isValid() || !m_actionsOf.isEmpty() || kindOf(index) != SearchRow::Kind::app)
        return;
    const QString appkey = index.data(SearchResults::KeyRole).toString();
    std::vector<SearchRow> actions = m_actions(appkey);
    if (actions.empty())
        return;
    m_actionsOf = appkey;
    m_model.setRows(std::move(actions));
    select(0);
}

void SearchWindow::activate(const QModelIndex& index)
{
    if (!index.isValid() || !(index.flags() & Qt::ItemIsEnabled))
        return;
    const QString key = index.data(SearchResults::KeyRole).toString();
    switch (kindOf(index)) {
        case SearchRow::Kind::app:
            Q_EMIT launchRequested(key);
            break;
        case SearchRow::Kind::action:
            Q_EMIT actionRequested(m_actionsOf, key);
            break;
        case SearchRow::Kind::calculation:
            QGuiApplication::clipboard()->setText(index.data().toString());
            break;
        case SearchRow::Kind::providerResult:
            Q_EMIT providerResultActivated(
                index.data(SearchResults::SourceRole).toString(), key, m_sections.query());
            break;
        case SearchRow::Kind::providerHeader:
            return;
    }
    close();
}

bool SearchWindow::event(QEvent* event)
{
    if (event->type() == QEvent::WindowDeactivate && isVisible())
        close();
    return QWidget::event(event);
}

bool SearchWindow::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() != QEvent::KeyPress)
        return QWidget::eventFilter(watched, event);
    auto* key = static_cast<QKeyEvent*>(event);
    if (m_handingOver && !m_replaying) {
        m_kept.push_back({ key->key(), int(key->modifiers()), key->text() });
        return true;
    }
    return navigate(key) || QWidget::eventFilter(watched, event);
}

bool SearchWindow::navigate(QKeyEvent* key)
{
    const int current = m_list->currentIndex().row();
    const int page = std::max(1, m_list->viewport()->height() / SearchResultDelegate::kRowHeight);
    const bool alt = key->modifiers() & Qt::AltModifier;
    if (key->modifiers() & Qt::ControlModifier && key->key() >= Qt::Key_1 &&
        key->key() <= Qt::Key_9) {
        activate(m_model.index(key->key() - Qt::Key_1));
        return true;
    }
    switch (key->key()) {
        case Qt::Key_Up:
            select(current - 1, -1);
            return true;
        case Qt::Key_Down:
            select(current + 1);
            return true;
        case Qt::Key_PageUp:
            select(current - page, -1);
            return true;
        case Qt::Key_PageDown:
            select(current + page);
            return true;
        case Qt::Key_Home:
            select(0);
            return true;
        case Qt::Key_End:
            select(m_model.rowCount() - 1, -1);
            return true;
        case Qt::Key_Return:
        case Qt::Key_Enter:
            if (alt)
                showActions(m_list->currentIndex());
            else
                activate(m_list->currentIndex());
            return true;
        case Qt::Key_Right:
            if (m_field->cursorPosition() < m_field->text().size())
                return false;
            showActions(m_list->currentIndex());
            return true;
        case Qt::Key_Left:
            if (m_actionsOf.isEmpty())
                return false;
            m_actionsOf.clear();
            showSections();
            return true;
        case Qt::Key_Escape:
            if (m_field->text().isEmpty())
                close();
            else
                m_field->clear();
            return true;
        default:
            return false;
    }
}

} // namespace pomvar::srv
