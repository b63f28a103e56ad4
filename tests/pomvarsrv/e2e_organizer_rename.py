#!/usr/bin/python3
# End to end with the real programs (desktop_session: Xvfb, trayer, an install prefix): a category
# expanded in the panel, then renamed in the organizer opened from its context menu, is still
# expanded at the panel's next opening, which the organizer, still open, does not hinder.
# usage: e2e_organizer_rename.py <the build tree>
import json, os, sys

sys.path.insert(0, os.path.join(os.path.dirname(__file__), "..", "support"))
from desktop_session import DesktopSession, showing, waited  # noqa: E402

session = DesktopSession(entries={"alpha": "Name=Alpha\nExec=true", "beta": "Name=Beta\nExec=true"},
                         store=json.dumps({"version": 1, "categories": [
                             {"name": "Old", "apps": ["alpha.desktop"]}, {"name": "Other"}]}))
session.install(sys.argv[1])
session.start()

# My Apps, without pins: a click expands the category; the next opening shows it so.
session.open_panel()
session.click(session.row("Old"))
session.keys("Escape")
session.open_panel()
if session.rows() != [("Old", True), ("Alpha", False), ("Other", False)]:
    session.fail(f"after expanding Old the panel shows {session.rows()}")

# The category's context menu: "Organize". F2 renames the category, selected and focused.
session.click(session.row("Old"), 3)
session.choose("Organize")
session.focus("Pomvar Organizer")
session.keys("F2")
session.focus("Rename Category")
session.type("New")
session.keys("Return")
if not waited(lambda: [c["name"] for c in session.store()["categories"]] == ["New", "Other"]):
    session.fail(f"the store holds {session.store()['categories']} after the rename")

# The next opening, the organizer still open.
session.open_panel()
if session.rows() != [("New", True), ("Alpha", False), ("Other", False)]:
    session.fail(f"after the rename the panel shows {session.rows()}")
if not showing(session.window("Pomvar Organizer")):
    session.fail("the organizer closed when the panel opened")
session.finish("a category renamed in the organizer stays expanded in the panel")
