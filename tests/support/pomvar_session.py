"""A desktop for end-to-end runs of the real pomvar and pomvarsrv: Xvfb with a tray host
(trayer), a private session bus with its accessibility bus (AT-SPI) and a notification service
that records what it shows, and a throw-away home with desktop entries and a store. The programs
see QT_LINUX_ACCESSIBILITY_ALWAYS_ON=1, so both are read and driven as a screen reader does.
pomvar uses the fixed runtime port: such tests never run in parallel.

    session = PomvarSession(entries={"alpha": "Name=Alpha"}, store='{"version": 1}')
    session.install(build_root)                  # bin/pomvar, libexec/pomvar/ under session.prefix
    pomvar = session.start()                     # the front end, which starts its server
    x, y = session.open_panel(pomvar)            # a click on its tray icon; the panel's corner
    session.click(x + 10, y + 10)                # clicks and keys as a user gives them
    session.keys("Down", "Return")
    session.focused("Quit")                      # the control that took the focus, by name
    session.window("pomvarsrv", "About Pomvar")  # a top-level window on the AT-SPI bus
    session.notifications()                      # [{"summary": ..., "body": ...}, ...]
    session.finish("what was checked")

In the entries' lines and the store, "{root}" stands for the session's own folder.
"""
import json, os, shutil, signal, subprocess, sys, tempfile

from atspi_session import Atspi, waited, write
from gi.repository import GLib

PORT = 50818
PROGRAMS = ("bin/pomvar", "libexec/pomvar/pomvarsrv", "libexec/pomvar/version")


