#include "pomvarsrv/ui/OrganizeAppPane.h"

#include "pomvarsrv/model/ServerModel.h"
#include "pomvarsrv/ui/NewCategoryPrompt.h"

#include <QCheckBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QIcon>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QVBoxLayout>

#include <algorithm>

namespace pomvar::srv {

OrganizeAppPane::OrganizeAppPane(ServerModel& model,
                                 AppPicker::Filter filter,
                                 GenericName genericName,
                                 QWidget* parent)
    : QWidget(parent)
    , m_model(model)
    , m_filter(std::move(filter))
    , m_genericName(std::move(genericName))
    , m_icon(new QLabel(this))
    , m_name(new QLabel(this))
    , m_genericNameLabel(new QLabel(this))
    , m_id(new QLabel(this))
    , m_pinned(new QCheckBox(tr("Pinned"), this))
    //: Leaves the app out of Pomvar's menus and search; other menus of the desktop keep it.
    , m_hidden(new QCheckBox(tr("Hidden"), this))
    , m_categoriesGroup(new QGroupBox(tr("Categories"), this))
    , m_categories(new QVBoxLayout)
    , m_newCategory(new QPushButton(tr("New Category\u2026"), this))
    , m_info(new QPushButton(tr("Get Info"), this))
    , m_edit(new QPushButton(tr("Edit\u2026"), this))
    , m_choose(new QPushButton(tr("Choose App\u2026"), this))
{
    setObjectName(QStringLiteral("organizeAppPane"));
    m_icon->setFixedSize(48, 48);
    m_name->setObjectName(QStringLiteral("appName"));
    QFont bold = m_name->font();
    bold.setBold(true);
    bold.setPointSizeF(bold.pointSizeF() * 1.3);
    m_name->setFont(bold);
    m_genericNameLabel->setObjectName(QStringLiteral("appGenericName"));
    m_id->setObjectName(QStringLiteral("appDesktopId"));
    m_id->setTextInteractionFlags(Qt::TextSelectableByMouse);
    // Texts of a desktop entry, which any program may write: never laid out as markup.
    for (QLabel* label : { m_name, m_genericNameLabel, m_id })
        label->setTextFormat(Qt::PlainText);
    m_pinned->setObjectName(QStringLiteral("appPinned"));
    m_newCategory->setObjectName(QStringLiteral("appNewCategory"));
    m_info->setObjectName(QStringLiteral("appGetInfo"));
    m_hidden->setObjectName(QStringLiteral("appHidden"));
    m_edit->setObjectName(QStringLiteral("appEdit"));
    m_choose->setObjectName(QStringLiteral("chooseApp"));
    for (QPushButton* each : { m_newCategory, m_info, m_edit, m_choose })
        each->setAutoDefault(false);

    auto* header = new QHBoxLayout;
    header->addWidget(m_icon, 0, Qt::AlignTop);
    auto* facts = new QFormLayout;
    facts->addRow(m_name);
    facts->addRow(tr("Generic name:"), m_genericNameLabel);
    facts->addRow(tr("Desktop file ID:"), m_id);
    header->addLayout(facts, 1);
    header->addWidget(m_choose, 0, Qt::AlignTop);

    auto* boxes = new QWidget;
    boxes->setLayout(m_categories);
    m_categories->addStretch(1);
    auto* scroll = new QScrollArea(m_categoriesGroup);
    scroll->setWidget(boxes);
    scroll->setWidgetResizable(true);
    scroll->setFrameShape(QFrame::NoFrame);
    // The group's own background shows through.
    scroll->viewport()->setAutoFillBackground(false);
    boxes->setAutoFillBackground(false);
    auto* groupLayout = new QVBoxLayout(m_categoriesGroup);
    groupLayout->addWidget(scroll, 1);
    groupLayout->addWidget(m_newCategory, 0, Qt::AlignLeft);

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(header);
    auto* switches = new QHBoxLayout;
    switches->addWidget(m_pinned);
    switches->addWidget(m_hidden);
    switches->addStretch(1);
    layout->addLayout(switches);
    layout->addWidget(m_categoriesGroup, 1);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(m_info);
    buttons->addWidget(m_edit);
    buttons->addStretch(1);
    layout->addLayout(buttons);

    connect(m_choose, &QPushButton::clicked, this, &OrganizeAppPane::chooseApp);
    connect(m_newCategory, &QPushButton::clicked, this, &OrganizeAppPane::newCategory);
    connect(m_info, &QPushButton::clicked, this, [this] { Q_EMIT infoRequested(m_appkey); });
    connect(m_edit, &QPushButton::clicked, this, [this] { Q_EMIT editRequested(m_appkey); });
    connect(m_hidden, &QCheckBox::toggled, this, [this](bool hidden) {
        m_model.setHidden(m_appkey.toStdString(), hidden);
    });
    connect(m_pinned, &QCheckBox::toggled, this, [this](bool pinned) {
        const std::vector<std::string> key{ m_appkey.toStdString() };
        if (pinned)
            m_model.placePins(key, {});
        else
            m_model.unpin(key);
    });
    refresh();
}

void OrganizeAppPane::setApp(const QString& appkey)
{
    m_appkey = m_model.apps().contains(appkey.toStdString()) ? appkey : QString();
    refresh();
}

void OrganizeAppPane::refresh()
{
    const std::string key = m_appkey.toStdString();
    const AppEntry* app = m_model.apps().find(key);
    if (!app)
        m_appkey.clear();
    m_name->setText(app ? QString::fromStdString(app->name) : tr("No app chosen"));
    m_genericNameLabel->setText(app ? m_genericName(key) : QString());
    m_id->setText(m_appkey);
    QIcon icon;
    if (app) {
        icon.addFile(QString::fromStdString(app->iconPath), QSize(24, 24));
        icon.addFile(QString::fromStdString(app->iconPath2x), QSize(48, 48));
    }
    m_icon->setPixmap(icon.pixmap(48, 48));
    for (const auto& [box, checked] : { std::pair(m_pinned, app && m_model.store().isPinned(key)),
                                        { m_hidden, app && m_model.store().isHidden(key) } }) {
        const QSignalBlocker quiet(box);
        box->setChecked(checked);
    }
    // One check box per category; made again only when the categories changed, so that the
    // focus stays where it is.
    std::vector<QCheckBox*> boxes;
    for (int i = 0; i + 1 < m_categories->count(); ++i)
        boxes.push_back(static_cast<QCheckBox*>(m_categories->itemAt(i)->widget()));
    const auto& categories = m_model.store().categories();
    const bool same = std::equal(
        boxes.begin(), boxes.end(), categories.begin(), categories.end(), [](auto* box, auto& c) {
            return box->text() == QString::fromStdString(c.name);
        });
    if (!same) {
        for (QCheckBox* box : boxes)
            delete box;
        boxes.clear();
        for (const AppCategory& category : categories) {
            auto* box = new QCheckBox(QString::fromStdString(category.name));
            box->setObjectName(QStringLiteral("appCategory"));
            connect(box, &QCheckBox::toggled, this, [this, name = category.name](bool member) {
                setMember(name, member);
            });
            m_categories->insertWidget(int(boxes.size()), box);
            boxes.push_back(box);
        }
    }
    for (std::size_t i = 0; i < boxes.size(); ++i) {
        const auto& apps = categories[i].apps;
        const QSignalBlocker quiet(boxes[i]);
        boxes[i]->setChecked(app && std::find(apps.begin(), apps.end(), key) != apps.end());
    }
    for (QWidget* each :
         std::initializer_list<QWidget*>{ m_pinned, m_hidden, m_categoriesGroup, m_info, m_edit })
        each->setEnabled(app != nullptr);
    // Where the keyboard starts when the pane is shown.
    setFocusProxy(app ? static_cast<QWidget*>(m_pinned) : m_choose);
}

void OrganizeAppPane::setMember(const std::string& category, bool member)
{
    const std::vector<std::string> key{ m_appkey.toStdString() };
    if (member)
        m_model.placeMembers(category, key, {});
    else
        m_model.removeMembers(category, key);
}

void OrganizeAppPane::chooseApp()
{
    //: The picker's button that shows the chosen app in this pane.
    const QString choose = tr("Choose");
    auto* picker = new AppPicker(m_model.apps(), m_filter, {}, tr("Choose App"), choose, this);
    connect(picker, &AppPicker::chosen, this, [this](const QStringList& keys) {
        setApp(keys.front());
    });
    if (m_dialog)
        m_dialog->close();
    m_dialog = picker;
    picker->show();
    picker->activateWindow();
}

void OrganizeAppPane::newCategory()
{
    if (m_dialog)
        m_dialog->close();
    m_dialog =
        NewCategoryPrompt::open(m_model, m_appkey, this, [this](const QString&) { refresh(); });
}

} // namespace pomvar::srv
