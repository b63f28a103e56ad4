#!/usr/bin/python3
# End to end with the real programs (tray_session: Xvfb, trayer, the install layout): a category
# expanded in the panel, then renamed in the organizer opened from its context menu, is still
# expanded at the panel's next opening, which the organizer, still open, does not hinder.
# usage: e2e_organizer_rename.py <pomvar> <pomvarsrv>
import json, os, sys

sys.path.insert(0, os.path.join(os.path.dirname(__file__), "..", "support"))
from tray_session import TraySession, waited  # noqa: E402

session = TraySession(sys.argv[1], sys.argv[2],
                      entries={"alpha": "Name=Alpha\nExec=true", "beta": "Name=Beta\nExec=true"},
                      store=json.dumps({"version": 1, "categories": [
                          {"name": "Old", "apps": ["alpha.desktop"]}, {"name": "Other"}]}))


def expanded():
    return session.settings().get("ExpandedAppCats")


# My Apps, without pins: the first row is the category. A click expands it; hiding the panel
# saves the expansion.
x, y = session.open_panel()
session.click(x + 200, y + 22)
session.key("Escape")
if not waited(lambda: expanded() == {"Old": True, "Other": False}):
    session.fail(f"the panel saved {expanded()} after expanding Old")

# The category's context menu: "Get Info", then "Organize".
x, y = session.open_panel()
session.click(x + 200, y + 22, button=3)
session.popup()
session.key("Down", "Down", "Return")
organizer = session.window("Pomvar Organizer")
session.focus(organizer)
session.key("F2")  # the category is selected and focused: F2 renames it
session.focus(session.window("Rename Category"))
session.type("New")
session.key("Return")
if not waited(lambda: [c["name"] for c in session.store()["categories"]] == ["New", "Other"]):
    session.fail(f"the store holds {session.store()['categories']} after the rename")

# The next opening, the organizer still open.
session.open_panel()
session.key("Escape")
if not waited(lambda: expanded() == {"New": True, "Other": False}):
    session.fail(f"after the rename the panel saved {expanded()}")
if not session.xdotool("search", "--onlyvisible", "--name", "^Pomvar Organizer$"):
    session.fail("the organizer closed when the panel opened")
session.finish("a category renamed in the organizer stays expanded in the panel")
