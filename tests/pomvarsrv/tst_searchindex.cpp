// How apps are found and listed. All Apps' order in the three kinds of locale users run: C (no
// collation of its own), English and German. The search's ranking over real desktop entries read
// through GIO: every tier against a lower one earlier in the catalogue, accents and "ß", a
// translated name found by its untranslated one, keywords, an Exec-only match, a typo, and ties
// broken by use, then by the catalogue's order.
#include "TestDesktop.h"
#include "pomvarsrv/catalogue/AppCatalogue.h"
#include "pomvarsrv/search/NameOrder.h"
#include "pomvarsrv/search/SearchIndex.h"

#include <QTest>

using namespace pomvar::srv;
using pomvar::test::TestDesktop;

class TestSearchIndex : public QObject
{
    Q_OBJECT

private Q_SLOTS:
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
    void initTestCase()
    {
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
        const QString bin = m_desktop.root() + "/fake-bin";
        for (const auto& [id, lines] : entries) {
            QVERIFY(TestDesktop::writeEntry(
                m_desktop.systemData(), QString::fromLatin1(id) + ".desktop", lines));
            const QByteArray exec = lines.mid(lines.indexOf("Exec=") + 5).split('\n').front();
            QVERIFY(TestDesktop::write(bin + "/" + exec.split(' ').front(), "#!/bin/sh\n", true));
        }
        qputenv("PATH", (bin + ":" + qEnvironmentVariable("PATH")).toUtf8());
        qputenv("XDG_DATA_DIRS", m_desktop.systemData().toUtf8());
        qputenv("XDG_DATA_HOME", m_desktop.dataHome().toUtf8());
        m_apps = AppCatalogue::listApps();
        QCOMPARE(m_apps.size(), std::size(entries));
        m_index.setApps(m_apps);
    }

    void queriesFindTheirAppFirst()
    {
        // The query, then the first result's name (empty: no result).
        const QString cases = "firefox=Firefox|FIRE=Firefox|writer=LibreOffice Writer|"
                              "lw=LibreOffice Writer|office writer=LibreOffice Writer|"
                              "gimp=GNU Image Manipulation Program|cafe=Caf\u00e9 Manager|"
                              "strasse=Stra\u00dfenkarte|files=Dateien|nautilus=Dateien|"
                              "folder=Dateien|browser=Firefox|www=Firefox|command line=Terminal|"
                              "frefox=Firefox|dtien=Dateien|term=Terminal|zzz=|fire zzz=";
        for (const QString& each : cases.split(u'|')) {
            const QString query = each.section(u'=', 0, 0);
            const auto order = m_index.rank(query);
            const QString found =
                order.empty() ? QString() : QString::fromStdString(m_apps[order.front()].name);
            QCOMPARE(query + "=" + found, each);
        }
        // Ties go to the more used app.
        const auto used = m_index.rank("term", { { "terminator.desktop", 2.0 } });
        QCOMPARE(m_apps[used.front()].name, std::string("Terminator"));
        QVERIFY(m_index.rank("  ").empty());
        // Typing narrows the last matches: each longer query ranks as it does on its own.
        for (const char* typed : { "t", "te", "ter", "term", "term x", "termx", "o", "of" }) {
            SearchIndex fresh;
            fresh.setApps(m_apps);
            QVERIFY2(m_index.rank(typed) == fresh.rank(typed), typed);
        }
    }

private:
    TestDesktop m_desktop;
    std::vector<DesktopApp> m_apps;
    SearchIndex m_index;
};

QTEST_GUILESS_MAIN(TestSearchIndex)
#include "tst_searchindex.moc"
