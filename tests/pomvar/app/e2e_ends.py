#!/usr/bin/python3
# Pomvar never stays away (desktop_session, the real programs): one table of the ways the front
# end ends, each followed by the next start. After every end no PID file is left, so the next
# start works; the front end's exit status is the one each way gives.
# usage: e2e_ends.py <build tree> <the next version's install tree>
import os, signal, socket, subprocess, sys

sys.path.insert(0, os.path.join(os.path.dirname(__file__), "..", "..", "support"))
from desktop_session import DesktopSession, press, waited  # noqa: E402

tree, next_tree = sys.argv[1:3]
session = DesktopSession(entries={"alpha": "Name=Alpha\nExec=true"}, store='{"version": 1}')
session.install(tree)
settings = f"{session.env['XDG_CONFIG_HOME']}/pomvar/pomvar.ini"
tools = f"{session.root}/tools"
os.makedirs(tools)


def stop_programs():
    for pid in session.programs():
        os.kill(pid, signal.SIGKILL)
    if not waited(lambda: not session.programs() and not session.listeners(), 30):
        session.fail("not stopped")


def signalled(sig, watched=False):
    def end():
        front_end = start(watched)
        front_end.send_signal(sig)
        return front_end
    return end


def fatal_stop():
    # A menu the panel does not have, in its own settings: it stops on purpose when it opens.
    front_end = start()
    with open(settings, "w") as f:
        f.write("[General]\nLastMenu=9\n")
    session.click_icon()
    return front_end


def refused():
    # A server that listens until the probe has seen it, then is gone before the probe answers:
    # the front end's connection is refused.
    stop_programs()
    with open(f"{tools}/lsof", "w") as f:
        f.write(f'#!/bin/sh\nout=$(/usr/bin/lsof "$@")\n[ -n "$out" ] && touch {tools}/probed &&\n'
                f'  while [ ! -e {tools}/closed ]; do sleep 0.01; done\nprintf "%s" "$out"\n')
    # Renamed into place: the killed server's file may still be busy while it exits.
    server = f"{session.prefix}/libexec/pomvar/pomvarsrv"
    with open(server + ".new", "w") as f:
        f.write(f"#!/usr/bin/python3\nimport os, socket, time\ns = socket.create_server("
                f"('127.0.0.1', 50818))\nwhile not os.path.exists('{tools}/probed'):\n"
                f"    time.sleep(0.01)\ns.close()\nopen('{tools}/closed', 'w').close()\n")
    os.replace(server + ".new", server)
    os.chmod(f"{tools}/lsof", 0o755)
    os.chmod(server, 0o755)
    return start_by_hand()


def port_taken():
    stop_programs()
    def bound():  # a killed server's program is gone a moment before its listening socket
        try:
            return socket.create_server(("127.0.0.1", 50818))
        except OSError:
            return None
    holder = waited(bound) or session.fail("the port stays taken")
    front_end = start_by_hand()
    if not waited(lambda: front_end.poll() is not None, 30):
        session.fail("the front end waits for a port another program holds")
    holder.close()
    said = "Pomvar cannot start"
    if not waited(lambda: any(n["summary"] == said for n in session.notifications())):
        session.fail(f"no notification {said!r}: {session.notifications()}")
    return front_end


def icon_deleted():
    # The front end has the menus, with their icon files, from its start; All Apps shows them.
    os.makedirs(os.path.dirname(settings), exist_ok=True)
    with open(settings, "w") as f:
        f.write("[General]\nLastMenu=2\n")
    front_end = start()
    icons = f"{session.env['XDG_CACHE_HOME']}/pomvar/icons"
    for name in os.listdir(icons):
        os.remove(f"{icons}/{name}")
    session.open_panel()
    if front_end.poll() is not None or not session.row("Alpha"):
        session.fail("the front end stopped on an icon file that was deleted")
    session.keys("Escape")
    front_end.send_signal(signal.SIGTERM)
    return front_end


