"""The shared page as a service sees it, and the bytes of its messages."""

import mmap
import os
import pathlib
import struct

from programs import wait_until

PAGE = pathlib.Path("root/data/vendor/.tv")
PAGE_SIZE = 4096
POSTED = 1  # a request is in the page
READY = 2  # the reply is in the page


def int32(*numbers):
    return struct.pack(f"<{len(numbers)}i", *numbers)


def int64(number):
    return struct.pack("<q", number)


def string(text):
    """A parcel's string: length, UTF-16 units, a zero unit, up to the next four bytes."""
    units = text.encode("utf-16-le", "surrogatepass")
    return int32(len(units) // 2) + units + bytes(4 - len(units) % 4)


def write_page(flags, data, length=None):
    """Puts a message into the page file, with a length that need not be true."""
    with open(PAGE, "r+b") as page:
        page.seek(4)
        page.write(struct.pack("<I", len(data) if length is None else length) + data)
        page.seek(0)
        page.write(bytes([flags]))


class PlayedService:
    """The page, with its service in the hands of the test."""

    def __init__(self):
        PAGE.touch()
        os.truncate(PAGE, PAGE_SIZE)
        with open(PAGE, "r+b") as file:
            self.page = mmap.mmap(file.fileno(), PAGE_SIZE)

    def has_request(self):
        return self.page[0] == POSTED

    def request(self, *programs):
        """Waits for a request; its bytes. Fails at once when one of the programs has ended."""
        wait_until(self.has_request, *programs)
        (length,) = struct.unpack_from("<I", self.page, 4)
        return self.page[8 : 8 + length]

    def reply(self, data, length=None):
        """Hands out a reply, whose length need not be true."""
        self.page[8 : 8 + len(data)] = data
        self.page[4:8] = struct.pack("<I", len(data) if length is None else length)
        self.page[0:1] = bytes([READY])

    def answer(self, console, line, reply=bytes(4), length=None):
        """Types a line and replies to what it requests; all its requests, and what is printed."""
        requests = []

        def has_answered():
            if self.has_request():
                requests.append(self.request())
                self.reply(reply, length)
            return console.is_at_prompt()

        console.type(line)
        wait_until(has_answered)
        return requests, console.shown()
