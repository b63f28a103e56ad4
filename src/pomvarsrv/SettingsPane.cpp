#include "SettingsPane.h"

#include "ServerLog.h"
#include "ServerModel.h"
#include "UserNotice.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace pomvar::srv {

SettingsPane::SettingsPane(ServerModel& model, AutostartEntry autostart, QWidget* parent)
    : QWidget(parent)
    , m_model(model)
    , m_autostart(std::move(autostart))
    , m_density(new QComboBox(this))
    , m_animation(checkBox(QStringLiteral("Animation effects"), "animationFx"))
    , m_saveExpanded(checkBox(QStringLiteral("Remember expanded categories"), "saveExpAppCats"))
    , m_saveLastMenu(checkBox(QStringLiteral("Remember last menu"), "saveLastMenu"))
    , m_oneExpanded(checkBox(QStringLiteral("Only one category open at a time"), "oneExpAppCat"))
    , m_atLogin(checkBox(QStringLiteral("Start Pomvar at login"), "startAtLogin"))
    , m_clearRecent(new QPushButton(QStringLiteral("Clear Recent Apps"), this))
{
    setObjectName(QStringLiteral("settingsPane"));
    // The index is the stored value: Normal = 0, Compact = 1.
    m_density->addItems({ QStringLiteral("Normal"), QStringLiteral("Compact") });
    m_density->setObjectName(QStringLiteral("menuDensity"));
    m_density->setAccessibleName(QStringLiteral("Menu density"));
    setFocusProxy(m_density);
    m_clearRecent->setObjectName(QStringLiteral("clearRecent"));
    m_clearRecent->setAutoDefault(false);

    auto* menus = new QGroupBox(QStringLiteral("Menus"), this);
    auto* form = new QFormLayout(menus);
    form->setFieldGrowthPolicy(QFormLayout::FieldsStayAtSizeHint);
    auto* densityLabel = new QLabel(QStringLiteral("Menu density"), menus);
    densityLabel->setBuddy(m_density);
    form->addRow(densityLabel, m_density);
    for (QCheckBox* box : { m_animation, m_saveExpanded, m_saveLastMenu, m_oneExpanded })
        form->addRow(box);
    auto* system = new QGroupBox(QStringLiteral("System"), this);
    auto* systemLayout = new QVBoxLayout(system);
    systemLayout->addWidget(m_atLogin);
    systemLayout->addWidget(m_clearRecent, 0, Qt::AlignLeft);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(menus);
    layout->addWidget(system);
    layout->addStretch(1);

    connect(m_density, &QComboBox::currentIndexChanged, this, &SettingsPane::store);
    for (QCheckBox* box : { m_animation, m_saveExpanded, m_saveLastMenu, m_oneExpanded })
        connect(box, &QCheckBox::toggled, this, &SettingsPane::store);
    connect(m_atLogin, &QCheckBox::toggled, this, [this](bool enabled) {
        if (!m_autostart.setEnabled(enabled)) {
            qCWarning(lcServer) << "cannot change the autostart entry" << m_autostart.path();
            UserNotice::show(QStringLiteral("Pomvar Organizer"),
                             QStringLiteral("The autostart entry %1 could not be changed.")
                                 .arg(m_autostart.path()));
        }
        refresh();
    });
    connect(m_clearRecent, &QPushButton::clicked, this, [this] {
        m_model.clearRecent();
        refresh();
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
    const QSignalBlocker quiet(m_density);
    m_density->setCurrentIndex(prefs.menuDensity == 1 ? 1 : 0);
    m_clearRecent->setEnabled(!m_model.store().recent().empty());
}

void SettingsPane::store()
{
    UserPrefs prefs = m_model.store().prefs();
    prefs.menuDensity = m_density->currentIndex();
    prefs.animationFx = m_animation->isChecked();
    prefs.saveExpAppCats = m_saveExpanded->isChecked();
    prefs.saveLastMenu = m_saveLastMenu->isChecked();
    prefs.oneExpAppCat = m_oneExpanded->isChecked();
    m_model.setPrefs(prefs);
}

} // namespace pomvar::srv
