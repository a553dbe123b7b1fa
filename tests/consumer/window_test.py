#!/usr/bin/env python3
"""Uses samples/host_window on a virtual screen, as a person would, and looks at what it shows.

usage: window_test.py HOST_WINDOW SCENE OUT

Input comes from xdotool, pictures from the file in which Xvfb keeps its screen. No step waits for a time: it
waits until the window shows and says what is expected, and gives up after a minute. The pictures of the steps are left
in OUT.
"""
import os
import pathlib
import struct
import subprocess
import sys
import threading
import time
import zlib

WIDTH, HEIGHT = 480, 270  # what the window is resized to: small pictures are there soon
PATIENCE = 60.0


class Screen:
    """A virtual screen, just as large as the window becomes."""

    def __init__(self, folder: pathlib.Path):
        read, write = os.pipe()
        self.process = subprocess.Popen(
            ["Xvfb", "-displayfd", str(write), "-screen", "0", f"{WIDTH}x{HEIGHT}x24", "-fbdir", str(folder)],
            pass_fds=[write], stderr=subprocess.DEVNULL)
        os.close(write)
        with os.fdopen(read) as answer:
            self.display = ":" + answer.readline().strip()
        self.file = folder / "Xvfb_screen0"

    def pixels(self) -> bytes:
        """Rows from the top, four bytes a pixel: blue, green, red, unused."""
        data = self.file.read_bytes()
        header = struct.unpack(">25I", data[:100])  # an X window dump
        start, colours, row = header[0], header[19], header[12]
        begin = start + 12 * colours
        return data[begin:begin + row * HEIGHT]

    def close(self):
        self.process.terminate()
        self.process.wait()


class Window:
    """The program under test and its lines."""

    def __init__(self, program: str, scene: str, screen: Screen):
        self.screen = screen
        self.environment = dict(os.environ, DISPLAY=screen.display, LIBGL_ALWAYS_SOFTWARE="1")
        self.process = subprocess.Popen([program, scene], env=self.environment, stdout=subprocess.PIPE,
                                        stderr=subprocess.STDOUT, text=True)
        self.lines = []
        self.seen = 0
        self.reader = threading.Thread(target=self._read, daemon=True)
        self.reader.start()

    def _read(self):
        for line in self.process.stdout:
            self.lines.append(line.rstrip("\n"))

    def do(self, *actions: str):
        subprocess.run(["xdotool", *actions], env=self.environment, check=True)

    def wait(self, what: str, holds):
        deadline = time.monotonic() + PATIENCE
        while not holds():
            if self.process.poll() is not None:
                self.reader.join()
                fail(f"the program ended ({self.process.returncode}) while {what} was waited for: {self.lines}")
            if time.monotonic() > deadline:
                fail(f"{what} did not come; the program said {self.lines}")
            time.sleep(0.05)

    def act(self, what: str, *actions: str, shows, says=None) -> bytes:
        """Acts, and waits for a converged picture in which `shows` holds and, if given, for a line of the program."""
        before = self.seen
        self.do(*actions)
        seen = []

        def holds():
            if says is not None and says not in self.lines[before:]:
                return False
            if len(self.lines) == before or not self.lines[-1].startswith("converged"):
                return False
            seen[:] = [self.screen.pixels()]
            return shows(seen[0])

        self.wait(what, holds)
        self.seen = len(self.lines)
        return seen[0]


def fail(sentence: str):
    print("window_test: " + sentence, file=sys.stderr)
    sys.exit(1)


def pixel(picture: bytes, x: int, y: int):
    at = 4 * (y * WIDTH + x)
    return picture[at + 2], picture[at + 1], picture[at]


def changed(a: bytes, b: bytes, step: int = 4):
    """Of every `step`th pixel in both directions, those in which two pictures differ visibly."""
    return [(x, y) for y in range(0, HEIGHT, step) for x in range(0, WIDTH, step)
            if max(abs(p - q) for p, q in zip(pixel(a, x, y), pixel(b, x, y))) > 8]


