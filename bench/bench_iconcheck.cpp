// The check that every icon file a menu names exists, as the server makes it before each menu
// reply: 5,000 apps with their 24 and 48 pixel renders in one folder, as the icon cache holds
// them. Prints the check with the folder unchanged (every reply but the first after a change)
// and the full pass after a file was deleted.
#include "Median.h"
#include "pomvarsrv/model/IconCheck.h"

#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>

#include <cstdio>

using namespace pomvar;

int main()
{
    constexpr int kApps = 5000;
    QTemporaryDir dir;
    std::vector<srv::AppEntry> entries;
    for (int i = 0; i < kApps; ++i) {
        const QString path = dir.filePath(QStringLiteral("app%1-%2.png").arg(i));
        for (const int size : { 24, 48 }) {
            QFile file(path.arg(size));
            if (!file.open(QIODevice::WriteOnly))
                return 1;
        }
        entries.push_back({ "app" + std::to_string(i) + ".desktop",
                            "App",
                            "app",
                            path.arg(24).toStdString(),
                            path.arg(48).toStdString() });
    }
    srv::InstalledApps apps(entries);
    srv::IconCheck check;
    check.setFallback(dir.filePath("generic24.png").toStdString(),
                      dir.filePath("generic48.png").toStdString());
    check.repair(apps);

    std::vector<double> unchanged;
    std::vector<double> full;
    QElapsedTimer clock;
    for (int run = 0; run < 201; ++run) {
        clock.start();
        check.repair(apps);
        unchanged.push_back(clock.nsecsElapsed() / 1e6);
    }
    for (int run = 0; run < 11; ++run) {
        QFile::remove(QString::fromStdString(apps.all()[std::size_t(run)].iconPath2x));
        clock.start();
        const auto repaired = check.repair(apps);
        full.push_back(clock.nsecsElapsed() / 1e6);
        if (repaired.size() != 1)
            return 1;
    }
    std::printf("%d apps, %d icon files in one folder:\n", kApps, 2 * kApps);
    std::printf("  check with the folders unchanged: %.3f ms (median of %zu; target: 2 ms)\n",
                bench::median(unchanged),
                unchanged.size());
    std::printf("  full pass after a file was deleted: %.2f ms (median of %zu)\n",
                bench::median(full),
                full.size());
    return 0;
}
