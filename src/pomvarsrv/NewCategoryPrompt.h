#pragma once

#include <QObject>
#include <QString>

namespace pomvar::srv {

class ServerModel;

// Asks for the name of a new category and files the app into it. The dialog is opened
// without a nested event loop, so requests keep being served while it is shown.
class NewCategoryPrompt : public QObject
{
    Q_OBJECT

public:
    explicit NewCategoryPrompt(ServerModel& model, QObject* parent = nullptr);

    void ask(const QString& appkey);

Q_SIGNALS:
    // After a name was accepted (the dialog refuses a name that breaks the rule itself).
    void answered(bool created);

private:
    void create(const QString& name, const QString& appkey);

    ServerModel& m_model;
};

} // namespace pomvar::srv
