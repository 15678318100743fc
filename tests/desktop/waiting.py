"""Waiting for facts: the one polling loop of the desktop tests."""
import time

# Long enough for a machine that runs other tests beside this one; a passing test never waits so long.
DEADLINE_SECONDS = 30.0
POLL_SECONDS = 0.02


def wait_for(fact, description, seconds=DEADLINE_SECONDS):
    """Calls `fact` until it gives something true, and gives that. After the deadline the description is the failure;
    it may be a function, which is asked then."""
    end = time.monotonic() + seconds
    while True:
        value = fact()
        if value:
            return value
        if time.monotonic() > end:
            raise AssertionError(f'Not within {seconds:g} s: {description() if callable(description) else description}')
        time.sleep(POLL_SECONDS)


def remains(fact, description, seconds):
    """Looks at `fact` for some time and fails as soon as it stops being true: for what must not happen."""
    end = time.monotonic() + seconds
    while time.monotonic() < end:
        if not fact():
            raise AssertionError(f'Stopped being true: {description}')
        time.sleep(POLL_SECONDS)
