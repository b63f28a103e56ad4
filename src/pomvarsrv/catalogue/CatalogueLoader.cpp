#include "pomvarsrv/catalogue/CatalogueLoader.h"

#include "pomvarsrv/catalogue/CatalogueDigest.h"
#include "pomvarsrv/catalogue/CatalogueLog.h"
#include "pomvarsrv/catalogue/IconTheme.h"
#include "pomvarsrv/model/ServerModel.h"
#include "pomvarsrv/search/AppSearch.h"

#include <QElapsedTimer>
#include <QSet>
#include <QTimer>

#include <malloc.h>
#include <map>
#include <memory>
#include <sys/resource.h>
#include <unistd.h>

namespace pomvar::srv {

namespace {

constexpr int kCheckDelayMs = 1500;

// Background work is never urgent: the calling thread gets a nice value of 10, so the front end
// and the server's own replies go first, yet a busy machine cannot starve it (as SCHED_IDLE,
// Qt's IdlePriority, would).
void yieldToOthers()
{
    ::setpriority(PRIO_PROCESS, static_cast<id_t>(::gettid()), 10);
}

} // namespace

CatalogueLoader::CatalogueLoader(ServerModel& model, AppSearch& search, QObject* parent)
    : QObject(parent)
    , m_model(model)
    , m_search(search)
{
    m_scanPool.setMaxThreadCount(1);
    m_renderPool.setMaxThreadCount(1);
    connect(&m_catalogue, &AppCatalogue::changed, this, [this] {
        qCInfo(lcCatalogue) << "the installed apps changed";
        scanInBackground(false);
    });
}

CatalogueLoader::~CatalogueLoader()
{
    m_scanPool.waitForDone();
    m_renderPool.waitForDone();
}

void CatalogueLoader::load(bool refresh)
{
    if (refresh) {
        qCInfo(lcCatalogue) << "refreshing: every icon is rendered again";
        m_icons.clear();
    }
    QElapsedTimer clock;
    clock.start();
    m_environment = CatalogueCache::environment();
    m_catalogue.watch();
    if (auto cached = refresh ? std::nullopt : m_cache.load(m_environment)) {
        m_model.setApps(InstalledApps(std::move(cached->apps)));
        m_search.setEntries(std::move(cached->entries));
        qCInfo(lcCatalogue) << m_model.apps().size() << "apps loaded in" << clock.elapsed()
                            << "ms from the catalogue cache; checking it in the background";
        // Once the front end, starting meanwhile, has had the processor for its first build.
        QTimer::singleShot(kCheckDelayMs, this, [this] { scanInBackground(true); });
    } else {
        apply(CatalogueScan::run(IconTheme::userThemeName(), m_icons));
        qCInfo(lcCatalogue) << m_model.apps().size() << "apps loaded in" << clock.elapsed() << "ms";
    }
}

void CatalogueLoader::scanInBackground(bool compareFirst)
{
    const int generation = ++m_scanGeneration;
    const QString themeName = IconTheme::userThemeName();
    const QByteArray inUse =
        compareFirst ? CatalogueDigest::of(m_model.apps().all(), m_search.entries()) : QByteArray();
    m_scanPool.start([this, generation, themeName, icons = m_icons, inUse] {
        yieldToOthers();
        auto scan = std::make_shared<CatalogueScan>(
            inUse.isEmpty() ? CatalogueScan::run(themeName, icons)
                            : CatalogueScan::runUnlessSame(themeName, icons, inUse));
        QMetaObject::invokeMethod(
            this,
            [this, generation, scan] {
                // A newer scan has a newer list.
                if (generation == m_scanGeneration)
                    apply(std::move(*scan));
                // The scan's lists are gone: give their pages back.
                ::malloc_trim(0);
            },
            Qt::QueuedConnection);
    });
}

void CatalogueLoader::apply(CatalogueScan scan)
{
    const int generation = ++m_scanGeneration;
    qCInfo(lcCatalogue).noquote() << scan.summary;
    m_genericIcons = scan.generic;
    // Unchanged apps keep the menus as the front end has them, and the cache as it is.
    const bool appsChanged =
        !m_model.isReady() || (!scan.unchanged && scan.apps != m_model.apps().all());
    const bool entriesChanged = !scan.unchanged && scan.entries != m_search.entries();
    if (entriesChanged)
        m_search.setEntries(std::move(scan.entries));
    if (appsChanged)
        m_model.setApps(InstalledApps(std::move(scan.apps)));
    // Now, not after the renders: a start cut short still leaves the next one a catalogue.
    if (appsChanged || entriesChanged) {
        saveCatalogue();
        Q_EMIT this->appsChanged();
    }
    if (scan.missing.empty())
        pruneIcons();
    else
        renderInBackground(generation, std::move(scan.missing));
}

void CatalogueLoader::renderInBackground(int generation,
                                         std::vector<CatalogueScan::MissingIcon> missing)
{
    const IconCache cache = m_icons;
    m_renderPool.start([this, cache, generation, missing = std::move(missing)] {
        yieldToOthers();
        std::map<QString, IconCache::Files> rendered;
        auto done = std::make_shared<std::vector<AppEntry>>();
        for (const auto& [key, source] : missing) {
            auto it = rendered.find(source);
            if (it == rendered.end())
                it = rendered.emplace(source, cache.render(source)).first;
            if (it->second.isValid())
                done->push_back(AppEntry{
                    key, {}, {}, it->second.path.toStdString(), it->second.path2x.toStdString() });
        }
        QMetaObject::invokeMethod(
            this,
            [this, generation, done] {
                qCInfo(lcCatalogue) << done->size() << "icons rendered";
                // A newer scan has its own list and its own renders.
                if (generation == m_scanGeneration) {
                    m_model.setIcons(*done);
                    saveCatalogue();
                    pruneIcons();
                }
            },
            Qt::QueuedConnection);
    });
}

void CatalogueLoader::saveCatalogue()
{
    if (!m_cache.save(m_environment, m_model.apps().all(), m_search.entries()))
        qCWarning(lcCatalogue) << "cannot write the catalogue cache" << m_cache.path();
}

void CatalogueLoader::pruneIcons()
{
    QSet<QString> inUse = { m_genericIcons.path, m_genericIcons.path2x };
    for (const AppEntry& app : m_model.apps().all())
        inUse << QString::fromStdString(app.iconPath) << QString::fromStdString(app.iconPath2x);
    if (const int removed = m_icons.prune(inUse))
        qCInfo(lcCatalogue) << removed << "stale icon renders removed";
}

} // namespace pomvar::srv
