// Takes the tray icon's screenshots for the documentation: on a dark and on a light XEmbed tray
// (trayer, its background from a GTK theme, the application's own look the opposite). Run it
// under xvfb-run with QT_QPA_PLATFORM=xcb (see the README). Writes tray-dark.png and
// tray-light.png, three times the screen's size, to the folder it is given.
#include "ui/TrayIcon.h"
#include "ui/XEmbedTrayTint.h"

#include <QApplication>
#include <QDir>
#include <QPalette>
#include <QProcess>
#include <QScreen>
#include <QTemporaryDir>
#include <QTest>

#include <cstdio>

using namespace pomvar;

namespace {

constexpr int kTrayWidth = 120;
constexpr int kTrayHeight = 28;

bool shoot(const QString& background, const QColor& window, const QString& file)
{
    QPalette palette = QApplication::palette();
    palette.setColor(QPalette::Window, window);
    QApplication::setPalette(palette);
    QTemporaryDir theme;
    QFile gtkrc(theme.filePath("gtkrc"));
    if (!gtkrc.open(QIODevice::WriteOnly))
        return false;
    gtkrc.write("style \"tray\" { bg[NORMAL] = \"" + background.toUtf8() +
                "\" }\nwidget_class \"*\" style \"tray\"\n");
    gtkrc.close();
    QProcess trayer;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("GTK2_RC_FILES", gtkrc.fileName());
    trayer.setProcessEnvironment(environment);
    trayer.start("trayer",
                 { "--edge",
                   "top",
                   "--align",
                   "right",
                   "--widthtype",
                   "pixel",
                   "--width",
                   QString::number(kTrayWidth),
                   "--height",
                   QString::number(kTrayHeight),
                   "--SetDockType",
                   "true",
                   "--transparent",
                   "false" });
    if (!trayer.waitForStarted())
        return false;
    bool saved = false;
    {
        TrayIcon icon;
        // The icon takes the tray's colours after its first paint, then paints again.
        const QColor glyph = XEmbedTrayTint::forBackground(QColor(background));
        if (!QTest::qWaitFor([&] { return icon.glyphColour() == glyph; }, 10000))
            return false;
        QTest::qWait(300);
        QScreen* screen = QGuiApplication::primaryScreen();
        const QImage shot =
            screen
                ->grabWindow(0, screen->geometry().width() - kTrayWidth, 0, kTrayWidth, kTrayHeight)
                .toImage();
        saved =
            shot.scaled(shot.size() * 3, Qt::IgnoreAspectRatio, Qt::FastTransformation).save(file);
    }
    trayer.terminate();
    trayer.waitForFinished();
    return saved;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s <output folder>\n", argv[0]);
        return 2;
    }
    // No StatusNotifierWatcher can answer: the icon goes to the XEmbed tray.
    qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent");
    QApplication app(argc, argv);
    const QDir out(QString::fromLocal8Bit(argv[1]));
    const bool ok = shoot("#2a2a2e", QColor(0xf0, 0xf0, 0xf0), out.filePath("tray-dark.png")) &&
                    shoot("#e6e6e6", QColor(0x30, 0x30, 0x30), out.filePath("tray-light.png"));
    std::fprintf(stderr, ok ? "tray_screenshots: written\n" : "tray_screenshots: failed\n");
    return ok ? 0 : 1;
}
