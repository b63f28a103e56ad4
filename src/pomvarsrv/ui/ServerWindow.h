#pragma once

#include <QDialog>

class QBoxLayout;
class QDialogButtonBox;
class QLabel;
class QPushButton;

namespace pomvar::srv {

// What every window of the server shares: one instance per kind, raised and focused when asked
// again; Escape closes it; it never blocks (shown, not exec'd), so requests keep being served.
// Every control is named for screen readers as it is labelled on screen. Each window focuses its
// main button, which Enter then presses.
class ServerWindow : public QDialog
{
    Q_OBJECT

public:
    ServerWindow(const QString& objectName, QWidget* parent = nullptr);

    // Shows the window, raised and focused, on the pointer's screen when it was hidden.
    void present();

protected:
    // The window's title, which screen readers also read as its name.
    void setTitle(const QString& title);
    // A push button in the window's button row; "&" marks its key, as in "&Open".
    QPushButton* addButton(const QString& label, const QString& objectName);
    // A label that wraps, for a line of text; `selectable` lets keyboard users reach and copy it.
    static QLabel* textLabel(const QString& objectName, bool selectable = false);
    // The 48 px heading of a window: an icon beside a bold title.
    static QLabel* headingLabel(const QString& objectName);
    static QLabel* iconLabel(const QString& objectName);
    // An icon label showing Pomvar's own icon, named "Pomvar" for screen readers.
    static QLabel* pomvarIconLabel(const QString& objectName);
    // Shows the image file at 48 px (the generic icon when it cannot be read).
    static void setIcon(QLabel* label, const QString& file);

    QBoxLayout* body() const { return m_body; }

private:
    QBoxLayout* m_body;
    QDialogButtonBox* m_buttons;
};

} // namespace pomvar::srv
