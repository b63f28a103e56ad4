#!/usr/bin/python3
# The search window as a screen reader finds it (desktop_session): the window, its field and its
# rows are found by name, every control has one, the rows read as the apps' names, text set
# through the field's editable-text interface ranks the results, and a row selected through its
# action is launched by Return, as a screen reader user does it.
# usage: a11y_search.py <pomvarsrv>
import os, subprocess, sys

sys.path.insert(0, os.path.join(os.path.dirname(__file__), "..", "support"))
from desktop_session import Atspi, DesktopSession, press, waited  # noqa: E402

session = DesktopSession(
    store='{"version": 1, "recent": ["beta.desktop", "alpha.desktop"]}',
    entries={name.split()[0].lower(): f"Name={name}\nExec=touch {{root}}/launched"
             for name in ("Alpha Editor", "Beta Viewer")})
session.serve(sys.argv[1])
launched = f"{session.root}/launched"

# Opened the way a keyboard shortcut does.
if subprocess.run([sys.argv[1], "--search"], env=session.env, stderr=subprocess.DEVNULL).returncode:
    session.fail("pomvarsrv --search did not reach the server")
window = session.window("Search Apps")
if window.get_role_name() not in ("frame", "window"):
    session.fail(f"the search window is a {window.get_role_name()}, not a window")
field = session.found(window, "text", "Search Apps")
results = session.found(window, "list", "Results")
session.check_named(window)


def rows():
    return [results.get_child_at_index(i).get_name() for i in range(results.get_child_count())]


if rows() != ["Beta Viewer", "Alpha Editor"]:
    session.fail(f"the empty query lists {rows()}, not Recent")
field.get_editable_text_iface().set_text_contents("alp")
if not waited(lambda: rows() == ["Alpha Editor"]):
    session.fail(f"typed 'alp', the rows read {rows()}")
# Activated as a screen reader user does: the row selected through its action, then Return.
press(results.get_child_at_index(0))
Atspi.generate_keyboard_event(0xff0d, None, Atspi.KeySynthType.SYM)  # XK_Return
if not waited(lambda: os.path.exists(launched)):
    session.fail("Return on the selected row launched nothing")
session.finish("the window, its field and its rows are found, named and read over AT-SPI")
