// The installed apps as the real server reads them from desktop entries and renders their
// icons: filtering, precedence, localised names, subfolder ids, sorting, icon files of the
// right sizes, the cache, and a rescan when the entries change.
#include "ServerProcess.h"
#include "SrvClient.h"
#include "TestDesktop.h"

#include <nlohmann/json.hpp>

#include <QDateTime>
#include <QFileInfo>
#include <QImage>
#include <QTest>

#include <set>

using namespace pomvar::srvtest;
using Json = nlohmann::json;

namespace {

const QByteArray kSvg =
    "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"16\" height=\"16\">\n"
    "<rect x=\"1\" y=\"1\" width=\"14\" height=\"14\" fill=\"#c03030\"/></svg>\n";

const QByteArray kThemeIndex = "[Icon Theme]\n"
                               "Name=PomvarTest\n"
                               "Inherits=hicolor\n"
                               "Directories=48x48/apps,scalable/apps\n"
                               "\n"
                               "[48x48/apps]\n"
                               "Size=48\n"
                               "Type=Fixed\n"
                               "\n"
                               "[scalable/apps]\n"
                               "Size=48\n"
                               "MinSize=8\n"
                               "MaxSize=512\n"
                               "Type=Scalable\n";

const QByteArray kHicolorIndex = "[Icon Theme]\n"
                                 "Name=Hicolor\n"
                                 "Directories=32x32/apps\n"
                                 "\n"
                                 "[32x32/apps]\n"
                                 "Size=32\n"
                                 "Type=Threshold\n";

} // namespace

class TestCatalogue : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void filteredSortedAndLocalised();
    void everyIconExistsAtItsSize();
    void warmCacheRendersNothingAgain();
    void changedEntriesAreRescanned();
    void refreshRendersEveryIconAgain();
    void cleanupTestCase();

private:
    Json allApps();
    // Asks for the flags until appFolderModified is reported.
    bool waitForAppFolderModified();
    std::map<std::string, Json> byKey(const Json& apps);

    TestDesktop m_desktop;
    std::unique_ptr<ServerProcess> m_server;
    QString m_absoluteIcon;
};

void TestCatalogue::initTestCase()
{
    QVERIFY(m_desktop.isValid());
    const QString system = m_desktop.systemData();
    const QString user = m_desktop.dataHome();
    const QByteArray exec = "Exec=true\n";
    m_absoluteIcon = m_desktop.root() + QStringLiteral("/art/wide.png");
    QVERIFY(TestDesktop::writePng(m_absoluteIcon, 100, 60));

    QVERIFY(TestDesktop::writeEntry(system, "zeta.desktop", "Name=zeta\nIcon=pomvar-png\n" + exec));
    QVERIFY(
        TestDesktop::writeEntry(system, "alpha.desktop", "Name=Alpha\nIcon=pomvar-svg\n" + exec));
    QVERIFY(TestDesktop::writeEntry(system,
                                    "ecrire.desktop",
                                    "Name=\xc3\x89"
                                    "crire\nIcon=" +
                                        m_absoluteIcon.toUtf8() + "\n" + exec));
    QVERIFY(TestDesktop::writeEntry(
        system, "delta.desktop", "Name=delta\nIcon=pomvar-missing\n" + exec));
    QVERIFY(TestDesktop::writeEntry(system, "fox.desktop", "Name=Fox\n" + exec));
    // Flatpak's per-user export folder is searched although XDG_DATA_DIRS does not name it.
    QVERIFY(TestDesktop::writeEntry(m_desktop.home() +
                                        QStringLiteral("/.local/share/flatpak/exports/share"),
                                    "org.example.Flat.desktop",
                                    "Name=Flat Pack\n" + exec));
    QVERIFY(TestDesktop::writeEntry(
        system, "hicolor-only.desktop", "Name=Hicolor Only\nIcon=pomvar-hicolor.png\n" + exec));
    QVERIFY(TestDesktop::writeEntry(
        system, "greeting.desktop", "Name=Hello\nName[de]=Hallo\nIcon=pomvar-png\n" + exec));
    QVERIFY(TestDesktop::writeEntry(system, "vendor/sub.desktop", "Name=Sub App\n" + exec));
    QVERIFY(TestDesktop::writeEntry(system, "override.desktop", "Name=System Version\n" + exec));
    QVERIFY(TestDesktop::writeEntry(user, "override.desktop", "Name=User Version\n" + exec));
    QVERIFY(TestDesktop::writeEntry(system, "userhidden.desktop", "Name=User Hidden\n" + exec));
    QVERIFY(TestDesktop::writeEntry(
        user, "userhidden.desktop", "Name=User Hidden\nHidden=true\n" + exec));
    QVERIFY(TestDesktop::writeEntry(system, "hidden.desktop", "Name=Hidden\nHidden=true\n" + exec));
    QVERIFY(TestDesktop::writeEntry(
        system, "nodisplay.desktop", "Name=No Display\nNoDisplay=true\n" + exec));
    QVERIFY(TestDesktop::writeEntry(
        system, "gnomeonly.desktop", "Name=Gnome Only\nOnlyShowIn=GNOME;\n" + exec));
    QVERIFY(
        TestDesktop::writeEntry(system, "notkde.desktop", "Name=Not KDE\nNotShowIn=KDE;\n" + exec));
    QVERIFY(TestDesktop::writeEntry(
        system, "kdeonly.desktop", "Name=KDE Only\nOnlyShowIn=KDE;\n" + exec));
    QVERIFY(TestDesktop::writeEntry(
        system, "tryexec.desktop", "Name=Try Exec\nTryExec=/nonexistent/pomvar-program\n" + exec));

    // The user's theme (named in kdeglobals, as on a KDE desktop), inheriting hicolor.
    const QString theme = user + QStringLiteral("/icons/PomvarTest");
    QVERIFY(TestDesktop::write(theme + QStringLiteral("/index.theme"), kThemeIndex));
    QVERIFY(TestDesktop::writePng(theme + QStringLiteral("/48x48/apps/pomvar-png.png"), 48, 48));
    QVERIFY(TestDesktop::write(theme + QStringLiteral("/scalable/apps/pomvar-svg.svg"), kSvg));
    const QString hicolor = system + QStringLiteral("/icons/hicolor");
    QVERIFY(TestDesktop::write(hicolor + QStringLiteral("/index.theme"), kHicolorIndex));
    QVERIFY(
        TestDesktop::writePng(hicolor + QStringLiteral("/32x32/apps/pomvar-hicolor.png"), 32, 32));
    QVERIFY(TestDesktop::write(m_desktop.configHome() + QStringLiteral("/kdeglobals"),
                               "[Icons]\nTheme=PomvarTest\n"));

    m_server = std::make_unique<ServerProcess>(m_desktop);
    QVERIFY(m_server->start());
}

