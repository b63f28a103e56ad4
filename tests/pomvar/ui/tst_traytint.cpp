// The XEmbed tray icon on a real tray (trayer, under xvfb-run): light on a dark tray, dark on a
// light one, whatever the application's look, and in the colour a tray asks for with
// _NET_SYSTEM_TRAY_COLORS; checked on the screen.
#include "ui/TrayIcon.h"
#include "ui/XEmbedTrayTint.h"

#include <QApplication>
#include <QProcess>
#include <QScreen>
#include <QtTest>

#include <memory>

using namespace pomvar;

namespace {

int distance(const QColor& a, const QColor& b)
{
    return std::abs(a.red() - b.red()) + std::abs(a.green() - b.green()) +
           std::abs(a.blue() - b.blue());
}

// The pixel of the icon on the screen that stands out most from the tray at its corner.
QColor glyphOnScreen(const QRect& icon)
{
    const QImage shot = QGuiApplication::primaryScreen()
                            ->grabWindow(0, icon.x(), icon.y(), icon.width(), icon.height())
                            .toImage();
    QColor glyph = shot.pixelColor(0, 0);
    for (int y = 0; y < shot.height(); ++y)
        for (int x = 0; x < shot.width(); ++x)
            if (distance(shot.pixelColor(x, y), shot.pixelColor(0, 0)) >
                distance(glyph, shot.pixelColor(0, 0)))
                glyph = shot.pixelColor(x, y);
    return glyph;
}

} // namespace

class TestTrayTint : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void glyphStandsOutOnTheTray()
    {
        const QColor light(0xf0, 0xf0, 0xf0), dark(0x30, 0x30, 0x30);
        // The tray's colour, the application's look, the colour the tray asks for (foreground
        // red, green and blue of 16 bits; then error, warning and success), the glyph's colour,
        // whether the tray is there before Pomvar (if not, the icon appears when the tray does).
        const std::tuple<QString, QColor, QString, QColor, bool> cases[] = {
            { "#e8e8e8", dark, "", XEmbedTrayTint::darkGlyph, true },
            { "#8a8a8a", dark, "", XEmbedTrayTint::darkGlyph, true },
            { "#202020", light, "", XEmbedTrayTint::lightGlyph, false },
            { "#e8e8e8", dark, "65535,32896,0,0,0,0,0,0,0,0,0,0", QColor(0xff, 0x80, 0), true },
        };
        for (const auto& [background, window, requested, glyph, trayFirst] : cases) {
            QPalette palette = QApplication::palette();
            palette.setColor(QPalette::Window, window);
            QApplication::setPalette(palette);
            // The tray's background comes from its GTK theme.
            QTemporaryDir theme;
            QFile gtkrc(theme.filePath("gtkrc"));
            QVERIFY(gtkrc.open(QIODevice::WriteOnly) &&
                    gtkrc.write(("style \"tray\" { bg[NORMAL] = \"" + background +
                                 "\" }\nwidget_class \"*\" style \"tray\"\n")
                                    .toUtf8()) > 0);
            gtkrc.close();
            QTRY_VERIFY(!QSystemTrayIcon::isSystemTrayAvailable()); // the last row's tray is gone
            std::unique_ptr<TrayIcon> icon(trayFirst ? nullptr : new TrayIcon);
            if (icon)
                icon->show();
            QProcess trayer;
            QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
            environment.insert("GTK2_RC_FILES", gtkrc.fileName());
            trayer.setProcessEnvironment(environment);
            trayer.start("trayer",
                         { "--edge", "top", "--align", "right", "--widthtype", "request" });
            QVERIFY2(trayer.waitForStarted(), "trayer (package trayer) did not start");
            QTRY_VERIFY(XEmbedTrayTint::trayManager() != 0);
            const QStringList xprop =
                QString("-id %1 -f _NET_SYSTEM_TRAY_COLORS 32c -set _NET_SYSTEM_TRAY_COLORS %2")
                    .arg(XEmbedTrayTint::trayManager())
                    .arg(requested)
                    .split(' ');
            QVERIFY(requested.isEmpty() || QProcess::execute("xprop", xprop) == 0);
            if (trayFirst) {
                icon = std::make_unique<TrayIcon>();
                icon->show();
            }
            QTRY_VERIFY(icon->icon()->geometry().width() > 0);
            QCOMPARE(icon->host(), TrayIcon::Host::XEmbed);
            QTRY_COMPARE(icon->glyphColour(), glyph);
            QTRY_VERIFY2(distance(glyphOnScreen(icon->icon()->geometry()), glyph) <= 12,
                         qPrintable(glyphOnScreen(icon->icon()->geometry()).name()));
            icon.reset();
            trayer.terminate();
            trayer.waitForFinished();
            QTRY_VERIFY(XEmbedTrayTint::trayManager() == 0);
        }
    }
};

QTEST_MAIN(TestTrayTint)
#include "tst_traytint.moc"
