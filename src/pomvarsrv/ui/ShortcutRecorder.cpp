#include "pomvarsrv/ui/ShortcutRecorder.h"

#include <QKeyEvent>

namespace pomvar::srv {

ShortcutRecorder::ShortcutRecorder(QWidget* parent)
    : QPushButton(parent)
{
    setAutoDefault(false);
    connect(this, &QPushButton::clicked, this, [this] { setRecording(!m_recording); });
    setSequence({});
}

QString ShortcutRecorder::displayText(const QKeySequence& sequence)
{
    if (sequence.isEmpty())
        //: No keyboard shortcut.
        return tr("None");
    //: The Windows logo key, as Linux desktops name it.
    return sequence.toString(QKeySequence::NativeText).replace(QStringLiteral("Meta"), tr("Super"));
}

void ShortcutRecorder::setSequence(const QKeySequence& sequence)
{
    m_sequence = sequence;
    setRecording(false);
}

void ShortcutRecorder::setRecording(bool recording)
{
    m_recording = recording;
    //: The shortcut button while it waits for the keys.
    setText(recording ? tr("Press the keys…") : displayText(m_sequence));
}

bool ShortcutRecorder::event(QEvent* event)
{
    // While recording, every key is for the recorder, not for the window's shortcuts (Escape).
    if (m_recording && event->type() == QEvent::ShortcutOverride) {
        event->accept();
        return true;
    }
    return QPushButton::event(event);
}

void ShortcutRecorder::keyPressEvent(QKeyEvent* event)
{
    if (!m_recording) {
        QPushButton::keyPressEvent(event);
        return;
    }
    event->accept();
    const int key = event->key();
    if (key == Qt::Key_Escape) {
        setRecording(false);
        return;
    }
    const Qt::KeyboardModifiers modifiers =
        event->modifiers() &
        (Qt::ControlModifier | Qt::AltModifier | Qt::ShiftModifier | Qt::MetaModifier);
    // Modifiers alone are the start of the keys; a key without one would be taken from typing.
    if (key == Qt::Key_Control || key == Qt::Key_Alt || key == Qt::Key_Shift ||
        key == Qt::Key_Meta || key == Qt::Key_Super_L || key == Qt::Key_Super_R ||
        modifiers == Qt::NoModifier || (modifiers == Qt::ShiftModifier && key < 0x80))
        return;
    m_sequence = QKeySequence(QKeyCombination(modifiers, Qt::Key(key)));
    setRecording(false);
    Q_EMIT recorded(m_sequence);
}

void ShortcutRecorder::focusOutEvent(QFocusEvent* event)
{
    setRecording(false);
    QPushButton::focusOutEvent(event);
}

} // namespace pomvar::srv
