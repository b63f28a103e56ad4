#pragma once

#include <QAbstractButton>

namespace pomvar {

// A control bar button (Search, Organize): an icon asset and a label, drawn with
// ControlButtonStyle. The label is in the default font unless the button is given another.
class ControlButton : public QAbstractButton
{
    Q_OBJECT

public:
    ControlButton(const QString& label, const QString& iconAsset, QWidget* parent = nullptr);
    ControlButton(const QString& label,
                  const QString& iconAsset,
                  const QFont& font,
                  QWidget* parent = nullptr);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    QString m_iconAsset;
};

} // namespace pomvar
