"""A terminal for a program under test: what it shows, and whether a line exceeded its width."""

import fcntl
import os
import pty
import struct
import termios


class Screen:
    """The lines that a terminal shows after some bytes, without trailing blanks; `overran` when text reached its last column."""

    def __init__(self, columns):
        self.columns = columns
        self.lines = [[]]
        self.column = 0
        self.overran = False

    def feed(self, text):
        for character in text:
            if character == "\r":
                self.column = 0
            elif character == "\n":
                self.lines.append([])
            else:
                line = self.lines[-1]
                line.extend(" " * (self.column + 1 - len(line)))
                line[self.column] = character
                self.column += 1
                self.overran = self.overran or self.column >= self.columns
        return self

    def text(self):
        return "\n".join("".join(line).rstrip() for line in self.lines)


class Terminal:
    """A pseudo-terminal of this width; a program gets `end` as one of its streams."""

    def __init__(self, columns=80):
        self.columns = columns
        self.master, self.end = pty.openpty()
        fcntl.ioctl(self.end, termios.TIOCSWINSZ, struct.pack("HHHH", 24, columns, 0, 0))

    def read(self, until=None):
        """What is written until all programs have closed the terminal, or until this text has arrived."""
        if self.end is not None and until is None:
            os.close(self.end)
            self.end = None
        written = b""
        while until is None or until.encode() not in written:
            try:
                piece = os.read(self.master, 65536)
            except OSError:
                break
            if not piece:
                break
            written += piece
        return written.decode()

    def close(self):
        for descriptor in (self.master, self.end):
            if descriptor is not None:
                os.close(descriptor)
