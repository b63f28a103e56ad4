#!/usr/bin/python3
# End to end with Pomvar as `cmake --install` lays it out, the real programs against real desktop
# entries (desktop_session: Xvfb, trayer, AT-SPI): a click on a panel row starts the program, "Pin
# App" and "Add to New Category…" (the name typed into the server's prompt) show in My Apps at
# the next opening, an entry installed meanwhile shows in All Apps, a second pomvar says it is
# already running, and "Quit" ends both programs and leaves no PID file.
# usage: e2e_installed.py <the build tree>
import json, os, subprocess, sys

sys.path.insert(0, os.path.join(os.path.dirname(__file__), "..", "support"))
from desktop_session import DesktopSession, waited  # noqa: E402

session = DesktopSession(entries={
    "marker": "Name=Marker\nExec=touch {root}/launched",
    "viewer": "Name=Viewer\nExec=true",
}, store=json.dumps({"version": 1}))
subprocess.run(["cmake", "--install", sys.argv[1], "--prefix", session.prefix], check=True,
               stdout=subprocess.DEVNULL)
# A user's home has its cache folder; the front end makes only its own folder in it.
os.makedirs(os.path.dirname(os.path.dirname(session.pid_file)), exist_ok=True)
session.start()


def open_menu(menu):
    """Opens the panel on a menu: its rows' names."""
    panel = session.open_panel()
    session.click(session.found(panel, "check box", menu))
    return waited(lambda: [name for name, _ in session.rows()]) or []


def shown_at_next_opening(menu, name):
    """Whether a row of that name is in the menu at an opening, within a few openings."""
    for _ in range(10):
        found = name in open_menu(menu)
        session.keys("Escape")
        if found:
            return True
    return False


# A click on a row of All Apps starts its program.
if open_menu("All Apps") != ["Marker", "Viewer"]:
    session.fail(f"All Apps shows {session.rows()}")
session.click(session.row("Marker"))
if not waited(lambda: os.path.exists(f"{session.root}/launched")):
    session.fail("a click on Marker started nothing")

# "Pin App" from the context menu; the next opening's My Apps has it.
open_menu("All Apps")
session.click(session.row("Viewer"), 3)
session.choose("Pin App")
session.keys("Escape", "Escape")
if not shown_at_next_opening("My Apps", "Viewer"):
    session.fail(f"My Apps shows {session.rows()} after Pin App")

# "Add to New Category…": the server asks for the name; the category shows in My Apps.
open_menu("All Apps")
session.click(session.row("Marker"), 3)
session.choose("App Categories", "Add to New Category…")
session.focus("New Category")
session.type("Tools")
session.keys("Return")
if not shown_at_next_opening("My Apps", "Tools"):
    session.fail(f"My Apps shows {session.rows()} after Add to New Category")

# An app installed while Pomvar runs shows in All Apps.
session.add_entry("late", "Name=Latecomer\nExec=true")
if not shown_at_next_opening("All Apps", "Latecomer"):
    session.fail(f"All Apps shows {session.rows()} after an entry was installed")

# A second pomvar says so and leaves the first alone.
second = subprocess.run([f"{session.prefix}/bin/pomvar"], env=session.env, capture_output=True,
                        text=True, timeout=30)
if (second.returncode, second.stdout) != (0, "Pomvar for Linux is already running.\n"):
    session.fail(f"a second pomvar: status {second.returncode}, {second.stdout!r}")

# Quit from the control menu ends both programs and removes the PID file.
panel = session.open_panel()
session.click(session.found(panel, "push button", "Pomvar Menu"))
session.choose("Quit")
if session.pomvar.wait(timeout=20) != 0:
    session.fail(f"pomvar ended with status {session.pomvar.returncode} after Quit")
if not waited(lambda: not session.listeners()):
    session.fail("the runtime server still runs after Quit")
if os.path.exists(session.pid_file):
    session.fail("Quit left the PID file behind")
session.finish("the installed Pomvar launches, pins, files into a new category, sees a new app, "
               "refuses a second start and quits")
