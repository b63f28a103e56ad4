#include "GeneratedApps.h"

#include "IconFiles.h"

namespace pomvar::bench {

using test::IconFiles;
using test::TestDesktop;

void populate(const TestDesktop& desktop, int count, int ownIcons)
{
    const QString theme = desktop.dataHome() + QStringLiteral("/icons/BenchTheme");
    TestDesktop::write(theme + QStringLiteral("/index.theme"),
                       "[Icon Theme]\nName=BenchTheme\nInherits=hicolor\n"
                       "Directories=64x64/apps,scalable/apps\n\n"
                       "[64x64/apps]\nSize=64\nType=Fixed\n\n"
                       "[scalable/apps]\nSize=48\nMinSize=8\nMaxSize=512\nType=Scalable\n");
    TestDesktop::write(desktop.configHome() + QStringLiteral("/kdeglobals"),
                       "[Icons]\nTheme=BenchTheme\n");
    for (int i = 0; i < ownIcons; ++i) {
        if (i % 4 == 0) {
            TestDesktop::write(theme + QStringLiteral("/scalable/apps/bench-%1.svg").arg(i),
                               "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"16\" "
                               "height=\"16\"><circle cx=\"8\" cy=\"8\" r=\"7\" fill=\"#" +
                                   QByteArray::number(0x100000 + i * 37, 16).right(6) +
                                   "\"/></svg>\n");
        } else {
            IconFiles::writePng(theme + QStringLiteral("/64x64/apps/bench-%1.png").arg(i), 64, 64);
        }
    }
    for (int i = 0; i < count; ++i) {
        const QByteArray icon =
            i % 10 == 9 ? QByteArray("no-such-icon") : "bench-" + QByteArray::number(i % ownIcons);
        TestDesktop::writeEntry(desktop.systemData(),
                                QStringLiteral("org.example.Bench%1.desktop").arg(i),
                                "Name=Bench Application " + QByteArray::number(count - i) +
                                    "\nComment=Generated for the benchmark\nExec=true %U\n"
                                    "Icon=" +
                                    icon + "\nCategories=Utility;\n");
    }
}

QProcessEnvironment benchEnvironment(const TestDesktop& desktop, std::uint16_t port)
{
    QProcessEnvironment env = desktop.environment(port);
    env.insert(QStringLiteral("XDG_DATA_DIRS"),
               desktop.systemData() + QStringLiteral(":/usr/share"));
    return env;
}

void useInThisProcess(const TestDesktop& desktop)
{
    const QProcessEnvironment env = benchEnvironment(desktop, 0);
    // GSettings in memory: dconf would reach the user's own settings, and GIO ends a process
    // with SIGTERM when the session bus it used goes, as the bench's private one does at exit.
    for (const char* name : { "HOME",
                              "XDG_CONFIG_HOME",
                              "XDG_CACHE_HOME",
                              "XDG_DATA_HOME",
                              "XDG_DATA_DIRS",
                              "PATH",
                              "GSETTINGS_BACKEND" })
        qputenv(name, env.value(name).toUtf8());
}

} // namespace pomvar::bench
