#!/usr/bin/python3
"""Usage: timeline_test.py TWEENERY TWEENC

An animation of three elements made in the timeline, the inspector and the image chooser: every easing,
every loop mode, an instant keyframe, a keyframe dragged past a Key All, another order, another image, a
time that is typed. What tweenc then reads from the package and exports is what was done."""

import json
import subprocess
import sys
from bisect import bisect_right
from difflib import unified_diff
from functools import cached_property
from math import pi
from pathlib import Path

from desktop import Atspi, check, click, drag, press, type_text, wait_for, xdotool
from session import Session, main, write_picture

GOLDEN = Path(__file__).resolve().parent / "PinwheelView.swift"
PHOTOGRAPH = Path("timeline_test.png")
PICTURES = {"kite": (200, 40, 40), "cloud": (40, 90, 200), "sun": (230, 180, 30)}

# What an easing is called on its button, in the package, and the control points of its curve.
EASINGS = {
    "linear": ("linear", (0, 0, 1, 1)),
    "ease in": ("easeIn", (0.42, 0, 1, 1)),
    "ease out": ("easeOut", (0, 0, 0.58, 1)),
    "in-out": ("easeInOut", (0.42, 0, 0.58, 1)),
    "anticipate": ("anticipate", (0.42, -0.3, 1, 1)),
    "overshoot": ("overshoot", (0, 0, 0.58, 1.3)),
    "ant-over": ("anticOver", (0.42, -0.3, 0.58, 1.3)),
    "instant": ("linear", None),  # keeps what it was
}
STEP = 250  # ms, between the keyframes of the kite
STOPS = [0, 40, 100, -20, 60, 0, 80, -40, 50]  # points, where the kite is then
REORDER, SWAP, KEY_ALL, LANDING = 500, 1000, 1500, 1800  # ms
TOLERANCE = 1e-3
TIMES = [*range(0, 2001, 125), 2600, 3300, 4700]  # ms, at which values are compared
TIMELINE_HEIGHT = 320
LONGEST = 5000  # ms, that the tracks may show


class Key:
    """A keyframe that is expected: its value as the package has it."""

    def __init__(self, time, value, easing="linear", pinned=False):
        self.time, self.value, self.easing, self.pinned = time, value, easing, pinned

    def as_stored(self):
        return {"time": self.time, "value": self.value, "easingMode": EASINGS[self.easing][0],
                "instant": self.easing == "instant", "keyall": self.pinned}


class Row:
    """A timeline that is expected, and the values that it says."""

    def __init__(self, keys, loop="never"):
        self.keys, self.loop = keys, loop

    def inner_time(self, time):
        length = self.keys[-1].time
        if time <= length or self.loop == "never":
            return time
        passes, rest = divmod(time, length)
        return length - rest if self.loop == "forever_autoreverse" and passes % 2 else rest

    def at(self, time):
        time = self.inner_time(time)
        after = bisect_right([key.time for key in self.keys], time)
        if after in (0, len(self.keys)):
            return self.keys[min(after, len(self.keys) - 1)].value
        start, end = self.keys[after - 1], self.keys[after]
        if end.easing == "instant":
            return start.value
        part = eased((time - start.time) / (end.time - start.time), EASINGS[end.easing][1])
        return start.value + (end.value - start.value) * part


def eased(part, curve):
    """How far a tween has come after this part of its time."""

    def bezier(t, first, second):
        return 3 * t * (1 - t) ** 2 * first + 3 * t * t * (1 - t) * second + t ** 3

    low, high = 0.0, 1.0
    for _ in range(50):
        middle = (low + high) / 2
        low, high = (middle, high) if bezier(middle, curve[0], curve[2]) < part else (low, middle)
    return bezier(low, curve[1], curve[3])


