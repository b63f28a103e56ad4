"""A desktop session with the real programs: the real pomvar and the real pomvarsrv copied into an
install layout (bin/pomvar, libexec/pomvar/pomvarsrv) in a temporary folder, with their own HOME,
XDG folders and desktop entries, on a virtual display (Xvfb) with a tray host (trayer) and a
private session bus, driven with xdotool as a user would. The runtime server takes the fixed port
50818: tests using this session never run in parallel (RESOURCE_LOCK runtime_port_50818).

    session = TraySession(pomvar, pomvarsrv, entries={"alpha": "Name=Alpha\\nExec=true"},
                          store='{"version": 1}')
    x, y = session.open_panel()          # a click on the tray icon; the panel's top left
    session.click(x + 200, y + 22)       # the first row
    session.key("Escape")                # the panel hides
    session.settings()["ExpandedAppCats"]  # the front end's saved defaults, decoded
    session.finish("what was checked")

In the entries' lines and the store, "{root}" stands for the session's own folder.
"""
import os, re, shutil, socket, struct, subprocess, sys, tempfile, time

PORT = 50818


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


def _unescape_ini(text):
    """The bytes of a value as QSettings writes it in an INI file (C escapes, \\xhh, \\0)."""
    out = bytearray()
    i = 0
    simple = {"a": 7, "b": 8, "f": 12, "n": 10, "r": 13, "t": 9, "v": 11}
    while i < len(text):
        c = text[i]
        if c != "\\":
            out += c.encode("latin-1")
            i += 1
            continue
        nxt = text[i + 1]
        if nxt == "x":
            digits = re.match(r"[0-9a-fA-F]+", text[i + 2:]).group(0)
            out.append(int(digits, 16) & 0xFF)
            i += 2 + len(digits)
        elif nxt in "01234567":
            digits = re.match(r"[0-7]{1,3}", text[i + 1:]).group(0)
            out.append(int(digits, 8))
            i += 1 + len(digits)
        else:
            out.append(simple.get(nxt, ord(nxt)))
            i += 2
    return bytes(out)


def _read_variant(data, at):
    """One QVariant of the kinds the front end saves (bool, integer, string, map), as QSettings
    streams it (QDataStream::Qt_4_0: the type, then the value)."""
    kind, = struct.unpack_from(">I", data, at)
    at += 4
    if kind == 1:  # bool
        return bool(data[at]), at + 1
    if kind in (2, 4):  # int, long long
        size = 4 if kind == 2 else 8
        return int.from_bytes(data[at:at + size], "big", signed=True), at + size
    if kind == 10:  # QString
        return _read_string(data, at)
    if kind == 8:  # QVariantMap
        count, = struct.unpack_from(">I", data, at)
        at += 4
        result = {}
        for _ in range(count):
            key, at = _read_string(data, at)
            result[key], at = _read_variant(data, at)
        return result, at
    raise ValueError(f"a QVariant of type {kind}")


def _read_string(data, at):
    size, = struct.unpack_from(">I", data, at)
    if size == 0xFFFFFFFF:
        return "", at + 4
    return data[at + 4:at + 4 + size].decode("utf-16-be"), at + 4 + size


