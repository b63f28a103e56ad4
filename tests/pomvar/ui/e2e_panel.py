#!/usr/bin/python3
# The panel with the real programs under Xvfb (desktop_session), by the real pointer and the
# keyboard alone: an app of All Apps dragged onto My Apps' selector is pinned, in the store and at
# once in the panel (where other drops land: tst_pomvarview; what the store then holds:
# tst_servermodel); Ctrl+1, 2 and 3 choose a menu; Tab and Shift+Tab go through the selectors, the
# menu and the control bar; a word typed at once into the panel opens the search where the panel
# was, with every letter.
# usage: e2e_panel.py <the build tree>
import json, os, sys

sys.path.insert(0, os.path.join(os.path.dirname(__file__), "..", "..", "support"))
from desktop_session import Atspi, DesktopSession, centre, find_all, showing, waited  # noqa: E402

session = DesktopSession(
    entries={"alpha": "Name=Alpha Editor\nExec=true", "beta": "Name=Beta Viewer\nExec=true"},
    store=json.dumps({"version": 1, "pins": ["beta.desktop"], "recent": ["beta.desktop"],
                      "categories": [{"name": "Games"}, {"name": "Tools"}]}))
session.install(sys.argv[1])
session.start()
panel = session.open_panel()
# The selectors are check boxes to a screen reader.
selectors = {box.get_name(): box for box in find_all(panel, "check box")}


session.click(selectors["All Apps"])
alpha = waited(lambda: next((c for c in find_all(panel, "table cell", "Alpha Editor")
                             if showing(c)), None))
session._xdotool("mousemove", *centre(alpha), "mousedown", "1")
session._xdotool("mousemove", *centre(selectors["My Apps"]))
# Only My Apps has categories: the release waits until it shows.
if not waited(lambda: any(name == "Games" for name, _ in session.rows())):
    session.fail("My Apps did not show during the drag")
session._xdotool("mouseup", "1")
if not waited(lambda: session.store()["pins"] == ["beta.desktop", "alpha.desktop"]):
    session.fail(f"after the drop the store holds {session.store()}")
pinned = [("Beta Viewer", False), ("Alpha Editor", False), ("Games", False), ("Tools", False)]
if session.rows() != pinned:
    session.fail(f"after pinning Alpha My Apps shows {session.rows()}")


def focus_after(key):
    heard = len(session.heard)
    session.keys(key)
    if not waited(lambda: session.heard[heard:], 5):
        session.fail(f"{key} moved the focus nowhere")
    return session.heard[-1].get_name()


# (key, the menu it shows, the row then listed first)
for key, menu, first in (("ctrl+3", "All Apps", "Alpha Editor"),
                         ("ctrl+2", "Recent", "Beta Viewer"),
                         ("ctrl+1", "My Apps", "Beta Viewer")):
    session.keys(key)
    box = selectors[menu]
    if not waited(lambda: box.get_state_set().contains(Atspi.StateType.CHECKED)
                  and session.rows()[:1] == [(first, False)]):
        session.fail(f"{key}: {menu} is not shown; the rows read {session.rows()}")

visited = [focus_after("Tab") for _ in range(7)]
for control in ("My Apps", "Recent", "All Apps", "Search", "Organize", "Pomvar Menu"):
    if control not in visited:
        session.fail(f"Tab never reached {control!r}: {visited}")
if focus_after("shift+Tab") != visited[-2]:
    session.fail(f"Shift+Tab did not go back to {visited[-2]!r}")

place = panel.get_extents(Atspi.CoordType.SCREEN)
session.type("alp")
field = session.found(session.window("Search Apps"), "text", "Search Apps")
text = field.get_text_iface()
if not waited(lambda: text.get_text(0, -1) == "alp"):
    session.fail(f"the search received {text.get_text(0, -1)!r}, not 'alp'")
shown = session.window("Search Apps").get_extents(Atspi.CoordType.SCREEN)
# Where the panel was: at its top, over its columns, moved only to stay on the screen.
if abs(shown.y - place.y) > 60 or shown.x > place.x or shown.x + shown.width < place.x + place.width:
    session.fail(f"the search opened at {shown.x},{shown.y}, the panel was at {place.x},{place.y}")
if not waited(lambda: not session._panel_shown()):
    session.fail("the panel stayed open")
session.finish("a drag pins an app; the panel's keys choose menus, move the focus and hand "
               "typing to the search")
