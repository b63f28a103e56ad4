#pragma once

#include "pomvarsrv/catalogue/AppCatalogue.h"
#include "pomvarsrv/catalogue/CatalogueCache.h"
#include "pomvarsrv/catalogue/CatalogueScan.h"
#include "pomvarsrv/catalogue/IconCache.h"

#include <QObject>
#include <QThreadPool>

#include <string>
#include <vector>

namespace pomvar::srv {

class AppSearch;
class ServerModel;

// Keeps the installed apps in the model and the search up to date with the desktop entries.
// load() fills them before anything is served: from the catalogue cache when it fits, checked by
// a scan in the background a moment later, else by a scan on the spot. Icons missing from the
// icon cache are rendered in the background, the generic icon standing in for them meanwhile;
// renders nothing shows any longer are then removed. A change to the desktop entries starts a
// background scan; whenever one changes the apps, the model tells the front end
// (appFolderModified) to fetch the menus again.
class CatalogueLoader : public QObject
{
    Q_OBJECT

public:
    CatalogueLoader(ServerModel& model, AppSearch& search, QObject* parent = nullptr);
    ~CatalogueLoader() override;

    // `refresh`: every icon is rendered again and the catalogue cache is not used.
    void load(bool refresh);
    // Lists the apps again in the background: icons gone are rendered again.
    void rescan() { scanInBackground(false); }

Q_SIGNALS:
    // A listing changed the apps or their entries (an app installed, removed or edited).
    void appsChanged();

private:
    // Lists the apps on a worker thread; applies the result unless a newer scan started.
    // `compareFirst`: the scan first compares the entries with the catalogue in use (a start's
    // check of its cache), and lists them only when they differ.
    void scanInBackground(bool compareFirst);
    void apply(CatalogueScan scan);
    void renderInBackground(int generation, std::vector<CatalogueScan::MissingIcon> missing);
    void saveCatalogue();
    // Once every app has its renders: removes the ones nothing shows any longer.
    void pruneIcons();

    ServerModel& m_model;
    AppSearch& m_search;
    AppCatalogue m_catalogue;
    IconCache m_icons;
    CatalogueCache m_cache;
    std::string m_environment;
    IconCache::Files m_genericIcons;
    // Counts scans started and lists applied: only the latest one's results are used.
    int m_scanGeneration = 0;
    // Last, so that they are destroyed first: they wait for the scans and renders still running.
    QThreadPool m_scanPool;
    QThreadPool m_renderPool;
};

} // namespace pomvar::srv
