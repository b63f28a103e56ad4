#!/usr/bin/python3
# End to end with the real programs (desktop_session: Xvfb, trayer, an install prefix), dragged
# with the real pointer: an app of All Apps onto My Apps (over its selector) is pinned, a
# category dragged above another moves there, a pinned app dropped onto a category is filed
# there. The store follows each drop; the panel shows the first at once.
# usage: e2e_panel_drag.py <the build tree>
import json, os, sys

sys.path.insert(0, os.path.join(os.path.dirname(__file__), "..", "..", "support"))
from desktop_session import DesktopSession, find_all, showing, waited  # noqa: E402
from gi.repository import Atspi  # noqa: E402

session = DesktopSession(
    entries={"alpha": "Name=Alpha\nExec=true", "beta": "Name=Beta\nExec=true"},
    store=json.dumps({"version": 1, "pins": ["beta.desktop"],
                      "categories": [{"name": "Games"}, {"name": "Tools"}]}))
session.install(sys.argv[1])
session.start()


def centre(node, dy=0):
    box = node.get_extents(Atspi.CoordType.SCREEN)
    return str(box.x + box.width // 2), str(box.y + box.height // 2 + dy)


def drag(row, *path, expect):
    """Presses on the row, moves through `path` (nodes, or (node, dy) for a point above or below
    a node's middle), each move taken once My Apps shows, and releases; then waits for the store
    to hold what `expect` gives."""
    session._xdotool("mousemove", *centre(row), "mousedown", "1")
    for step in path:
        node, dy = step if isinstance(step, tuple) else (step, 0)
        session._xdotool("mousemove", *centre(node, dy))
        # Only My Apps has categories: moves are not merged into one before it shows.
        if not waited(lambda: any(name == "Games" for name, _ in session.rows())):
            session.fail("My Apps did not show during the drag")
    session._xdotool("mouseup", "1")
    if not waited(lambda: expect(session.store())):
        session.fail(f"after the drop the store holds {session.store()}")


panel = session.open_panel()
# The selectors are check boxes to a screen reader.
buttons = find_all(panel, "check box")
selector = next(b for b in buttons if b.get_name() == "My Apps")
session.click(next(b for b in buttons if b.get_name() == "All Apps"))
alpha = waited(lambda: next((c for c in find_all(panel, "table cell", "Alpha") if showing(c)), None))
drag(alpha, selector, expect=lambda store: store["pins"] == ["beta.desktop", "alpha.desktop"])
if session.rows() != [("Beta", False), ("Alpha", False), ("Games", False), ("Tools", False)]:
    session.fail(f"after pinning Alpha My Apps shows {session.rows()}")

drag(session.row("Tools"), (session.row("Games"), -4),
     expect=lambda store: [c["name"] for c in store["categories"]] == ["Tools", "Games"])
drag(session.row("Beta"), session.row("Games"),
     expect=lambda store: store["categories"][1].get("apps") == ["beta.desktop"])

session.finish("apps dragged onto My Apps are pinned and filed, categories reordered")
