#pragma once

#include <QToolButton>

#include <functional>

class QMenu;

namespace pomvar {

class PomvarViewModel;

// The pull-down menu at the right end of the control bar: settings, about, updates and quit.
// Its image carries a badge while an update is available.
class ControlMenu : public QToolButton
{
    Q_OBJECT

public:
    ControlMenu(PomvarViewModel& vm,
                std::function<void()> dismiss,
                std::function<void()> terminate,
                QWidget* parent = nullptr);

    QMenu* entries() const { return m_menu; }
    // The asset shown as the button's image.
    const QString& imageAsset() const { return m_imageAsset; }
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void refresh(bool updateAvailable);

    PomvarViewModel& m_vm;
    QMenu* m_menu;
    QString m_imageAsset;
};

} // namespace pomvar
