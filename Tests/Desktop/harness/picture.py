"""What is on the display, as pixels."""
import subprocess
from collections import Counter


class Picture:
    """Red, green and blue bytes; (0, 0) is the top left corner."""

    def __init__(self, width, height, pixels):
        self.width, self.height, self.pixels = width, height, pixels

    @staticmethod
    def of_display(environment, file=None):
        """The whole display now; also kept as a PNG when `file` is given."""
        ppm = subprocess.run(["import", "-silent", "-window", "root", "-depth", "8", "ppm:-"],
                             env=environment, check=True, capture_output=True).stdout
        if file:
            subprocess.run(["convert", "ppm:-", str(file)], input=ppm, check=True)
        return Picture.from_ppm(ppm)

    @staticmethod
    def from_ppm(data):
        magic, width, height, most, pixels = data.split(maxsplit=4) if b"#" not in data[:64] else \
            b"".join(line + b"\n" for line in data.split(b"\n") if not line.startswith(b"#")).split(maxsplit=4)
        assert magic == b"P6" and most == b"255", "not a picture"
        size = int(width) * int(height) * 3
        # split() may have eaten pixels that look like white space.
        pixels = data[-size:]
        return Picture(int(width), int(height), pixels)

    def pixel(self, x, y):
        at = 3 * (y * self.width + x)
        return tuple(self.pixels[at:at + 3])

    def part(self, x, y, width, height):
        rows = []
        for row in range(max(y, 0), min(y + height, self.height)):
            start = 3 * (row * self.width + max(x, 0))
            rows.append(self.pixels[start:start + 3 * (min(x + width, self.width) - max(x, 0))])
        return Picture(len(rows[0]) // 3 if rows else 0, len(rows), b"".join(rows))

    def colors(self):
        """How often each colour is there."""
        return Counter(zip(self.pixels[0::3], self.pixels[1::3], self.pixels[2::3]))

    def count(self, matches):
        """How many pixels have a colour that `matches(red, green, blue)`."""
        return sum(times for color, times in self.colors().items() if matches(*color))

    def __eq__(self, other):
        return (self.width, self.height, self.pixels) == (other.width, other.height, other.pixels)


def is_amber(red, green, blue):
    """The colour of scores, and of what is chosen."""
    return red > 180 and 110 < green < 225 and blue < 110 and red > green + 20


def is_dark(red, green, blue):
    """The pill's and the panel's ground."""
    return max(red, green, blue) < 60
