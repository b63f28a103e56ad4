// Prints how long the search takes to rank 5,000 apps per keystroke (typing a few queries one
// letter at a time), and how long preparing the index takes.
#include "SearchIndex.h"

#include <QElapsedTimer>

#include <algorithm>
#include <cstdio>
#include <vector>

using namespace pomvar::srv;

namespace {

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

std::vector<DesktopApp> generatedApps(int count)
{
    const char* words[] = { "Office",    "Writer",      "Image",   "Editor", "Music",
                            "Player",    "Terminal",    "Browser", "Mail",   "Calendar",
                            "Caf\u00e9", "Stra\u00dfe", "Viewer" };
    std::vector<DesktopApp> apps;
    for (int i = 0; i < count; ++i) {
        DesktopApp app;
        app.id = "org.example.App" + std::to_string(i) + ".desktop";
        app.name =
            std::string(words[i % 13]) + " " + words[(i / 13) % 13] + " " + std::to_string(i);
        app.untranslatedName = QString::fromStdString(app.name);
        app.genericName = QStringLiteral("Generic %1 Tool").arg(words[(i / 7) % 13]);
        app.keywords = { QStringLiteral("key%1").arg(i % 97), QStringLiteral("word") };
        app.comment =
            QStringLiteral("An application generated for the benchmark, number %1").arg(i);
        app.program = QStringLiteral("program-%1").arg(i);
        apps.push_back(std::move(app));
    }
    return apps;
}

} // namespace

int main()
{
    const std::vector<DesktopApp> apps = generatedApps(5000);
    SearchIndex index;
    QElapsedTimer clock;
    clock.start();
    index.setApps(apps);
    const double prepareMs = clock.nsecsElapsed() / 1e6;
    std::vector<double> perKey;
    std::size_t results = 0;
    for (int round = 0; round < 5; ++round) {
        for (const QString& query : { QStringLiteral("writer office"),
                                      QStringLiteral("strasse"),
                                      QStringLiteral("generic mail"),
                                      QStringLiteral("zqxv"),
                                      QStringLiteral("ow") }) {
            for (qsizetype typed = 1; typed <= query.size(); ++typed) {
                clock.restart();
                results = index.rank(query.left(typed), { { apps[7].id, 1.0 } }).size();
                perKey.push_back(clock.nsecsElapsed() / 1e6);
            }
        }
    }
    std::printf("search over %zu apps: index prepared in %.1f ms; ranking per keystroke: median "
                "%.3f ms, worst %.3f ms (%zu keystrokes; last query %zu results)\n",
                apps.size(),
                prepareMs,
                median(perKey),
                *std::max_element(perKey.begin(), perKey.end()),
                perKey.size(),
                results);
    return 0;
}
