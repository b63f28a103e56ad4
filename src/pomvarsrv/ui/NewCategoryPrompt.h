#pragma once

#include <QString>

#include <functional>

class QDialog;
class QWidget;

namespace pomvar::srv {

class ServerModel;

// "New Category", wherever it is offered (an app's context menu, Organize, Organize App): asks
// for the name under the one rule (CategoryNameDialog), creates the category with the app filed
// into it, then hands the name to what follows, which is all that differs between the places.
// The dialog is opened without a nested event loop, so requests keep being served meanwhile.
class NewCategoryPrompt
{
public:
    using Created = std::function<void(const QString& name)>;

    // `appkey`: the app to file into the new category; empty for none.
    static QDialog* open(ServerModel& model,
                         const QString& appkey,
                         QWidget* parent = nullptr,
                         Created created = {});
};

} // namespace pomvar::srv
