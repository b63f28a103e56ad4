#pragma once

#include <QColor>
#include <QObject>
#include <QRect>
#include <QSystemTrayIcon>

class QMenu;
class QTimer;

namespace pomvar {

class StatusNotifierItem;

// The status icon. With a StatusNotifierWatcher on the session bus (KDE Plasma, GNOME with the
// AppIndicator extension, Xfce) it is a StatusNotifierItem whose clicks carry the host's
// position; otherwise an XEmbed tray icon drawn light or dark for the tray's own background.
// Without any tray at start it says so once and shows up when one appears.
class TrayIcon : public QObject
{
    Q_OBJECT

public:
    enum class Host
    {
        None,
        XEmbed,
        StatusNotifier
    };

    static const QString applicationId;
    static const QString symbolicIconName;

    // Ready to show, but not yet shown.
    explicit TrayIcon(QObject* parent = nullptr);
    // Shows the icon on the tray the session offers: a StatusNotifier watcher, else an XEmbed
    // tray, else the first XEmbed tray that appears (after a notification that none was found).
    void show();

    QSystemTrayIcon* icon() const { return m_icon; }
    StatusNotifierItem* item() const { return m_item; }
    Host host() const { return m_host; }
    // The right-click menu, on either kind of tray.
    void setContextMenu(QMenu* menu);
    // The colour the XEmbed icon is drawn in.
    QColor glyphColour() const { return m_glyph; }

Q_SIGNALS:
    // A primary click; `geometry` is the icon's or the host's point, empty when unknown.
    void clicked(const QRect& geometry);
    // A middle click.
    void searchRequested();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void showWhenTrayAvailable();
    void useStatusNotifier();
    void updateItemIcon();
    void activated(QSystemTrayIcon::ActivationReason reason);
    void showContextMenu(int x, int y);
    void setGlyphColour(const QColor& colour);
    void followTrayBackground();

    QSystemTrayIcon* m_icon;
    StatusNotifierItem* m_item;
    QMenu* m_menu = nullptr;
    QTimer* m_trayPoll = nullptr;
    Host m_host = Host::None;
    QColor m_glyph;
    bool m_glyphFromTray = false;
    bool m_readPending = false;
};

} // namespace pomvar
