#pragma once

#include <QWidget>

namespace pomvar {

// The product name along the selector column, reading upwards.
class PomvarTitle : public QWidget
{
    Q_OBJECT

public:
    explicit PomvarTitle(QWidget* parent = nullptr);

    static QFont titleFont();

protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace pomvar
