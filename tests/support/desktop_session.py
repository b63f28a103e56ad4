"""A desktop for tests of the real programs, driven as a user and read as a screen reader does:
Xvfb, a private session bus with its accessibility bus (AT-SPI), and a throw-away home with
desktop entries (in whose lines, as in the store, "{root}" stands for the session's folder) and a
store. Either the runtime server alone on a free port of its own (serve), or Pomvar installed
under session.prefix (install, or `cmake --install`) and started as a user does (start), with a
tray host and a notification service that records what it shows; its server takes the fixed
port 50818: such tests hold the RESOURCE_LOCK runtime_port_50818.
"""
import atexit, json, os, shutil, signal, socket, struct, subprocess, sys, tempfile, time

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402

RUNTIME_PORT = 50818
PROGRAMS = ("bin/pomvar", "libexec/pomvar/pomvarsrv", "libexec/pomvar/version",
            "libexec/pomvar/pomvar-calculator.so",
            "libexec/pomvar/generic-app-24.png", "libexec/pomvar/generic-app-48.png")
PANEL_SIZE = (360, 494)
# Roles whose nodes a screen reader announces: each of them must have a name.
NAMED_ROLES = ("push button", "toggle button", "radio button", "check box", "combo box", "text",
               "list", "list item", "table", "table cell", "tree", "tree item", "page tab",
               "spin button", "slider", "menu item")


def write(path, text):
    os.makedirs(os.path.dirname(path), exist_ok=True)
    with open(path, "w") as f:
        f.write(text)


def waited(condition, seconds=10):
    """The condition's first true value within the time; None after it. AT-SPI events are
    delivered before each try, and one coming in tries again at once; else every 0.1 s."""
    context, deadline = GLib.MainContext.default(), time.monotonic() + seconds
    while True:
        while context.iteration(False):
            pass
        value = condition()
        if value or time.monotonic() > deadline:
            return value or None
        # Blocks until an event or the next try is due.
        tick = GLib.timeout_source_new(100)
        tick.set_callback(lambda *_: False)
        tick.attach(context)
        context.iteration(True)
        tick.destroy()


def children(node):
    count = node.get_child_count() if node is not None else 0
    return [node.get_child_at_index(i) for i in range(count)]


def nodes(node):
    """`node` and every node below it, depth first."""
    if node is not None:
        yield node
        for child in children(node):
            yield from nodes(child)


def find(node, role, name=None):
    """The first node below `node` (itself included) of that role and, when given, name."""
    return next(iter(find_all(node, role, name)), None)


def find_all(node, role, name=None):
    return [n for n in nodes(node) if n.get_role_name() == role and name in (None, n.get_name())]


def unnamed(node):
    """The role of the first announced node below `node` without a name; None when all have one."""
    return next((n.get_role_name() for n in nodes(node)
                 if n.get_role_name() in NAMED_ROLES and not n.get_name()), None)


def press(node):
    """Runs the node's first action (a button's "Press", a check box's "Toggle")."""
    node.get_action_iface().do_action(0)


def showing(node):
    return node.get_state_set().contains(Atspi.StateType.SHOWING)


