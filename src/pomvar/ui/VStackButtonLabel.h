#pragma once

#include <QRect>
#include <QString>

class QPainter;
class QPalette;

namespace pomvar {

// A button label made of an icon above its title, the title in the small callout font.
class VStackButtonLabel
{
public:
    VStackButtonLabel(QString title, QString icon)
        : m_title(std::move(title))
        , m_icon(std::move(icon))
    {}

    const QString& title() const { return m_title; }
    void paint(QPainter& painter, const QRect& frame, const QPalette& palette) const;

private:
    QString m_title;
    QString m_icon;
};

} // namespace pomvar
