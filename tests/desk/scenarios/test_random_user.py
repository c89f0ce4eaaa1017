"""Anything in any order, compared with a model of the desk. KARDEL_SEED says which run it is, KARDEL_ACTIONS how long.
`./test soak` does 20 000 actions in each store, with a new seed each time, as well as 5000 without a restart, and adds a
user with mouse and keyboard for 2000."""

import os
import time

import pytest

from kardel_desk.random_user import RandomUser
from kardel_desk.steady_user import SteadyUser
from kardel_desk.stores import KINDS

SEED = int(os.environ.get("KARDEL_SEED", "1"))
ACTIONS = int(os.environ.get("KARDEL_ACTIONS", "75"))  # in each store
LONG = ACTIONS >= 2000
WITHOUT_RESTART = ACTIONS // 4 if LONG else ACTIONS
BY_HAND = ACTIONS // 10  # each action takes a while
BETWEEN_CHECKS = 100 if LONG else 10
GROWTH = 1.05
# Allows for what is still made for the first time and, in a long run, for a thread of Wine's own that plays sounds and
# comes and goes: its stack alone is 1000 KB. The blocks are what the program itself has allocated.
SHORT_SLACK = {"handles": 6, "gdi": 60, "user": 20, "blocks": 150, "heap": 50, "memory": 2000}
LONG_SLACK = {"handles": 1, "gdi": 0, "user": 2, "blocks": 150, "heap": 40, "memory": 1000}


def act(user, actions):
    for action in range(1, actions + 1):
        user.act()
        if action % BETWEEN_CHECKS == 0:
            user.check()


def lose_nothing(user, actions, count):
    begun = time.monotonic()
    act(user, actions)
    user.restart()
    count(f"random user, seed {SEED}, {user.kind}: {user.done} actions, {user.restarts} restarts, {user.switches} switches, "
          f"{user.checks} checks, 0 notes lost in {time.monotonic() - begun:.0f} s")


@pytest.fixture
def alone(desk):
    """Keeps the window manager out of the way, which makes Wine believe a stale size while it is taking a note over."""
    with desk.unmanaged():
        yield


@pytest.mark.parametrize("kind", KINDS)
@pytest.mark.usefixtures("alone")
def test_random_user_loses_nothing(desk, kind, count):
    lose_nothing(SteadyUser(desk, kind, SEED), ACTIONS, count)


@pytest.mark.parametrize("kind", KINDS if LONG else KINDS[:1])
@pytest.mark.usefixtures("alone")
def test_random_user_piles_nothing_up(desk, kind, count):
    """Runs the program for a long time: at the end, with three notes visible, it must hold no more than before."""
    user, begun = SteadyUser(desk, kind, SEED), time.monotonic()
    user.leaves = False
    user.try_everything()
    act(user, min(500, WITHOUT_RESTART // 2) - user.done)
    user.tidy()
    before = user.resources()
    act(user, WITHOUT_RESTART - user.done)
    user.tidy()
    after = user.resources()
    count(f"random user, seed {SEED}, {kind}, without a restart: {user.done} actions, {user.checks} checks, "
          f"0 notes lost in {time.monotonic() - begun:.0f} s; "
          + ", ".join(f"{name} {before[name]} -> {after[name]}" for name in before))
    for name, held in before.items():
        most = held * GROWTH + (LONG_SLACK if LONG else SHORT_SLACK)[name]
        assert after[name] <= most, f"{name}: {held} before, {after[name]} after {user.done} actions, seed {SEED}"


@pytest.mark.skipif("KARDEL_ACTIONS" not in os.environ, reason="long: KARDEL_ACTIONS says how long")
@pytest.mark.parametrize("kind", KINDS)
def test_random_user_with_mouse_and_keyboard(desk, kind, count):
    lose_nothing(RandomUser(desk, kind, SEED), BY_HAND, count)
