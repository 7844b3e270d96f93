"""The accessibility bus, asked many things at once. One question at a time, a window of sixty controls would take
hundreds of turns between two processes, which a busy machine hands out slowly."""

from gi.repository import Gio, GLib

ROOT = "/org/a11y/atspi/accessible/root"
ACCESSIBLE, VALUE, ACTION, COMPONENT, EDITABLE_TEXT = (
    f"org.a11y.atspi.{name}" for name in ("Accessible", "Value", "Action", "Component", "EditableText")
)
# Milliseconds. A program that winds a measurement down answers nobody meanwhile.
PATIENCE = 20_000


class AccessibilityBus:
    def __init__(self):
        self._connection = Gio.bus_get_sync(Gio.BusType.SESSION)
        bus = "org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus"
        answer = self._connection.call_sync(*bus, "GetAddress", None, None, Gio.DBusCallFlags.NONE, PATIENCE, None)
        (address,) = answer.unpack()
        flags = Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION
        self._connection = Gio.DBusConnection.new_for_address_sync(address, flags)

    def ask(self, owner, questions):
        """Sends every question (path, interface, method, arguments) before it waits for the first answer. An answer is
        what the method returns, or nothing where there is no such object any more."""
        answers = [None] * len(questions)
        open_questions = set(range(len(questions)))

        def answered(connection, result, number):
            open_questions.discard(number)
            try:
                answer = connection.call_finish(result).unpack()
                answers[number] = answer[0] if len(answer) == 1 else answer
            except GLib.Error:
                answers[number] = None

        for number, question in enumerate(questions):
            self._connection.call(owner, *question, None, Gio.DBusCallFlags.NONE, PATIENCE, None, answered, number)
        while open_questions:
            GLib.MainContext.default().iteration(True)
        return answers

    def ask_each(self, owner, paths, *questions):
        """For each path the answers to these questions (interface, method, arguments)."""
        answers = self.ask(owner, [(path, *question) for path in paths for question in questions])
        return [answers[first : first + len(questions)] for first in range(0, len(answers), len(questions))]

    def program(self, process_id):
        """The name on the bus of the program with that process, or nothing while it has none."""
        children = self.ask("org.a11y.atspi.Registry", [(ROOT, ACCESSIBLE, "GetChildren", None)])[0] or []
        names = [owner for owner, _ in children]
        daemon = "org.freedesktop.DBus"
        question = "/org/freedesktop/DBus", daemon, "GetConnectionUnixProcessID"
        processes = self.ask(daemon, [(*question, GLib.Variant("(s)", (name,))) for name in names])
        return next((name for name, process in zip(names, processes) if process == process_id), None)


def fetch(interface, name):
    """The question for a property."""
    return "org.freedesktop.DBus.Properties", "Get", GLib.Variant("(ss)", (interface, name))


def assign(interface, name, value):
    return "org.freedesktop.DBus.Properties", "Set", GLib.Variant("(ssv)", (interface, name, value))
