"""A desktop session for AT-SPI tests: Xvfb, a private session bus with its accessibility bus,
and pomvarsrv in a throw-away desktop with QT_LINUX_ACCESSIBILITY_ALWAYS_ON=1, read and driven as
a screen reader does. Every test of a server window over AT-SPI uses it.

    session = Session(pomvarsrv, entries={"alpha": "Name=Alpha"}, store='{"version": 1}')
    session.request('{\\n    "id": "about"\\n}')      # a request sent to the server
    window = session.window("About Pomvar")           # its top-level window, by name
    session.finish("what was checked")

In the entries' lines and the store, "{root}" stands for the session's own folder.
"""
import os, socket, struct, subprocess, sys, tempfile, time

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi  # noqa: E402

# Roles whose nodes a screen reader announces: each of them must have a name.
NAMED_ROLES = ("push button", "toggle button", "radio button", "check box", "combo box", "text",
               "list", "list item", "table", "table cell", "tree", "tree item", "page tab",
               "spin button", "slider", "menu item")


def write(path, text):
    os.makedirs(os.path.dirname(path), exist_ok=True)
    with open(path, "w") as f:
        f.write(text)


def waited(condition, seconds=10):
    """The condition's first true value within the time; None after it."""
    for _ in range(int(seconds * 10)):
        value = condition()
        if value:
            return value
        time.sleep(0.1)
    return None


def find(node, role, name=None):
    """The first node below `node` (itself included) of that role and, when given, name."""
    if node is None:
        return None
    if node.get_role_name() == role and name in (None, node.get_name()):
        return node
    for i in range(node.get_child_count()):
        found = find(node.get_child_at_index(i), role, name)
        if found:
            return found
    return None


def find_all(node, role):
    found = [node] if node.get_role_name() == role else []
    for i in range(node.get_child_count()):
        found += find_all(node.get_child_at_index(i), role)
    return found


def unnamed(node):
    """The role of the first announced node below `node` without a name; None when all have one."""
    if node.get_role_name() in NAMED_ROLES and not node.get_name():
        return node.get_role_name()
    for i in range(node.get_child_count()):
        role = unnamed(node.get_child_at_index(i))
        if role:
            return role
    return None


def press(node):
    """Runs the node's first action (a button's "Press", a check box's "Toggle")."""
    node.get_action_iface().do_action(0)


class Session:
    def __init__(self, pomvarsrv, entries=None, store=None, arguments=(), name=None):
        self.name = name or os.path.splitext(os.path.basename(sys.argv[0]))[0]
        self.pomvarsrv = pomvarsrv
        self.root = tempfile.mkdtemp()
        for entry, lines in (entries or {}).items():
            write(f"{self.root}/system/applications/{entry}.desktop",
                  "[Desktop Entry]\nType=Application\n" + lines.replace("{root}", self.root) + "\n")
        if store is not None:
            write(f"{self.root}/home/.config/pomvar/pomvarsrv.json",
                  store.replace("{root}", self.root))
        with socket.socket() as probe:  # a free port
            probe.bind(("127.0.0.1", 0))
            self.port = probe.getsockname()[1]
        self.children = []
        xvfb = self._spawn(["Xvfb", "-displayfd", "1", "-screen", "0", "1280x800x24",
                            "-nolisten", "tcp"], stdout=subprocess.PIPE)
        os.environ["DISPLAY"] = ":" + xvfb.stdout.readline().decode().strip()
        # The bus, and the AT-SPI services it starts, on the display: they synthesise keys there.
        bus = self._spawn(["dbus-daemon", "--session", "--nofork", "--print-address=1"],
                          stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
        os.environ["DBUS_SESSION_BUS_ADDRESS"] = bus.stdout.readline().decode().strip()
        home = f"{self.root}/home"
        self.env = dict(os.environ, HOME=home, XDG_CONFIG_HOME=f"{home}/.config",
                        XDG_CACHE_HOME=f"{home}/.cache", XDG_DATA_HOME=f"{home}/.local/share",
                        XDG_DATA_DIRS=f"{self.root}/system", QT_QPA_PLATFORM="xcb",
                        GSETTINGS_BACKEND="memory", QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1",
                        POMVARSRV_PORT=str(self.port))
        self.server = self._spawn([pomvarsrv, *arguments], env=self.env,
                                  stderr=subprocess.DEVNULL)
        if not waited(self._listening):
            self.fail("the server did not listen")
        Atspi.init()

    def _spawn(self, command, **options):
        child = subprocess.Popen(command, **options)
        self.children.insert(0, child)
        return child

    def _listening(self):
        try:
            socket.create_connection(("127.0.0.1", self.port), timeout=1).close()
            return True
        except OSError:
            return False

    def request(self, body):
        """Sends one request the front end does not await."""
        data = body.encode()
        with socket.create_connection(("127.0.0.1", self.port)) as connection:
            connection.sendall(struct.pack(">H", len(data)) + data)

    def application(self):
        desktop = Atspi.get_desktop(0)
        apps = (desktop.get_child_at_index(i) for i in range(desktop.get_child_count()))
        return next((app for app in apps if app and app.get_name() == "pomvarsrv"), None)

    def window(self, name, seconds=10):
        """The server's top-level window of that name, once it is on the bus."""
        def shown():
            app = self.application()
            if not app:
                return None
            for i in range(app.get_child_count()):
                child = app.get_child_at_index(i)
                if child and child.get_name() == name:
                    return child
            return None
        return waited(shown, seconds) or self.fail(f"no window named {name!r} on the bus")

    def check_named(self, node):
        role = unnamed(node)
        if role:
            self.fail(f"a {role} without a name in {node.get_name()!r}")

    def fail(self, why):
        self.stop()
        sys.exit(f"{self.name}: {why}")

    def finish(self, what):
        self.stop()
        print(f"{self.name}: {what}")

    def stop(self):
        for child in self.children:
            child.kill()
