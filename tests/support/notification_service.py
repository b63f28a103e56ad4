#!/usr/bin/python3
"""Stands in for the desktop's notification service on the session bus: owns
org.freedesktop.Notifications and writes each notification it is asked to show to the file given,
one JSON line ({"summary": ..., "body": ..., "icon": ..., "hints": {its text and number hints}}). Prints "ready" once it owns the name.

usage: notification_service.py <file>
"""
import json, sys

from gi.repository import Gio, GLib

INTERFACE = """<node><interface name="org.freedesktop.Notifications">
  <method name="GetCapabilities"><arg type="as" direction="out"/></method>
  <method name="GetServerInformation">
    <arg type="s" direction="out"/><arg type="s" direction="out"/>
    <arg type="s" direction="out"/><arg type="s" direction="out"/>
  </method>
  <method name="Notify">
    <arg type="s"/><arg type="u"/><arg type="s"/><arg type="s"/><arg type="s"/>
    <arg type="as"/><arg type="a{sv}"/><arg type="i"/><arg type="u" direction="out"/>
  </method>
</interface></node>"""
shown = 0


def call(_connection, _sender, _path, _interface, method, parameters, invocation):
    global shown
    if method == "GetCapabilities":
        invocation.return_value(GLib.Variant("(as)", (["body", "sound"],)))
    elif method == "GetServerInformation":
        invocation.return_value(GLib.Variant("(ssss)", ("test", "pomvar", "1", "1.2")))
    else:
        _app, _replaces, icon, summary, body, _actions, hints = parameters.unpack()[:7]
        hints = {key: value for key, value in hints.items() if isinstance(value, (str, int))}
        with open(sys.argv[1], "a") as log:
            log.write(json.dumps({"summary": summary, "body": body, "icon": icon,
                                  "hints": hints}) + "\n")
        shown += 1
        invocation.return_value(GLib.Variant("(u)", (shown,)))


def acquired(connection, _name):
    print("ready", flush=True)


bus = Gio.bus_get_sync(Gio.BusType.SESSION)
bus.register_object("/org/freedesktop/Notifications",
                    Gio.DBusNodeInfo.new_for_xml(INTERFACE).interfaces[0], call)
Gio.bus_own_name_on_connection(bus, "org.freedesktop.Notifications", 0, acquired, None)
GLib.MainLoop().run()
