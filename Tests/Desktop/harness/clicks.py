"""Clicks, timed by the display's own events: no program is started for each, as xdotool would be."""
import ctypes
import ctypes.util
import select
import time

_PRESS_TO_RELEASE = 0.01  # seconds, as quick as a finger is
_FEW_COLOURS = 3  # a surface with text on it has more
_SUBSTRUCTURE_NOTIFY = 1 << 19
_UNMAP_NOTIFY, _MAP_NOTIFY = 18, 19
_Z_PIXMAP, _ALL_PLANES = 2, 0xFFFFFFFF


class _Image(ctypes.Structure):
    _fields_ = [("width", ctypes.c_int), ("height", ctypes.c_int), ("offset", ctypes.c_int),
                ("format", ctypes.c_int), ("data", ctypes.POINTER(ctypes.c_uint32))]


_x = ctypes.CDLL(ctypes.util.find_library("X11"))
_test = ctypes.CDLL(ctypes.util.find_library("Xtst"))
_x.XOpenDisplay.restype = ctypes.c_void_p
_x.XDefaultRootWindow.restype = ctypes.c_ulong
_x.XGetImage.restype = ctypes.POINTER(_Image)


class Clicks:
    """Speaks to the display of a session in which only the panel comes and goes."""

    def __init__(self, name):
        self._display = ctypes.c_void_p(_x.XOpenDisplay(name.encode()))
        assert self._display, f"no display {name}"
        self._root = ctypes.c_ulong(_x.XDefaultRootWindow(self._display))
        _x.XSelectInput(self._display, self._root, ctypes.c_long(_SUBSTRUCTURE_NOTIFY))
        _x.XSync(self._display, False)

    def close(self):
        _x.XCloseDisplay(self._display)

    def windows_at(self, x, y, seconds):
        """Puts the pointer there; gives the ids of all windows that hold it during so many seconds,
        0 for the desktop."""
        _test.XTestFakeMotionEvent(self._display, -1, x, y, ctypes.c_ulong(0))
        root, child, number = ctypes.c_ulong(), ctypes.c_ulong(), ctypes.c_int()
        found, end = set(), time.monotonic() + seconds
        while time.monotonic() < end:
            _x.XQueryPointer(self._display, self._root, ctypes.byref(root), ctypes.byref(child),
                             *[ctypes.byref(number)] * 5)
            found.add(child.value)
        return found

    def open(self, x, y, area, within):
        """Clicks there; gives the seconds from the button's going down until a window with text on
        it has been painted in the area (x, y, width, height). Fails after so many seconds."""
        start = self._click(x, y, _MAP_NOTIFY, within)
        while len(self._colours(*area)) <= _FEW_COLOURS:
            if time.monotonic() - start > within:
                raise AssertionError("nothing was painted")
        return time.monotonic() - start

    def close_panel(self, x, y, within):
        """The same until a window has gone."""
        start = self._click(x, y, _UNMAP_NOTIFY, within)
        return time.monotonic() - start

    def _click(self, x, y, awaited, within):
        """Gives when the button went down, once the awaited event is there."""
        _test.XTestFakeMotionEvent(self._display, -1, x, y, ctypes.c_ulong(0))
        _x.XSync(self._display, True)  # and forgets what has been before
        start = time.monotonic()
        self._press(True)
        time.sleep(_PRESS_TO_RELEASE)
        self._press(False)
        while self._next_event(start + within) != awaited:
            pass
        return start

    def _press(self, is_down):
        _test.XTestFakeButtonEvent(self._display, 1, is_down, ctypes.c_ulong(0))
        _x.XFlush(self._display)

    def _next_event(self, deadline):
        """The type of the next event."""
        while not _x.XPending(self._display):
            left = deadline - time.monotonic()
            if left <= 0:
                raise AssertionError("a click was not answered")
            select.select([_x.XConnectionNumber(self._display)], [], [], left)
        event = (ctypes.c_long * 24)()
        _x.XNextEvent(self._display, event)
        return ctypes.cast(event, ctypes.POINTER(ctypes.c_int))[0]

    def _colours(self, x, y, width, height):
        image = _x.XGetImage(self._display, self._root, x, y, width, height,
                             ctypes.c_ulong(_ALL_PLANES), _Z_PIXMAP)
        colours = set(image.contents.data[:width * height])
        _x.XDestroyImage(image)
        return colours