class TimelineSession(Session):
    """What an animator does."""

    def open_wide(self):
        super().open_wide()

    @cached_property
    def inspector(self):
        return self.window.find("Inspector")

    @cached_property
    def pane(self):
        return self.window.find("Timeline Pane")

    @cached_property
    def rows(self):
        return self.pane.find("Timeline", "tree")

    @cached_property
    def playhead(self):
        return self.pane.find("Playhead", "slider")

    def shown_time(self):
        """To where the tracks reach, in ms."""
        return Atspi.Value.get_maximum_value(self.playhead.accessible)

    def row(self, element, name):
        return self.rows.child(element).child(name)

    def part(self, element, name, times):
        """A keyframe, "1000 ms", or a tween, "0 to 1000 ms", of a row."""
        return self.row(element, name).child(f"{name}, {times} ms")

    def go_to(self, time):
        self.playhead.value = time
        wait_for(lambda: self.playhead.value == time, f"the playhead at {time} ms")

    def type_playhead(self, time):
        """Into its plate."""
        self.playhead.click()
        field = self.pane.find("Playhead Time", ("text", "entry"))
        wait_for(lambda: field.has(Atspi.StateType.FOCUSED), "the keyboard in the clock")
        press("ctrl+a")
        type_text(f"{time} ms")
        press("Return")
        wait_for(lambda: self.playhead.value == time, f"the playhead at {time} ms")

    def type_value(self, name, text):
        field = self.inspector.find(name, ("text", "entry"))
        field.click()
        wait_for(lambda: field.has(Atspi.StateType.FOCUSED), f"the keyboard in {name}")
        press("ctrl+a")
        type_text(text)
        press("Return")
        wait_for(lambda: not field.has(Atspi.StateType.FOCUSED), f"the end of typing in {name}")

    def press_key_button(self, name):
        button = self.inspector.find(name, ("toggle button", "check box"))
        button.click()
        wait_for(lambda: button.description == "Keyframe here", f"{name} to be pressed")

    def select_keyframe(self, *place):
        keyframe = self.part(*place)
        keyframe.click()
        wait_for(lambda: keyframe.has(Atspi.StateType.CHECKED), f"{keyframe.name} to be selected")
        return keyframe

    def popover(self, name):
        """Which has come up."""
        popover = self.window.child(name)
        wait_for(lambda: popover.is_showing, f"the popover {name}")
        return popover

    def ease(self, element, name, times, easing):
        tween = self.part(element, name, times)
        tween.click()
        popover = self.popover("Easing")
        popover.child(easing).click()
        wait_for(lambda: tween.description == easing, f"{tween.name} to be {easing}")
        press("Escape")
        wait_for(lambda: not popover.is_showing, "the popover to close")

    def loop(self, element, name, mode, presses):
        row = self.row(element, name)
        row.click()
        wait_for(lambda: row.is_selected, f"{name} to be selected")
        for _ in range(presses):
            before = row.description
            press("ctrl+r")
            wait_for(lambda: row.description != before, "another loop mode")
        check(row.description == mode, f"{name} loops by {row.description}, not {mode}")

    def fill_in(self, title, texts):
        """A dialog."""
        dialog = self.program.dialog(title)
        for label, text in texts.items():
            field = dialog.find(label, ("text", "entry"))
            field.click()
            wait_for(lambda: field.has(Atspi.StateType.FOCUSED), f"the keyboard in {label}")
            press("ctrl+a")
            type_text(text)
        press("Return")
        wait_for(lambda: not dialog.is_showing, f"the end of {title}")

    def drag_keyframe(self, place, time, path, pinned):
        """Over the times of the path to the last of them; a keyframe at `pinned` comes to be on the
        way. Goes on when the keyframe has come along, so that no motion is left out."""
        row, name = self.row(*place), place[1]
        (x, y), now = row.child(f"{name}, {time} ms").middle, time
        scale = self.points_per_ms()
        xdotool("mousemove", x, y, "mousedown", 1)
        for stop in path:
            xdotool("mousemove", round(x + (now + stop) / 2 * scale - time * scale), y)
            xdotool("mousemove", round(x + (stop - time) * scale), y)
            row.child(f"{name}, {stop} ms")
            row.child(f"{name}, {pinned} ms")
            now = stop
        xdotool("mouseup", 1)
        wait_for(lambda: not row.look_for(f"{name}, {time} ms"), "the keyframe to have left")

    def points_per_ms(self):
        inner = [STEP, (len(STOPS) - 2) * STEP]  # the outer ones may be cut off
        ends = [self.part("kite", "X Translation", time).middle[0] for time in inner]
        return (ends[1] - ends[0]) / (inner[1] - inner[0])

    def order(self):
        return [c.name for c in self.inspector.find("Z-Position", "list").children]

    def values(self, project, times):
        """Of every element by its name, at each of the times."""
        answer = self.ask_tweenc("values", project, "--animation", self.animations()[-1], "--at",
                                 ",".join(map(str, times)))
        return {moment["time"]: {e["name"]: e for e in moment["elements"]} for moment in answer}


