#include "pomvarsrv/ui/SearchSettingsBox.h"

#include "pomvarsrv/model/ServerModel.h"
#include "pomvarsrv/ui/ShortcutRecorder.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace pomvar::srv {

SearchSettingsBox::SearchSettingsBox(ServerModel& model, Services services, QWidget* parent)
    //: The settings of the search window.
    : QGroupBox(tr("Search"), parent)
    , m_model(model)
    , m_services(std::move(services))
    , m_shortcut(new ShortcutRecorder(this))
    //: Turns the search shortcut off.
    , m_none(new QPushButton(tr("None"), this))
    , m_state(new QLabel(this))
    , m_providers(new QCheckBox(tr("Show results from other apps"), this))
    , m_providerList(new QVBoxLayout)
{
    setObjectName(QStringLiteral("searchSettings"));
    m_shortcut->setObjectName(QStringLiteral("searchShortcut"));
    m_shortcut->setAccessibleName(tr("Search shortcut"));
    m_none->setObjectName(QStringLiteral("searchShortcutNone"));
    m_none->setAccessibleName(tr("No search shortcut"));
    m_none->setAutoDefault(false);
    m_state->setObjectName(QStringLiteral("searchShortcutState"));
    m_state->setWordWrap(true);
    m_state->setTextFormat(Qt::PlainText);
    m_providers->setObjectName(QStringLiteral("searchProviders"));
    auto* label = new QLabel(tr("Search shortcut:"), this);
    label->setBuddy(m_shortcut);
    auto* keys = new QHBoxLayout;
    keys->addWidget(label);
    keys->addWidget(m_shortcut);
    keys->addWidget(m_none);
    keys->addStretch(1);
    m_providerList->setContentsMargins(20, 0, 0, 0);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(keys);
    layout->addWidget(m_state);
    layout->addWidget(m_providers);
    layout->addLayout(m_providerList);

    connect(m_shortcut, &ShortcutRecorder::recorded, this, [this](const QKeySequence& keys) {
        storeShortcut(keys.toString(QKeySequence::PortableText));
    });
    connect(m_none, &QPushButton::clicked, this, [this] { storeShortcut({}); });
    connect(m_providers, &QCheckBox::toggled, this, &SearchSettingsBox::storeProviders);
}

void SearchSettingsBox::showEvent(QShowEvent* event)
{
    refresh();
    QGroupBox::showEvent(event);
}

void SearchSettingsBox::refresh()
{
    const SearchPrefs& prefs = m_model.store().searchPrefs();
    m_shortcut->setSequence(QKeySequence::fromString(QString::fromStdString(prefs.shortcut),
                                                     QKeySequence::PortableText));
    m_none->setEnabled(!prefs.shortcut.empty());
    m_state->setText(m_services.shortcutState());
    {
        const QSignalBlocker quiet(m_providers);
        m_providers->setChecked(prefs.providers);
    }
    for (auto& [id, box] : m_providerBoxes)
        delete box;
    m_providerBoxes.clear();
    for (const Provider& provider : m_services.providers()) {
        auto* box = new QCheckBox(provider.name, this);
        box->setObjectName(QStringLiteral("searchProvider"));
        box->setChecked(
            prefs.providerEnabled(provider.id.toStdString(), provider.enabledByDefault));
        box->setEnabled(prefs.providers);
        connect(box, &QCheckBox::toggled, this, &SearchSettingsBox::storeProviders);
        m_providerList->addWidget(box);
        m_providerBoxes.emplace_back(provider.id, box);
    }
}

void SearchSettingsBox::storeShortcut(const QString& portableText)
{
    SearchPrefs prefs = m_model.store().searchPrefs();
    prefs.shortcut = portableText.toStdString();
    m_model.setSearchPrefs(prefs);
    m_services.apply();
    refresh();
}

void SearchSettingsBox::storeProviders()
{
    SearchPrefs prefs = m_model.store().searchPrefs();
    prefs.providers = m_providers->isChecked();
    for (const auto& [id, box] : m_providerBoxes)
        prefs.providerChoices[id.toStdString()] = box->isChecked();
    m_model.setSearchPrefs(prefs);
    m_services.apply();
    for (const auto& [id, box] : m_providerBoxes)
        box->setEnabled(prefs.providers);
}

} // namespace pomvar::srv
