"""A desktop of its own for the real program: a screen, a window manager, a session bus and assistive
technologies. Controls are found as assistive tools find them, by role and name, and worked with
events of the X server only. Everything waits for conditions, never for a time."""

import os
import re
import shutil
import signal
import subprocess
import sys
import tempfile
import time
from contextlib import contextmanager
from pathlib import Path

SKIPPED = 77  # what a script ends with that cannot run here

try:
    import gi

    gi.require_version("Atspi", "2.0")
    from gi.repository import Atspi, GLib
except (ImportError, ValueError):
    print("not installed: python3-pyatspi")
    sys.exit(SKIPPED)

HERE = Path(__file__).resolve().parent
SCREEN = "1500x1000x24"
BUS_LAUNCHERS = ["/usr/libexec/at-spi-bus-launcher", "/usr/lib/at-spi2-core/at-spi-bus-launcher"]
CALL_TIMEOUT = 5000  # ms; a program that draws or saves may take a while to answer
PATIENCE = float(os.environ.get("TWEENERY_DESKTOP_PATIENCE", "30"))  # seconds for each condition
POLL = 0.03  # seconds
DRAG_STEPS = 6


class Failure(Exception):
    """What was expected did not come about."""


def check(is_so, what):
    if not is_so:
        raise Failure(what)


def wait_for(condition, what, seconds=PATIENCE):
    """The first true answer of `condition`. One that asks for something that is gone counts as false."""
    end = time.monotonic() + seconds
    while True:
        while GLib.MainContext.default().iteration(False):
            pass  # events of assistive technologies
        try:
            answer = condition()
        except GLib.Error:
            answer = None
        if answer:
            return answer
        if time.monotonic() > end:
            raise Failure(f"waited in vain for {what}")
        time.sleep(POLL)


def inside_session_bus():
    """Starts the script again with a session bus of its own, unless it has one from here."""
    if "TWEENERY_DESKTOP_BUS" in os.environ:
        return
    os.environ["TWEENERY_DESKTOP_BUS"] = "1"
    os.execvp("dbus-run-session", ["dbus-run-session", "--", sys.executable, *sys.argv])


def missing_programs():
    """What has to be installed to run this."""
    programs = ["Xvfb", "openbox", "xdotool", "dbus-run-session"]
    missing = [name for name in programs if not shutil.which(name)]
    return missing if any(map(os.path.exists, BUS_LAUNCHERS)) else missing + ["at-spi2-core"]


def xdotool(*words):
    subprocess.run(["xdotool", *map(str, words)], check=True)