void TestCatalogue::cleanupTestCase()
{
    if (m_server)
        QCOMPARE(m_server->quit(), 0);
}

Json TestCatalogue::allApps()
{
    SrvClient client;
    if (!client.connectTo(m_server->port()))
        return {};
    const auto reply = client.request(SrvClient::plain("get-allapps-menu-data"));
    return reply ? Json::parse(*reply, nullptr, false) : Json();
}

bool TestCatalogue::waitForAppFolderModified()
{
    SrvClient client;
    if (!client.connectTo(m_server->port()))
        return false;
    for (int attempt = 0; attempt < 3000; ++attempt) {
        const auto reply = client.request(SrvClient::plain("get-menu-data-modified-status"));
        if (!reply)
            return false;
        if (Json::parse(*reply).value("appFolderModified", false))
            return true;
        QTest::qWait(10);
    }
    return false;
}

std::map<std::string, Json> TestCatalogue::byKey(const Json& apps)
{
    std::map<std::string, Json> map;
    for (const auto& app : apps)
        map[app["appkey"].get<std::string>()] = app;
    return map;
}

void TestCatalogue::filteredSortedAndLocalised()
{
    const Json apps = allApps();
    QVERIFY(apps.is_array());
    QStringList names;
    QStringList keys;
    for (const auto& app : apps) {
        names << QString::fromStdString(app["name"].get<std::string>());
        keys << QString::fromStdString(app["appkey"].get<std::string>());
        QCOMPARE(app["bundleid"].get<std::string>() + ".desktop", app["appkey"].get<std::string>());
        QVERIFY(app["pinned"].is_boolean());
    }
    // Case-insensitive, accents sorted with their letter; the German name (LANGUAGE=de).
    const QStringList expected = {
        QStringLiteral("Alpha"),        QStringLiteral("delta"),    QStringLiteral("\u00c9crire"),
        QStringLiteral("Flat Pack"),    QStringLiteral("Fox"),      QStringLiteral("Hallo"),
        QStringLiteral("Hicolor Only"), QStringLiteral("KDE Only"), QStringLiteral("Sub App"),
        QStringLiteral("User Version"), QStringLiteral("zeta"),
    };
    QCOMPARE(names, expected);
    QVERIFY(keys.contains(QStringLiteral("vendor-sub.desktop")));
    QVERIFY(keys.contains(QStringLiteral("override.desktop")));
    QVERIFY(keys.contains(QStringLiteral("org.example.Flat.desktop")));
}

