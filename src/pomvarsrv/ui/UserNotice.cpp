#include "pomvarsrv/ui/UserNotice.h"

#include <QMessageBox>

namespace pomvar::srv {

void UserNotice::show(const QString& title, const QString& text)
{
    auto* box = new QMessageBox(QMessageBox::Warning, title, text, QMessageBox::Ok);
    box->setObjectName(QStringLiteral("pomvarsrvNotice"));
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->open();
}

} // namespace pomvar::srv
