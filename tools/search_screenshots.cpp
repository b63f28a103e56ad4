// Takes the search window's screenshots for the documentation: run it under Xvfb with the folder
// to write to. The window is opened by an "app-search" request over the port, driven by keys,
// and grabbed: the empty query (Recent), a query with results, an app's desktop actions, the
// calculator's answer, and a search provider's results (Characters', on a private session bus);
// last, opened where the panel would be ("app-search-at"), as the whole screen.
#include "ScreenshotServer.h"
#include "SessionBus.h"
#include "pomvarsrv/search/SearchRow.h"
#include "pomvarsrv/ui/SearchResults.h"
#include "wire/Protocol.h"

#include <QApplication>
#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QDir>
#include <QLineEdit>
#include <QListView>
#include <QScreen>
#include <QStandardPaths>
#include <QTest>

using namespace pomvar;
using test::InProcessServer;

namespace {

// Characters' search provider, as the screenshot shows it: three smiling faces for any question.
class CharactersProvider : public QDBusVirtualObject
{
public:
    QString introspect(const QString&) const override { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override
    {
        static const std::vector<std::pair<QString, QString>> found{
            { QStringLiteral("\u263a"), QStringLiteral("White Smiling Face") },
            { QStringLiteral("\U0001f600"), QStringLiteral("Grinning Face") },
            { QStringLiteral("\u263b"), QStringLiteral("Black Smiling Face") },
        };
        QDBusMessage reply = message.createReply();
        if (message.member() == QLatin1String("GetInitialResultSet")) {
            QStringList ids;
            for (const auto& [id, name] : found)
                ids << id;
            reply << ids;
        } else if (message.member() == QLatin1String("GetResultMetas")) {
            QDBusArgument metas;
            metas.beginArray(QMetaType::fromType<QVariantMap>());
            for (const auto& [id, name] : found)
                metas << QVariantMap{ { QStringLiteral("id"), id },
                                      { QStringLiteral("name"), QString(id + u' ' + name) },
                                      { QStringLiteral("description"), QString() } };
            metas.endArray();
            reply << QVariant::fromValue(metas);
        }
        return QDBusConnection(connection).send(reply);
    }
};

// The search window's first row is of that kind, within the time.
bool firstRowIs(QListView& list, srv::SearchRow::Kind kind)
{
    return QTest::qWaitFor([&] {
        return list.model()->index(0, 0).data(srv::SearchResults::KindRole).toInt() == int(kind);
    });
}

} // namespace

int main(int argc, char* argv[])
{
    QApplication app(argc, argv);
    test::ScreenshotServer shots(
        "search_screenshots",
        { { "terminal", "Name=Terminal\nGenericName=Terminal Emulator\nIcon=utilities-terminal" },
          { "editor", "Name=Text Editor\nComment=Edit text files\nIcon=accessories-text-editor" },
          { "browser",
            "Name=Web Browser\nGenericName=Browse the Web\nIcon=web-browser\n"
            "Actions=new-window;private;\n[Desktop Action new-window]\nName=New Window\n"
            "Exec=true\n[Desktop Action private]\nName=New Private Window\nExec=true" },
          { "files", "Name=Files\nGenericName=File Manager\nIcon=system-file-manager" },
          { "calculator",
            "Name=Calculator\nComment=Perform calculations\nIcon=accessories-calculator" },
          { "characters",
            "Name=Characters\nComment=Find special characters\n"
            "Icon=accessories-character-map" },
          { "settings", "Name=Settings\nGenericName=System Settings\nIcon=preferences-system" },
          { "telescope",
            "Name=Telescope Planner\nComment=Plan a night of stargazing\nIcon=camera-photo" } },
        R"({"version": 1, "recent": ["browser.desktop", "terminal.desktop",
            "calculator.desktop"]})");
    if (shots.outputFolder(argc, argv).isEmpty())
        return 2;
    const QString providers =
        QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
        QStringLiteral("/gnome-shell/search-providers");
    test::SessionBus bus;
    CharactersProvider characters;
    if (!QDir().mkpath(providers) ||
        !test::TestDesktop::write(providers + QStringLiteral("/characters.ini"),
                                  "[Shell Search Provider]\nDesktopId=characters.desktop\n"
                                  "BusName=org.pomvar.Shots.Characters\n"
                                  "ObjectPath=/org/pomvar/Shots/Characters\nVersion=2\n") ||
        !bus.start())
        return 1;
    bus.useInThisProcess();
    QDBusConnection provider = QDBusConnection::connectToBus(bus.address(), "provider");
    if (!provider.registerService(QStringLiteral("org.pomvar.Shots.Characters")) ||
        !provider.registerVirtualObject(QStringLiteral("/org/pomvar/Shots/Characters"),
                                        &characters))
        return 1;
    if (!shots.start() || !shots.server().send(request::plain(request::appSearch)))
        return 1;
    QWidget* window = InProcessServer::waitForWindow(QStringLiteral("searchWindow"));
    auto* field = window ? window->findChild<QLineEdit*>() : nullptr;
    auto* list = window ? window->findChild<QListView*>() : nullptr;
    if (!field || !list)
        return 1;
    bool saved = shots.save(window, "search-recent.png");
    QTest::keyClicks(field, "te");
    saved = shots.save(window, "search-results.png") && saved;
    field->clear();
    QTest::keyClicks(field, "web");
    QTest::keyClick(field, Qt::Key_Right);
    saved = shots.save(window, "search-actions.png") && saved;
    field->clear();
    QTest::keyClicks(field, "10 km to mi");
    saved = firstRowIs(*list, srv::SearchRow::Kind::calculation) &&
            shots.save(window, "search-calculator.png") && saved;
    field->clear();
    QTest::keyClicks(field, "smil");
    saved = QTest::qWaitFor([&] { return list->model()->rowCount() >= 4; }) &&
            shots.save(window, "search-providers.png") && saved;
    // Where the panel of a tray at the screen's top right would be, with the letter typed in it.
    window->close();
    if (!shots.server().send(request::appSearchAt(880, 32)) ||
        !shots.server().send(request::appSearchKey(Qt::Key_T, 0, "t")) ||
        !shots.server().send(request::plain(request::appSearchTyped)))
        return 1;
    window = InProcessServer::waitForWindow(QStringLiteral("searchWindow"));
    if (!window || !QTest::qWaitFor([&] { return field->text() == QLatin1String("t"); }))
        return 1;
    QTest::qWait(200); // the repaint of the moved window
    const QString screen = shots.outputFolder(argc, argv) + QStringLiteral("/search-at-panel.png");
    saved = QGuiApplication::primaryScreen()->grabWindow(0).save(screen) && saved;
    return saved ? 0 : 1;
}