def write_png(file: pathlib.Path, picture: bytes):
    rows = []
    for y in range(HEIGHT):
        row = picture[4 * WIDTH * y:4 * WIDTH * (y + 1)]
        rgb = bytearray(3 * WIDTH)
        rgb[0::3], rgb[1::3], rgb[2::3] = row[2::4], row[1::4], row[0::4]
        rows.append(b"\0" + bytes(rgb))

    def chunk(name: bytes, body: bytes) -> bytes:
        return struct.pack(">I", len(body)) + name + body + struct.pack(">I", zlib.crc32(name + body))

    size = struct.pack(">IIBBBBB", WIDTH, HEIGHT, 8, 2, 0, 0, 0)
    file.write_bytes(b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", size) + chunk(b"IDAT", zlib.compress(b"".join(rows)))
                     + chunk(b"IEND", b""))


def session(window: Window, out: pathlib.Path):
    # The first picture: the table stands in the middle, the corners show the background alone.
    def table(picture):
        background = pixel(picture, 2, 2)
        return [(x, y) for y in range(100, 150, 2) for x in range(180, 300, 2)
                if max(abs(p - q) for p, q in zip(pixel(picture, x, y), background)) > 40]

    # The window takes another size; the table stands in the middle of the picture.
    first = window.act("the table in the middle", "search", "--sync", "--onlyvisible", "--name", "workbench",
                       "windowsize", str(WIDTH), str(HEIGHT), "windowmove", "0", "0",
                       shows=lambda p: len(table(p)) > 500)
    write_png(out / "1-first.png", first)

    # A click selects what lies under the pointer, and its outline shows; nothing moves.
    selected = window.act("the selected ball", "mousemove", "272", "123", "click", "1",
                          says="selected /World/Balls/Ball8", shows=lambda p: changed(first, p, 1))
    write_png(out / "2-selected.png", selected)
    far = [(x, y) for x, y in changed(first, selected, 1) if abs(x - 272) > 20 or abs(y - 123) > 20]
    if far:
        fail(f"selecting a ball changed the picture elsewhere, as at {far[0]}")

    # A drag turns the view around the table.
    turned = window.act("the turned view", "mousemove", "200", "200", "mousedown", "1", "mousemove", "240", "200",
                        "mousemove", "280", "190", "mouseup", "1", shows=lambda p: len(changed(selected, p)) > 100)
    write_png(out / "3-turned.png", turned)

    # The wheel brings the table nearer; F frames the scene again from the same side.
    nearer = window.act("the nearer view", "click", "4", "click", "4", "click", "4",
                        shows=lambda p: len(changed(turned, p)) > 100)
    write_png(out / "4-nearer.png", nearer)
    window.act("the framed view", "key", "f", shows=lambda p: len(changed(turned, p)) < 5)

    # C looks through the stage's camera; a drag edits it, and one undo takes the whole drag back.
    through = window.act("the view through the camera", "key", "c", says="camera /World/Cameras/Closeup",
                         shows=lambda p: len(changed(turned, p)) > 1000)
    write_png(out / "5-camera.png", through)
    edited = window.act("the edited camera", "mousemove", "200", "200", "mousedown", "1", "mousemove", "215", "200",
                        "mousemove", "225", "200", "mouseup", "1", shows=lambda p: len(changed(through, p)) > 1000)
    write_png(out / "6-edited.png", edited)
    window.act("the undone edit", "key", "z", shows=lambda p: len(changed(through, p)) < 5)

    window.do("key", "Escape")
    if window.process.wait(PATIENCE) != 0:
        fail(f"the program ended with {window.process.returncode}: {window.lines}")


def main():
    program, scene, out = sys.argv[1], sys.argv[2], pathlib.Path(sys.argv[3])
    out.mkdir(parents=True, exist_ok=True)
    screen = Screen(out)
    try:
        window = Window(program, scene, screen)
        try:
            session(window, out)
        finally:
            window.process.kill()
    finally:
        screen.close()


if __name__ == "__main__":
    main()
