#!/usr/bin/python3
"""Usage: window_test.py TWEENERY TWEENC

A day with the document window: artwork comes in, is grouped, renamed, moved and animated, played, undone
and redone, stored; the program is killed and brings the work back. What the package then holds is what
tweenc reads from it."""

import re
import sys
from pathlib import Path

from desktop import Atspi, check, drag, press, type_text, wait_for, xdotool
from session import Session, main, write_picture

CONTAINERS = {"filler", "panel", "separator", "menu bar", "popup menu", "scroll pane", "viewport",
              "scroll bar", "split pane", "label", "table cell", "status bar", "layered pane"}
FAR = 1000  # ms, of the second keyframe
PHOTOGRAPH = Path("window_test.png")


class WindowSession(Session):
    """What the day looks at, and does."""

    def on_canvas(self):
        """The names of the elements on the canvas, groups with what they hold."""

        def told(control):
            inner = [told(c) for c in control.children]
            return [control.name, *inner] if inner else control.name

        return [told(c) for c in self.canvas.children if c.role != "push button"]

    def rows(self):
        """Of the list of elements, top down."""
        cells = self.window.find("Elements", "tree").children
        names = [c.name for c in cells if c.is_showing and c.role != "table column header"]
        return [name for name in names if name and not name.startswith(("Visible, ", "Locked, "))]

    def rename(self, old, new):
        self.select(old)
        press("F2")
        self.desktop.focus.wait_for_field(old)
        press("ctrl+a")
        type_text(new)
        press("Return")
        self.element(new)

    def move(self, name, dx, dy, handle=None):
        """Drags an element by these points of the screen; a group by something that it holds. Not in
        the middle, where the anchor point is."""
        before = self.place(name)
        self.select(name)
        x, y = self.element(handle or name).part(0.3, 0.3)
        drag((x, y), (x + dx, y + dy))
        wait_for(lambda: self.place(name) != before, f"{name} to move")

    # The day.

    def check_names(self):
        """No control is without a name, and no two of one role beside each other share one."""
        for control in self.window.walk():
            check(control.name or control.role in CONTAINERS,
                  f"a {control.role} at {control.box} has no name")
            told = [(c.role, c.name) for c in control.children if c.role not in CONTAINERS]
            twice = [label for label in told if told.count(label) > 1]
            check(not twice, f"below {control.role} {control.name!r} share a name: {twice}")

    def build(self):
        """Two pictures in a group with a name, and an animation that moves one of them."""
        pictures = [self.folder / "kite.png", self.folder / "cloud.png"]
        write_picture(pictures[0], 300, 200, (200, 40, 40))
        write_picture(pictures[1], 200, 120, (40, 90, 200))
        self.import_pictures(pictures)
        self.rename("kite", "dragon")
        self.move("dragon", -150, -100)
        self.move("cloud", 120, 60)
        press("ctrl+a")
        wait_for(lambda: all(c.is_selected for c in self.elements()), "both to be selected")
        press("ctrl+g")
        wait_for(lambda: len(self.on_canvas()) == 1 and len(self.on_canvas()[0]) == 3, "a group")
        self.rename(self.on_canvas()[0][0], "sky")
        self.check_names()

    def animate(self):
        self.choose("Animation", "New Animation")
        wait_for(lambda: len(self.animations()) == 2, "a new animation")
        press("Escape")
        self.put_playhead(0)
        self.move("sky", 20, 10, "dragon")
        self.put_playhead(FAR)
        self.move("sky", 80, 50, "dragon")
        at_end = self.place("sky")
        self.put_playhead(0)
        check(self.place("sky") != at_end, "nothing moves between the keyframes")
        self.check_names()

    def play(self):
        play = self.window.find("Play", "check box")
        playhead = self.window.find("Playhead", "slider")
        start, place = playhead.value, self.place("sky")
        play.click()
        wait_for(lambda: playhead.value != start and self.place("sky") != place, "motion")
        if play.has(Atspi.StateType.CHECKED):
            play.click()
        wait_for(lambda: not play.has(Atspi.StateType.CHECKED), "the end of playing")

    def exhaust(self, command, chord):
        """Undo or redo until there is nothing more. A chord too many does nothing."""
        item = self.window.look_for(re.compile(command + ".*"), "menu item", shown=False)[0]
        wait_for(lambda: not item.is_enabled or press(chord), f"the end of {command}")

    def undo_and_redo_everything(self):
        before = self.on_canvas(), self.rows(), self.animations()
        self.exhaust("Undo", "ctrl+z")
        wait_for(lambda: not self.on_canvas() and self.animations() == ["setup"],
                 "an empty project")
        self.exhaust("Redo", "ctrl+shift+z")
        wait_for(lambda: (self.on_canvas(), self.rows(), self.animations()) == before,
                 f"everything again, which was {before}")

    def crash_in_a_drag(self, project):
        """What was stored stays, and what the drag did is not in it."""
        before, place = self.describe(project), self.place("cloud")
        x, y = self.element("cloud").part(0.3, 0.3)
        xdotool("mousemove", x, y, "mousedown", 1, "mousemove", x + 30, y + 20, "mousemove",
                x + 60, y + 40)
        wait_for(lambda: self.place("cloud") != place, "the drag to begin")
        self.program.kill()
        xdotool("mouseup", 1)
        check(self.describe(project) == before, "a drag that did not end was stored")


def undo_and_store(session):
    """What was there before everything was undone and redone is what is stored afterwards."""
    copy = session.save_as("Save a Copy…", "Before")
    session.undo_and_redo_everything()
    project = session.save_as("Save As…", "Kites")
    check(session.describe(project) == session.describe(copy), "redo did not bring back everything")
    animation = session.info(project)["animations"][0]
    check(animation["durationInMS"] == FAR and animation["keyframes"] >= 4,
          f"keyframes at 0 and {FAR} ms: {animation}")
    return project


def crash_after_edits(session, project):
    """What was stored by itself comes back with a notice."""
    session.choose("Animation", "Setup")
    session.rename("dragon", "bird")
    wait_for(lambda: "name:bird" in session.describe(project), "the edit to be stored by itself")
    last = session.describe(project)
    session.program.kill()
    session.open(title=re.compile("Kites.*"))
    session.window.find(re.compile("Tweenery was closed unexpectedly.*"))
    session.window.find("Keep", "push button").click()
    wait_for(lambda: not session.window.look_for("Keep", "push button"), "the notice to go")
    check(session.describe(project) == last, "the work that came back is not what was stored")


def end_well(session, project):
    session.open(project, title=re.compile("Kites.*"))
    session.element("bird")
    press("ctrl+q")
    check(session.program.wait_for_end() == 0, "the program does not end well")


def a_day(session):
    session.open_wide()
    session.check_names()
    session.tell("opened")
    session.build()
    session.tell("imported, renamed, grouped")
    session.animate()
    session.play()
    session.tell("animated and played")
    project = undo_and_store(session)
    session.tell("undone, redone, stored")
    crash_after_edits(session, project)
    session.crash_in_a_drag(project)
    session.tell("killed twice")
    end_well(session, project)
    session.tell("ended")


if __name__ == "__main__":
    sys.exit(main(WindowSession, a_day, PHOTOGRAPH))
