"""The virtual screen as a person has it: keys, mouse, windows, pictures."""
import itertools
import re
import subprocess

from pictures import Picture
from waiting import wait_for

LEFT, RIGHT = 1, 3
# A drag that arrives in one jump is no drag to most toolkits.
DRAG_STEPS = 12


class Screen:
    """An X display; `camera` is the process that takes its pictures. Positions are pixels from the upper left corner."""

    def __init__(self, environment, camera):
        self._environment = environment
        self._camera = camera

    def _run(self, *words):
        return subprocess.run(words, env=self._environment, capture_output=True, text=True, check=True).stdout

    # Keys

    def press(self, *keys):
        """Presses keys one after the other, each with its modifiers: "ctrl+f", "alt+shift+Return"."""
        self._run('xdotool', 'key', '--clearmodifiers', *keys)

    def type(self, text):
        self._run('xdotool', 'type', '--delay', '1', text)

    # Mouse

    def move(self, x, y):
        self._run('xdotool', 'mousemove', str(int(x)), str(int(y)))

    def click(self, x, y, button=LEFT, times=1):
        self._run('xdotool', 'mousemove', str(int(x)), str(int(y)), 'click', '--repeat', str(times), '--delay', '40',
                  str(button))

    def button_down(self, x, y):
        self._run('xdotool', 'mousemove', str(int(x)), str(int(y)), 'mousedown', str(LEFT))

    def button_up(self):
        self._run('xdotool', 'mouseup', str(LEFT))

    def glide(self, start, end):
        """Moves with the button as it is, in steps."""
        words = []
        for step in range(1, DRAG_STEPS + 1):
            x, y = (int(a + (b - a) * step / DRAG_STEPS) for a, b in zip(start, end))
            words += ['mousemove', str(x), str(y), 'sleep', '0.01']
        self._run('xdotool', *words)

    def hover(self, point, fact, description):
        """Moves about a point until something has come of it: a still pointer tells the programs nothing."""
        offsets = itertools.cycle((2, -2))

        def look():
            self.move(point[0] + next(offsets), point[1])
            return fact()
        wait_for(look, description)

    def drag(self, start, end, begun):
        """Drags from start to end; goes on from the first part of the way only once `begun` says that it has begun."""
        part = tuple(a + (b - a) / 3 for a, b in zip(start, end))
        self.button_down(*start)
        try:
            self.glide(start, part)
            self.hover(part, begun, 'the drag begins')
            self.glide(part, end)
        finally:
            self.button_up()

    # Windows

    def windows(self, title):
        """The visible windows whose title matches the expression, as numbers."""
        return self._visible('--name', title)

    def windows_of(self, pid):
        """The visible windows of a process, its menus among them."""
        return self._visible('--pid', str(pid))

    def _visible(self, *words):
        found = subprocess.run(['xdotool', 'search', '--onlyvisible', *words], env=self._environment, capture_output=True,
                               text=True, check=False).stdout
        return [int(line) for line in found.split()]

    def window(self, title):
        return wait_for(lambda: self.windows(title), f'a window named "{title}" is shown')[0]

    def geometry(self, window):
        """x, y, width and height of the window without what the window manager puts around it."""
        text = self._run('xwininfo', '-id', str(window))

        def number(label):
            return int(re.search(rf'{label}:\s+(-?\d+)', text).group(1))
        return (number('Absolute upper-left X'), number('Absolute upper-left Y'), number('Width'), number('Height'))

    def properties(self, window, *names):
        """Window properties as xprop prints them, by name; absent ones are left out."""
        found = {}
        for line in self._run('xprop', '-id', str(window), *names).splitlines():
            match = re.match(r'(\w+)\([^)]*\)(?:: | = |:)(.*)', line)
            if match:
                found[match.group(1)] = match.group(2).strip()
        return found

    def title(self, window):
        text = self.properties(window, '_NET_WM_NAME').get('_NET_WM_NAME', '')
        return text[1:-1]

    def states(self, window):
        """The window manager's states: _NET_WM_STATE_MAXIMIZED_VERT and the like."""
        text = self.properties(window, '_NET_WM_STATE').get('_NET_WM_STATE', '')
        return {word.strip() for word in text.split(',') if word.strip()}

    def active_window(self):
        text = self._run('xprop', '-root', '_NET_ACTIVE_WINDOW')
        match = re.search(r'0x[0-9a-f]+', text)
        return int(match.group(), 16) if match else 0

    def activate(self, window):
        def is_active():
            if self.active_window() != window:
                # Again and again: another window that has just come up may take the focus after us.
                self._run('xdotool', 'windowactivate', str(window))
            return self.active_window() == window

        wait_for(is_active, f'window {window:#x} is active')

    def move_window(self, window, x, y):
        self._run('xdotool', 'windowmove', '--sync', str(window), str(x), str(y))

    def close_window(self, window):
        """Asks it to close as the window manager's own menu does."""
        self._run('wmctrl', '-i', '-c', hex(window))

    # Pictures

    def picture(self):
        """The whole screen as the compositor shows it."""
        self._camera.stdin.write(b'\n')
        self._camera.stdin.flush()
        width, height = map(int, self._camera.stdout.readline().split())
        return Picture(width, height, self._camera.stdout.read(3 * width * height))

    def colour(self, x, y):
        """Red, green and blue of one pixel."""
        return self.picture().colour(x, y)
