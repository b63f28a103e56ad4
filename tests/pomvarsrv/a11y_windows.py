#!/usr/bin/python3
# The server's windows as a screen reader finds them (desktop_session): the welcome, info, about,
# updates, search and organizer windows are found by their titles, every control in them has a
# name, the names are the visible labels, rows read as their apps' names, and each window but the
# search carries Pomvar's icon for the taskbar (_NET_WM_ICON). What their buttons and keys do is
# tst_serverwindows'.
# usage: a11y_windows.py <pomvarsrv>
import os, subprocess, sys

sys.path.insert(0, os.path.join(os.path.dirname(__file__), "..", "support"))
from desktop_session import DesktopSession, children, find, find_all, press, waited  # noqa: E402

# No store: the welcome shows at the first start.
session = DesktopSession(entries={
    "editor": "Name=Editor\nComment=Edit plain text\nCategories=Utility;\nExec=true",
    "mail": "Name=Mail\nCategories=Network;Email;\nExec=true"})
session.serve(sys.argv[1])
with open(os.path.join(os.path.dirname(sys.argv[1]), "version")) as f:
    version = f.read().strip()


def window(title, buttons, labels=()):
    """The window, checked: its buttons and labels are there by name, nothing is unnamed."""
    shown = session.window(title)
    session.check_named(shown)
    icon = subprocess.run(["xprop", "-name", title, "_NET_WM_ICON"], capture_output=True, text=True)
    if "_NET_WM_ICON(CARDINAL)" not in icon.stdout:
        session.fail(f"the window {title} has no icon: {icon.stdout}{icon.stderr}")
    for role, names in (("push button", buttons), ("label", labels)):
        for name in names:
            session.found(shown, role, name)
    return shown


welcome = window("Welcome to Pomvar", ("Start with categories", "Skip"), ("Welcome to Pomvar",))
press(find(welcome, "push button", "Start with categories"))
# Its categories, for the windows below.
if not waited(lambda: session.store().get("categories")):
    session.fail("the welcome made no categories")

session.request('{\n    "id": "get-info-app",\n    "appkey": "editor.desktop"\n}')
window("Editor Details", ("Open", "Edit…", "Organize…", "Open Containing Folder", "Close"),
       ("Edit plain text", "editor.desktop", "Accessories"))

session.request('{\n    "id": "get-info-appcat",\n    "appcat": "Internet"\n}')
category = window("Internet", ("Organize…", "Close"), ("Internet", "1 app"))
if [row.get_name() for row in find_all(category, "list item")] != ["Mail"]:
    session.fail("the category's rows are not read as its apps' names")

session.request('{\n    "id": "about"\n}')
window("About Pomvar", ("Close",), (f"Version {version}",))
session.request('{\n    "id": "check-updates"\n}')
window("Pomvar Updates", ("Close",), (f"Pomvar {version} is up to date.",))

# Recent: Mail, then Editor.
for app in ("editor", "mail"):
    session.request(f'{{\n    "id": "launch",\n    "appkey": "{app}.desktop"\n}}')
# The search, opened the way the keyboard shortcut does; the empty query lists Recent.
if subprocess.run([sys.argv[1], "--search"], env=session.env, stderr=subprocess.DEVNULL).returncode:
    session.fail("pomvarsrv --search did not reach the server")
search = session.window("Search Apps")
if search.get_role_name() not in ("frame", "window"):
    session.fail(f"the search window is a {search.get_role_name()}, not a window")
session.found(search, "text", "Search Apps")
results = session.found(search, "list", "Results")
session.check_named(search)
rows = [row.get_name() for row in children(results)]
if rows != ["Mail", "Editor"]:
    session.fail(f"the search's rows read {rows}, not Recent's names")

# The organizer: its settings, then its lists of pins and categories.
for app in ("editor", "mail"):
    session.request(f'{{\n    "id": "toggle-pin-app",\n    "appkey": "{app}.desktop"\n}}')
session.request('{\n    "id": "organizer",\n    "pane": 2,\n    "itemkey": null\n}')
organizer = window("Pomvar Organizer", ("Clear Recent Apps",))
if organizer.get_role_name() not in ("frame", "window"):
    session.fail(f"the organizer is a {organizer.get_role_name()}, not a window")
for role, name in (("page tab", "Organize App"), ("page tab", "Settings"), ("radio button", "Normal"),
                   ("radio button", "Compact"), ("check box", "Animation effects")):
    session.found(organizer, role, name)
press(session.found(organizer, "page tab", "Organize"))
pins = session.found(organizer, "list", "Pinned Apps")
for role, name in (("list", "Categories"), ("list", "Apps in \u201cAccessories\u201d"),
                   ("list item", "Internet"), ("push button", "Unpin")):
    session.found(organizer, role, name)
session.check_named(organizer)
rows = [row.get_name() for row in children(pins)]
if rows != ["Editor", "Mail"]:
    session.fail(f"the pinned apps read {rows}")
session.finish("the server's windows are found and named, with their icon, their rows read")
