#pragma once

#include <QStringList>
#include <QWidget>

namespace pomvar {

// What an empty menu shows instead of rows: an illustration, a heading and hint texts.
class EmptyState : public QWidget
{
    Q_OBJECT

public:
    EmptyState(const QString& imageAsset,
               const QString& heading,
               const QStringList& texts,
               QWidget* parent = nullptr);
};

} // namespace pomvar