class Control:
    """Something on screen as assistive tools see it."""

    def __init__(self, accessible):
        self.accessible = accessible

    @property
    def name(self):
        return self.accessible.get_name() or ""

    @property
    def role(self):
        return self.accessible.get_role_name()

    @property
    def description(self):
        return self.accessible.get_description() or ""

    def has(self, state):
        return self.accessible.get_state_set().contains(state)

    @property
    def is_showing(self):
        return self.has(Atspi.StateType.SHOWING)

    @property
    def is_selected(self):
        return self.has(Atspi.StateType.SELECTED)

    @property
    def is_enabled(self):
        return self.has(Atspi.StateType.ENABLED)

    @property
    def box(self):
        """x, y, width and height on the screen."""
        box = self.accessible.get_extents(Atspi.CoordType.SCREEN)
        return box.x, box.y, box.width, box.height

    @property
    def middle(self):
        return self.part(0.5, 0.5)

    @property
    def value(self):
        return Atspi.Value.get_current_value(self.accessible)

    @value.setter
    def value(self, number):
        Atspi.Value.set_current_value(self.accessible, number)

    @property
    def text(self):
        return Atspi.Text.get_text(self.accessible, 0,
                                   Atspi.Text.get_character_count(self.accessible))

    @property
    def children(self):
        count = self.accessible.get_child_count()
        children = (self.accessible.get_child_at_index(i) for i in range(count))
        return [Control(child) for child in children if child]

    def walk(self, shown=False):
        """Itself and all that lies below it, in order. `shown` leaves out what does not show, with
        all that lies below that."""
        if shown and not self.is_showing:
            return
        yield self
        for child in self.children:
            yield from child.walk(shown)

    def matching(self, name, role, shown):
        roles = {role} if isinstance(role, str) else role
        matches = name.fullmatch if isinstance(name, re.Pattern) else name.__eq__
        return (control for control in self.walk(shown)
                if matches(control.name) and (not roles or control.role in roles))

    def look_for(self, name, role=None, shown=True):
        """All below of that name: a text, or a compiled pattern. `role` is a name or several."""
        return list(self.matching(name, role, shown))

    def find(self, name, role=None):
        """The first one that shows; waits for it."""
        return wait_for(lambda: next(self.matching(name, role, True), None),
                        f"{role or 'control'} {name!r}")

    def child(self, name):
        """Of that name, right below, whether it shows or not; waits for it."""
        return wait_for(lambda: next((c for c in self.children if c.name == name), None),
                        f"{name!r} in {self.name!r}")

    def act(self, name):
        """One of its actions."""
        actions = [Atspi.Action.get_action_name(self.accessible, i)
                   for i in range(Atspi.Action.get_n_actions(self.accessible))]
        check(name in actions, f"{self.name!r} cannot {name!r}, only {actions}")
        Atspi.Action.do_action(self.accessible, actions.index(name))

    def click(self, button=1, times=1, keys=()):
        click(self.middle, button, times, keys)

    def part(self, across, down):
        """The point at these parts of its width and height."""
        x, y, width, height = self.box
        return round(x + width * across), round(y + height * down)


@contextmanager
def held(keys):
    for key in keys:
        xdotool("keydown", key)
    try:
        yield
    finally:
        for key in keys:
            xdotool("keyup", key)


def click(point, button=1, times=1, keys=()):
    with held(keys):
        xdotool("mousemove", *point, "click", "--repeat", times, "--delay", 40, button)


