#include "ScreenshotServer.h"

#include "ScreenshotPalette.h"

#include <QDir>
#include <QFile>
#include <QTest>
#include <QWidget>

#include <cstdio>

namespace pomvar::test {

ScreenshotServer::ScreenshotServer(const char* tool, const Entries& entries, const char* store)
    : m_tool(tool)
    , m_suffix(useScreenshotPalette())
{
    for (const auto& [id, lines] : entries)
        TestDesktop::writeEntry(m_desktop.systemData(),
                                QString::fromLatin1(id) + ".desktop",
                                "Exec=true %U\n" + QByteArray(lines));
    if (*store)
        TestDesktop::write(m_desktop.storePath(), store);
    InProcessServer::useDesktop(m_desktop);
    // The system theme's icons, without the system's own apps.
    QDir().mkpath(m_desktop.systemData() + "/icons");
    for (const char* theme : { "Adwaita", "hicolor" })
        QFile::link(QStringLiteral("/usr/share/icons/") + theme,
                    m_desktop.systemData() + "/icons/" + theme);
}

QString ScreenshotServer::outputFolder(int argc, char* argv[]) const
{
    if (argc != 2)
        std::fprintf(stderr, "usage: %s <output folder>\n", m_tool);
    m_folder = argc == 2 ? QString::fromLocal8Bit(argv[1]) : QString();
    return m_folder;
}

bool ScreenshotServer::start(const srv::ServerOptions& options)
{
    if (!m_server.start(options))
        return false;
    QTest::qWait(3000); // the icons are rendered in the background
    return true;
}

bool ScreenshotServer::save(QWidget* window, const QString& file) const
{
    if (!window)
        return false;
    QTest::qWait(300); // painted
    QString name = file;
    name.insert(name.lastIndexOf(u'.'), m_suffix);
    if (window->grab().save(m_folder + u'/' + name))
        return true;
    std::fprintf(
        stderr, "%s: cannot write %s/%s\n", m_tool, qPrintable(m_folder), qPrintable(name));
    return false;
}

} // namespace pomvar::test
