#include "pomvarsrv/ui/UserNotice.h"

#include <QMessageBox>

namespace pomvar::srv {

void UserNotice::show(const QString& title, const QString& text)
{
    auto* box = new QMessageBox(QMessageBox::Warning, title, text, QMessageBox::Ok);
    box->setObjectName(QStringLiteral("pomvarsrvNotice"));
    // App names and errors come from desktop entries: never laid out as markup.
    box->setTextFormat(Qt::PlainText);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->open();
}

} // namespace pomvar::srv
