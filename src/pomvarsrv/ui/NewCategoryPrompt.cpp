#include "pomvarsrv/ui/NewCategoryPrompt.h"

#include "pomvarsrv/model/ServerModel.h"
#include "pomvarsrv/ui/CategoryNameDialog.h"
#include "pomvarsrv/ui/UiLog.h"

#include <QCoreApplication>

namespace pomvar::srv {

QDialog* NewCategoryPrompt::open(ServerModel& model,
                                 const QString& appkey,
                                 QWidget* parent,
                                 Created created)
{
    auto* dialog = new CategoryNameDialog(
        model.store(),
        QCoreApplication::translate("pomvar::srv::NewCategoryPrompt", "New Category"),
        {},
        parent);
    dialog->setObjectName(QStringLiteral("newCategoryPrompt"));
    QObject::connect(dialog,
                     &CategoryNameDialog::nameChosen,
                     dialog,
                     [&model, appkey, created = std::move(created)](const QString& name) {
                         model.createCategoryWith(name.toStdString(), appkey.toStdString());
                         qCInfo(lcUi) << "created the category" << name << "with" << appkey;
                         if (created)
                             created(name);
                     });
    dialog->open();
    return dialog;
}

} // namespace pomvar::srv
