#include "ui/EmptyState.h"

#include "ui/Assets.h"
#include "ui/PanelFonts.h"

#include <QLabel>
#include <QVBoxLayout>

namespace pomvar {

EmptyState::EmptyState(const QString& imageAsset,
                       const QString& heading,
                       const QStringList& texts,
                       QWidget* parent)
    : QWidget(parent)
{
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);

    auto* image = new QLabel(this);
    image->setObjectName(QStringLiteral("emptyImage"));
    image->setPixmap(
        Assets::pixmap(imageAsset, Assets::naturalSize(imageAsset), devicePixelRatioF()));
    image->setAlignment(Qt::AlignCenter);
    image->setContentsMargins(0, 0, 0, 4);
    layout->addWidget(image);

    auto* title = new QLabel(heading, this);
    title->setObjectName(QStringLiteral("emptyHeading"));
    QFont titleFont = PanelFonts::title2(title->font());
    titleFont.setBold(true);
    title->setFont(titleFont);
    title->setAlignment(Qt::AlignCenter);
    layout->addWidget(title);

    bool first = true;
    for (const QString& text : texts) {
        auto* hint = new QLabel(text, this);
        hint->setObjectName(QStringLiteral("emptyHint"));
        hint->setWordWrap(true);
        hint->setAlignment(Qt::AlignHCenter | Qt::AlignTop);
        hint->setContentsMargins(10, first ? 8 : 4, 10, 0);
        layout->addWidget(hint);
        first = false;
    }
    layout->addStretch(1);
}

} // namespace pomvar
