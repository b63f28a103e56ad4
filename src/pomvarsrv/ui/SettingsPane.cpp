#include "pomvarsrv/ui/SettingsPane.h"

#include "pomvarsrv/model/ServerModel.h"
#include "pomvarsrv/ui/UiLog.h"
#include "pomvarsrv/ui/UserNotice.h"

#include <QCheckBox>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

#include <utility>

namespace pomvar::srv {

SettingsPane::SettingsPane(ServerModel& model, AutostartEntry autostart, QWidget* parent)
    : QWidget(parent)
    , m_model(model)
    , m_autostart(std::move(autostart))
    //: Menu density: rows of the normal height.
    , m_normal(new QRadioButton(tr("Normal"), this))
    //: Menu density: rows of a smaller height.
    , m_compact(new QRadioButton(tr("Compact"), this))
    , m_animation(checkBox(tr("Animation effects"), "animationFx"))
    , m_saveExpanded(checkBox(tr("Remember expanded categories"), "saveExpAppCats"))
    , m_saveLastMenu(checkBox(tr("Remember last menu"), "saveLastMenu"))
    , m_oneExpanded(checkBox(tr("Only one category open at a time"), "oneExpAppCat"))
    , m_atLogin(checkBox(tr("Start Pomvar at login"), "startAtLogin"))
    , m_clearRecent(new QPushButton(tr("Clear Recent Apps"), this))
    //: Gives back the recent apps just cleared.
    , m_undoClear(new QPushButton(tr("Undo"), this))
{
    setObjectName(QStringLiteral("settingsPane"));
    m_normal->setObjectName(QStringLiteral("densityNormal"));
    m_compact->setObjectName(QStringLiteral("densityCompact"));
    m_clearRecent->setObjectName(QStringLiteral("clearRecent"));
    m_clearRecent->setAutoDefault(false);
    m_undoClear->setObjectName(QStringLiteral("undoClearRecent"));
    m_undoClear->setAccessibleName(tr("Undo Clear Recent Apps"));
    m_undoClear->setAutoDefault(false);

    auto* density = new QGroupBox(tr("Menu density"), this);
    auto* densityLayout = new QHBoxLayout(density);
    densityLayout->addWidget(m_normal);
    densityLayout->addWidget(m_compact);
    densityLayout->addStretch(1);
    auto* menus = new QGroupBox(tr("Menus"), this);
    auto* menusLayout = new QVBoxLayout(menus);
    for (QCheckBox* box : { m_animation, m_saveExpanded, m_saveLastMenu, m_oneExpanded })
        menusLayout->addWidget(box);
    //: The settings that concern the desktop session.
    auto* system = new QGroupBox(tr("System"), this);
    auto* systemLayout = new QVBoxLayout(system);
    systemLayout->addWidget(m_atLogin);
    auto* recent = new QHBoxLayout;
    recent->addWidget(m_clearRecent);
    recent->addWidget(m_undoClear);
    recent->addStretch(1);
    systemLayout->addLayout(recent);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(density);
    layout->addWidget(menus);
    layout->addWidget(system);
    layout->addStretch(1);

    connect(m_compact, &QRadioButton::toggled, this, &SettingsPane::store);
    for (QCheckBox* box : { m_animation, m_saveExpanded, m_saveLastMenu, m_oneExpanded })
        connect(box, &QCheckBox::toggled, this, &SettingsPane::store);
    connect(m_atLogin, &QCheckBox::toggled, this, [this](bool enabled) {
        QString why;
        if (!m_autostart.setEnabled(enabled, AutostartEntry::installedFrontEnd(), &why)) {
            qCWarning(lcUi).noquote()
                << "cannot change the autostart entry" << m_autostart.path() << why;
            const QString text =
                tr("The autostart entry %1 could not be changed.").arg(m_autostart.path());
            UserNotice::show(tr("Pomvar Organizer"),
                             why.isEmpty() ? text : text + QStringLiteral("\n\n") + why);
        }
        refresh();
    });
    connect(m_clearRecent, &QPushButton::clicked, this, [this] {
        m_cleared = m_model.store().recent();
        m_model.clearRecent();
        refresh();
        m_undoClear->setFocus();
    });
    connect(m_undoClear, &QPushButton::clicked, this, [this] {
        if (m_cleared)
            m_model.restoreRecent(*std::exchange(m_cleared, std::nullopt));
        refresh();
        m_clearRecent->setFocus();
    });
    refresh();
}

QCheckBox* SettingsPane::checkBox(const QString& label, const char* objectName)
{
    auto* box = new QCheckBox(label, this);
    box->setObjectName(QString::fromLatin1(objectName));
    return box;
}

void SettingsPane::refresh()
{
    const UserPrefs& prefs = m_model.store().prefs();
    const std::pair<QCheckBox*, bool> states[] = {
        { m_animation, prefs.animationFx },     { m_saveExpanded, prefs.saveExpAppCats },
        { m_saveLastMenu, prefs.saveLastMenu }, { m_oneExpanded, prefs.oneExpAppCat },
        { m_atLogin, m_autostart.isEnabled() },
    };
    for (const auto& [box, checked] : states) {
        const QSignalBlocker quiet(box);
        box->setChecked(checked);
    }
    const QSignalBlocker quiet(m_compact);
    // Normal = 0, Compact = 1.
    (prefs.menuDensity == 1 ? m_compact : m_normal)->setChecked(true);
    // Where the keyboard starts when the pane is shown.
    setFocusProxy(prefs.menuDensity == 1 ? m_compact : m_normal);
    m_clearRecent->setEnabled(!m_model.store().recent().empty());
    m_undoClear->setVisible(m_cleared.has_value());
}

void SettingsPane::forgetUndo()
{
    m_cleared.reset();
    refresh();
}

void SettingsPane::addSection(QWidget* section)
{
    auto* column = static_cast<QVBoxLayout*>(layout());
    // Before the stretch that keeps the groups at the top.
    column->insertWidget(column->count() - 1, section);
}

void SettingsPane::store()
{
    UserPrefs prefs = m_model.store().prefs();
    prefs.menuDensity = m_compact->isChecked() ? 1 : 0;
    prefs.animationFx = m_animation->isChecked();
    prefs.saveExpAppCats = m_saveExpanded->isChecked();
    prefs.saveLastMenu = m_saveLastMenu->isChecked();
    prefs.oneExpAppCat = m_oneExpanded->isChecked();
    m_model.setPrefs(prefs);
}

} // namespace pomvar::srv
