#include "i18n/Translations.h"

#include <QCoreApplication>
#include <QDir>
#include <QLibraryInfo>
#include <QTranslator>

namespace pomvar {

namespace {

// A translator owned by the application object, installed when `file` (without ".qm") loads.
bool installFile(const QString& file, const QString& folder)
{
    auto* translator = new QTranslator(QCoreApplication::instance());
    if (translator->load(file, folder) && QCoreApplication::installTranslator(translator))
        return true;
    delete translator;
    return false;
}

bool isEnglish(const QString& language)
{
    return language == u"C" || language == u"en" || language.startsWith(u"en-");
}

} // namespace

QString Translations::folderFor(const QString& programDir, int depth)
{
    return QDir::cleanPath(programDir + QStringLiteral("/..").repeated(depth) + u'/' +
                           QLatin1String(folderInPrefix));
}

QString Translations::install(const QString& folder, const QStringList& languages)
{
    // The source texts are English; their plural forms ("1 app", "2 apps") come from here.
    // Translators installed later are searched first.
    installFile(QStringLiteral("pomvar_en"), folder);
    for (const QString& language : languages) {
        if (isEnglish(language))
            return {};
        // "de-DE" tries pomvar_de_DE.qm, then pomvar_de.qm.
        const QString code = QString(language).replace(u'-', u'_');
        if (installFile(QStringLiteral("pomvar_") + code, folder)) {
            installFile(QStringLiteral("qtbase_") + code,
                        QLibraryInfo::path(QLibraryInfo::TranslationsPath));
            return code.section(u'_', 0, 0);
        }
    }
    return {};
}

} // namespace pomvar
