#!/usr/bin/python3
# The search window as a screen reader finds it: pomvarsrv on Xvfb with
# QT_LINUX_ACCESSIBILITY_ALWAYS_ON=1, a private session bus and its AT-SPI bus. Over AT-SPI the
# window, its field and its rows are found by name, every control has one, the rows read as the
# apps' names, text set through the field's editable-text interface ranks the results, and a row
# selected through its action is launched by Return, as a screen reader user does it.
# usage: a11y_search.py <pomvarsrv>
import os, socket, subprocess, sys, tempfile, time

root = tempfile.mkdtemp()


def write(path, text):
    os.makedirs(os.path.dirname(path), exist_ok=True)
    with open(path, "w") as f:
        f.write(text)


for name in ("Alpha Editor", "Beta Viewer"):
    write(f"{root}/system/applications/{name.split()[0].lower()}.desktop",
          f"[Desktop Entry]\nType=Application\nName={name}\nExec=touch {root}/launched\n")
write(f"{root}/home/.config/pomvar/pomvarsrv.json",
      '{"version": 1, "recent": ["beta.desktop", "alpha.desktop"]}')
with socket.socket() as probe:  # a free port
    probe.bind(("127.0.0.1", 0))
    port = probe.getsockname()[1]

xvfb = subprocess.Popen(["Xvfb", "-displayfd", "1", "-screen", "0", "1280x800x24", "-nolisten", "tcp"],
                        stdout=subprocess.PIPE)
os.environ["DISPLAY"] = ":" + xvfb.stdout.readline().decode().strip()
# The bus, and the AT-SPI services it starts, on the display: they synthesise keys there.
bus = subprocess.Popen(["dbus-daemon", "--session", "--nofork", "--print-address=1"],
                       stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
os.environ["DBUS_SESSION_BUS_ADDRESS"] = bus.stdout.readline().decode().strip()
env = dict(os.environ, HOME=f"{root}/home", XDG_CONFIG_HOME=f"{root}/home/.config",
           XDG_CACHE_HOME=f"{root}/home/.cache", XDG_DATA_HOME=f"{root}/home/.local/share",
           XDG_DATA_DIRS=f"{root}/system", QT_QPA_PLATFORM="xcb", GSETTINGS_BACKEND="memory",
           QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1", POMVARSRV_PORT=str(port))
server = subprocess.Popen([sys.argv[1]], env=env, stderr=subprocess.DEVNULL)
children = [server, bus, xvfb]


def fail(why):
    for child in children:
        child.kill()
    sys.exit("a11y_search: " + why)


# What `pomvarsrv --search` sends, once the server listens.
for _ in range(100):
    if subprocess.run([sys.argv[1], "--search"], env=env, stderr=subprocess.DEVNULL).returncode == 0:
        break
    time.sleep(0.1)
else:
    fail("the server did not listen")

import gi  # noqa: E402 (the bus address must be set first)
gi.require_version("Atspi", "2.0")
from gi.repository import Atspi  # noqa: E402

Atspi.init()


def find(node, role, name=None):
    if node.get_role_name() == role and name in (None, node.get_name()):
        return node
    for i in range(node.get_child_count()):
        found = find(node.get_child_at_index(i), role, name)
        if found:
            return found
    return None


def waited(condition):
    for _ in range(100):
        value = condition()
        if value:
            return value
        time.sleep(0.1)
    return None


def application():
    desktop = Atspi.get_desktop(0)
    apps = (desktop.get_child_at_index(i) for i in range(desktop.get_child_count()))
    return next((app for app in apps if app and app.get_name() == "pomvarsrv"), None)


def rows(results):
    return [results.get_child_at_index(i).get_name() for i in range(results.get_child_count())]


app = waited(lambda: (lambda a: a if a and find(a, "list", "Results") else None)(application()))
if not app:
    fail("no search window with a Results list on the accessibility bus")
window = find(app, "filler", "Search Apps") or fail("no window named Search Apps")
field = find(window, "text", "Search Apps") or fail("no field named Search Apps")
results = find(window, "list", "Results")


def unnamed(node):
    if node.get_role_name() in ("push button", "text", "list", "list item", "check box") \
            and not node.get_name():
        return node.get_role_name()
    return next(filter(None, (unnamed(node.get_child_at_index(i))
                              for i in range(node.get_child_count()))), None)


if unnamed(window):
    fail(f"a {unnamed(window)} without a name")
if rows(results) != ["Beta Viewer", "Alpha Editor"]:
    fail(f"the empty query lists {rows(results)}, not Recent")
field.get_editable_text_iface().set_text_contents("alp")
if not waited(lambda: rows(results) == ["Alpha Editor"]):
    fail(f"typed 'alp', the rows read {rows(results)}")
# Activated as a screen reader user does: the row selected through its action, then Return.
results.get_child_at_index(0).get_action_iface().do_action(0)
Atspi.generate_keyboard_event(0xff0d, None, Atspi.KeySynthType.SYM)  # XK_Return
if not waited(lambda: os.path.exists(f"{root}/launched")):
    fail("Return on the selected row launched nothing")
for child in children:
    child.kill()
print("a11y_search: the window, its field and its rows are found, named and read over AT-SPI")
