// The installed apps as the real server reads them from desktop entries and renders their
// icons: hidden ones left out, Flatpak's folder, sorting, icon files of the right sizes from the
// right theme folder, the cache, --refresh, --clear-recent, and a rescan when the entries change.
// Which entry wins and which are shown is GIO's rule, which the server follows reading the entries
// one at a time: subfolders name ids, a user's entry hides the system's even when it cannot load.
// All Apps' order in the three kinds of locale users run: C (no collation of its own), English and
// German. The search's ranking over entries read through GIO: every tier against a lower one
// earlier in the catalogue, accents and "ß", a translated name found by its untranslated one,
// keywords, an Exec-only match, a typo, and ties broken by use, then by the catalogue's order.
// A second real server launches real programs (a D-Bus-activatable one over a private session
// bus), sends away a second server on its port, and keeps a store that loads, before or after
// the change in flight, when killed during a burst of changes.
// What each request does, and what an unreadable store becomes, are tst_servermodel's; what the
// server refuses, tst_hostile's.
#include "IconFiles.h"
#include "ServerProcess.h"
#include "SessionBus.h"
#include "SrvClient.h"
#include "TestDesktop.h"
#include "pomvarsrv/catalogue/AppCatalogue.h"
#include "pomvarsrv/model/Store.h"
#include "pomvarsrv/search/NameOrder.h"
#include "pomvarsrv/search/SearchIndex.h"
#include "wire/Protocol.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QImage>
#include <QProcessEnvironment>
#include <QRandomGenerator>
#include <QTest>

#include <algorithm>
#include <thread>

using namespace pomvar::srv;
using namespace pomvar::test;
using Json = nlohmann::json;
namespace rq = pomvar::request;

static const QColor kFill(40, 120, 200);

