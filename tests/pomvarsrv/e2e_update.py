#!/usr/bin/python3
# The whole update cycle with the real programs (pomvar_session): this build runs from a prefix
# on a store with pins, categories, Recent and preferences; the next version's files replace it
# meanwhile, as a package manager does. The panel offers "Install Pomvar Update"; the server's
# window offers the restart; the old front end quits at its poll, the old server starts the new
# front end, whose server says the update is finished: the notification service shows "Update
# Complete", and the store is as it was.
# usage: e2e_update.py <this build's install tree> <the next version's install tree>
import json, os, socket, struct, sys

sys.path.insert(0, os.path.join(os.path.dirname(__file__), "..", "support"))
from atspi_session import find, press, waited  # noqa: E402
from pomvar_session import PomvarSession  # noqa: E402

old_tree, new_tree = sys.argv[1:3]
with open(f"{new_tree}/libexec/pomvar/version") as f:
    new_version = f.read().strip()
STORE = {"version": 1, "pins": ["beta.desktop"],
         "categories": [{"name": "Work", "apps": ["alpha.desktop", "beta.desktop"]}],
         "recent": ["alpha.desktop"], "use": {},
         "prefs": {"MenuDensity": 2, "AnimationFx": False, "SaveExpAppCats": True,
                   "SaveLastMenu": False, "OneExpAppCat": True}}
session = PomvarSession(entries={name.lower(): f"Name={name}\nExec=true" for name in ("Alpha", "Beta")},
                        store=json.dumps(STORE))
session.install(old_tree)
old = session.start()

session.install(new_tree)
x, y = session.open_panel(old)
session.click(x + 360 - 32, y + 494 - 24)  # the control menu, at the panel's bottom right
session.keys("Up", "Up")  # from "Quit", past the divider
if not session.focused("Install Pomvar Update"):
    session.fail(f"the control menu offers no \"Install Pomvar Update\" but {session.focus}")
session.keys("Return")

window = session.window("pomvarsrv", "Pomvar Updates")
offer = f"Pomvar {new_version} is installed. Restart to use it."
if not find(window, "label", offer):
    session.fail(f"the updates window does not say {offer!r}")
press(find(window, "push button", "Restart Pomvar") or session.fail("no Restart Pomvar button"))

if not waited(lambda: old.poll() is not None, 20):
    session.fail("the old front end did not quit")
new_pid = waited(lambda: session.front_end_pid(), 30) or session.fail("no new front end")
if os.readlink(f"/proc/{new_pid}/exe") != f"{session.prefix}/bin/pomvar":
    session.fail("the front end running now is not the installed one")
if not waited(lambda: [n["summary"] for n in session.notifications()] == ["Update Complete"], 30):
    session.fail(f"notifications shown: {session.notifications()}")


def ask(request_id):
    body = f'{{\n    "id": "{request_id}"\n}}'.encode()
    with socket.create_connection(("127.0.0.1", 50818)) as connection:
        connection.sendall(struct.pack(">H", len(body)) + body)
        size = struct.unpack(">I", connection.recv(4))[0]
        data = b""
        while len(data) < size:
            data += connection.recv(size - len(data))
    return json.loads(data)


if ask("check-update-available") != {"isUpdateAvailable": False}:
    session.fail("the new server still offers an update")
with open(session.store_path) as f:
    kept = json.load(f)
if {key: kept.get(key) for key in STORE} != STORE or "updatedFrom" in kept:
    session.fail(f"the store changed: {kept}")
session.finish(f"updated to {new_version}: \"Update Complete\" shown, the store intact")
