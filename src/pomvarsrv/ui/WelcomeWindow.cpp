#include "pomvarsrv/ui/WelcomeWindow.h"

#include <QBoxLayout>
#include <QLabel>
#include <QPushButton>

namespace pomvar::srv {

WelcomeWindow::WelcomeWindow(QWidget* parent)
    : ServerWindow(QStringLiteral("welcomeWindow"), parent)
{
    setTitle(tr("Welcome to Pomvar"));
    QLabel* icon = pomvarIconLabel(QStringLiteral("welcomeIcon"));
    QLabel* heading = headingLabel(QStringLiteral("welcomeHeading"));
    heading->setText(windowTitle());
    const QString lines[] = {
        tr("Pomvar opens your apps from one panel: your pinned apps and categories, the apps "
           "you used lately, and all of them."),
        tr("Its icon lives in the system tray, at a corner of the screen: click it to open the "
           "panel."),
        tr("Right-click an app there to pin it or to file it into a category."),
    };
    QLabel* offer = textLabel(QStringLiteral("welcomeOffer"));
    //: Name three of the categories "Start with categories" makes, as they are translated.
    offer->setText(tr("Pomvar can start you off with categories made from your apps, such as "
                      "Internet, Office and Games."));

    auto* text = new QVBoxLayout;
    text->addWidget(heading);
    for (int i = 0; i < 3; ++i) {
        QLabel* line = textLabel(QStringLiteral("welcomeLine%1").arg(i + 1));
        line->setText(lines[i]);
        text->addWidget(line);
    }
    text->addSpacing(8);
    text->addWidget(offer);
    auto* row = new QHBoxLayout;
    row->addWidget(icon, 0, Qt::AlignTop);
    row->addLayout(text, 1);
    body()->addLayout(row);

    QPushButton* skip = addButton(tr("S&kip"), QStringLiteral("skip"));
    QPushButton* start =
        addButton(tr("&Start with categories"), QStringLiteral("startWithCategories"));
    start->setFocus();
    connect(skip, &QPushButton::clicked, this, &QDialog::close);
    connect(start, &QPushButton::clicked, this, [this] {
        Q_EMIT startWithCategories();
        close();
    });
}

} // namespace pomvar::srv