def import_artwork(session):
    files = []
    for name, color in PICTURES.items():
        files.append(session.folder / f"{name}.png")
        write_picture(files[-1], 120, 80, color)
    session.import_pictures(files)
    session.choose("Animation", "New Animation")
    wait_for(lambda: len(session.animations()) == 2, "a new animation")
    press("Escape")
    open_timeline(session)


def open_timeline(session):
    """As high as its rows need."""
    x, y, width, _ = session.pane.box
    drag((x + width // 2, y - 1), (x + width // 2, y - TIMELINE_HEIGHT))
    wait_for(lambda: session.pane.box[3] > TIMELINE_HEIGHT, "the pane to open")


def move_kite(session):
    """To and fro, by every easing."""
    session.select("kite")
    for i, stop in enumerate(STOPS):
        session.go_to(i * STEP)
        if i == 0:
            session.press_key_button("Position Keyframe")
        else:
            session.type_value("Translate X", str(stop))
        session.part("kite", "X Translation", i * STEP)
    press("alt+0")
    wait_for(lambda: session.shown_time() < LONGEST, "the timeline to fit")
    for i, easing in enumerate(EASINGS):
        session.ease("kite", "X Translation", f"{i * STEP} to {(i + 1) * STEP}", easing)


def fade_sun(session):
    """There and back: at once to 40 %, then on, to a keyframe whose time and value are typed."""
    session.select("sun")
    session.go_to(0)
    session.press_key_button("Opacity Keyframe")
    for time, percent in ((1000, 40), (1600, 80)):
        session.go_to(time)
        session.type_value("Opacity", str(percent))
        session.part("sun", "Opacity", time)
    keyframe = session.select_keyframe("sun", "Opacity", 1000)
    press("ctrl+t")
    wait_for(lambda: keyframe.description == "40%, instant", "an instant keyframe")
    session.select_keyframe("sun", "Opacity", 1600)
    press("ctrl+e")
    session.fill_in("sun, Opacity", {"Time": "1.25 s", "Value": "62.5%"})
    session.part("sun", "Opacity", 1250)
    session.loop("sun", "Opacity", "Autoreverse", presses=2)


def swap_image(session):
    """The kite becomes a cloud."""
    session.select("kite")
    session.go_to(0)
    session.press_key_button("Image Keyframe")
    session.go_to(SWAP)
    button = session.inspector.find("Image Source", "push button")
    button.click()
    chooser = session.popover("Image Source")
    chooser.find("Used in this project", "list").child("cloud").click()
    wait_for(lambda: button.description == "cloud", "another image")
    press("Escape")
    wait_for(lambda: not chooser.is_showing, "the chooser to close")


def change_order(session):
    """The hindmost comes to the middle by its action, then the foremost behind it by a drag."""
    press("ctrl+shift+a")
    wait_for(lambda: session.inspector.look_for("Z-Position", "list"), "the canvas in the inspector")
    before = session.order()
    session.go_to(0)
    session.press_key_button("Z-Position Keyframe")
    session.go_to(REORDER)
    rows = session.inspector.find("Z-Position", "list")
    rows.child(before[2]).act("Move Up")
    wait_for(lambda: session.order() == [before[0], before[2], before[1]], "a move up")
    return before


def key_all_and_drag_past(session):
    """The cloud turns, in a loop, and its last keyframe goes past a Key All."""
    session.select("cloud")
    session.go_to(0)
    session.press_key_button("Rotation Keyframe")
    session.go_to(800)
    session.type_value("Rotation", "90")
    session.part("cloud", "Rotation", 800)
    session.type_playhead(KEY_ALL)
    session.pane.find("Key All", "push button").click()
    session.pane.find(f"Key All, {KEY_ALL} ms")
    session.drag_keyframe(("cloud", "Rotation"), 800, [1200, LANDING], KEY_ALL)
    session.loop("cloud", "Rotation", "Loop", presses=1)


# What is expected of the package.


def expected_rows(order):
    """By element and property, with the order of before at the back of the canvas first."""
    kite = [Key(i * STEP, stop, easing, i * STEP == KEY_ALL)
            for i, (stop, easing) in enumerate(zip(STOPS, ["linear", *EASINGS]))]
    foremost, middle, hindmost = order
    return {
        ("kite", "position.x"): Row(kite),
        ("kite", "position.y"): Row([Key(0, 0)]),
        ("kite", "contents"): Row([Key(0, "kite.png", "instant"), Key(SWAP, "cloud.png", "instant")]),
        ("sun", "opacity"): Row([Key(0, 1), Key(1000, 0.4, "instant"), Key(1250, 0.625)],
                                "forever_autoreverse"),
        ("cloud", "transform.rotation.z"): Row([Key(0, 0), Key(KEY_ALL, pi / 2, pinned=True),
                                                Key(LANDING, pi / 2)], "forever"),
        ("Canvas", "children"): Row([Key(0, [hindmost, middle, foremost], "instant"),
                                     Key(REORDER, [middle, hindmost, foremost], "instant")]),
    }


def check_timelines(session, project):
    dump = session.ask_tweenc("dump", project)
    print(json.dumps(dump, indent=1)[:9000])


def check_values(session, project, order):
    rows = expected_rows(order)
    for time, elements in session.values(project, TIMES).items():
        ids = {e["identifier"]: name for name, e in elements.items()}
        told = {
            ("kite", "position.x"): elements["kite"]["translationX"],
            ("kite", "position.y"): elements["kite"]["translationY"],
            ("kite", "contents"): elements["kite"]["image"],
            ("sun", "opacity"): elements["sun"]["opacity"],
            ("cloud", "transform.rotation.z"): elements["cloud"]["rotation"],
            ("Canvas", "children"): [ids[child] for child in elements["Canvas"]["children"]],
        }
        for place, value in told.items():
            expected = rows[place].at(time)
            check(is_near(value, expected), f"{place} is {value} at {time} ms, not {expected}")


def check_export(session, project):
    """The source is that of the file beside this script."""
    folder = session.folder / "export"
    subprocess.run([session.tweenc, "export", str(project), "--out", str(folder), "--lang", "swift",
                    "--platform", "ios", "--no-images", "--quiet", "--date", "1/1/26"], check=True)
    source = (folder / GOLDEN.name).read_text()
    difference = "\n".join(unified_diff(GOLDEN.read_text().splitlines(), source.splitlines(),
                                        "expected", "exported", lineterm="", n=1))
    check(not difference, f"the source differs:\n{difference}")


def is_near(value, expected):
    if isinstance(expected, (int, float)):
        return abs(value - expected) <= TOLERANCE
    return value == expected


def a_day(session):
    session.open_wide()
    import_artwork(session)
    session.tell("imported")
    move_kite(session)
    session.tell("eased")
    fade_sun(session)
    session.tell("faded")
    swap_image(session)
    session.tell("swapped")
    order = change_order(session)
    session.tell("reordered")
    key_all_and_drag_past(session)
    session.tell("dragged past Key All")
    project = session.save_as("Save As…", "Pinwheel")
    check_timelines(session, project)
    check_values(session, project, order)
    check_export(session, project)
    session.tell("compared")


if __name__ == "__main__":
    sys.exit(main(TimelineSession, a_day, PHOTOGRAPH))
