#pragma once

#include "pomvarsrv/model/AppEntry.h"
#include "pomvarsrv/model/DesktopApp.h"

#include <QByteArray>
#include <QCryptographicHash>

#include <vector>

namespace pomvar::srv {

// A SHA-1 of a catalogue over the records the catalogue cache writes, in the order of the apps'
// keys: equal digests, equal catalogues. Made one app at a time, so that a scan can compare what
// it finds with the catalogue in use without keeping it.
class CatalogueDigest
{
public:
    // The apps in the order of their keys.
    void add(const AppEntry& app, const DesktopApp& entry);
    QByteArray result() const { return m_hash.result(); }

    // The digest of a catalogue in any order; `apps` and `entries` in the same one.
    static QByteArray of(const std::vector<AppEntry>& apps, const std::vector<DesktopApp>& entries);

private:
    QCryptographicHash m_hash{ QCryptographicHash::Sha1 };
};

} // namespace pomvar::srv
