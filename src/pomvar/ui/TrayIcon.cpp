#include "ui/TrayIcon.h"

#include "desktop/DesktopNotification.h"
#include "tray/StatusNotifierItem.h"
#include "ui/Assets.h"
#include "ui/UiLog.h"
#include "ui/XEmbedTrayTint.h"

#include <QApplication>
#include <QCursor>
#include <QDBusConnection>
#include <QDir>
#include <QEvent>
#include <QFileInfo>
#include <QMenu>
#include <QPalette>
#include <QTimer>

namespace pomvar {

const QString TrayIcon::applicationId = QStringLiteral("org.pomvar.Pomvar");
const QString TrayIcon::symbolicIconName = QStringLiteral("org.pomvar.Pomvar-symbolic");

namespace {

// The icon's accessible label, title and tool tip.
QString label()
{
    //: The tray icon's tool tip and title: the product's name.
    return TrayIcon::tr("Pomvar");
}

QString noTrayNotice()
{
    return TrayIcon::tr("Pomvar: no system tray is available; the Pomvar icon will appear as "
                        "soon as one starts.");
}

// The installed icon theme folder beside the program (share/icons), when it holds the icon.
QString iconThemePath()
{
    const QString icons =
        QDir::cleanPath(QCoreApplication::applicationDirPath() + QStringLiteral("/../share/icons"));
    const QString file = icons + QStringLiteral("/hicolor/symbolic/apps/") +
                         TrayIcon::symbolicIconName + QStringLiteral(".svg");
    return QFileInfo::exists(file) ? icons : QString();
}

// The glyph in the palette's colours for hosts that cannot find the themed icon.
SniPixmapList iconPixmaps(const QColor& colour)
{
    SniPixmapList pixmaps;
    for (int side : { 16, 22, 32, 48 }) {
        const QImage image =
            Assets::pixmap(TrayIcon::symbolicIconName, QSize(side, side), 1.0, colour)
                .toImage()
                .convertToFormat(QImage::Format_ARGB32);
        SniPixmap pixmap{ side, side, {} };
        pixmap.argb.reserve(side * side * 4);
        for (int y = 0; y < side; ++y) {
            const auto* row = reinterpret_cast<const QRgb*>(image.constScanLine(y));
            for (int x = 0; x < side; ++x) {
                const QRgb argb = row[x];
                pixmap.argb.append(char(qAlpha(argb)));
                pixmap.argb.append(char(qRed(argb)));
                pixmap.argb.append(char(qGreen(argb)));
                pixmap.argb.append(char(qBlue(argb)));
            }
        }
        pixmaps.append(pixmap);
    }
    return pixmaps;
}

} // namespace

TrayIcon::TrayIcon(QObject* parent)
    : QObject(parent)
    , m_icon(new QSystemTrayIcon(this))
    , m_item(new StatusNotifierItem(QDBusConnection::sessionBus(), applicationId, this))
{
    m_icon->setObjectName(QStringLiteral("Pomvar"));
    m_icon->setToolTip(label());
    setGlyphColour(XEmbedTrayTint::forBackground(QApplication::palette().color(QPalette::Window)));
    connect(m_icon, &QSystemTrayIcon::activated, this, &TrayIcon::activated);

    m_item->setTitle(label());
    m_item->setToolTip(label());
    connect(m_item, &StatusNotifierItem::activateRequested, this, [this](int x, int y) {
        Q_EMIT clicked(x == 0 && y == 0 ? QRect() : QRect(x, y, 1, 1));
    });
    connect(m_item, &StatusNotifierItem::contextMenuRequested, this, &TrayIcon::showContextMenu);
    connect(
        m_item, &StatusNotifierItem::secondaryActivateRequested, this, &TrayIcon::searchRequested);
    connect(m_item, &StatusNotifierItem::watcherAppeared, this, &TrayIcon::useStatusNotifier);

    qApp->installEventFilter(this);
}

void TrayIcon::show()
{
    if (m_item->isWatcherPresent())
        useStatusNotifier();
    else
        showWhenTrayAvailable();
}

void TrayIcon::setContextMenu(QMenu* menu)
{
    m_menu = menu;
    // Given to Qt's icon only when it may dock through XEmbed: with a watcher on the bus, Qt
    // would export the menu over D-Bus for an icon of its own that never shows.
    if (m_host != Host::StatusNotifier)
        m_icon->setContextMenu(menu);
}

void TrayIcon::showWhenTrayAvailable()
{
    if (QSystemTrayIcon::isSystemTrayAvailable()) {
        m_host = Host::XEmbed;
        m_icon->show();
        return;
    }
    printWarning(lcUi(), noTrayNotice().toStdString());
    // Once a start: the user sees nothing else of Pomvar until a tray comes.
    DesktopNotification(
        tr("No system tray found"),
        tr("Pomvar lives in the system tray, and this desktop shows none. On GNOME, install the "
           "AppIndicator extension (gnome-shell-extension-appindicator) and turn it on in "
           "Extensions. Meanwhile the search shortcut (Super+Space, unless changed in Pomvar's "
           "Settings) opens Pomvar's search."))
        .post();
    m_trayPoll = new QTimer(this);
    m_trayPoll->setInterval(1000);
    connect(m_trayPoll, &QTimer::timeout, this, [this] {
        if (!QSystemTrayIcon::isSystemTrayAvailable())
            return;
        m_trayPoll->stop();
        m_host = Host::XEmbed;
        m_icon->show();
    });
    m_trayPoll->start();
}

void TrayIcon::useStatusNotifier()
{
    // Once an item, always an item: a restarting watcher gets it registered again.
    if (m_host == Host::StatusNotifier)
        return;
    updateItemIcon();
    if (!m_item->start())
        return;
    if (m_trayPoll)
        m_trayPoll->stop();
    m_icon->hide();
    m_host = Host::StatusNotifier;
}

void TrayIcon::updateItemIcon()
{
    // Hosts that find the themed icon recolour it; the pixmaps follow the application's look.
    const QColor window = QApplication::palette().color(QPalette::Window);
    m_item->setIcon(
        symbolicIconName, iconThemePath(), iconPixmaps(XEmbedTrayTint::forBackground(window)));
}

void TrayIcon::activated(QSystemTrayIcon::ActivationReason reason)
{
    // The XEmbed icon shows its context menu itself.
    if (reason == QSystemTrayIcon::Trigger)
        Q_EMIT clicked(m_icon->geometry());
    else if (reason == QSystemTrayIcon::MiddleClick)
        Q_EMIT searchRequested();
}

void TrayIcon::showContextMenu(int x, int y)
{
    if (m_menu)
        m_menu->popup(x == 0 && y == 0 ? QCursor::pos() : QPoint(x, y));
}

void TrayIcon::setGlyphColour(const QColor& colour)
{
    if (colour == m_glyph)
        return;
    m_glyph = colour;
    m_icon->setIcon(Assets::trayIcon(m_glyph));
}

void TrayIcon::followTrayBackground()
{
    m_readPending = false;
    const QColor colour = XEmbedTrayTint::glyphColour(m_icon->geometry());
    if (!colour.isValid())
        return;
    m_glyphFromTray = true;
    setGlyphColour(colour);
}

bool TrayIcon::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == qApp && event->type() == QEvent::ApplicationPaletteChange) {
        // Without a reading of the tray, the icon follows the desktop's light or dark look.
        const QColor window = QApplication::palette().color(QPalette::Window);
        if (!m_glyphFromTray)
            setGlyphColour(XEmbedTrayTint::forBackground(window));
        if (m_host == Host::StatusNotifier)
            updateItemIcon();
    } else if (event->type() == QEvent::Paint && m_host == Host::XEmbed && !m_readPending &&
               watched->isWidgetType() && static_cast<QWidget*>(watched)->isWindow() &&
               watched->objectName() == QLatin1String("QSystemTrayIconSys")) {
        // Qt's embedded icon window paints the tray's background behind the glyph: read it once
        // that paint is on the screen.
        m_readPending = true;
        QTimer::singleShot(0, this, &TrayIcon::followTrayBackground);
    }
    return QObject::eventFilter(watched, event);
}

} // namespace pomvar
