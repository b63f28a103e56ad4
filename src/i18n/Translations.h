#pragma once

#include <QLocale>
#include <QString>
#include <QStringList>

namespace pomvar {

// Pomvar's translations and Qt's own, for the user's languages (LANGUAGE, LC_ALL, LC_MESSAGES,
// LANG, as Qt reads them). Both programs install them once their application object exists.
class Translations
{
public:
    // Where the .qm files are, below the install prefix (the build tree mirrors it).
    static constexpr const char* folderInPrefix = "share/pomvar/translations";

    // The translations folder of the install tree that holds a program in `programDir`,
    // `depth` folders below the prefix (bin: 1, libexec/pomvar: 2).
    static QString folderFor(const QString& programDir, int depth);

    // Installs the English plural forms, then the first of `languages` that Pomvar has a
    // translation for, with Qt's own in that language (standard buttons). English or "C"
    // before any translated language keeps English. Returns the language installed, as
    // "de", or an empty string for English.
    static QString install(const QString& folder,
                           const QStringList& languages = QLocale::system().uiLanguages());
};

} // namespace pomvar
