"""Talvo's window as assistive technology sees it (AT-SPI), and the user's keyboard and pointer."""

import subprocess
from contextlib import contextmanager

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402

from waiting import wait_until  # noqa: E402

BUTTON = {Atspi.Role.PUSH_BUTTON}
COMBO_BOX = {Atspi.Role.COMBO_BOX}
CHOICE = {Atspi.Role.LIST_ITEM, Atspi.Role.MENU_ITEM}
FIELD = {Atspi.Role.ENTRY, Atspi.Role.TEXT, Atspi.Role.PASSWORD_TEXT}
PASSWORD_FIELD = {Atspi.Role.PASSWORD_TEXT}
ROW = {Atspi.Role.LIST_ITEM}
DIALOG = {Atspi.Role.DIALOG, Atspi.Role.ALERT}
SPOKEN = {Atspi.Role.NOTIFICATION, *DIALOG}


class Window:
    """The window of one running process; `exit_code` gives None as long as that runs."""

    def __init__(self, process_id, exit_code):
        self._process_id = process_id
        self._exit_code = exit_code
        Atspi.init()
        Atspi.set_timeout(3000, 15000)

    # What is there

    def wait_until(self, condition, what, seconds=60):
        """Waits for something in the window; fails at once when the program has ended."""

        def attempt():
            if self._exit_code() is not None:
                raise AssertionError(f"Talvo ended with {self._exit_code()} instead of: {what}")
            _deliver_events()
            try:
                return condition()
            except GLib.Error:
                return None # something that was being read has left the window

        return wait_until(attempt, what, seconds)

    def unchanged(self, read):
        """What `read` gives once nothing that it reads leaves the window meanwhile."""
        return self.wait_until(lambda: [read()], "a moment without changes in the window")[0]

    def root(self):
        """The application's accessible, or None while it is not on the bus yet."""
        _deliver_events()
        desktop = Atspi.get_desktop(0)
        for index in range(desktop.get_child_count()):
            application = desktop.get_child_at_index(index)
            try:
                if application and application.get_process_id() == self._process_id:
                    application.set_cache_mask(Atspi.Cache.NONE)
                    return application
            except GLib.Error:
                continue # it has just left the bus
        return None

    def elements(self, below=None):
        """Every element that shows, in the tree's order."""
        start = below or self.root()
        return [] if start is None else list(_showing(start))

    def find(self, roles, name, below=None):
        """The elements of these roles with this name."""
        return self.unchanged(lambda: self._find(roles, name, below))

    def get(self, roles, name, below=None):
        """Waits for an element of these roles with this name and gives back the first one."""
        return self.wait_until(lambda: self._find(roles, name, below), f"“{name}” in the window")[0]

    def texts(self, below=None):
        """The names and text contents of everything that shows."""
        return self.unchanged(lambda: self._texts(below))

    def wait_for_text(self, text, seconds=60):
        """Waits until an element shows exactly this text."""
        self.wait_until(lambda: text in self._texts(), f"“{text}” in the window", seconds)

    def wait_without_text(self, text, seconds=60):
        """Waits until no element shows this text."""
        self.wait_until(lambda: text not in self._texts(), f"no “{text}” in the window", seconds)

    def row(self, title):
        """The sidebar's row of the conversation with this title."""
        return self.wait_until(lambda: self._row(title), f"a row “{title}”")

    def _find(self, roles, name, below=None):
        return [
            element
            for element in self.elements(below)
            if element.get_role() in roles and element.get_name() == name
        ]

    def _texts(self, below=None):
        found = []
        for element in self.elements(below):
            found.append(element.get_name())
            if element.get_role() not in PASSWORD_FIELD:
                found.append(content_of(element))
        return [text for text in found if text]

    def _row(self, title):
        for element in self.elements():
            if element.get_role() in ROW and title in self._texts(element):
                if self._find(BUTTON, "Sohbeti sil", element):
                    return element
        return None

    def tree(self):
        """The window in words, for the report of a failure."""
        lines = []

        def describe(element, depth):
            if element is None:
                return
            states = [state.value_nick for state in element.get_state_set().get_states()]
            lines.append("  " * depth + f"{element.get_role_name()} “{element.get_name()}” "
                         f"“{content_of(element)}” {' '.join(sorted(states))}")
            for index in range(element.get_child_count()):
                describe(element.get_child_at_index(index), depth + 1)

        describe(self.root(), 0)
        return "\n".join(lines)

    @contextmanager
    def announcements(self):
        """A list of what begins to show inside the block and is spoken of its own accord: role, name
        and description of each notification and dialog, as they are when the news arrives."""
        announced = []

        def hear(event):
            try:
                role = event.source.get_role()
                if event.detail1 == 1 and role in SPOKEN:
                    announced.append((role, event.source.get_name(), event.source.get_description()))
            except GLib.Error:
                pass # it is gone again

        listener = Atspi.EventListener.new(hear)
        listener.register("object:state-changed:showing")
        try:
            yield announced
        finally:
            listener.deregister("object:state-changed:showing")

    def _managed_window(self):
        """The identifier of the process's window, or None."""
        listed = subprocess.run(["wmctrl", "-l", "-p"], capture_output=True, text=True, check=False)
        for line in listed.stdout.splitlines():
            identifier, _, process_id, *_ = line.split()
            if int(process_id) == self._process_id:
                return identifier
        return None

    # What a user does

    def click(self, element):
        """A click of the pointer in the element's middle."""
        box = element.get_extents(Atspi.CoordType.SCREEN)
        _xdotool("mousemove", box.x + box.width // 2, box.y + box.height // 2, "click", 1)

    def click_beginning(self, element):
        """A click of the pointer on the first characters of a text."""
        box = element.get_extents(Atspi.CoordType.SCREEN)
        _xdotool("mousemove", box.x + 12, box.y + min(box.height // 2, 10), "click", 1)

    def type_into(self, element, text):
        """Clicks the field and types, once it has the focus."""
        self.click(element)
        self.wait_until(lambda: has_state(element, Atspi.StateType.FOCUSED), "the focus in the field")
        _xdotool("type", "--clearmodifiers", "--delay", 20, text)

    def key(self, *names):
        _xdotool("key", "--clearmodifiers", *names)

    def size(self):
        """Width and height of what the window manager's frame surrounds, in pixels."""
        window = self.wait_until(self._managed_window, "a window in the window manager's list")
        lines = _xdotool("getwindowgeometry", "--shell", window).split()
        geometry = dict(line.split("=") for line in lines)
        return int(geometry["WIDTH"]), int(geometry["HEIGHT"])

    def resize(self, width, height):
        """Asks the window manager for this size; it knows how small the window may be."""
        window = self.wait_until(self._managed_window, "a window in the window manager's list")
        subprocess.run(["wmctrl", "-i", "-r", window, "-e", f"0,-1,-1,{width},{height}"], check=True)

    def minimize(self):
        """As with the window's own button."""
        window = self.wait_until(self._managed_window, "a window in the window manager's list")
        _xdotool("windowminimize", window)
        self.wait_until(lambda: not self.is_on_screen(), "a window that is not on the screen")

    def is_on_screen(self):
        """False while it is minimized."""
        listed = subprocess.run(["xdotool", "search", "--onlyvisible", "--all", "--pid",
                                 str(self._process_id), "--name", "."],
                                capture_output=True, check=False)
        return bool(listed.stdout.strip())

    def has_keyboard(self):
        """True when the window manager has given it the keyboard."""
        focused = subprocess.run(["xdotool", "getwindowfocus", "getwindowpid"],
                                 capture_output=True, text=True, check=False)
        return focused.stdout.strip() == str(self._process_id)

    def close(self):
        """Asks the window manager to close the window, as a taskbar does. The keys for it may come to
        nothing when the window manager is behind with the focus."""
        window = self.wait_until(self._managed_window, "a window in the window manager's list")
        subprocess.run(["wmctrl", "-i", "-c", window], check=True)

    def wait_until_closed(self):
        """Until the window has gone; its program may have something left to do."""
        self.wait_until(lambda: not self._managed_window(), "no window")


# What assistive technology does, without keyboard and pointer


def press(element):
    """Runs the element's press action, as a screen reader's user does."""
    count = Atspi.Action.get_n_actions(element) if "Action" in element.get_interfaces() else 0
    names = [Atspi.Action.get_action_name(element, index).lower() for index in range(count)]
    if "press" not in names:
        raise AssertionError(f"“{element.get_name()}” has no press action but {names}")
    if not Atspi.Action.do_action(element, names.index("press")):
        raise AssertionError(f"“{element.get_name()}” refused its press action")


def enter_text(element, text):
    """Replaces the content of a field through the editable text interface."""
    if "EditableText" not in element.get_interfaces():
        raise AssertionError(f"“{element.get_name()}” cannot be edited by assistive technology")
    if not Atspi.EditableText.set_text_contents(element, text):
        raise AssertionError(f"“{element.get_name()}” refused the text")


def content_of(element):
    """The content of an element that holds text, else an empty text."""
    if "Text" not in element.get_interfaces():
        return ""
    return Atspi.Text.get_text(element, 0, Atspi.Text.get_character_count(element))


def has_state(element, state):
    return element.get_state_set().contains(state)


def _showing(element):
    for index in range(element.get_child_count()):
        child = element.get_child_at_index(index)
        if child is None:
            continue
        if has_state(child, Atspi.StateType.SHOWING):
            yield child
        yield from _showing(child)


def _deliver_events():
    context = GLib.MainContext.default()
    while context.iteration(False):
        pass


def _xdotool(*arguments):
    command = ["xdotool", *map(str, arguments)]
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout
