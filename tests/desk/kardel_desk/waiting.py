"""Waiting for a condition, so that no test sleeps and hopes."""

import time

FIRST_PAUSE, LAST_PAUSE = 0.015, 0.1  # seconds between two looks: what is not there at once is looked for less often


def _pause(begun: float) -> None:
    """Waits for the next look, a quarter of the time since the first one."""
    time.sleep(min(max((time.monotonic() - begun) / 4, FIRST_PAUSE), LAST_PAUSE))


def wait(condition, timeout: float = 10.0, what: str = ""):
    """Calls `condition` until it returns something true, and returns that. A LookupError or AssertionError inside it
    counts as "not yet". After `timeout` seconds: AssertionError with the last thing seen."""
    begun = time.monotonic()
    end = begun + timeout
    while True:
        try:
            seen = condition()
            if seen:
                return seen
        except (LookupError, AssertionError) as error:
            seen = error
        if time.monotonic() > end:
            raise AssertionError(f"waited {timeout:g} s for {what or 'a condition'}; last saw: {seen!r}")
        _pause(begun)


def wait_equal(look, expected, timeout: float = 10.0, what: str = ""):
    """Calls `look` until it returns `expected`. After `timeout` seconds: AssertionError with both values."""
    begun = time.monotonic()
    end = begun + timeout
    while True:
        try:
            seen = look()
            if seen == expected:
                return seen
        except (LookupError, AssertionError) as error:
            seen = error
        if time.monotonic() > end:
            raise AssertionError(f"waited {timeout:g} s for {what or 'a value'}: "
                                 f"expected {expected!r}, last saw {seen!r}")
        _pause(begun)


def stays(condition, seconds: float, what: str = ""):
    """Checks that `condition` holds all the time for `seconds`, for what must NOT happen."""
    end = time.monotonic() + seconds
    while time.monotonic() < end:
        assert condition(), f"{what or 'a condition'} did not hold for {seconds:g} s"
        time.sleep(LAST_PAUSE)
