"""A user that never tires: presses what can be pressed in the application's windows, through the accessibility bus."""

import random

import gi

gi.require_version('Atspi', '2.0')
from gi.repository import Atspi, GLib  # noqa: E402

# What is pressed, by how its name begins, and how often against the others.
WANTED = {
    'Sync': 8, 'Cancel Sync': 1, '1 review': 8, '2 reviews': 8, '3 reviews': 8, 'Accept Best': 10, 'Use Selected': 5,
    'Skip': 3, 'Keep': 2, 'Move to Trash': 1, 'Retry': 1, 'Refresh Library': 2, 'File': 2, 'Settings…': 8, 'Run All': 4,
    'General': 1, 'Accounts': 1, 'Sources': 1, 'Quality': 1, 'Output': 1, 'Proxy': 1, 'Command Line': 1,
    'Diagnostics': 2, 'Help': 1, 'About zelk': 6, 'Close': 4, 'OK': 6, 'Dismiss': 2, 'Collapse': 1, 'Expand': 2,
    'Late Night, ': 2, 'Morning Shift, ': 2, 'Warm Up, ': 1, 'Closing, ': 1,
}
PRESSES = ('Press', 'Toggle', 'ShowMenu', 'click')
MOST_ELEMENTS = 4000


class User:
    def __init__(self, process_id, seed):
        Atspi.init()
        self._process_id = process_id
        self._chance = random.Random(seed)
        self.presses = {}

    def _application(self):
        desktop = Atspi.get_desktop(0)
        for number in range(desktop.get_child_count()):
            child = desktop.get_child_at_index(number)
            if child and child.get_process_id() == self._process_id:
                return child
        return None

    def _elements(self):
        """What is shown, window by window; what isn't is left out with all that is in it."""
        application = self._application()
        waiting = self._children(application) if application else []
        for _ in range(MOST_ELEMENTS):
            if not waiting:
                return
            element = waiting.pop()
            if element and element.get_state_set().contains(Atspi.StateType.VISIBLE):
                yield element
                waiting += self._children(element)

    @staticmethod
    def _children(element):
        return [element.get_child_at_index(number) for number in range(element.get_child_count())]

    @staticmethod
    def _press_of(element):
        """The number of the action that presses it, if it can be pressed now."""
        states = element.get_state_set()
        if not states.contains(Atspi.StateType.SHOWING) or not states.contains(Atspi.StateType.ENABLED):
            return None
        actions = element.get_action_iface()
        if not actions:
            return None
        names = [Atspi.Action.get_action_name(actions, number) for number in range(actions.get_n_actions())]
        return next((names.index(name) for name in PRESSES if name in names), None)

    def act(self):
        """Presses one thing, if there is one to press."""
        while GLib.MainContext.default().iteration(False):
            pass  # what came and went in the meantime
        found = {}
        try:
            for element in self._elements():
                said = element.get_name()
                name = next((wanted for wanted in WANTED if said.startswith(wanted)), None)
                if name and name not in found:
                    number = self._press_of(element)
                    if number is not None:
                        found[name] = (element, number)
            if not found:
                return
            # What was never pressed comes first, so that all there is to open has been opened early.
            names = [name for name in found if name not in self.presses] or list(found)
            name = self._chance.choices(names, [WANTED[name] for name in names])[0]
            element, number = found[name]
            element.get_action_iface().do_action(number)
            self.presses[name] = self.presses.get(name, 0) + 1
        except GLib.Error:
            return  # the element went between the look and the press
