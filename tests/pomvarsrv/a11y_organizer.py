#!/usr/bin/python3
# The organizer as a screen reader finds it (desktop_session): a window, whose panes, lists, rows,
# buttons and check boxes are found by their visible names and none is unnamed; a preference ticked, "Clear
# Recent Apps" and a pin's row selected then "Unpin", all pressed over AT-SPI, reach the store.
# usage: a11y_organizer.py <pomvarsrv>
import json, os, sys

sys.path.insert(0, os.path.join(os.path.dirname(__file__), "..", "support"))
from desktop_session import DesktopSession, press, waited  # noqa: E402

session = DesktopSession(
    entries={"alpha": "Name=Alpha\nExec=true", "beta": "Name=Beta\nExec=true"},
    store=json.dumps({"version": 1, "pins": ["alpha.desktop", "beta.desktop"],
                      "categories": [{"name": "Games", "apps": ["beta.desktop"]}],
                      "recent": ["alpha.desktop"]}))
session.serve(sys.argv[1])
found = session.found

session.request('{\n    "id": "organizer",\n    "pane": 2,\n    "itemkey": null\n}')
window = session.window("Pomvar Organizer")
if window.get_role_name() not in ("frame", "window"):
    session.fail(f"the organizer is a {window.get_role_name()}, not a window")
session.check_named(window)
for name in ("Organize", "Organize App", "Settings"):
    found(window, "page tab", name)
for name in ("Normal", "Compact"):
    found(window, "radio button", name)
press(found(window, "check box", "Animation effects"))
if not waited(lambda: session.store()["prefs"]["AnimationFx"] is False):
    session.fail("ticking Animation effects did not reach the store")
press(found(window, "push button", "Clear Recent Apps"))
if not waited(lambda: session.store()["recent"] == []):
    session.fail("Clear Recent Apps did not clear the store's Recent")

press(found(window, "page tab", "Organize"))
pins = found(window, "list", "Pinned Apps")
found(window, "list", "Categories")
found(window, "list", "Apps in \u201cGames\u201d")
found(window, "list item", "Games")
session.check_named(window)
rows = [pins.get_child_at_index(i).get_name() for i in range(pins.get_child_count())]
if rows != ["Alpha", "Beta"]:
    session.fail(f"the pinned apps read {rows}")
press(pins.get_child_at_index(1))
press(found(window, "push button", "Unpin"))
if not waited(lambda: session.store()["pins"] == ["alpha.desktop"]):
    session.fail(f"selecting Beta and pressing Unpin left the pins {session.store()['pins']}")
session.finish("the organizer's controls are named, found and pressed over AT-SPI")