def centre(node):
    """The middle of the node on the screen, as xdotool takes it."""
    box = node.get_extents(Atspi.CoordType.SCREEN)
    return str(box.x + box.width // 2), str(box.y + box.height // 2)


def executable(pid):
    """The program a process runs; "" once it is gone."""
    try:
        return os.readlink(f"/proc/{pid}/exe")
    except OSError:
        return ""


class DesktopSession:
    def __init__(self, entries=None, store=None):
        self.name = os.path.splitext(os.path.basename(sys.argv[0]))[0]
        self.root = os.path.realpath(tempfile.mkdtemp())
        self.prefix = f"{self.root}/prefix"
        self.port = RUNTIME_PORT
        self.children, self.pomvar, self.trayer = [], None, None
        for entry, lines in (entries or {}).items():
            self.add_entry(entry, lines)
        home = f"{self.root}/home"
        self.store_path = f"{home}/.config/pomvar/pomvarsrv.json"
        if store is not None:
            write(self.store_path, store.replace("{root}", self.root))
        # A test stopped by its time-out, or by an exception, leaves nothing running.
        signal.signal(signal.SIGTERM, lambda *_: self.fail("stopped"))
        atexit.register(self.stop)
        self.display()
        # The bus, and the AT-SPI services it starts, on the display: they synthesise keys there.
        # No StatusNotifierWatcher on it: Qt docks the tray icon through XEmbed.
        bus = self._spawn(["dbus-daemon", "--session", "--nofork", "--print-address=1"],
                          stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
        os.environ["DBUS_SESSION_BUS_ADDRESS"] = bus.stdout.readline().decode().strip()
        self.env = dict(os.environ, HOME=home, XDG_CONFIG_HOME=f"{home}/.config",
                        XDG_CACHE_HOME=f"{home}/.cache", XDG_DATA_HOME=f"{home}/.local/share",
                        XDG_STATE_HOME=f"{home}/.local/state", XDG_RUNTIME_DIR=f"{self.root}/run",
                        XDG_DATA_DIRS=f"{self.root}/system", QT_QPA_PLATFORM="xcb",
                        GSETTINGS_BACKEND="memory", QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1")
        self.env.pop("POMVARSRV_PORT", None)
        os.makedirs(self.env["XDG_RUNTIME_DIR"], mode=0o700)
        self.pid_file = f"{self.root}/run/pomvar/pomvar.pid"
        self.shown = f"{self.root}/notifications.jsonl"
        Atspi.init()
        # Popups (the panel, its menus) are not in the tree: what takes the focus is heard.
        self.heard = []
        self.listener = Atspi.EventListener.new(lambda event: self.heard.append(event.source))
        self.listener.register("focus:")

    def display(self):
        """A display of its own (the number left free may be another session's): its name."""
        xvfb = self._spawn(["Xvfb", "-displayfd", "1", "-screen", "0", "1280x800x24",
                            "-nolisten", "tcp"], stdout=subprocess.PIPE)
        os.environ["DISPLAY"] = ":" + xvfb.stdout.readline().decode().strip()
        return os.environ["DISPLAY"]

    def _spawn(self, command, log=None, **options):
        """Starts a child; with `log`, its output goes to <root>/<log>.log, shown on failure."""
        if log:
            options["stdout"] = options["stderr"] = open(f"{self.root}/{log}.log", "ab")
        child = subprocess.Popen(command, **options)
        self.children.insert(0, child)
        return child

    def add_entry(self, entry, lines):
        """Writes the desktop entry <entry>.desktop into the system's data folder."""
        write(f"{self.root}/system/applications/{entry}.desktop",
              "[Desktop Entry]\nType=Application\n" + lines.replace("{root}", self.root) + "\n")

    # The runtime server alone.

    def serve(self, pomvarsrv, *arguments):
        """Starts the server alone on a free port of its own, session.port."""
        with socket.socket() as probe:
            probe.bind(("127.0.0.1", 0))
            self.port = probe.getsockname()[1]
        self.env["POMVARSRV_PORT"] = str(self.port)
        self._spawn([pomvarsrv, *arguments], env=self.env, log="pomvarsrv")
        if not waited(self._listening):
            self.fail("the server did not listen")

    def _listening(self):
        with socket.socket() as probe:
            return probe.connect_ex(("127.0.0.1", self.port)) == 0

    def request(self, body):
        """Sends one request to the server, as the front end does without awaiting it."""
        # An awaited request follows, whose reply tells that both were read: the server serves a
        # connection only once it has found the process holding it.
        frames = b"".join(struct.pack(">H", len(b)) + b
                          for b in (body.encode(), b'{"id": "get-user-prefs"}'))
        with socket.create_connection(("127.0.0.1", self.port)) as connection:
            connection.sendall(frames)
            reader = connection.makefile("rb")
            reader.read(struct.unpack(">I", reader.read(4))[0])

    # Pomvar installed.

    def install(self, tree):
        """Copies the programs of a build or install tree under the prefix, each file replaced as
        a package manager does (written beside, then renamed over the old one)."""
        for path in PROGRAMS:
            target = f"{self.prefix}/{path}"
            os.makedirs(os.path.dirname(target), exist_ok=True)
            shutil.copy2(f"{tree}/{path}", target + ".new")
            os.rename(target + ".new", target)

    def start(self, *arguments):
        """The installed front end, with a tray host and a notification service, once its own
        server listens. The port is the machine's: a test of another build may hold it, and is
        waited for."""
        if not self.trayer:
            service = self._spawn([sys.executable, os.path.join(os.path.dirname(__file__),
                                                                "notification_service.py"),
                                   self.shown], stdout=subprocess.PIPE)
            if service.stdout.readline().strip() != b"ready":
                self.fail("the notification service did not start")
            self.trayer = self._spawn(
                ["trayer", "--edge", "top", "--align", "right", "--widthtype", "request",
                 "--height", "28", "--SetDockType", "true", "--transparent", "false"],
                log="trayer")
            if not waited(lambda: self._xdotool("search", "--class", "trayer")):
                self.fail("no tray host")
        for _ in range(5):
            if not waited(lambda: not self.listeners(), 120):
                break
            self.pomvar = self._spawn([f"{self.prefix}/bin/pomvar", *arguments], env=self.env,
                                      log="pomvar")
            serving = waited(self.listeners, 30) or []
            if serving and all(program.startswith(self.prefix + "/") for program in serving):
                return self.pomvar
            self.pomvar.kill()
            self.pomvar.wait()
        self.fail(f"port {RUNTIME_PORT} stays taken by another program")

    @staticmethod
    def listeners():
        """The programs listening on the runtime port."""
        pids = subprocess.run(["lsof", "-t", f"-iTCP:{RUNTIME_PORT}", "-sTCP:LISTEN"],
                              capture_output=True, text=True).stdout.split()
        return [program for program in map(executable, pids) if program]

    def programs(self):
        """The pids of the programs running from the prefix (those started by others too)."""
        return [int(p) for p in os.listdir("/proc")
                if p.isdigit() and executable(p).startswith(self.prefix + "/")]

    def front_end_pid(self):
        try:
            with open(self.pid_file) as f:
                return int(f.read())
        except (OSError, ValueError):
            return None

    def _xdotool(self, *arguments):
        """xdotool's output words; [] when it fails."""
        done = subprocess.run(["xdotool", *arguments], capture_output=True, text=True)
        return done.stdout.split() if done.returncode == 0 else []

    def _windows(self):
        """The viewable X windows of the front end: (id, width, height)."""
        found = []
        for window in self._xdotool("search", "--onlyvisible", "--pid", str(self.pomvar.pid)):
            shape = dict(word.split("=") for word in
                         self._xdotool("getwindowgeometry", "--shell", window))
            if shape:  # else gone meanwhile
                found.append((window, int(shape["WIDTH"]), int(shape["HEIGHT"])))
        return found

    def click_icon(self):
        """Clicks the tray icon, the front end's small embedded window."""
        icon = waited(lambda: next((w for w in self._windows() if max(w[1:]) <= 64), None), 30)
        if not icon:
            self.fail("the tray icon did not appear")
        self._xdotool("mousemove", "--window", icon[0], "8", "8", "click", "1")

    def open_panel(self):
        """Clicks the tray icon; the panel's node once it is shown and its menu has the focus.
        A panel still open (Escape closes it) fails."""
        if not waited(lambda: not self._panel_shown(), 5):
            self.fail("the panel is still open")
        # The icon shows before the front end's accessibility bridge is on the bus: the panel's
        # focus would go unheard.
        if not waited(lambda: self._application("pomvar"), 30):
            self.fail("the front end is not on the accessibility bus")
        heard = len(self.heard)
        self.click_icon()
        if not waited(self._panel_shown, 30):
            self.fail("the panel did not open")
        return waited(lambda: self._panel(heard), 30) or self.fail("the panel's menu has no focus")

    def _panel_shown(self):
        return any(window[1:] == PANEL_SIZE for window in self._windows())

    def _panel(self, since=0):
        """The root of the panel that had the focus last, found from what took it."""
        for node in reversed(self.heard[since:]):
            chain = [node]
            try:
                while chain[-1] and chain[-1].get_role_name() != "application":
                    chain.append(chain[-1].get_parent())
                if len(chain) > 2 and chain[-1] and chain[-1].get_name() == "pomvar" \
                        and chain[-2].get_name() == "Pomvar" and showing(chain[-2]):
                    return chain[-2]
            except GLib.Error:  # a node of a panel built for an earlier opening
                pass
        return None

    def panel(self):
        return self._panel() or self.fail("no panel is shown")

    def _menu(self):
        return next(t for t in find_all(self.panel(), "tree") if showing(t))

    def rows(self):
        """The rows of the panel's shown menu, top to bottom: (name, expanded) each."""
        return [(cell.get_name(), cell.get_state_set().contains(Atspi.StateType.EXPANDED))
                for cell in find_all(self._menu(), "table cell")]

    def row(self, name):
        return (find(self._menu(), "table cell", name)
                or self.fail(f"no row {name!r} in {self.rows()}"))

    def click(self, node, button=1):
        """A click on the middle of a node on the screen, as the pointer gives it."""
        self._xdotool("mousemove", *centre(node), "click", str(button))

    def choose(self, *entries):
        """Chooses in the menu just opened by keys, as a keyboard user does: Down until the entry
        has the focus, then Right into its submenu, or Return on the last one."""
        for n, entry in enumerate(entries):
            for _ in range(20):
                heard = len(self.heard)
                self.keys("Down")
                if waited(lambda: self.heard[heard:], 2) and self.heard[-1].get_name() == entry:
                    break
            else:
                self.fail(f"no menu entry {entry!r}")
            self.keys("Return" if n == len(entries) - 1 else "Right")

    def focus(self, title):
        """Focuses the shown window of that title, as a click on its frame would."""
        found = waited(lambda: self._xdotool("search", "--onlyvisible", "--name", f"^{title}$"))
        if not found:
            self.fail(f"no window titled {title!r}")
        self._xdotool("windowfocus", "--sync", found[0])

    def keys(self, *names):
        """Keys typed into the focused window, as xdotool names them ("ctrl+a", "Return")."""
        self._xdotool("key", "--delay", "50", *names)

    def type(self, text):
        self._xdotool("type", "--delay", "30", text)

    def notifications(self):
        """What the notification service showed: [{"summary": ..., "body": ...}, ...]."""
        if not os.path.exists(self.shown):
            return []
        with open(self.shown) as f:
            return [json.loads(line) for line in f]

    # Either.

    @staticmethod
    def _application(program):
        return next((app for app in children(Atspi.get_desktop(0))
                     if app and app.get_name() == program), None)

    def window(self, name, program="pomvarsrv", seconds=20):
        """The program's top-level window of that name, once it is on the AT-SPI bus."""
        def shown():
            return next((window for window in children(self._application(program))
                         if window and window.get_name() == name), None)
        return waited(shown, seconds) or self.fail(f"no {program} window named {name!r}")

    def found(self, node, role, name):
        """The node below `node` of that role and name, waited for; the test fails without it."""
        return waited(lambda: find(node, role, name)) or self.fail(f"no {role} named {name!r}")

    def check_named(self, node):
        def walk():
            try:
                return [unnamed(node)]
            except GLib.Error:  # a node went away during the walk (a list filled anew)
                return None
        role = (waited(walk) or self.fail("the window's nodes kept changing"))[0]
        if role:
            self.fail(f"a {role} without a name in {node.get_name()!r}")

    def store(self):
        """The runtime server's store file."""
        with open(self.store_path) as f:
            return json.load(f)

    def fail(self, why):
        for log in sorted(f for f in os.listdir(self.root) if f.endswith(".log")):
            with open(f"{self.root}/{log}", errors="replace") as f:
                print(f"{log}:\n" + "".join("    " + line for line in f.readlines()[-20:]),
                      file=sys.stderr)
        self.stop()
        sys.exit(f"{self.name}: {why}")

    def finish(self, what):
        self.stop()
        print(f"{self.name}: {what}")

    def stop(self):
        # Whatever runs from the prefix (the programs started by others too), then our children.
        for pid in self.programs():
            try:
                os.kill(pid, signal.SIGKILL)
            except OSError:  # ended meanwhile
                pass
        for child in self.children:
            child.kill()
            child.wait()
        self.children = []
        shutil.rmtree(self.root, ignore_errors=True)
