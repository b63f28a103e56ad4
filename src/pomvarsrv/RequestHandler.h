#pragma once

#include "Request.h"

#include <QObject>
#include <QString>

#include <optional>
#include <string>

namespace pomvar::srv {

class ServerModel;
class Updates;

// Carries out one request and gives its reply: a JSON text exactly for the requests the front
// end awaits, nothing for the others. Actions that need the desktop (launching, dialogs, quitting)
// are handed on as signals.
class RequestHandler : public QObject
{
    Q_OBJECT

public:
    // Without `updates`, no update is ever available.
    explicit RequestHandler(ServerModel& model,
                            const Updates* updates = nullptr,
                            QObject* parent = nullptr);

    std::optional<std::string> handle(const Request& request);

Q_SIGNALS:
    void launchRequested(const QString& appkey);
    void newCategoryRequested(const QString& appkey);
    void quitRequested();
    void searchRequested();
    // The organizer on a pane (OrganizerDlgMode), on a category or an app; empty for none.
    void organizerRequested(int pane, const QString& itemkey);
    void appInfoRequested(const QString& appkey);
    void categoryInfoRequested(const QString& appcat);
    void aboutRequested();
    void updatesRequested();

private:
    std::string reply(const Request& request);
    void act(const Request& request);

    ServerModel& m_model;
    const Updates* m_updates;
};

} // namespace pomvar::srv
