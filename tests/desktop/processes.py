"""Child processes that never outlive the test that started them."""
import ctypes
import os
import signal
import subprocess

from waiting import wait_for

_PR_SET_PDEATHSIG = 1
_LIBC = ctypes.CDLL(None)


def _die_with_parent():
    # CTest kills a test that takes too long, and then no cleanup would run.
    _LIBC.prctl(_PR_SET_PDEATHSIG, signal.SIGKILL)


class Process:
    """A program whose printed lines go to files."""

    def __init__(self, arguments, environment, folder, name, pass_fds=(), stdin=subprocess.DEVNULL, cwd=None,
                 stdout=None):
        self.name = name
        self._output = os.path.join(folder, f'{name}.out')
        self._errors = os.path.join(folder, f'{name}.err')
        with open(self._output, 'wb') as output, open(self._errors, 'wb') as errors:
            self._process = subprocess.Popen(  # pylint: disable=consider-using-with,subprocess-popen-preexec-fn
                arguments, env=environment, stdin=stdin, stdout=stdout or output, stderr=errors, pass_fds=pass_fds,
                cwd=cwd, preexec_fn=_die_with_parent)

    @property
    def pid(self):
        return self._process.pid

    @property
    def stdin(self):
        return self._process.stdin

    @property
    def stdout(self):
        return self._process.stdout

    def runs(self):
        return self._process.poll() is None

    def lines(self):
        """What it has written to standard output so far."""
        with open(self._output, encoding='utf-8', errors='replace') as file:
            return file.read().splitlines()

    def complaints(self):
        """What it has written to standard error so far."""
        with open(self._errors, encoding='utf-8', errors='replace') as file:
            return file.read()

    def wait_for_line(self, line, count=1):
        wait_for(lambda: self.lines().count(line) >= count,
                 lambda: f'{self.name} prints "{line}" {count} times; it printed {self.lines()}')

    def wait_for_exit(self):
        """The exit status, negative for a signal."""
        wait_for(lambda: not self.runs(), f'{self.name} ends')
        return self._process.returncode

    def stop(self):
        if self.runs():
            self._process.terminate()
            try:
                self._process.wait(5)
            except subprocess.TimeoutExpired:
                self._process.kill()
        self._process.wait()
        for pipe in (self._process.stdin, self._process.stdout):
            if pipe:
                pipe.close()
