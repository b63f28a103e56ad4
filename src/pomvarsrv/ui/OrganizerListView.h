#pragma once

#include <QListView>

namespace pomvar::srv {

class OrganizerListModel;

// A list of the organizer, named for screen readers as its visible label, with drag and drop
// and the keys of its buttons: Alt+Up and Alt+Down move the selection, Delete takes it out.
class OrganizerListView : public QListView
{
    Q_OBJECT

public:
    OrganizerListView(OrganizerListModel* model, const QString& name, QWidget* parent = nullptr);

    OrganizerListModel* listModel() const { return m_model; }
    // The selected keys in list order; the current one alone when nothing is selected, unless
    // `orCurrent` is false.
    QStringList selectedKeys(bool orCurrent = true) const;
    // Selects these keys. `current` becomes the current row, or else the first key selected, or
    // else the first row (then without selecting it).
    void selectKeys(const QStringList& keys, const QString& current = {});
    QString currentKey() const;

Q_SIGNALS:
    void moveRequested(bool down);
    void removeRequested();

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    OrganizerListModel* m_model;
};

} // namespace pomvar::srv
