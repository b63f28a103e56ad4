#pragma once

#include <QKeySequence>
#include <QPushButton>

namespace pomvar::srv {

// A button that shows a shortcut ("Super+Space") and, once pressed, records the next keys with
// at least one modifier as the new one; Escape or leaving it gives up.
class ShortcutRecorder : public QPushButton
{
    Q_OBJECT

public:
    explicit ShortcutRecorder(QWidget* parent = nullptr);

    void setSequence(const QKeySequence& sequence);
    const QKeySequence& sequence() const { return m_sequence; }
    // The keys as the user knows them: the Super key by that name, "None" for none.
    static QString displayText(const QKeySequence& sequence);

Q_SIGNALS:
    void recorded(const QKeySequence& sequence);

protected:
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    void setRecording(bool recording);

    QKeySequence m_sequence;
    bool m_recording = false;
};

} // namespace pomvar::srv
