"""What a screen reader knows of a program: its windows, and what is said in them, read from the accessibility bus."""

import time

import pyatspi
from accessibility_bus import ACCESSIBLE, ACTION, COMPONENT, EDITABLE_TEXT, ROOT, VALUE, AccessibilityBus, assign, fetch
from gi.repository import GLib

BOUND = 600.0
"""Seconds. Nothing is waited for longer than this, and nothing takes that long, even on a busy machine."""

WORDS = {
    pyatspi.ROLE_PUSH_BUTTON: "button",
    pyatspi.ROLE_RADIO_BUTTON: "radio button",
    pyatspi.ROLE_CHECK_BOX: "check box",
    pyatspi.ROLE_SLIDER: "slider",
    pyatspi.ROLE_PROGRESS_BAR: "progress bar",
    pyatspi.ROLE_COMBO_BOX: "combo box",
    pyatspi.ROLE_IMAGE: "image",
    pyatspi.ROLE_TEXT: "edit",
}
# What is inside these is read when they are opened.
CLOSED = (*WORDS, pyatspi.ROLE_LABEL, pyatspi.ROLE_LIST, pyatspi.ROLE_TREE, pyatspi.ROLE_TABLE)
WITH_VALUE = (pyatspi.ROLE_SLIDER, pyatspi.ROLE_PROGRESS_BAR)
WITH_CHECK = (pyatspi.ROLE_RADIO_BUTTON, pyatspi.ROLE_CHECK_BOX)


class NotHeard(AssertionError):
    """What was waited for did not come."""


def listen():
    """Takes in what the bus has sent meanwhile."""
    context = GLib.MainContext.default()
    while context.pending():
        context.iteration(False)


def wait_for(what, condition, bound=BOUND):
    """Asks `condition` until it answers with something that counts, and returns it."""
    deadline = time.monotonic() + bound
    while True:
        listen()
        answer = condition()
        if answer:
            return answer
        if time.monotonic() > deadline:
            raise NotHeard(f"{bound:g} s went by without {what() if callable(what) else what}")
        time.sleep(0.02)


def named(states):
    return {pyatspi.stateToString(state) for state in range(64) if states[state // 32] >> state % 32 & 1}


class Control:
    """One accessible object as it was when the screen was read. What it does, it does now."""

    def __init__(self, reader, path, role, states, name):
        self.reader = reader
        self.path = path
        self.role = role
        self.name = name
        self.states = named(states)
        self.children = []
        self.description = ""
        self.value = None
        self.chosen = None
        self.place = None

    def everything(self):
        """All that is read aloud in it, in the order in which a screen reader comes to it."""
        for child in self.children:
            if "showing" in child.states:
                if child.role in WORDS or (child.role == pyatspi.ROLE_LABEL and child.name):
                    yield child
                yield from child.everything()

    def spoken(self):
        """One control as it is read aloud: its text alone, or its role, name, value and state."""
        if self.role == pyatspi.ROLE_LABEL:
            return self.name
        said = f"[{WORDS[self.role]}] {self.name}"
        if self.role in WITH_VALUE:
            said += f" {self.value:.4g}"
        if self.role == pyatspi.ROLE_COMBO_BOX:
            said += f": {self.chosen}"
        if self.role in WITH_CHECK:
            said += " (checked)" if "checked" in self.states else " (not checked)"
        if self.role == pyatspi.ROLE_IMAGE and self.description:
            said += f": {self.description}"
        if "enabled" not in self.states:
            said += " (unavailable)"
        return said

    def _ask(self, *question):
        return self.reader.ask_each([self.path], question)[0][0]

    def _number(self, number):
        return GLib.Variant("(i)", (number,))

    def states_now(self):
        """None of them where the control is gone."""
        return named(self._ask(ACCESSIBLE, "GetState", None) or (0, 0))

    def act(self, action="Press"):
        names = [name for name, *_ in self._ask(ACTION, "GetActions", None)]
        self._ask(ACTION, "DoAction", self._number(names.index(action)))

    def shortcut(self):
        return self._ask(ACTION, "GetKeyBinding", self._number(0))

    def take_focus(self):
        self._ask(COMPONENT, "GrabFocus", None)

    def range(self):
        """Lowest, highest, step."""
        return [self._ask(*fetch(VALUE, name)) for name in ("MinimumValue", "MaximumValue", "MinimumIncrement")]

    def entries(self):
        """What a pop-up list offers."""
        return self.reader.entries(self)

    def set_value(self, value):
        self._ask(*assign(VALUE, "CurrentValue", GLib.Variant("d", value)))

    def set_text(self, text):
        self._ask(EDITABLE_TEXT, "SetTextContents", GLib.Variant("(s)", (text,)))


class ScreenReader:
    """Reads one program, which is known by its process."""

    bus = None

    def __init__(self, process_id):
        ScreenReader.bus = ScreenReader.bus or AccessibilityBus()
        self._owner = wait_for("the program on the accessibility bus", lambda: self.bus.program(process_id))

    def ask_each(self, paths, *questions):
        return self.bus.ask_each(self._owner, paths, *questions)

    def read(self, details=True):
        """The windows on the screen with all that they say; the one that was opened last at the end. Without details
        only roles, names and states, which is half of the questions."""
        program = Control(self, ROOT, pyatspi.ROLE_APPLICATION, (0, 0), "")
        generation = [program]
        while generation:
            generation = self._open(generation)
        windows = [window for window in program.children if "showing" in window.states]
        if details:
            self._complete([control for window in windows for control in window.everything()])
        return windows

    def _open(self, parents):
        """Reads the children of these, and returns those that have something in them that is on the screen."""
        answers = self._children([parent.path for parent in parents])
        children = [(parent, path) for parent, paths in zip(parents, answers) for path in paths]
        for (parent, _), child in zip(children, self._look_at([path for _, path in children])):
            if child is not None:
                parent.children.append(child)
        return [
            child
            for parent in parents
            for child in parent.children
            if "showing" in child.states and child.role not in CLOSED
        ]

    def _look_at(self, paths):
        questions = (ACCESSIBLE, "GetRole", None), (ACCESSIBLE, "GetState", None), fetch(ACCESSIBLE, "Name")
        for path, answers in zip(paths, self.ask_each(paths, *questions)):
            yield None if None in answers else Control(self, path, *answers)

    def _complete(self, controls):
        """Adds what is not common to all controls."""
        place = COMPONENT, "GetExtents", GLib.Variant("(u)", (pyatspi.DESKTOP_COORDS,))
        answers = self.ask_each([control.path for control in controls], fetch(ACCESSIBLE, "Description"), place)
        for control, (description, extents) in zip(controls, answers):
            control.description = description or ""
            control.place = (extents or (0, 0))[:2]
        valued = [control for control in controls if control.role in WITH_VALUE]
        values = self.ask_each([control.path for control in valued], fetch(VALUE, "CurrentValue"))
        for control, (value,) in zip(valued, values):
            control.value = float("nan") if value is None else value
        for control in controls:
            if control.role == pyatspi.ROLE_COMBO_BOX:
                # The bus has no value for it: what is chosen is the one entry that is selected.
                control.chosen = ", ".join(entry.name for entry in self.entries(control) if "selected" in entry.states)

    def entries(self, combo_box):
        (lists,) = self._children([combo_box.path])
        entries = self._look_at([path for paths in self._children(lists) for path in paths])
        return [entry for entry in entries if entry is not None]

    def _children(self, paths):
        answers = self.ask_each(paths, (ACCESSIBLE, "GetChildren", None))
        return [[path for _, path in children or []] for (children,) in answers]