def drag(start, end, keys=()):
    """With the left button, in several motions, as a hand makes them."""
    with held(keys):
        xdotool("mousemove", *start, "mousedown", 1)
        for step in range(1, DRAG_STEPS + 1):
            xdotool("mousemove", *(a + (b - a) * step // DRAG_STEPS for a, b in zip(start, end)))
        xdotool("mouseup", 1)


def press(*keys):
    """Chords, one after the other: "ctrl+z"."""
    xdotool("key", "--clearmodifiers", *keys)


def type_text(text):
    xdotool("type", "--delay", 15, "--", text)


class Program:
    """The running program, in a home that stays over its starts."""

    def __init__(self, path, home):
        self.path = path
        self.home = Path(home)
        self.log = self.home / "messages"
        self.process = None

    def start(self, *arguments):
        folders = {"XDG_STATE_HOME": "state", "XDG_CONFIG_HOME": "config", "XDG_DATA_HOME": "data",
                   "XDG_CACHE_HOME": "cache", "XDG_RUNTIME_DIR": "runtime"}
        environment = dict(os.environ, HOME=str(self.home), QT_QPA_PLATFORM="xcb",
                           QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1", QT_SCALE_FACTOR="1")
        for variable, folder in folders.items():
            (self.home / folder).mkdir(mode=0o700, parents=True, exist_ok=True)
            environment[variable] = str(self.home / folder)
        with open(self.log, "ab") as log:
            self.process = subprocess.Popen([self.path, "--new-instance", *map(str, arguments)],
                                            env=environment, stderr=log)

    def kill(self):
        """As a crash would."""
        self.process.kill()
        self.process.wait()

    def wait_for_end(self):
        wait_for(lambda: self.process.poll() is not None, "the program's end")
        return self.process.returncode

    @property
    def application(self):
        """Its root for assistive tools, or None while it is not there."""
        self.check_runs()
        desktop = Atspi.get_desktop(0)
        for i in range(desktop.get_child_count()):
            found = desktop.get_child_at_index(i)
            if found and found.get_process_id() == self.process.pid:
                found.set_cache_mask(Atspi.Cache.NONE)
                return Control(found)
        return None

    def check_runs(self):
        check(self.process.poll() is None, f"the program ended with {self.process.returncode}")

    def windows(self):
        return [w for w in self.application.children if w.is_showing] if self.application else []

    def window(self, title=re.compile(".*"), role=("frame",)):
        """The window of that title; waits for it."""
        matches = title.fullmatch if isinstance(title, re.Pattern) else title.__eq__
        return wait_for(
            lambda: next((w for w in self.windows() if w.role in role and matches(w.name)), None),
            f"a window {title!r}")

    def dialog(self, title):
        return self.window(title, ("dialog", "alert", "file chooser"))


class Focus:
    """What the program says has the keyboard. Fields that a list opens in its rows are announced by
    this alone."""

    def __init__(self):
        self.control = None
        self.listener = Atspi.EventListener.new(self.take)
        self.listener.register("object:state-changed:focused")

    def take(self, event):
        if event.detail1:
            self.control = Control(event.source)

    def wait_for_field(self, text):
        """An entry with this text gets the keyboard."""
        wait_for(lambda: self.control and self.control.role in ("text", "entry") and
                 self.control.text == text, f"the keyboard in a field with {text!r}")


class Desktop:
    """The screen and what runs on it. To be used in a with-statement."""

    def __init__(self):
        self.processes = []
        self.folder = Path(tempfile.mkdtemp(prefix="tweenery-desktop-"))

    def __enter__(self):
        try:
            self.start_screen()
            self.start_process("openbox", "--config-file", str(HERE / "rc.xml"))
            wait_for(self.has_window_manager, "the window manager")
            launcher = next(filter(os.path.exists, BUS_LAUNCHERS))
            self.start_process(launcher, "--launch-immediately")
            wait_for(self.answers, "assistive technologies")
            Atspi.init()
            Atspi.set_timeout(CALL_TIMEOUT, CALL_TIMEOUT)
            self.focus = Focus()
        except BaseException:
            self.__exit__()
            raise
        return self

    def __exit__(self, *_):
        for process in reversed(self.processes):
            process.terminate()
        for process in self.processes:
            process.wait()
        shutil.rmtree(self.folder, ignore_errors=True)

    def start_process(self, *command, **options):
        process = subprocess.Popen(command, stderr=subprocess.DEVNULL, **options)
        self.processes.append(process)
        return process

    def start_screen(self):
        reader, writer = os.pipe()
        self.start_process("Xvfb", "-displayfd", str(writer), "-screen", "0", SCREEN, "-noreset",
                           "-nolisten", "tcp", pass_fds=[writer])
        os.close(writer)
        with os.fdopen(reader) as answer:
            number = answer.readline().strip()
        check(number, "Xvfb did not start")
        os.environ["DISPLAY"] = ":" + number
        os.environ.pop("WAYLAND_DISPLAY", None)

    @staticmethod
    def has_window_manager():
        return subprocess.run(["xdotool", "get_num_desktops"], capture_output=True).returncode == 0

    @staticmethod
    def answers():
        call = ["dbus-send", "--session", "--print-reply", "--dest=org.a11y.Bus", "/org/a11y/bus",
                "org.a11y.Bus.GetAddress"]
        return subprocess.run(call, capture_output=True).returncode == 0

    def program(self, path):
        return Program(path, self.folder / "home")

    def photograph(self, file):
        """The screen, where ImageMagick is installed; for whoever looks into a failure."""
        if shutil.which("import"):
            subprocess.run(["import", "-window", "root", str(file)], check=False)


def stop_on_signals():
    """Ends in order when the test runner has had enough."""
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(1))
