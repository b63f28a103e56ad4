#!/usr/bin/python3
# The organizer as a screen reader finds it (desktop_session): a window whose panes, lists, rows,
# buttons and check boxes are found by their visible names, none unnamed. What the controls do is
# tst_serverwindows'.
# usage: a11y_organizer.py <pomvarsrv>
import json, os, sys

sys.path.insert(0, os.path.join(os.path.dirname(__file__), "..", "support"))
from desktop_session import DesktopSession, press  # noqa: E402

session = DesktopSession(
    entries={"alpha": "Name=Alpha\nExec=true", "beta": "Name=Beta\nExec=true"},
    store=json.dumps({"version": 1, "pins": ["alpha.desktop", "beta.desktop"],
                      "categories": [{"name": "Games", "apps": ["beta.desktop"]}]}))
session.serve(sys.argv[1])
found = session.found

session.request('{\n    "id": "organizer",\n    "pane": 2,\n    "itemkey": null\n}')
window = session.window("Pomvar Organizer")
if window.get_role_name() not in ("frame", "window"):
    session.fail(f"the organizer is a {window.get_role_name()}, not a window")
session.check_named(window)
for role, name in (("page tab", "Organize App"), ("page tab", "Settings"), ("radio button", "Normal"),
                   ("radio button", "Compact"), ("check box", "Animation effects"),
                   ("push button", "Clear Recent Apps")):
    found(window, role, name)

press(found(window, "page tab", "Organize"))
pins = found(window, "list", "Pinned Apps")
for role, name in (("list", "Categories"), ("list", "Apps in \u201cGames\u201d"),
                   ("list item", "Games"), ("push button", "Unpin")):
    found(window, role, name)
session.check_named(window)
rows = [pins.get_child_at_index(i).get_name() for i in range(pins.get_child_count())]
if rows != ["Alpha", "Beta"]:
    session.fail(f"the pinned apps read {rows}")
session.finish("the organizer's panes, lists, rows and controls are named over AT-SPI")
