#!/usr/bin/python3
# The search window as a screen reader finds it (desktop_session): the window, its field and its
# list are found by name, every control has one, and the rows read as the apps' names. Typing,
# ranking and launching are tst_serverwindows'.
# usage: a11y_search.py <pomvarsrv>
import os, subprocess, sys

sys.path.insert(0, os.path.join(os.path.dirname(__file__), "..", "support"))
from desktop_session import DesktopSession  # noqa: E402

session = DesktopSession(
    store='{"version": 1, "recent": ["beta.desktop", "alpha.desktop"]}',
    entries={name.split()[0].lower(): f"Name={name}\nExec=true"
             for name in ("Alpha Editor", "Beta Viewer")})
session.serve(sys.argv[1])

# Opened the way the keyboard shortcut does.
if subprocess.run([sys.argv[1], "--search"], env=session.env, stderr=subprocess.DEVNULL).returncode:
    session.fail("pomvarsrv --search did not reach the server")
window = session.window("Search Apps")
if window.get_role_name() not in ("frame", "window"):
    session.fail(f"the search window is a {window.get_role_name()}, not a window")
session.found(window, "text", "Search Apps")
results = session.found(window, "list", "Results")
session.check_named(window)
rows = [results.get_child_at_index(i).get_name() for i in range(results.get_child_count())]
if rows != ["Beta Viewer", "Alpha Editor"]:
    session.fail(f"the rows read {rows}, not Recent's names")
session.finish("the window, its field and its rows are found, named and read over AT-SPI")