class TestCatalogue : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        const QString system = m_desktop.systemData(), user = m_desktop.dataHome();
        m_wideIcon = m_desktop.root() + "/art/wide.png";
        QVERIFY(IconFiles::writePng(m_wideIcon, 100, 60));
        const std::pair<QString, QByteArray> entries[] = {
            { system + "|zeta.desktop", "Name=zeta\nIcon=pomvar-png" },
            { system + "|alpha.desktop", "Name=Alpha\nIcon=pomvar-svg" },
            { system + "|ecrire.desktop", "Name=\u00c9crire\nIcon=" + m_wideIcon.toUtf8() },
            { system + "|delta.desktop", "Name=delta\nIcon=pomvar-missing" },
            { system + "|fox.desktop", "Name=Fox" },
            // Flatpak's per-user export folder is searched although XDG_DATA_DIRS does not name it.
            { user + "/flatpak/exports/share|org.example.Flat.desktop", "Name=Flat Pack" },
            { system + "|hicolor-only.desktop", "Name=Hicolor Only\nIcon=pomvar-hicolor.png" },
            { system + "|greeting.desktop", "Name=Hello\nName[de]=Hallo\nIcon=pomvar-png" },
            { system + "|hidden.desktop", "Name=Hidden\nHidden=true" },
            // A subfolder's entry is named with its path; a user's entry that does not load
            // still hides the system's of its id.
            { system + "|nested/entry.desktop", "Name=Nested" },
            { user + "|masked.desktop", "Name=Masked Mine\nTryExec=/nonexistent/program" },
            { system + "|masked.desktop", "Name=Masked" },
        };
        for (const auto& [where, lines] : entries)
            QVERIFY(TestDesktop::writeEntry(
                where.section(u'|', 0, 0), where.section(u'|', 1), lines + "\nExec=true\n"));

        // The user's theme (named in kdeglobals, as on a KDE desktop), inheriting hicolor. Its
        // 24-pixel folder is the wrong one for the 48-pixel render.
        const QString theme = user + "/icons/PomvarTest", hicolor = system + "/icons/hicolor";
        QVERIFY(TestDesktop::write(
            theme + "/index.theme",
            "[Icon Theme]\nInherits=hicolor\nDirectories=24x24/apps,48x48/apps,scalable/apps\n"
            "[24x24/apps]\nSize=24\nType=Fixed\n[48x48/apps]\nSize=48\nType=Fixed\n"
            "[scalable/apps]\nSize=48\nMinSize=8\nMaxSize=512\nType=Scalable\n"));
        QVERIFY(IconFiles::writePng(theme + "/24x24/apps/pomvar-png.png", 24, 24, Qt::yellow));
        QVERIFY(IconFiles::writePng(theme + "/48x48/apps/pomvar-png.png", 48, 48));
        QVERIFY(TestDesktop::write(
            theme + "/scalable/apps/pomvar-svg.svg",
            "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"16\" height=\"16\">"
            "<rect width=\"16\" height=\"16\" fill=\"#c03030\"/></svg>"));
        QVERIFY(
            TestDesktop::write(hicolor + "/index.theme",
                               "[Icon Theme]\nDirectories=32x32/apps\n[32x32/apps]\nSize=32\n"));
        QVERIFY(IconFiles::writePng(hicolor + "/32x32/apps/pomvar-hicolor.png", 32, 32));
        QVERIFY(TestDesktop::write(m_desktop.configHome() + "/kdeglobals",
                                   "[Icons]\nTheme=PomvarTest\n"));
        QVERIFY(restart());
        // The server that launches programs, on a private session bus whose activatable service
        // is ours. The marker script notes its arguments and whether the server's port setting
        // leaked into its environment.
        const QString root = m_programs.root();
        m_script = root + "/bin/write-marker";
        QVERIFY(TestDesktop::write(
            m_script, "#!/bin/sh\necho \"$* ${POMVARSRV_PORT:-unset}\" > \"$0.$1\"\n", true));
        // GIO lists only entries whose program exists: soon-gone is removed once the server runs.
        QVERIFY(TestDesktop::write(root + "/bin/soon-gone", "#!/bin/sh\n", true));
        for (const auto& [name, lines] :
             { std::pair("alpha", QString("Exec=true")),
               { "marker", "Exec=" + m_script + " direct" },
               { "broken", "Exec=" + root + "/bin/soon-gone" },
               { "org.example.Activated", "DBusActivatable=true\nExec=" + m_script + " exec" } })
            QVERIFY(TestDesktop::writeEntry(m_programs.systemData(),
                                            name + QStringLiteral(".desktop"),
                                            "Name=" + QByteArray(name) + "\n" + lines.toUtf8()));
        QVERIFY(TestDesktop::write(
            m_programs.dataHome() + "/dbus-1/services/org.example.Activated.service",
            "[D-BUS Service]\nName=org.example.Activated\nExec=" + m_script.toUtf8() + " dbus\n"));
        QVERIFY(TestDesktop::write(m_programs.storePath(),
                                   R"({"version": 1, "recent": ["alpha.desktop"]})"));
        QVERIFY(m_bus.start(m_programs.environment(0)));
        QProcessEnvironment withBus;
        withBus.insert("DBUS_SESSION_BUS_ADDRESS", m_bus.address());
        m_running = std::make_unique<ServerProcess>(m_programs, withBus);
        QVERIFY(m_running->start());
        QVERIFY(QFile::remove(root + "/bin/soon-gone"));
    }

    void filteredSortedLocalisedWithIconsAtTheirSizes()
    {
        for (const QString& path : allApps("iconpath")) {
            QVERIFY2(path.startsWith(m_desktop.iconCache()), qPrintable(path));
            QCOMPARE(QImage(path).size(), QSize(24, 24));
        }
        for (const QString& path : allApps("iconpath2x"))
            QCOMPARE(QImage(path).size(), QSize(48, 48));
        // Case-insensitive, accents sorted with their letter; the German name (LANGUAGE=de).
        QCOMPARE(
            allApps("name").join(u'|'),
            QStringLiteral("Alpha|delta|\u00c9crire|Flat Pack|Fox|Hallo|Hicolor Only|Nested|zeta"));
        QVERIFY(!icon("nested-entry.desktop").isEmpty());
        // No icon and a missing icon share the generic one; one source is rendered once.
        QCOMPARE(icon("delta.desktop"), icon("fox.desktop"));
        QCOMPARE(icon("zeta.desktop"), icon("greeting.desktop"));
        // The SVG is drawn in its own colour, centred; the wide image keeps its proportions.
        const std::tuple<const char*, QPoint, QColor> pixels[] = {
            { "fox.desktop", { 24, 32 }, QColor(0xe8, 0xea, 0xee) },
            { "zeta.desktop", { 24, 24 }, kFill },
            { "hicolor-only.desktop", { 24, 24 }, kFill },
            { "alpha.desktop", { 24, 24 }, QColor(0xc0, 0x30, 0x30) },
            { "ecrire.desktop", { 24, 24 }, kFill },
            { "ecrire.desktop", { 24, 2 }, Qt::transparent },
        };
        for (const auto& [key, point, colour] : pixels)
            QCOMPARE(QImage(icon(key)).pixelColor(point).rgba(), colour.rgba());
    }

    void warmCacheRefreshAndClearRecent()
    {
        const QString zeta = icon("zeta.desktop"), wide = icon("ecrire.desktop");
        const QDateTime rendered = QFileInfo(zeta).lastModified();
        // Only a changed source is rendered again, under a new name.
        QVERIFY(IconFiles::writePng(m_wideIcon, 100, 60));
        QVERIFY(TestDesktop::write(m_desktop.storePath(),
                                   R"({"version": 1, "recent": ["fox.desktop"]})"));
        QVERIFY(restart());
        QCOMPARE(icon("zeta.desktop"), zeta);
        QCOMPARE(QFileInfo(zeta).lastModified(), rendered);
        QVERIFY(icon("ecrire.desktop") != wide);
        QTRY_VERIFY_WITH_TIMEOUT(!QFile::exists(wide),
                                 30000); // once rendered anew, the old is gone
        const Json before = ask(rq::getAllAppsMenuData);
        QCOMPARE(ask(rq::getRecentAppsMenuData).size(), std::size_t(1));
        QVERIFY(restart({ "--refresh", "--welcome", "--clear-recent" }));
        QTRY_VERIFY_WITH_TIMEOUT(QFileInfo(zeta).lastModified() > rendered, 30000); // cache emptied
        // Same sources, so the same names: rendered again into the emptied cache.
        JCOMPARE(ask(rq::getAllAppsMenuData), before);
        JCOMPARE(ask(rq::getRecentAppsMenuData), Json::array());
    }

    void changedEntriesAreRescanned()
    {
        const QString art = m_desktop.root() + "/art/new.png";
        QVERIFY(IconFiles::writePng(art, 30, 30));
        QVERIFY(TestDesktop::writeEntry(
            m_desktop.dataHome(), "new.desktop", "Name=New\nExec=true\nIcon=" + art.toUtf8()));
        QTRY_VERIFY_WITH_TIMEOUT(icon("new.desktop").startsWith(m_desktop.iconCache()), 30000);
        // The monitor is armed again by the rescan: a second change is seen too.
        QVERIFY(QFile::remove(m_desktop.dataHome() + "/applications/new.desktop"));
        QTRY_VERIFY_WITH_TIMEOUT(icon("new.desktop").isEmpty(), 30000);
        // The cache holds the renders the menus show, and nothing else.
        QSet<QString> shown;
        for (const QString& path : allApps("iconpath") + allApps("iconpath2x"))
            shown << QFileInfo(path).fileName();
        const QStringList cached = QDir(m_desktop.iconCache()).entryList(QDir::Files);
        QCOMPARE(QSet<QString>(cached.begin(), cached.end()), shown);
    }

    void theCatalogueCacheIsNeverStale()
    {
        const QString system = m_desktop.systemData(), extra = m_desktop.root() + "/extra";
        const QString cache = m_desktop.cacheHome() + "/pomvar/catalogue";
        QProcessEnvironment withExtra;
        withExtra.insert("XDG_DATA_DIRS", system + ":" + extra);
        // Each change is made while the server is stopped: an entry written (removed when null), or
        // the cache damaged ("flip" a byte: near its end, or its format version after the 16 bytes
        // of its magic) or replaced. Then whether the start may use the cache, and the name All
        // Apps must show (or, after "!", must not).
        const QString apps = system + "/applications/",
                      mine = m_desktop.dataHome() + "/applications/";
        const QByteArray entry = "[Desktop Entry]\nType=Application\nExec=true\nName=";
        const std::tuple<QString, QByteArray, bool, QString> changes[] = {
            { apps + "added.desktop", entry + "Added", true, "Added" },
            { apps + "fox.desktop", entry + "Fox Two", true, "Fox Two" },
            { mine + "zeta.desktop", entry + "Zeta Mine", true, "Zeta Mine" },
            { apps + "added.desktop", QByteArray(), true, "!Added" },
            { extra + "/applications/more.desktop", entry + "More", false, "More" },
            { cache, "flip -3", false, "More" },
            { cache, "flip 19", false, "More" },
            { cache, "pomvar-catalogue 2\n", false, "More" },
        };
        QByteArray header; // of a cache the server wrote
        for (const auto& [path, content, fromCache, name] : changes) {
            QVERIFY(m_server->quit() == 0);
            QByteArray bytes = content;
            if (content.startsWith("flip ")) {
                bytes = TestDesktop::read(cache);
                header = bytes.left(20);
                const qsizetype at = content.mid(5).toInt();
                bytes[(at + bytes.size()) % bytes.size()] ^= 1;
            }
            QVERIFY(content.isNull() ? QFile::remove(path) : TestDesktop::write(path, bytes));
            m_server = std::make_unique<ServerProcess>(
                m_desktop, fromCache ? QProcessEnvironment() : withExtra);
            QVERIFY(m_server->start());
            QCOMPARE(m_server->log().contains("from the catalogue cache"), fromCache);
            const auto shows = [&] {
                return allApps("name").contains(name.mid(name.startsWith(u'!'))) !=
                       name.startsWith(u'!');
            };
            // Found only in the background, it is told to the front end, which then fetches it.
            // (Asking clears the flag, and QTRY checks its condition once more at the end.)
            bool told = shows();
            QTRY_VERIFY2_WITH_TIMEOUT(
                (told =
                     told || ask(rq::getMenuDataModifiedStatus).value("appFolderModified", false)),
                qPrintable(name),
                30000);
            QVERIFY2(shows(), qPrintable(name));
        }
        // Written anew in the server's own format.
        QVERIFY(TestDesktop::read(cache).startsWith(header));
    }

    void launch()
    {
        for (const auto& [appkey, launched] : { std::pair("marker.desktop", true),
                                                { "broken.desktop", false },
                                                { "org.example.Activated.desktop", true } }) {
            SrvClient client;
            QVERIFY(client.connectTo(m_running->port()));
            client.json(rq::plain(rq::getMenuDataModifiedStatus));
            QVERIFY(client.send(rq::launch(appkey)));
            // The launch is done when the next request is answered; the app runs on its own.
            const Json flags = client.json(rq::plain(rq::getMenuDataModifiedStatus));
            const Json recent = client.json(rq::plain(rq::getRecentAppsMenuData));
            JCOMPARE(flags["recentAppsModified"], launched);
            QCOMPARE(recent[0]["appkey"] == appkey, launched);
        }
        // Its arguments, and not the server's port setting; the activatable app over the bus, not
        // through its Exec line.
        QTRY_VERIFY_WITH_TIMEOUT(TestDesktop::read(m_script + ".direct").contains("direct unset"),
                                 20000);
        QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(m_script + ".dbus"), 20000);
        QVERIFY(!QFile::exists(m_script + ".exec"));
    }

    // The search shortcut where nothing listens (against a running server: a11y_windows), and a
    // second server on the running one's port.
    void serversThatLeave()
    {
        QCOMPARE(ServerProcess(m_programs).runToExit(ServerProcess::freePort(), { "--search" }), 1);
        const QByteArray storeBefore = TestDesktop::read(m_programs.storePath());
        ServerProcess second(m_programs);
        QCOMPARE(second.runToExit(m_running->port(), { "--clear-recent", "--refresh" }), 0);
        // The running server's store and icons are not the leaving one's to touch.
        QCOMPARE(TestDesktop::read(m_programs.storePath()), storeBefore);
        QVERIFY(!QDir(m_programs.iconCache()).isEmpty());
        SrvClient client;
        QVERIFY(client.connectTo(m_running->port()));
        QVERIFY(!client.json(rq::plain(rq::getRecentAppsMenuData)).empty());
    }

    // SIGKILL at random moments of a burst of changes leaves a store that loads and holds the
    // state before or after the change in flight.
    void killedDuringABurstOfChanges()
    {
        constexpr int kApps = 10, kKills = 4;
        TestDesktop desktop;
        for (int i = 0; i < kApps; ++i)
            QVERIFY(TestDesktop::writeEntry(desktop.systemData(),
                                            QStringLiteral("app%1.desktop").arg(i),
                                            "Name=App " + QByteArray::number(i) + "\nExec=true\n"));
        QVERIFY(TestDesktop::write(desktop.storePath(),
                                   R"({"version": 1, "categories": [{"name": "Burst"}]})"));
        // The members of "Burst" as stored; nothing when the store does not load.
        const auto stored = [&]() -> std::optional<std::vector<std::string>> {
            const auto store = pomvar::srv::Store::fromJson(nlohmann::json::parse(
                TestDesktop::read(desktop.storePath()).toStdString(), nullptr, false));
            const auto* category = store ? store->category("Burst") : nullptr;
            return category ? std::optional(category->apps) : std::nullopt;
        };
        const quint32 seed = QRandomGenerator::global()->generate();
        qInfo("random seed %u", seed);
        QRandomGenerator random(seed);
        std::vector<std::string> confirmed;
        // Some 200 changes a round, each round killed during its last change.
        for (int round = 0; round < kKills; ++round) {
            ServerProcess server(desktop);
            SrvClient client;
            QVERIFY(server.start() && client.connectTo(server.port()));
            for (int left = random.bounded(150, 250); left >= 0; --left) {
                const std::string app = "app" + std::to_string(random.bounded(kApps)) + ".desktop";
                auto next = confirmed;
                const auto it = std::find(next.begin(), next.end(), app);
                const bool set = it == next.end();
                set ? next.push_back(app) : void(next.erase(it));
                const std::string body = pomvar::request::toggleSetAppcat(app, "Burst");
                if (left > 0) {
                    JCOMPARE(client.json(body)["isset"], set);
                    confirmed = std::move(next);
                    continue;
                }
                QVERIFY(client.send(body));
                // At a random point of its handling.
                std::this_thread::sleep_for(std::chrono::microseconds(random.bounded(3000)));
                server.kill();
                const auto kept = stored();
                QVERIFY2(kept == confirmed || kept == next,
                         "the store is neither before nor after");
                confirmed = *kept;
            }
        }
        // The next start removes what interrupted writes left beside the store.
        ServerProcess last(desktop);
        QVERIFY(last.start() && last.quit() == 0 && stored() == confirmed);
        QCOMPARE(QFileInfo(desktop.storePath()).dir().entryList(QDir::Files | QDir::Hidden),
                 QStringList{ QStringLiteral("pomvarsrv.json") });
    }

    void readingOrderInEveryLocale()
    {
        const std::vector<QString> names = { "zulu tool", "\u00c9crire", "bravo", "Alpha",
                                             "app 10",    "\u00c4rger",  "app 9", "Zebra",
                                             "echo",      "Stra\u00dfe", "Strasz" };
        const QString expected = "Alpha|app 9|app 10|\u00c4rger|bravo|echo|\u00c9crire|"
                                 "Stra\u00dfe|Strasz|Zebra|zulu tool";
        for (const char* locale : { "C.UTF-8", "en_US.UTF-8", "de_DE.UTF-8" }) {
            QStringList got;
            for (const std::size_t i : NameOrder(QLocale(locale)).sorted(names))
                got << names[i];
            QCOMPARE(got.join(u'|'), expected);
        }
        // Equal names keep their order.
        QCOMPARE(NameOrder(QLocale::c()).sorted({ "b", "A", "a" }),
                 (std::vector<std::size_t>{ 1, 2, 0 }));
    }
    // Last: it points this process's XDG folders at a desktop of its own, read in-process.
    void queriesFindTheirAppFirst()
    {
        TestDesktop desktop;
        const std::pair<const char*, QByteArray> entries[] = {
            { "firefox",
              "Name=Firefox\nGenericName=Web Browser\nKeywords=Internet;WWW;\n"
              "Exec=firefox %u\nActions=new-window;\n"
              "[Desktop Action new-window]\nName=New Window\nExec=firefox --new-window" },
            { "writer", "Name=LibreOffice Writer\nComment=Create and edit text\nExec=lowriter" },
            { "gimp",
              "Name=GNU Image Manipulation Program\nGenericName=Image Editor\nExec=gimp-2.10" },
            { "cafe", "Name=Caf\u00e9 Manager\nExec=cafe-mgr" },
            { "maps", "Name=Stra\u00dfenkarte\nExec=maps" },
            { "files", "Name=Files\nName[de]=Dateien\nKeywords=folder;\nExec=nautilus" },
            { "terminal", "Name=Terminal\nComment=Use the command line\nExec=xterm" },
            { "terminator", "Name=Terminator\nExec=terminator" },
            // Lower tiers that come first in the catalogue: the better tier must win.
            { "kalwin", "Name=Kalwin\nExec=kalwin" },
            { "bookwriter", "Name=Bookwriter\nComment=Not a browser\nExec=bookwriter" },
            { "campfire", "Name=Campfire\nExec=campfire" },
        };
        // GIO lists an entry only when its program exists.
        const QString bin = desktop.root() + "/fake-bin";
        for (const auto& [id, lines] : entries) {
            QVERIFY(TestDesktop::writeEntry(
                desktop.systemData(), QString::fromLatin1(id) + ".desktop", lines));
            const QByteArray exec = lines.mid(lines.indexOf("Exec=") + 5).split('\n').front();
            QVERIFY(TestDesktop::write(bin + "/" + exec.split(' ').front(), "#!/bin/sh\n", true));
        }
        qputenv("PATH", (bin + ":" + qEnvironmentVariable("PATH")).toUtf8());
        qputenv("XDG_DATA_DIRS", desktop.systemData().toUtf8());
        qputenv("XDG_DATA_HOME", desktop.dataHome().toUtf8());
        const std::vector<DesktopApp> apps = AppCatalogue::listApps();
        QCOMPARE(apps.size(), std::size(entries));
        SearchIndex search;
        search.setApps(apps);
        // The query, then the first result's name (empty: no result).
        const QString cases = "firefox=Firefox|FIRE=Firefox|writer=LibreOffice Writer|"
                              "lw=LibreOffice Writer|office writer=LibreOffice Writer|"
                              "gimp=GNU Image Manipulation Program|cafe=Caf\u00e9 Manager|"
                              "strasse=Stra\u00dfenkarte|files=Dateien|nautilus=Dateien|"
                              "folder=Dateien|browser=Firefox|www=Firefox|command line=Terminal|"
                              "frefox=Firefox|dtien=Dateien|term=Terminal|zzz=|fire zzz=|  =";
        for (const QString& each : cases.split(u'|')) {
            const QString query = each.section(u'=', 0, 0);
            const auto order = search.rank(query);
            const QString found =
                order.empty() ? QString() : QString::fromStdString(apps[order.front()].name);
            QCOMPARE(query + "=" + found, each);
        }
        // Ties go to the more used app.
        const auto used = search.rank("term", { { "terminator.desktop", 2.0 } });
        QCOMPARE(apps[used.front()].name, std::string("Terminator"));
        // Typing narrows the last matches: each longer query ranks as it does on its own.
        for (const char* typed : { "t", "te", "ter", "term", "term x", "termx", "o", "of" }) {
            SearchIndex fresh;
            fresh.setApps(apps);
            QVERIFY2(search.rank(typed) == fresh.rank(typed), typed);
        }
    }

