#pragma once

#include <QWidget>

class QLabel;

namespace pomvar::srv {

// Why what was typed cannot be taken, under the field: the style's warning icon beside the text,
// both in the palette's own colours, so that it reads in light and dark alike. Hidden while
// there is nothing to tell.
class ProblemLabel : public QWidget
{
    Q_OBJECT

public:
    // `objectName` names the text's label.
    explicit ProblemLabel(const QString& objectName, QWidget* parent = nullptr);

    // Empty hides it.
    void setProblem(const QString& problem);
    QString problem() const;

private:
    QLabel* m_text;
};

} // namespace pomvar::srv
