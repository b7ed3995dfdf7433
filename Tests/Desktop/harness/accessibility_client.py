"""Assistive technology as the program meets it: reads the tree, presses, and hears events.

Runs as a process of its own, because the AT-SPI library knows one display and one bus. Takes commands
as lines of JSON and gives answers and events as lines of JSON."""
import json
import sys
import threading

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402


def say(message):
    print(json.dumps(message), flush=True)


def describe(element, path):
    element.clear_cache()  # of what is above it, clearing does not always reach down here
    try:
        extents = element.get_extents(Atspi.CoordType.SCREEN)
        states = element.get_state_set()
        return {
            "path": path,
            "role": element.get_role_name(),
            "name": element.get_name(),
            "description": element.get_description(),
            "extents": [extents.x, extents.y, extents.width, extents.height],
            "states": [state.value_nick for state in states.get_states()],
            "actions": [Atspi.Action.get_action_name(element, i)
                        for i in range(Atspi.Action.get_n_actions(element))]
                       if element.get_action_iface() else [],
            "labels": [relation.get_target(i).get_name()
                       for relation in element.get_relation_set()
                       if relation.get_relation_type() == Atspi.RelationType.LABELLED_BY
                       for i in range(relation.get_n_targets())],
            "children": [describe(child, path + [i]) for i, child in enumerate(children(element))],
        }
    except GLib.Error as error:  # it went away while it was read
        return {"path": path, "role": "gone", "name": str(error), "description": "", "states": [],
                "extents": [0, 0, 0, 0], "actions": [], "labels": [], "children": []}


def children(element):
    found = []
    for index in range(element.get_child_count()):
        child = element.get_child_at_index(index)
        if child is not None:
            found.append(child)
    return found


def applications():
    desktop = Atspi.get_desktop(0)
    return [app for app in children(desktop) if app.get_name().lower() == "kestrow"]


def tree():
    trees = []
    for number, app in enumerate(applications()):
        app.clear_cache()
        trees.append(describe(app, [number]))
    return trees


def act(path, action):
    element = applications()[path[0]]
    for index in path[1:]:
        element = children(element)[index]
    names = [Atspi.Action.get_action_name(element, i)
             for i in range(Atspi.Action.get_n_actions(element))]
    return bool(Atspi.Action.do_action(element, names.index(action)))


def handle(line):
    try:
        command = json.loads(line)
        if command["do"] == "tree":
            say({"answer": tree()})
        elif command["do"] == "act":
            say({"answer": act(command["path"], command["action"])})
    except Exception as error:  # the test shall hear of it, not wait
        say({"answer": None, "error": repr(error)})
    return False


def heard(event):
    text = event.any_data if isinstance(event.any_data, str) else None
    try:
        role = event.source.get_role_name()
        name = event.source.get_name()
    except GLib.Error:
        role = name = ""
    say({"event": event.type, "text": text, "priority": event.detail1, "role": role, "name": name})


def read_commands():
    for line in sys.stdin:
        GLib.idle_add(handle, line)
    GLib.idle_add(Atspi.event_quit)


Atspi.init()
listener = Atspi.EventListener.new(heard)
for kind in ("object:announcement", "object:property-change:accessible-name",
             "object:state-changed:focused", "window:activate"):
    listener.register(kind)
Atspi.get_desktop(0).get_child_count()
say({"event": "ready"})
threading.Thread(target=read_commands, daemon=True).start()
Atspi.event_main()