private:
    Json ask(std::string_view id)
    {
        SrvClient client;
        return client.connectTo(m_server->port()) ? client.json(rq::plain(id)) : Json();
    }
    // One field of each app in All Apps.
    QStringList allApps(const char* field)
    {
        QStringList values;
        for (const auto& app : ask(rq::getAllAppsMenuData))
            values << QString::fromStdString(app[field]);
        return values;
    }
    // The app's 48-pixel icon; empty when the app is not in All Apps.
    QString icon(const char* key)
    {
        for (const auto& app : ask(rq::getAllAppsMenuData))
            if (app["appkey"] == key)
                return QString::fromStdString(app["iconpath2x"]);
        return {};
    }
    // (Re)starts the server and waits until its icons are rendered.
    bool restart(const QStringList& arguments = {})
    {
        if (m_server && m_server->quit() != 0)
            return false;
        m_server = std::make_unique<ServerProcess>(m_desktop);
        // Missing icons are rendered in the background; then the menus are to be fetched again.
        const auto rendered = [&] {
            return m_server->log().contains("; 0 icons to render") ||
                   ask(rq::getMenuDataModifiedStatus).value("appFolderModified", false);
        };
        return m_server->start(arguments) && QTest::qWaitFor(rendered, 30000);
    }

    TestDesktop m_desktop, m_programs;
    SessionBus m_bus; // outlives the server on it
    std::unique_ptr<ServerProcess> m_server, m_running;
    QString m_script;
    QString m_wideIcon;
};

QTEST_GUILESS_MAIN(TestCatalogue)
#include "tst_catalogue.moc"