void TestCatalogue::everyIconExistsAtItsSize()
{
    // A cold cache: the renders come in the background, then the menus are to be refetched.
    QVERIFY(waitForAppFolderModified());
    const auto apps = byKey(allApps());
    for (const auto& [key, app] : apps) {
        const QString path = QString::fromStdString(app["iconpath"].get<std::string>());
        const QString path2x = QString::fromStdString(app["iconpath2x"].get<std::string>());
        QVERIFY2(path.startsWith(m_desktop.iconCache()), qPrintable(path));
        QCOMPARE(QImage(path).size(), QSize(24, 24));
        QCOMPARE(QImage(path2x).size(), QSize(48, 48));
    }
    const auto icon = [&](const char* key) {
        return apps.at(key)["iconpath2x"].get<std::string>();
    };
    // No icon and a missing icon share the generic one; every real source has its own render.
    QCOMPARE(icon("delta.desktop"), icon("fox.desktop"));
    std::set<std::string> distinct;
    for (const char* key : { "fox.desktop",
                             "alpha.desktop",
                             "zeta.desktop",
                             "ecrire.desktop",
                             "hicolor-only.desktop" })
        distinct.insert(icon(key));
    QCOMPARE(distinct.size(), std::size_t(5));
    QCOMPARE(icon("zeta.desktop"), icon("greeting.desktop"));

    // The SVG is drawn in its own colour, centred; the wide image keeps its proportions.
    const QImage svg(QString::fromStdString(icon("alpha.desktop")));
    QCOMPARE(svg.pixelColor(24, 24), QColor(0xc0, 0x30, 0x30));
    const QImage wide(QString::fromStdString(icon("ecrire.desktop")));
    QCOMPARE(wide.pixelColor(24, 2).alpha(), 0);
    QCOMPARE(wide.pixelColor(24, 24), QColor(40, 120, 200));
}

void TestCatalogue::warmCacheRendersNothingAgain()
{
    const auto before = byKey(allApps());
    const QString zeta =
        QString::fromStdString(before.at("zeta.desktop")["iconpath"].get<std::string>());
    const QDateTime rendered = QFileInfo(zeta).lastModified();
    QCOMPARE(m_server->quit(), 0);

    m_server = std::make_unique<ServerProcess>(m_desktop);
    QVERIFY(m_server->start());
    QVERIFY2(m_server->log().contains(QStringLiteral("; 0 icons to render")),
             qPrintable(m_server->log()));
    const auto after = byKey(allApps());
    QVERIFY(after.at("zeta.desktop")["iconpath"] == before.at("zeta.desktop")["iconpath"]);
    QCOMPARE(QFileInfo(zeta).lastModified(), rendered);

    // A changed source is a new render under a new name.
    QCOMPARE(m_server->quit(), 0);
    QVERIFY(TestDesktop::writePng(m_absoluteIcon, 64, 64));
    QFile touched(m_absoluteIcon);
    QVERIFY(touched.open(QIODevice::ReadWrite));
    QVERIFY(touched.setFileTime(QDateTime::currentDateTime().addSecs(5),
                                QFileDevice::FileModificationTime));
    touched.close();
    m_server = std::make_unique<ServerProcess>(m_desktop);
    QVERIFY(m_server->start());
    QVERIFY(m_server->log().contains(QStringLiteral("; 1 icons to render")));
    QVERIFY(waitForAppFolderModified());
    const auto changed = byKey(allApps());
    QVERIFY(changed.at("ecrire.desktop")["iconpath2x"] !=
            before.at("ecrire.desktop")["iconpath2x"]);
    const QImage square(
        QString::fromStdString(changed.at("ecrire.desktop")["iconpath2x"].get<std::string>()));
    QCOMPARE(square.pixelColor(24, 2), QColor(40, 120, 200));
}

void TestCatalogue::changedEntriesAreRescanned()
{
    QVERIFY(TestDesktop::writeEntry(
        m_desktop.dataHome(), "newcomer.desktop", "Name=Newcomer\nExec=true\n"));
    QVERIFY(waitForAppFolderModified());
    QVERIFY(byKey(allApps()).count("newcomer.desktop"));

    // The monitor is armed again by the rescan: a second change is seen too.
    QVERIFY(QFile::remove(m_desktop.dataHome() + QStringLiteral("/applications/newcomer.desktop")));
    QVERIFY(waitForAppFolderModified());
    QVERIFY(!byKey(allApps()).count("newcomer.desktop"));
}

void TestCatalogue::refreshRendersEveryIconAgain()
{
    const auto before = byKey(allApps());
    QCOMPARE(m_server->quit(), 0);
    m_server = std::make_unique<ServerProcess>(m_desktop);
    QVERIFY(m_server->start({ QStringLiteral("--refresh"), QStringLiteral("--welcome") }));
    const QString log = m_server->log();
    QVERIFY2(log.contains(QStringLiteral("refreshing")), qPrintable(log));
    QVERIFY2(log.contains(QStringLiteral("--welcome")), qPrintable(log));
    QVERIFY2(!log.contains(QStringLiteral("; 0 icons to render")), qPrintable(log));
    QVERIFY(waitForAppFolderModified());
    // Same sources, so the same names: rendered again into the emptied cache.
    const auto after = byKey(allApps());
    for (const auto& [key, app] : after) {
        QVERIFY(app["iconpath2x"] == before.at(key)["iconpath2x"]);
        QCOMPARE(QImage(QString::fromStdString(app["iconpath2x"].get<std::string>())).size(),
                 QSize(48, 48));
    }
}

QTEST_GUILESS_MAIN(TestCatalogue)
#include "tst_catalogue.moc"
