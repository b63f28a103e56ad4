#include "pomvarsrv/ui/SearchWindow.h"

#include "pomvarsrv/ui/SearchResultDelegate.h"
#include "pomvarsrv/ui/WindowAccessible.h"
#include "pomvarsrv/ui/WindowPresenter.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QListView>
#include <QVBoxLayout>

namespace pomvar::srv {

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

void SearchWindow::refresh()
{
    m_model.setRows(m_results(m_field->text()));
    select(0);
}

void SearchWindow::select(int row)
{
    const int rows = m_model.rowCount();
    if (rows == 0)
        return;
    m_list->setCurrentIndex(m_model.index(std::clamp(row, 0, rows - 1)));
}

void SearchWindow::showActions(const QModelIndex& index)
{
    if (!index.isValid() || !m_actionsOf.isEmpty())
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
    if (!index.isValid())
        return;
    const QString key = index.data(SearchResults::KeyRole).toString();
    if (m_actionsOf.isEmpty())
        Q_EMIT launchRequested(key);
    else
        Q_EMIT actionRequested(m_actionsOf, key);
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
            select(current - 1);
            return true;
        case Qt::Key_Down:
            select(current + 1);
            return true;
        case Qt::Key_PageUp:
            select(current - page);
            return true;
        case Qt::Key_PageDown:
            select(current + page);
            return true;
        case Qt::Key_Home:
            select(0);
            return true;
        case Qt::Key_End:
            select(m_model.rowCount() - 1);
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
                break;
            showActions(m_list->currentIndex());
            return true;
        case Qt::Key_Left:
            if (m_actionsOf.isEmpty())
                break;
            m_actionsOf.clear();
            refresh();
            return true;
        case Qt::Key_Escape:
            if (m_field->text().isEmpty())
                close();
            else
                m_field->clear();
            return true;
        default:
            break;
    }
    return QWidget::eventFilter(watched, event);
}

} // namespace pomvar::srv
