#include "NewCategoryPrompt.h"

#include "ServerLog.h"
#include "ServerModel.h"
#include "UserNotice.h"

#include <QInputDialog>

namespace pomvar::srv {

NewCategoryPrompt::NewCategoryPrompt(ServerModel& model, QObject* parent)
    : QObject(parent)
    , m_model(model)
{}

void NewCategoryPrompt::ask(const QString& appkey)
{
    auto* dialog = new QInputDialog;
    dialog->setObjectName(QStringLiteral("newCategoryPrompt"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setWindowTitle(QStringLiteral("New Category"));
    dialog->setLabelText(QStringLiteral("Name of the new category:"));
    dialog->setInputMode(QInputDialog::TextInput);
    connect(dialog, &QInputDialog::textValueSelected, this, [this, appkey](const QString& name) {
        create(name, appkey);
    });
    dialog->open();
}

void NewCategoryPrompt::create(const QString& name, const QString& appkey)
{
    const QString trimmed = name.trimmed();
    if (trimmed.isEmpty()) {
        UserNotice::show(QStringLiteral("New Category"),
                         QStringLiteral("A category needs a name."));
        Q_EMIT answered(false);
        return;
    }
    const std::string utf8 = trimmed.toStdString();
    if (m_model.store().category(utf8)) {
        UserNotice::show(
            QStringLiteral("New Category"),
            QStringLiteral("A category named \u201c%1\u201d already exists.").arg(trimmed));
        Q_EMIT answered(false);
        return;
    }
    const bool created = m_model.createCategoryWith(utf8, appkey.toStdString());
    qCInfo(lcServer) << "created the category" << trimmed << "with" << appkey;
    Q_EMIT answered(created);
}

} // namespace pomvar::srv
