#include "pomvarsrv/ui/AboutWindow.h"

#include "pomvarsrv/catalogue/AppCatalogue.h"

#include "wire/Version.h"

#include <nlohmann/json.hpp>

#include <QBoxLayout>
#include <QLabel>
#include <QPushButton>

namespace pomvar::srv {

AboutWindow::AboutWindow(QWidget* parent)
    : ServerWindow(QStringLiteral("aboutWindow"), parent)
{
    setTitle(tr("About Pomvar"));
    QLabel* icon = pomvarIconLabel(QStringLiteral("aboutIcon"));
    QLabel* name = headingLabel(QStringLiteral("aboutName"));
    name->setText(QStringLiteral("Pomvar"));
    const std::string_view version = pomvar::version();
    QLabel* versionLine = textLabel(QStringLiteral("aboutVersion"), true);
    versionLine->setText(
        tr("Version %1").arg(QString::fromUtf8(version.data(), qsizetype(version.size()))));
    QLabel* what = textLabel(QStringLiteral("aboutWhat"));
    what->setText(tr("An application launcher for the Linux desktop: your apps, pinned and in "
                     "categories of your own, a click away in the tray."));
    QLabel* licence = textLabel(QStringLiteral("aboutLicence"));
    licence->setText(tr("Free software under the GNU General Public License, version 3 or later."));
    QLabel* libraries = textLabel(QStringLiteral("aboutLibraries"), true);
    //: %1: the libraries and their versions, as "Qt 6.4.2, GLib 2.74.6".
    libraries->setText(tr("Built with %1.").arg(AboutWindow::libraries().join(u", ")));

    auto* heading = new QHBoxLayout;
    auto* lines = new QVBoxLayout;
    for (QLabel* line : { name, versionLine, what, licence, libraries })
        lines->addWidget(line);
    heading->addWidget(icon, 0, Qt::AlignTop);
    heading->addLayout(lines, 1);
    body()->addLayout(heading);

    QPushButton* close = addButton(tr("&Close"), QStringLiteral("close"));
    close->setFocus();
    connect(close, &QPushButton::clicked, this, &QDialog::close);
}

QStringList AboutWindow::libraries()
{
    return {
        QStringLiteral("Qt %1").arg(QString::fromLatin1(qVersion())),
        QStringLiteral("GLib %1").arg(AppCatalogue::glibVersion()),
        QStringLiteral("nlohmann/json %1.%2.%3")
            .arg(NLOHMANN_JSON_VERSION_MAJOR)
            .arg(NLOHMANN_JSON_VERSION_MINOR)
            .arg(NLOHMANN_JSON_VERSION_PATCH),
        QStringLiteral("simdjson %1").arg(QStringLiteral(POMVAR_SIMDJSON_VERSION)),
    };
}

} // namespace pomvar::srv
