#include "pomvarsrv/ui/OrganizePane.h"

#include "pomvarsrv/model/ServerModel.h"
#include "pomvarsrv/ui/CategoryNameDialog.h"
#include "pomvarsrv/ui/HiddenAppsBox.h"
#include "pomvarsrv/ui/NewCategoryPrompt.h"
#include "pomvarsrv/ui/OrganizerListModel.h"
#include "pomvarsrv/ui/OrganizerListView.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QMessageBox>
#include <QPushButton>
#include <QShortcut>

namespace pomvar::srv {

namespace {

std::vector<std::string> utf8(const QStringList& keys)
{
    std::vector<std::string> list;
    for (const QString& key : keys)
        list.push_back(key.toStdString());
    return list;
}

QString membersTitle(const QString& category)
{
    return category.isEmpty() ? OrganizePane::tr("Apps in the Category")
                              : OrganizePane::tr("Apps in \u201c%1\u201d").arg(category);
}

} // namespace

OrganizePane::OrganizePane(ServerModel& model, AppPicker::Filter filter, QWidget* parent)
    : QWidget(parent)
    , m_model(model)
    , m_filter(std::move(filter))
{
    using Kind = OrganizerListModel::Kind;
    setObjectName(QStringLiteral("organizePane"));
    m_pins = new OrganizerListView(
        new OrganizerListModel(Kind::apps, true, this), tr("Pinned Apps"), this);
    m_categories = new OrganizerListView(
        new OrganizerListModel(Kind::categories, true, this), tr("Categories"), this);
    m_members = new OrganizerListView(
        new OrganizerListModel(Kind::apps, true, this), membersTitle({}), this);
    m_pins->setObjectName(QStringLiteral("pinnedApps"));
    m_categories->setObjectName(QStringLiteral("categories"));
    m_members->setObjectName(QStringLiteral("categoryApps"));
    m_categories->setSelectionMode(QAbstractItemView::SingleSelection);

    auto* pinApps = button(tr("Pin Apps\u2026"), "pinApps");
    //: Takes the chosen apps out of the pinned apps.
    auto* unpin = button(tr("Unpin"), "unpin");
    auto* pinsUp = button(tr("Move Up"), "pinsUp");
    auto* pinsDown = button(tr("Move Down"), "pinsDown");
    auto* create = button(tr("New Category\u2026"), "newCategory");
    auto* rename = button(tr("Rename\u2026"), "renameCategory");
    auto* remove = button(tr("Delete"), "deleteCategory");
    auto* categoriesUp = button(tr("Move Up"), "categoriesUp");
    auto* categoriesDown = button(tr("Move Down"), "categoriesDown");
    auto* addApps = button(tr("Add Apps\u2026"), "addApps");
    //: Takes the chosen apps out of the category; they stay installed.
    auto* removeApps = button(tr("Remove"), "removeApps");
    auto* membersUp = button(tr("Move Up"), "membersUp");
    auto* membersDown = button(tr("Move Down"), "membersDown");
    m_needPin = { unpin, pinsUp, pinsDown };
    m_needCategory = { rename, remove, addApps, categoriesUp, categoriesDown };
    m_needMember = { removeApps, membersUp, membersDown };

    auto* layout = new QHBoxLayout(this);
    layout->addWidget(group(List::pins, tr("Pinned Apps"), { pinApps, unpin, pinsUp, pinsDown }));
    layout->addWidget(group(List::categories,
                            tr("Categories"),
                            { create, rename, remove, categoriesUp, categoriesDown }));
    m_membersGroup =
        group(List::members, membersTitle({}), { addApps, removeApps, membersUp, membersDown });
    layout->addWidget(m_membersGroup);
    // Made last: Tab reaches it last.
    m_hidden = new HiddenAppsBox(m_model, this);
    layout->addWidget(m_hidden);
    connect(m_hidden, &HiddenAppsBox::changed, this, &OrganizePane::refresh);
    connect(
        m_hidden, &HiddenAppsBox::organizeAppRequested, this, &OrganizePane::organizeAppRequested);

    connect(pinApps, &QPushButton::clicked, this, [this] { pickApps(List::pins); });
    connect(addApps, &QPushButton::clicked, this, [this] { pickApps(List::members); });
    connect(unpin, &QPushButton::clicked, this, [this] { this->remove(List::pins); });
    connect(removeApps, &QPushButton::clicked, this, [this] { this->remove(List::members); });
    connect(create, &QPushButton::clicked, this, &OrganizePane::newCategory);
    connect(rename, &QPushButton::clicked, this, &OrganizePane::renameCategory);
    connect(remove, &QPushButton::clicked, this, &OrganizePane::confirmDelete);
    const std::pair<QPushButton*, std::pair<List, bool>> moves[] = {
        { pinsUp, { List::pins, false } },
        { pinsDown, { List::pins, true } },
        { categoriesUp, { List::categories, false } },
        { categoriesDown, { List::categories, true } },
        { membersUp, { List::members, false } },
        { membersDown, { List::members, true } },
    };
    for (const auto& [moveButton, how] : moves) {
        connect(moveButton, &QPushButton::clicked, this, [this, how = how] {
            move(how.first, how.second);
        });
    }
    auto* renameKey = new QShortcut(QKeySequence(Qt::Key_F2), m_categories);
    renameKey->setContext(Qt::WidgetShortcut);
    connect(renameKey, &QShortcut::activated, this, &OrganizePane::renameCategory);
    connect(m_categories->selectionModel(),
            &QItemSelectionModel::currentChanged,
            this,
            &OrganizePane::refreshMembers);
    refresh();
}

QPushButton* OrganizePane::button(const QString& label, const char* objectName)
{
    auto* made = new QPushButton(label, this);
    made->setObjectName(QString::fromLatin1(objectName));
    made->setAutoDefault(false);
    return made;
}

QGroupBox* OrganizePane::group(List list,
                               const QString& title,
                               const std::vector<QPushButton*>& buttons)
{
    OrganizerListView* listView = view(list);
    auto* box = new QGroupBox(title, this);
    auto* layout = new QVBoxLayout(box);
    layout->addWidget(listView, 1);
    auto* grid = new QGridLayout;
    // Two columns; "Move Up" and "Move Down", the last two, always share the last row.
    for (std::size_t i = 0; i + 2 < buttons.size(); ++i)
        grid->addWidget(buttons[i], int(i / 2), int(i % 2));
    const int last = int(buttons.size() - 1) / 2;
    grid->addWidget(buttons[buttons.size() - 2], last, 0);
    grid->addWidget(buttons.back(), last, 1);
    layout->addLayout(grid);
    OrganizerListModel* model = listView->listModel();
    connect(model,
            &OrganizerListModel::placeRequested,
            this,
            [this, list](const QStringList& keys, const QString& before) {
                place(list, keys, before);
            });
    connect(listView, &OrganizerListView::moveRequested, this, [this, list](bool down) {
        move(list, down);
    });
    connect(listView, &OrganizerListView::removeRequested, this, [this, list] {
        if (list == List::categories)
            confirmDelete();
        else
            remove(list);
    });
    connect(listView->selectionModel(),
            &QItemSelectionModel::selectionChanged,
            this,
            &OrganizePane::updateButtons);
    connect(listView->selectionModel(),
            &QItemSelectionModel::currentChanged,
            this,
            &OrganizePane::updateButtons);
    if (list == List::categories) {
        connect(model,
                &OrganizerListModel::fileRequested,
                this,
                [this](const QStringList& appkeys, const QString& category) {
                    if (m_model.placeMembers(category.toStdString(), utf8(appkeys), {}))
                        selectCategory(category);
                });
    } else {
        connect(listView, &QListView::activated, this, [this, listView] {
            Q_EMIT organizeAppRequested(listView->currentKey());
        });
    }
    return box;
}

OrganizerListView* OrganizePane::view(List list) const
{
    switch (list) {
        case List::pins:
            return m_pins;
        case List::categories:
            return m_categories;
        case List::members:
            break;
    }
    return m_members;
}

QString OrganizePane::currentCategory() const
{
    return m_categories->currentKey();
}

QString OrganizePane::selectedCategory() const
{
    return m_categories->selectedKeys(false).value(0);
}

void OrganizePane::refresh()
{
    const QStringList pins = m_pins->selectedKeys(false);
    const QString currentPin = m_pins->currentKey();
    const QString category = currentCategory();
    m_pins->listModel()->setApps(shown(m_model.store().pins()), m_model.apps());
    m_pins->selectKeys(pins, currentPin);
    std::vector<OrganizerListModel::Row> rows;
    for (const AppCategory& each : m_model.store().categories()) {
        const QString name = QString::fromStdString(each.name);
        rows.push_back({ name, name, {}, {} });
    }
    m_categories->listModel()->setRows(std::move(rows));
    m_categories->selectKeys({ category });
    // A category is always chosen while there is one: its apps are shown beside.
    if (m_categories->selectedKeys(false).isEmpty())
        m_categories->selectKeys({ m_categories->currentKey() });
    refreshMembers();
    m_hidden->refresh();
}

std::vector<std::string> OrganizePane::shown(const std::vector<std::string>& keys) const
{
    std::vector<std::string> found;
    for (const std::string& key : keys) {
        if (m_model.isShown(key))
            found.push_back(key);
    }
    return found;
}

void OrganizePane::refreshMembers()
{
    const QString category = currentCategory();
    const QStringList selected = m_members->selectedKeys(false);
    const QString current = m_members->currentKey();
    const AppCategory* found = m_model.store().category(category.toStdString());
    m_members->listModel()->setApps(shown(found ? found->apps : std::vector<std::string>{}),
                                    m_model.apps());
    m_members->selectKeys(selected, current);
    m_membersGroup->setTitle(membersTitle(category));
    m_members->setAccessibleName(membersTitle(category));
    updateButtons();
}

void OrganizePane::updateButtons()
{
    for (const List list : { List::pins, List::categories, List::members }) {
        const OrganizerListView* listView = view(list);
        const QStringList keys = listView->selectedKeys(false);
        const OrganizerListModel* model = listView->listModel();
        const bool any = !keys.isEmpty();
        auto& buttons = list == List::pins         ? m_needPin
                        : list == List::categories ? m_needCategory
                                                   : m_needMember;
        for (std::size_t i = 0; i + 2 < buttons.size(); ++i)
            buttons[i]->setEnabled(any);
        // Nowhere to move beyond the ends.
        buttons[buttons.size() - 2]->setEnabled(any && model->rowOf(keys.front()) > 0);
        buttons.back()->setEnabled(any && model->rowOf(keys.back()) < model->rowCount() - 1);
    }
}

void OrganizePane::selectCategory(const QString& name)
{
    refresh();
    if (m_categories->listModel()->rowOf(name) < 0) {
        m_pins->setFocus();
        return;
    }
    m_categories->selectKeys({ name });
    refreshMembers();
    m_categories->setFocus();
}

void OrganizePane::move(List list, bool down)
{
    OrganizerListView* listView = view(list);
    const QStringList keys = listView->selectedKeys(false);
    if (keys.isEmpty())
        return;
    const OrganizerListModel* model = listView->listModel();
    const int first = model->rowOf(keys.front());
    const int last = model->rowOf(keys.back());
    if (down ? last == model->rowCount() - 1 : first == 0)
        return;
    // Down: the block goes before the row after the next one (or last).
    place(list, keys, model->keyAt(down ? last + 2 : first - 1));
}

void OrganizePane::place(List list, const QStringList& keys, const QString& before)
{
    const std::string anchor = before.toStdString();
    const std::string category = currentCategory().toStdString();
    switch (list) {
        case List::pins:
            m_model.placePins(utf8(keys), anchor);
            break;
        case List::categories:
            m_model.placeCategories(utf8(keys), anchor);
            break;
        case List::members:
            m_model.placeMembers(category, utf8(keys), anchor);
            break;
    }
    refresh();
    view(list)->selectKeys(keys);
}

void OrganizePane::remove(List list)
{
    const QStringList keys = view(list)->selectedKeys(false);
    if (list == List::pins)
        m_model.unpin(utf8(keys));
    else
        m_model.removeMembers(currentCategory().toStdString(), utf8(keys));
    refresh();
}

void OrganizePane::pickApps(List list)
{
    const QString category = currentCategory();
    const auto* found = m_model.store().category(category.toStdString());
    if (list == List::members && !found)
        return;
    const auto& present = list == List::pins ? m_model.store().pins() : found->apps;
    const QString title =
        list == List::pins ? tr("Pin Apps") : tr("Add Apps to \u201c%1\u201d").arg(category);
    auto* picker = new AppPicker(
        m_model.apps(),
        m_filter,
        { present.begin(), present.end() },
        title,
        //: The picker's button that pins the chosen apps, or adds them to the category.
        list == List::pins ? tr("Pin") : tr("Add"),
        this);
    connect(picker, &AppPicker::chosen, this, [this, list, category](const QStringList& keys) {
        if (list == List::pins)
            m_model.placePins(utf8(keys), {});
        else
            m_model.placeMembers(category.toStdString(), utf8(keys), {});
        refresh();
        view(list)->selectKeys(keys);
    });
    replaceOpenDialog(picker);
    picker->show();
    picker->activateWindow();
}

void OrganizePane::replaceOpenDialog(QWidget* dialog)
{
    if (m_dialog)
        m_dialog->close();
    m_dialog = dialog;
}

void OrganizePane::newCategory()
{
    replaceOpenDialog(NewCategoryPrompt::open(
        m_model, {}, this, [this](const QString& name) { selectCategory(name); }));
}

void OrganizePane::renameCategory()
{
    const QString category = selectedCategory();
    if (category.isEmpty())
        return;
    auto* dialog = new CategoryNameDialog(m_model.store(), tr("Rename Category"), category, this);
    connect(dialog, &CategoryNameDialog::nameChosen, this, [this, category](const QString& name) {
        m_model.renameCategory(category.toStdString(), name.toStdString());
        selectCategory(name);
    });
    replaceOpenDialog(dialog);
    dialog->open();
}

void OrganizePane::confirmDelete()
{
    const QString category = selectedCategory();
    if (category.isEmpty())
        return;
    auto* box = new QMessageBox(QMessageBox::Question,
                                tr("Delete Category"),
                                tr("Delete the category \u201c%1\u201d?").arg(category),
                                QMessageBox::Cancel,
                                this);
    box->setObjectName(QStringLiteral("deleteCategoryConfirmation"));
    box->setTextFormat(Qt::PlainText); // the user's own name, as typed
    box->setInformativeText(tr("The apps in it stay installed."));
    box->setAttribute(Qt::WA_DeleteOnClose);
    QPushButton* confirm = box->addButton(tr("Delete"), QMessageBox::DestructiveRole);
    connect(confirm, &QPushButton::clicked, this, [this, category] {
        m_model.deleteCategory(category.toStdString());
        refresh();
    });
    replaceOpenDialog(box);
    box->open();
}

} // namespace pomvar::srv
