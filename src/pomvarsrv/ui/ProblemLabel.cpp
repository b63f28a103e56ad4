#include "pomvarsrv/ui/ProblemLabel.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QStyle>

namespace pomvar::srv {

ProblemLabel::ProblemLabel(const QString& objectName, QWidget* parent)
    : QWidget(parent)
    , m_text(new QLabel(this))
{
    m_text->setObjectName(objectName);
    auto* icon = new QLabel(this);
    const int side = style()->pixelMetric(QStyle::PM_SmallIconSize, nullptr, this);
    icon->setPixmap(
        style()->standardIcon(QStyle::SP_MessageBoxWarning, nullptr, this).pixmap(side));
    icon->setAlignment(Qt::AlignTop);
    m_text->setWordWrap(true);
    m_text->setTextFormat(Qt::PlainText);
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins({});
    layout->addWidget(icon);
    layout->addWidget(m_text, 1);
    hide();
}

void ProblemLabel::setProblem(const QString& problem)
{
    m_text->setText(problem);
    setVisible(!problem.isEmpty());
}

QString ProblemLabel::problem() const
{
    return isVisibleTo(parentWidget()) ? m_text->text() : QString();
}

} // namespace pomvar::srv
