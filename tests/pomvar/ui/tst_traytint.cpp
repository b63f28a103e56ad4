// The XEmbed tray icon on a real tray (trayer under Xvfb): light on a dark tray, dark on a light
// one, and in the colour a tray asks for with _NET_SYSTEM_TRAY_COLORS; checked on the screen.
#include "XvfbDisplay.h"

#include "ui/TrayIcon.h"
#include "ui/XEmbedTrayTint.h"

#include <QApplication>
#include <QProcess>
#include <QScreen>
#include <QtTest>

#include <xcb/xcb.h>

#include <cstdlib>
#include <memory>

using namespace pomvar;

namespace {

xcb_connection_t* x11()
{
    return qApp->nativeInterface<QNativeInterface::QX11Application>()->connection();
}

xcb_atom_t atom(const char* name)
{
    std::unique_ptr<xcb_intern_atom_reply_t, decltype(&std::free)> reply(
        xcb_intern_atom_reply(
            x11(), xcb_intern_atom(x11(), 0, uint16_t(strlen(name)), name), nullptr),
        &std::free);
    return reply->atom;
}

xcb_window_t trayOwner()
{
    std::unique_ptr<xcb_get_selection_owner_reply_t, decltype(&std::free)> reply(
        xcb_get_selection_owner_reply(
            x11(), xcb_get_selection_owner(x11(), atom("_NET_SYSTEM_TRAY_S0")), nullptr),
        &std::free);
    return reply ? reply->owner : xcb_window_t(XCB_WINDOW_NONE);
}

int distance(const QColor& a, const QColor& b)
{
    return std::abs(a.red() - b.red()) + std::abs(a.green() - b.green()) +
           std::abs(a.blue() - b.blue());
}

// The pixel of the icon on the screen that stands out most from the tray around it.
QColor glyphOnScreen(const QRect& icon)
{
    const QImage shot = QGuiApplication::primaryScreen()
                            ->grabWindow(0, icon.x(), icon.y(), icon.width(), icon.height())
                            .toImage();
    const QColor background = shot.pixelColor(0, 0);
    QColor glyph = background;
    for (int y = 0; y < shot.height(); ++y)
        for (int x = 0; x < shot.width(); ++x)
            if (distance(shot.pixelColor(x, y), background) > distance(glyph, background))
                glyph = shot.pixelColor(x, y);
    return glyph;
}

} // namespace

class TestTrayTint : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void glyphStandsOutOnTheTray_data()
    {
        QTest::addColumn<QString>("background");
        QTest::addColumn<QColor>("window");
        QTest::addColumn<QColor>("requested");
        QTest::addColumn<QColor>("glyph");
        // The application's own look is the opposite of the tray's: the tray wins.
        const QColor light(0xf0, 0xf0, 0xf0), dark(0x30, 0x30, 0x30), orange(0xff, 0x80, 0x00);
        QTest::newRow("dark tray, light look")
            << "#202020" << light << QColor() << XEmbedTrayTint::lightGlyph;
        QTest::newRow("light tray, dark look")
            << "#e8e8e8" << dark << QColor() << XEmbedTrayTint::darkGlyph;
        QTest::newRow("tray asks for a colour") << "#e8e8e8" << dark << orange << orange;
    }

    void glyphStandsOutOnTheTray()
    {
        QFETCH(QString, background);
        QFETCH(QColor, window);
        QFETCH(QColor, requested);
        QPalette palette = QApplication::palette();
        palette.setColor(QPalette::Window, window);
        QApplication::setPalette(palette);
        QFETCH(QColor, glyph);
        // The tray's background comes from its GTK theme.
        QTemporaryDir theme;
        QFile gtkrc(theme.filePath("gtkrc"));
        QVERIFY(gtkrc.open(QIODevice::WriteOnly));
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
                       "request",
                       "--height",
                       "28",
                       "--SetDockType",
                       "true",
                       "--transparent",
                       "false" });
        QVERIFY2(trayer.waitForStarted(), "trayer (package trayer) did not start");
        QTRY_VERIFY(trayOwner() != XCB_WINDOW_NONE);
        if (requested.isValid()) {
            // Foreground, then error, warning and success, 16 bits a channel.
            const uint32_t colours[12] = { uint32_t(requested.red() * 257),
                                           uint32_t(requested.green() * 257),
                                           uint32_t(requested.blue() * 257) };
            xcb_change_property(x11(),
                                XCB_PROP_MODE_REPLACE,
                                trayOwner(),
                                atom("_NET_SYSTEM_TRAY_COLORS"),
                                XCB_ATOM_CARDINAL,
                                32,
                                12,
                                colours);
            xcb_flush(x11());
        }
        {
            TrayIcon icon;
            QTRY_COMPARE(icon.host(), TrayIcon::Host::XEmbed);
            QTRY_VERIFY(icon.icon()->geometry().width() > 0);
            QTRY_COMPARE(icon.glyphColour(), glyph);
            QTRY_VERIFY2(distance(glyphOnScreen(icon.icon()->geometry()), glyph) <= 12,
                         qPrintable(glyphOnScreen(icon.icon()->geometry()).name()));
        }
        trayer.terminate();
        trayer.waitForFinished();
        QTRY_VERIFY(trayOwner() == XCB_WINDOW_NONE);
    }
};

int main(int argc, char** argv)
{
    pomvar::test::XvfbDisplay display;
    if (display.name().isEmpty()) {
        std::fprintf(stderr, "tst_traytint: Xvfb (package xvfb) did not start\n");
        return 1;
    }
    qputenv("DISPLAY", display.name().toUtf8());
    qputenv("QT_QPA_PLATFORM", "xcb");
    // No StatusNotifierWatcher can answer: the icon goes to the XEmbed tray.
    qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent");
    QApplication app(argc, argv);
    TestTrayTint test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_traytint.moc"