def update():
    stop_programs()  # a server of its own, which restarts it
    front_end = start(watched=True)
    session.install(next_tree)
    session.request('{\n    "id": "check-updates"\n}')
    press(session.found(session.window("Pomvar Updates"), "push button", "Restart Pomvar"))
    new = waited(lambda: front_end.poll() is not None and session.front_end_pid(), 60)
    if not waited(lambda: new in session.programs() and session.listeners(), 30):
        session.fail("no restart")
    os.kill(new, signal.SIGTERM)
    waited(lambda: new not in session.programs(), 30)
    session.install(tree)
    return front_end


def display_lost():
    front_end = start()
    xvfb = session.children.pop()  # the first started
    xvfb.kill()
    xvfb.wait()
    session.env["DISPLAY"] = session.display()
    session.children.remove(session.trayer)
    session.trayer = None
    return front_end


def start_by_hand(watched=False):
    """The front end; unless `watched`, in a runtime folder of its own, where a runtime server
    started by another front end does not see its PID file: what it removes, it removes itself."""
    global pid_file
    run = session.env["XDG_RUNTIME_DIR"] + ("" if watched else "/own")
    os.makedirs(run, mode=0o700, exist_ok=True)
    pid_file = f"{run}/pomvar/pomvar.pid"
    env = dict(session.env, PATH=f"{tools}:{session.env['PATH']}", XDG_RUNTIME_DIR=run)
    session.pomvar = session._spawn([f"{session.prefix}/bin/pomvar"], env=env, log="pomvar")
    return session.pomvar


def start(watched=False):
    """A start as the user makes it, once the one before has ended: the front end, once it is
    connected to a runtime server (its own, or the one still running)."""
    front_end = start_by_hand(watched)
    connected = ["lsof", "-a", "-p", str(front_end.pid), "-iTCP:50818", "-sTCP:ESTABLISHED"]
    if not waited(lambda: subprocess.run(connected, capture_output=True).stdout, 60):
        session.fail(f"the start after {name} did not work")
    with open(pid_file) as f:
        if f.read() != str(front_end.pid):  # the process number alone, no line break
            session.fail(f"the PID file does not name {front_end.pid}")
    return front_end


# The way of ending (it returns the front end it ended); the front end's exit status (or those).
ENDS = [
    ("SIGINT", signalled(signal.SIGINT), 1),
    ("SIGTERM", signalled(signal.SIGTERM), 1),
    ("SIGTRAP", signalled(signal.SIGTRAP), 1),
    ("SIGHUP", signalled(signal.SIGHUP), -signal.SIGHUP),
    ("SIGQUIT", signalled(signal.SIGQUIT), -signal.SIGQUIT),
    ("a fatal stop", fatal_stop, -signal.SIGABRT),
    # Only the runtime server can remove the file of a killed front end.
    ("SIGKILL", signalled(signal.SIGKILL, watched=True), -signal.SIGKILL),
    ("a refused connection", refused, 1),
    ("the port held by another program", port_taken, 1),
    ("a deleted icon file", icon_deleted, 1),
    # Not polling (the panel did not ask), the old front end is asked to quit by the server.
    ("the update restart", update, 1),
    # The runtime server loses the display too: the front end may lose its connection first.
    ("the display lost", display_lost, (1, -signal.SIGABRT)),
]
session.start().send_signal(signal.SIGTERM)  # the tray host and notifications for the rest
name = "the first start"
for name, end, status in ENDS:
    front_end = end()
    if not waited(lambda: front_end.poll() is not None, 60):
        session.fail(f"{name}: the front end did not end")
    if front_end.returncode not in (status if isinstance(status, tuple) else (status,)):
        session.fail(f"{name}: the front end ended with {front_end.returncode}, not {status}")
    if not waited(lambda: not os.path.exists(pid_file), 10):
        session.fail(f"{name}: the PID file is left")
    if os.path.exists(f"{tools}/lsof"):
        os.remove(f"{tools}/lsof")
        session.install(tree)
    if os.path.exists(settings):
        os.remove(settings)
start()
session.finish(f"after each of {len(ENDS)} ends no PID file was left, and Pomvar started again")