class PomvarSession:
    def __init__(self, entries=None, store=None):
        self.name = os.path.splitext(os.path.basename(sys.argv[0]))[0]
        self.root = os.path.realpath(tempfile.mkdtemp())
        self.prefix = f"{self.root}/prefix"
        for entry, lines in (entries or {}).items():
            write(f"{self.root}/system/applications/{entry}.desktop",
                  "[Desktop Entry]\nType=Application\n" + lines.replace("{root}", self.root) + "\n")
        home = f"{self.root}/home"
        self.store_path = f"{home}/.config/pomvar/pomvarsrv.json"
        if store is not None:
            write(self.store_path, store.replace("{root}", self.root))
        self.children = []
        # A test stopped by its time-out leaves nothing running.
        signal.signal(signal.SIGTERM, lambda *_: self.fail("stopped"))
        xvfb = self._spawn(["Xvfb", "-displayfd", "1", "-screen", "0", "1280x800x24",
                            "-nolisten", "tcp"], stdout=subprocess.PIPE)
        os.environ["DISPLAY"] = ":" + xvfb.stdout.readline().decode().strip()
        # No StatusNotifierWatcher on this bus: Qt docks its tray icon through XEmbed.
        bus = self._spawn(["dbus-daemon", "--session", "--nofork", "--print-address=1"],
                          stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
        os.environ["DBUS_SESSION_BUS_ADDRESS"] = bus.stdout.readline().decode().strip()
        self.shown = f"{self.root}/notifications.jsonl"
        service = self._spawn([sys.executable, os.path.join(os.path.dirname(__file__),
                                                            "notification_service.py"),
                               self.shown], stdout=subprocess.PIPE)
        if service.stdout.readline().strip() != b"ready":
            self.fail("the notification service did not start")
        self._spawn(["trayer", "--edge", "top", "--align", "right", "--widthtype", "request",
                     "--height", "28", "--SetDockType", "true", "--transparent", "false"],
                    stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        if not waited(lambda: subprocess.run(["xdotool", "search", "--class", "trayer"],
                                             capture_output=True).returncode == 0):
            self.fail("no tray host")
        self.env = dict(os.environ, HOME=home, XDG_CONFIG_HOME=f"{home}/.config",
                        XDG_CACHE_HOME=f"{home}/.cache", XDG_DATA_HOME=f"{home}/.local/share",
                        XDG_DATA_DIRS=f"{self.root}/system", QT_QPA_PLATFORM="xcb",
                        GSETTINGS_BACKEND="memory", QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1")
        self.env.pop("POMVARSRV_PORT", None)
        self.pid_file = f"{home}/.cache/Pomvar4Mac/pomvar.pid"
        Atspi.init()
        # Popups (the panel, its menus) are not in the tree: what takes the focus is heard.
        self.focus = []
        self.listener = Atspi.EventListener.new(lambda e: self.focus.append(e.source.get_name()))
        self.listener.register("focus:")

    def _spawn(self, command, **options):
        child = subprocess.Popen(command, **options)
        self.children.insert(0, child)
        return child

    def install(self, tree):
        """Copies the programs of an install tree under the prefix, each file replaced as a
        package manager does (written beside, then renamed over the old one)."""
        for path in PROGRAMS:
            target = f"{self.prefix}/{path}"
            os.makedirs(os.path.dirname(target), exist_ok=True)
            shutil.copy2(f"{tree}/{path}", target + ".new")
            os.rename(target + ".new", target)

    def start(self):
        """The installed front end, once its own server listens. The port is the machine's: a
        test of another build may hold it, and is waited for."""
        for _ in range(5):
            if not waited(lambda: not self.listeners(), 120):
                break
            pomvar = self._spawn([f"{self.prefix}/bin/pomvar"], env=self.env,
                                 stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
            serving = waited(self.listeners, 30) or []
            if serving and all(program.startswith(self.prefix + "/") for program in serving):
                return pomvar
            pomvar.kill()
            pomvar.wait()
        self.fail(f"port {PORT} stays taken by another program")

    @staticmethod
    def listeners():
        """The programs listening on the port."""
        pids = subprocess.run(["lsof", "-t", f"-iTCP:{PORT}", "-sTCP:LISTEN"],
                              capture_output=True, text=True).stdout.split()
        programs = []
        for pid in pids:
            try:
                programs.append(os.readlink(f"/proc/{pid}/exe"))
            except OSError:
                pass
        return programs

    def front_end_pid(self):
        try:
            with open(self.pid_file) as f:
                return int(f.read())
        except (OSError, ValueError):
            return None

    @staticmethod
    def _windows(pid):
        """The viewable X windows of a process: id, then x, y, width and height."""
        found = []
        ids = subprocess.run(["xdotool", "search", "--onlyvisible", "--pid", str(pid)],
                             capture_output=True, text=True).stdout.split()
        for window in ids:
            info = subprocess.run(["xwininfo", "-id", window], capture_output=True,
                                  text=True).stdout
            values = {line.split(":")[0].strip(): line.split(":")[1].strip()
                      for line in info.splitlines() if ":" in line}
            if values.get("Map State") == "IsViewable":
                found.append((window, int(values["Absolute upper-left X"]),
                              int(values["Absolute upper-left Y"]), int(values["Width"]),
                              int(values["Height"])))
        return found

    def open_panel(self, pomvar):
        """Clicks the front end's tray icon (its small embedded window); the 360 x 494 panel's
        top left corner once it is shown."""
        def icon():
            return next((w for w in self._windows(pomvar.pid) if max(w[3:]) <= 64), None)
        window = waited(icon, 30) or self.fail("the tray icon did not appear")
        subprocess.run(["xdotool", "mousemove", "--window", window[0], "8", "8", "click", "1"])
        def panel():
            return next((w for w in self._windows(pomvar.pid) if w[3:] == (360, 494)), None)
        shown = waited(panel) or self.fail("the panel did not open")
        return shown[1], shown[2]

    @staticmethod
    def click(x, y):
        subprocess.run(["xdotool", "mousemove", str(x), str(y), "click", "1"])

    @staticmethod
    def keys(*names):
        subprocess.run(["xdotool", "key", *names])

    def focused(self, name, seconds=10):
        """Whether a control of that name took the focus, within the time."""
        def heard():
            while GLib.MainContext.default().iteration(False):
                pass
            return name in self.focus
        return waited(heard, seconds)

    def application(self, name):
        desktop = Atspi.get_desktop(0)
        apps = (desktop.get_child_at_index(i) for i in range(desktop.get_child_count()))
        return next((app for app in apps if app and app.get_name() == name), None)

    def window(self, program, name, seconds=20):
        """A top-level window of that program and name, once it is on the AT-SPI bus."""
        def shown():
            app = self.application(program)
            for i in range(app.get_child_count() if app else 0):
                child = app.get_child_at_index(i)
                if child and child.get_name() == name:
                    return child
            return None
        return waited(shown, seconds) or self.fail(f"no {program} window named {name!r}")

    def notifications(self):
        if not os.path.exists(self.shown):
            return []
        with open(self.shown) as f:
            return [json.loads(line) for line in f]

    def fail(self, why):
        self.stop()
        sys.exit(f"{self.name}: {why}")

    def finish(self, what):
        self.stop()
        print(f"{self.name}: {what}")

    def stop(self):
        # Whatever runs from the prefix (the programs started by others too), then our children.
        for pid in os.listdir("/proc"):
            try:
                if pid.isdigit() and os.readlink(f"/proc/{pid}/exe").startswith(self.prefix + "/"):
                    os.kill(int(pid), 9)
            except OSError:
                pass
        for child in self.children:
            child.kill()
            child.wait()
        self.children = []
        shutil.rmtree(self.root, ignore_errors=True)

