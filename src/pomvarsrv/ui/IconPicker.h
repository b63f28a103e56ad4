#pragma once

#include <QDialog>

class QLineEdit;
class QListView;
class QSortFilterProxyModel;

namespace pomvar::srv {

class IconNameModel;

// Chooses an app's icon: the icon theme's names, narrowed to those holding what is typed, or an
// image file ("Choose File…"). Down goes from the field to the list; Enter or a double click
// chooses. Not modal; deletes itself when closed.
class IconPicker : public QDialog
{
    Q_OBJECT

public:
    IconPicker(IconNameModel* icons, const QString& current, QWidget* parent = nullptr);

    void accept() override;

Q_SIGNALS:
    // An icon name of the theme, or an absolute file path.
    void chosen(const QString& icon);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void chooseFile();

    QLineEdit* m_field;
    QSortFilterProxyModel* m_filtered;
    QListView* m_list;
};

} // namespace pomvar::srv
