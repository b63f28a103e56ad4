#!/usr/bin/python3
# The panel by keyboard alone, with the real programs under Xvfb (desktop_session): Ctrl+1, 2
# and 3 choose a menu; Tab and Shift+Tab go through the selectors, the menu and the control bar;
# a word typed at once into the panel opens the search where the panel was, with every letter.
# usage: e2e_panel_keys.py <the build tree>
import os, sys

sys.path.insert(0, os.path.join(os.path.dirname(__file__), "..", "..", "support"))
from desktop_session import Atspi, DesktopSession, find_all, waited  # noqa: E402

session = DesktopSession(
    entries={"alpha": "Name=Alpha Editor\nExec=true", "beta": "Name=Beta Viewer\nExec=true"},
    store='{"version": 1, "pins": ["alpha.desktop"], "recent": ["beta.desktop"]}')
session.install(sys.argv[1])
session.start()
panel = session.open_panel()


def checked(menu):
    box = next(b for b in find_all(panel, "check box") if b.get_name() == menu)
    return box.get_state_set().contains(Atspi.StateType.CHECKED)


def focus_after(key):
    heard = len(session.heard)
    session.keys(key)
    if not waited(lambda: session.heard[heard:], 5):
        session.fail(f"{key} moved the focus nowhere")
    return session.heard[-1].get_name()


# (key, the menu it shows, the row then listed first)
for key, menu, first in (("ctrl+3", "All Apps", "Alpha Editor"),
                         ("ctrl+2", "Recent", "Beta Viewer"),
                         ("ctrl+1", "My Apps", "Alpha Editor")):
    session.keys(key)
    if not waited(lambda: checked(menu) and session.rows()[:1] == [(first, False)]):
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
session.finish("the panel's keys choose menus, move the focus and hand typing to the search")
