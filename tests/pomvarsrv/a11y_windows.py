#!/usr/bin/python3
# The info, about, welcome and updates windows as a screen reader finds them (desktop_session):
# each window is found by its title, every control in it has a name, the names are the visible
# labels, and each carries Pomvar's icon for the taskbar (_NET_WM_ICON). What their buttons and
# keys do is tst_serverwindows'.
# usage: a11y_windows.py <pomvarsrv>
import os, subprocess, sys

sys.path.insert(0, os.path.join(os.path.dirname(__file__), "..", "support"))
from desktop_session import DesktopSession, find, find_all, press, waited  # noqa: E402

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
session.finish("the welcome, info, about and updates windows are found and named, with their icon")
