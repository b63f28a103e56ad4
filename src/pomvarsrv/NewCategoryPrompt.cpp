#include "NewCategoryPrompt.h"

#include "CategoryNameDialog.h"
#include "ServerLog.h"
#include "ServerModel.h"

namespace pomvar::srv {

NewCategoryPrompt::NewCategoryPrompt(ServerModel& model, QObject* parent)
    : QObject(parent)
    , m_model(model)
{}

void NewCategoryPrompt::ask(const QString& appkey)
{
    auto* dialog = new CategoryNameDialog(m_model.store(), tr("New Category"));
    dialog->setObjectName(QStringLiteral("newCategoryPrompt"));
    connect(dialog, &CategoryNameDialog::nameChosen, this, [this, appkey](const QString& name) {
        create(name, appkey);
    });
    dialog->open();
}

void NewCategoryPrompt::create(const QString& name, const QString& appkey)
{
    const bool created = m_model.createCategoryWith(name.toStdString(), appkey.toStdString());
    qCInfo(lcServer) << "created the category" << name << "with" << appkey;
    Q_EMIT answered(created);
}

} // namespace pomvar::srv
