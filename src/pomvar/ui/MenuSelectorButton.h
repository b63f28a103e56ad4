#pragma once

#include "ui/Pomvar.h"
#include "ui/VStackButtonLabel.h"

#include <QAbstractButton>

namespace pomvar {

// One button of the selector column. A click selects its menu and remembers it as "LastMenu",
// whatever the preferences say.
class MenuSelectorButton : public QAbstractButton
{
    Q_OBJECT

public:
    MenuSelectorButton(Pomvar menu, QWidget* parent = nullptr);

    Pomvar menu() const { return m_menu; }
    QSize sizeHint() const override;

Q_SIGNALS:
    void menuSelected(Pomvar menu);

protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    static VStackButtonLabel labelFor(Pomvar menu);

    Pomvar m_menu;
    VStackButtonLabel m_label;
};

} // namespace pomvar
