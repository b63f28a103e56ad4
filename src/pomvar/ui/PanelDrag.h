#pragma once

#include "model/TreeItem.h"
#include "ui/MyAppsDrop.h"

#include <QObject>
#include <QPoint>
#include <QPointer>

#include <functional>
#include <optional>

class QLabel;
class QWidget;

namespace pomvar {

class MenuListView;
class PomvarViewModel;

// A row dragged within the panel: an app from any menu onto My Apps, to pin it or file it into a
// category, or a row of My Apps to another place there (MyAppsDrop). The panel is a popup that
// holds the pointer, so the drag follows it through an application event filter rather than the
// window system's drag and drop: every move and the release are seen, whichever widget they
// reach. An image of the row follows the pointer; passing over the My Apps selector shows My
// Apps. Escape, or a release anywhere else, drops nothing. A drop asks the runtime server for
// the change, then saves the expansions and refreshes the menus, as the context menus do.
class PanelDrag : public QObject
{
    Q_OBJECT

public:
    // `myAppsPage`: what My Apps shows, its rows or its empty state.
    PanelDrag(PomvarViewModel& vm,
              QWidget* panel,
              QWidget* myAppsSelector,
              QWidget* myAppsPage,
              MenuListView* myApps,
              std::function<void()> showMyApps,
              QObject* parent = nullptr);
    ~PanelDrag() override;

    // `hotSpot`: where the row was pressed, in the row; `global`: the pointer now.
    void start(MenuListView* source,
               const QModelIndex& index,
               const QPoint& hotSpot,
               const QPoint& global);
    bool isActive() const { return m_active; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void move(const QPoint& global);
    void drop(const QPoint& global);
    void finish();
    // Nothing when the pointer is not on My Apps.
    std::optional<MyAppsDrop> target(const QPoint& global) const;
    QRect markerRect(const MyAppsDrop& drop) const;

    PomvarViewModel& m_vm;
    QWidget* m_panel;
    QWidget* m_myAppsSelector;
    QWidget* m_myAppsPage;
    MenuListView* m_myApps;
    std::function<void()> m_showMyApps;
    bool m_active = false;
    TreeItem m_item;
    QPoint m_hotSpot;
    QPointer<QLabel> m_image;
};

} // namespace pomvar