class TraySession:
    def __init__(self, pomvar, pomvarsrv, entries=None, store=None, name=None):
        self.name = name or os.path.splitext(os.path.basename(sys.argv[0]))[0]
        self.root = tempfile.mkdtemp()
        self.children = []
        self.pomvar = None
        os.makedirs(f"{self.root}/bin")
        os.makedirs(f"{self.root}/libexec/pomvar")
        shutil.copy(pomvar, f"{self.root}/bin/pomvar")
        shutil.copy(pomvarsrv, f"{self.root}/libexec/pomvar/pomvarsrv")
        for entry, lines in (entries or {}).items():
            write(f"{self.root}/system/applications/{entry}.desktop",
                  "[Desktop Entry]\nType=Application\n" + lines.replace("{root}", self.root) + "\n")
        home = f"{self.root}/home"
        if store is not None:
            write(f"{home}/.config/pomvar/pomvarsrv.json", store.replace("{root}", self.root))
        if self._listening():
            self.fail(f"port {PORT} is already taken")
        xvfb = self._spawn(["Xvfb", "-displayfd", "1", "-screen", "0", "1280x800x24",
                            "-nolisten", "tcp"], stdout=subprocess.PIPE)
        display = ":" + xvfb.stdout.readline().decode().strip()
        bus = self._spawn(["dbus-daemon", "--session", "--nofork", "--print-address=1"],
                          stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
        self.env = dict(os.environ, DISPLAY=display, HOME=home,
                        DBUS_SESSION_BUS_ADDRESS=bus.stdout.readline().decode().strip(),
                        XDG_CONFIG_HOME=f"{home}/.config", XDG_CACHE_HOME=f"{home}/.cache",
                        XDG_DATA_HOME=f"{home}/.local/share", XDG_STATE_HOME=f"{home}/.local/state",
                        XDG_RUNTIME_DIR=f"{self.root}/runtime", XDG_DATA_DIRS=f"{self.root}/system",
                        GSETTINGS_BACKEND="memory")
        self.env.pop("QT_QPA_PLATFORM", None)
        os.makedirs(self.env["XDG_RUNTIME_DIR"], mode=0o700)
        self._spawn(["trayer", "--edge", "top", "--align", "right", "--widthtype", "request",
                     "--height", "28", "--SetDockType", "true", "--transparent", "false"],
                    env=self.env, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        if not waited(lambda: self.xdotool("search", "--class", "trayer")):
            self.fail("no tray host")
        self.log = open(f"{self.root}/pomvar.log", "w")
        self.pomvar = self._spawn([f"{self.root}/bin/pomvar"], env=self.env, stdout=self.log,
                                  stderr=subprocess.STDOUT)
        self.icon = waited(self._tray_icon, 30) or self.fail("the tray icon did not appear")

    def _spawn(self, command, **options):
        child = subprocess.Popen(command, **options)
        self.children.insert(0, child)
        return child

    def _listening(self):
        try:
            socket.create_connection(("127.0.0.1", PORT), timeout=1).close()
            return True
        except OSError:
            return False

    def xdotool(self, *arguments):
        """xdotool's output lines on this display; [] when it fails."""
        done = subprocess.run(["xdotool", *arguments], env=self.env, capture_output=True,
                              text=True)
        return done.stdout.split() if done.returncode == 0 else []

    def geometry(self, window):
        """(x, y, width, height, viewable) of an X window."""
        info = subprocess.run(["xwininfo", "-id", window], env=self.env, capture_output=True,
                              text=True).stdout
        number = lambda label: int(re.search(label + r":\s+(-?\d+)", info).group(1))  # noqa: E731
        return (number("Absolute upper-left X"), number("Absolute upper-left Y"),
                number("Width"), number("Height"), "IsViewable" in info)

    def _tray_icon(self):
        for window in self.xdotool("search", "--pid", str(self.pomvar.pid)):
            x, y, w, h, viewable = self.geometry(window)
            if viewable and 0 < w <= 64 and 0 < h <= 64:
                return window
        return None

    def panel(self):
        """The panel's window while it is shown; None otherwise."""
        for window in self.xdotool("search", "--onlyvisible", "--pid", str(self.pomvar.pid)):
            x, y, w, h, viewable = self.geometry(window)
            if viewable and (w, h) == (360, 494):
                return window
        return None

    def popup(self):
        """Waits for a menu of the front end's (a context or control menu) to be shown."""
        def shown():
            for window in self.xdotool("search", "--onlyvisible", "--pid", str(self.pomvar.pid)):
                x, y, w, h, viewable = self.geometry(window)
                if viewable and w > 64 and (w, h) != (360, 494):
                    return window
            return None
        window = waited(shown) or self.fail("no menu was shown")
        time.sleep(0.2)  # its entries drawn, ready for keys
        return window

    def open_panel(self):
        """Clicks the tray icon; the shown panel's top left corner."""
        self.xdotool("mousemove", "--window", self.icon, "8", "8", "click", "1")
        panel = waited(self.panel) or self.fail("the panel did not open")
        time.sleep(0.3)  # drawn and focused
        return self.geometry(panel)[:2]

    def window(self, title, seconds=10):
        """A shown window of that title (the server's windows, its dialogs)."""
        found = waited(lambda: self.xdotool("search", "--onlyvisible", "--name", f"^{title}$"),
                       seconds)
        return found[0] if found else self.fail(f"no window titled {title!r}")

    def click(self, x, y, button=1):
        self.xdotool("mousemove", str(x), str(y), "click", str(button))

    def key(self, *keys):
        """Keys typed into the focused window, as xdotool names them ("ctrl+a", "Return")."""
        self.xdotool("key", "--delay", "50", *keys)

    def type(self, text):
        self.xdotool("type", "--delay", "30", text)

    def focus(self, window):
        self.xdotool("windowfocus", "--sync", window)

    def request(self, body):
        """Sends one request to the runtime server, as the front end does without awaiting it."""
        data = body.encode()
        with socket.create_connection(("127.0.0.1", PORT)) as connection:
            connection.sendall(struct.pack(">H", len(data)) + data)

    def settings(self):
        """The front end's saved defaults (QSettings), values decoded; {} before any is saved."""
        path = f"{self.env['XDG_CONFIG_HOME']}/pomvar/pomvar.ini"
        values = {}
        if not os.path.exists(path):
            return values
        with open(path, encoding="latin-1") as f:
            for line in f:
                key, sep, value = line.rstrip("\n").partition("=")
                if not sep or key.startswith("["):
                    continue
                match = re.fullmatch(r"@Variant\((.*)\)", value)
                values[key] = _read_variant(_unescape_ini(match.group(1)), 0)[0] if match \
                    else value
        return values

    def store(self):
        """The runtime server's store file."""
        import json
        with open(f"{self.env['XDG_CONFIG_HOME']}/pomvar/pomvarsrv.json") as f:
            return json.load(f)

    def fail(self, why):
        self.stop()
        sys.exit(f"{self.name}: {why}")

    def finish(self, what):
        self.stop()
        print(f"{self.name}: {what}")

    def server_pid(self):
        """The pid of this session's runtime server (our copy listening on the port), or None."""
        found = subprocess.run(["lsof", "-t", f"-iTCP:{PORT}", "-sTCP:LISTEN"],
                               capture_output=True, text=True).stdout.split()
        ours = os.path.realpath(f"{self.root}/libexec/pomvar/pomvarsrv")
        for pid in found:
            try:
                if os.path.realpath(f"/proc/{pid}/exe") == ours:
                    return int(pid)
            except OSError:
                pass
        return None

    def stop(self):
        # The server was started by pomvar: it is asked to quit, as the control menu does, and
        # stopped by its id if it does not.
        server = self.server_pid() if self.pomvar else None
        if server:
            try:
                self.request('{\n    "id": "quit"\n}')
            except OSError:
                pass
            if not waited(lambda: not os.path.exists(f"/proc/{server}"), 5):
                os.kill(server, 9)
        for child in self.children:
            child.kill()
            child.wait()
        if self.pomvar:
            self.log.close()
        if os.environ.get("TRAY_SESSION_KEEP"):
            print(f"{self.name}: kept {self.root}")
        else:
            shutil.rmtree(self.root, ignore_errors=True)
