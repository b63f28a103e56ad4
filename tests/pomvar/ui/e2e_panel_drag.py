#!/usr/bin/python3
# End to end with the real programs (desktop_session: Xvfb, trayer, an install prefix), dragged
# with the real pointer: an app of All Apps dropped onto My Apps' selector is pinned, in the store
# and at once in the panel. (Where other drops land: tst_pomvarview; what the store then holds:
# tst_servermodel.)
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


def centre(node):
    box = node.get_extents(Atspi.CoordType.SCREEN)
    return str(box.x + box.width // 2), str(box.y + box.height // 2)


panel = session.open_panel()
# The selectors are check boxes to a screen reader.
buttons = find_all(panel, "check box")
selector = next(b for b in buttons if b.get_name() == "My Apps")
session.click(next(b for b in buttons if b.get_name() == "All Apps"))
alpha = waited(lambda: next((c for c in find_all(panel, "table cell", "Alpha") if showing(c)), None))
session._xdotool("mousemove", *centre(alpha), "mousedown", "1")
session._xdotool("mousemove", *centre(selector))
# Only My Apps has categories: the release waits until it shows.
if not waited(lambda: any(name == "Games" for name, _ in session.rows())):
    session.fail("My Apps did not show during the drag")
session._xdotool("mouseup", "1")
if not waited(lambda: session.store()["pins"] == ["beta.desktop", "alpha.desktop"]):
    session.fail(f"after the drop the store holds {session.store()}")
if session.rows() != [("Beta", False), ("Alpha", False), ("Games", False), ("Tools", False)]:
    session.fail(f"after pinning Alpha My Apps shows {session.rows()}")

session.finish("an app dragged onto My Apps is pinned")
