#!/usr/bin/python3
# The whole update cycle with the real programs (desktop_session): this build runs from a prefix
# on a store with pins, categories, Recent and preferences; the next version's files replace it
# meanwhile, as a package manager does. The panel offers "Install Pomvar Update"; the server's
# window offers the restart; the old front end quits at its poll, the old server starts the new
# front end, whose server says the update is finished: the notification service shows "Update
# Complete", and the store is as it was.
# usage: e2e_update.py <this build's install tree> <the next version's install tree>
import json, os, sys

sys.path.insert(0, os.path.join(os.path.dirname(__file__), "..", "support"))
from desktop_session import DesktopSession, find, press, waited  # noqa: E402

old_tree, new_tree = sys.argv[1:3]
with open(f"{new_tree}/libexec/pomvar/version") as f:
    new_version = f.read().strip()
STORE = {"version": 1, "pins": ["beta.desktop"],
         "categories": [{"name": "Work", "apps": ["alpha.desktop", "beta.desktop"]}],
         "recent": ["alpha.desktop"], "use": {},
         "prefs": {"MenuDensity": 2, "AnimationFx": False, "SaveExpAppCats": True,
                   "SaveLastMenu": False, "OneExpAppCat": True}}
session = DesktopSession(store=json.dumps(STORE), entries={
    name.lower(): f"Name={name}\nExec=true" for name in ("Alpha", "Beta")})
session.install(old_tree)
old = session.start()

session.install(new_tree)
panel = session.open_panel()
session.click(session.found(panel, "push button", "Pomvar Menu"))
session.choose("Install Pomvar Update")

window = session.window("Pomvar Updates")
offer = f"Pomvar {new_version} is installed. Restart to use it."
if not find(window, "label", offer):
    session.fail(f"the updates window does not say {offer!r}")
press(session.found(window, "push button", "Restart Pomvar"))

if not waited(lambda: old.poll() is not None, 20):
    session.fail("the old front end did not quit")
# Which program the restart starts is tst_serverwindows'.
waited(lambda: session.front_end_pid(), 30) or session.fail("no new front end")
# Under the installed icon and the entry the desktop groups it under, with a sound.
notice = {"summary": "Update Complete", "body": "Pomvar for Linux was successfully updated.",
          "icon": "org.pomvar.Pomvar", "desktop-entry": "org.pomvar.Pomvar", "sound": True}


def shown():
    return [{key: dict(n, **n["hints"], sound="sound-name" in n["hints"]).get(key) for key in notice}
            for n in session.notifications()]


if not waited(lambda: shown() == [notice], 30):
    session.fail(f"notifications shown: {session.notifications()}")
kept = session.store()
if {key: kept.get(key) for key in STORE} != STORE or "updatedFrom" in kept:
    session.fail(f"the store changed: {kept}")
session.finish(f"updated to {new_version}: \"Update Complete\" shown, the store intact")
