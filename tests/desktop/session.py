"""The program's document window with a project in it, and what a user does there: what the scripts of
this folder share."""

import json
import re
import struct
import subprocess
import sys
import time
import zlib

from desktop import (SKIPPED, Desktop, check, inside_session_bus, missing_programs, press, stop_on_signals, type_text, wait_for)

WIDE = 700  # points, of the canvas when the window fills the screen
UNTITLED = re.compile("Untitled.*")


def write_picture(path, width, height, color):
    """A PNG of one colour."""

    def chunk(kind, data):
        return (struct.pack(">I", len(data)) + kind + data +
                struct.pack(">I", zlib.crc32(kind + data)))

    rows = (b"\0" + bytes(color) * width) * height
    path.write_bytes(b"\x89PNG\r\n\x1a\n" +
                     chunk(b"IHDR", struct.pack(">IIBBBBB", width, height, 8, 2, 0, 0, 0)) +
                     chunk(b"IDAT", zlib.compress(rows)) + chunk(b"IEND", b""))


class Session:
    """The program's window, and what a user does in it."""

    def __init__(self, desktop, tweenery, tweenc):
        self.folder = desktop.folder / "work"
        self.folder.mkdir()
        self.desktop = desktop
        self.program = desktop.program(tweenery)
        self.tweenc = tweenc
        self.window = None
        self.began = time.monotonic()

    def tell(self, what):
        print(f"{time.monotonic() - self.began:5.1f} s  {what}", flush=True)

    def open(self, *projects, title=UNTITLED):
        self.program.start(*projects)
        self.window = self.program.window(title)
        self.canvas = self.window.find("Canvas", "canvas")

    def open_wide(self):
        """A new project that fills the screen."""
        self.open()
        press("F11")
        wait_for(lambda: self.canvas.box[2] > WIDE, "the whole screen")
        press("ctrl+0")

    # What there is.

    def elements(self):
        """All on the canvas."""
        return [c for c in list(self.canvas.walk())[1:] if c.role != "push button"]

    def element(self, name):
        return self.canvas.find(name, ("image", "panel", "icon", "graphic", "grouping"))

    def place(self, name):
        return self.element(name).box[:2]

    def animations(self):
        return [c.name for c in self.window.find("Animations", ("list", "tree")).children]

    # What a user does.

    def choose(self, menu, item):
        self.window.find(menu, "menu item").click()
        self.window.find(item, "menu item").click()

    def import_pictures(self, files):
        """The first ones, into a project that is empty."""
        self.choose("File", "Import Images…")
        dialog = self.program.dialog(re.compile(".*"))
        field = dialog.find(re.compile("File name:?"), "text")
        field.click(times=3)
        type_text(" ".join(f'"{file}"' for file in files))
        press("Return")
        question = self.program.dialog("This image does not have an @2x suffix")
        question.find("Don't show again.", "check box").click()
        question.find("This is 1x Version", "push button").click()
        names = {file.stem for file in files}
        wait_for(lambda: {c.name for c in self.elements()} == names, "all pictures")

    def select(self, name):
        """This one alone, by its row."""
        self.window.find("Elements", "tree").find(name, "table cell").click()
        wait_for(lambda: [c.name for c in self.elements() if c.is_selected] == [name],
                 f"{name} to be selected")

    def put_playhead(self, time):
        playhead = self.window.find("Playhead", "slider")
        playhead.value = time
        wait_for(lambda: playhead.value == time, f"the playhead at {time} ms")

    def ask_tweenc(self, verb, project, *options):
        run = subprocess.run([self.tweenc, verb, "--json", str(project), *options], check=True,
                             capture_output=True)
        return json.loads(run.stdout)[0]["result"]

    def describe(self, project):
        return self.ask_tweenc("describe", project)["description"]

    def info(self, project):
        return self.ask_tweenc("info", project)

    def save_as(self, item, name):
        """Under a name in the folder of this session; returns the package."""
        self.choose("File", item)
        dialog = self.program.dialog(re.compile(item.replace("…", "") + ".*|Save Project As"))
        field = dialog.find("Name", "text")
        field.click(times=3)
        press("ctrl+a")
        type_text(str(self.folder / name))
        press("Return")
        package = self.folder / (name + ".tweenery")
        wait_for(lambda: (package / "version").exists(), f"{name} on disk")
        return package


def run(desktop, kind, day, photograph, tweenery, tweenc):
    session = kind(desktop, tweenery, tweenc)
    try:
        day(session)
    except BaseException:
        desktop.photograph(photograph)
        print(session.program.log.read_text(errors="replace"), file=sys.stderr)
        raise
    finally:
        session.program.kill()


def main(kind, day, photograph):
    """Ends the script: `day` is what a session of this `kind` does."""
    if missing_programs():
        print("not installed:", ", ".join(missing_programs()))
        return SKIPPED
    inside_session_bus()
    stop_on_signals()
    with Desktop() as desktop:
        run(desktop, kind, day, photograph, *sys.argv[1:])
    return 0
