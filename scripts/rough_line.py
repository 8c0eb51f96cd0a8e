#!/usr/bin/env python3
"""A rough line between a front end and its engine, which records what it sees.

usage: rough_line.py RECORD SEED ENGINE [ARGUMENT]...

Stands in for the engine in the front end's settings.  Now and then a line to the engine comes in two
pieces or behind a burst of pings, or the front end is stopped for up to 300 milliseconds.  What the
engine answers to those pings is kept back.  RECORD gets a line for each event, its fields separated
by commas; games are counted by their results:

    move,GAME,CLOCK,USED    an answer: centiseconds on the clock it was told, milliseconds it took
    late,GAME,CLOCK,USED    the same where the game ended before the answer
    spent,GAME,MOVES,USED   at a game's end: the moves that it was asked for, milliseconds it took in all
    end,GAME,RESIDENT       a game's end, and the engine's resident kilobytes
    cut|burst|pause,GAME,N  milliseconds between the pieces, pings, milliseconds
    fault,GAME,TEXT         what the engine should not have done
"""
import os
import random
import select
import signal
import subprocess
import sys
import time

CUT, BURST, PAUSE = 0.05, 0.03, 0.03  # how often
LONGEST_CUT, LONGEST_BURST, LONGEST_PAUSE = 10, 30, 300  # milliseconds, pings, milliseconds
FIRST_PING = 1_000_000  # a front end's own are lower
LONGEST_END = 5  # seconds from the last line to the engine's end


def milliseconds():
    return time.monotonic_ns() / 1e6


class Line:
    def __init__(self, record, seed, command):
        self.games = 0
        if os.path.exists(record):
            with open(record, encoding="utf-8") as earlier:
                self.games = sum(event.startswith("end,") for event in earlier)
        self.record = open(record, "a", buffering=1, encoding="utf-8")
        self.dice = random.Random(f"{seed} {self.games}")
        self.engine = subprocess.Popen(command, stdin=subprocess.PIPE, stdout=subprocess.PIPE, bufsize=0)
        signal.signal(signal.SIGTERM, signal.SIG_IGN)  # as the engine does, which must do it itself
        signal.signal(signal.SIGINT, signal.SIG_IGN)
        self.front_end = os.getppid()
        self.is_paused, self.resume_at = False, 0.0
        self.is_greeted = False  # before that nothing is put in
        self.pings, self.next_ping = [], FIRST_PING
        self.clock = self.asked = None  # what the engine was told, and when it was asked
        self.moves, self.spent = 0, 0.0  # in this game

    def note(self, kind, *values):
        print(kind, self.games, *values, sep=",", file=self.record)

    def write(self, text):
        try:
            self.engine.stdin.write(text)
        except BrokenPipeError:
            self.note("fault", "the engine reads no more")

    def deliver(self, line):
        """One line on its way to the engine."""
        word = line.split()[0] if line.split() else b""
        if word in (b"result", b"quit") and self.asked:
            self.take_time("late")
        burst = b""
        if self.is_greeted and word != b"quit" and self.dice.random() < BURST:
            count = self.dice.randint(1, LONGEST_BURST)
            self.pings += range(self.next_ping, self.next_ping + count)
            self.next_ping += count
            burst = b"".join(b"ping %d\n" % ping for ping in self.pings[-count:])
            self.note("burst", count)
        if len(line) > 1 and self.dice.random() < CUT:
            place, delay = self.dice.randrange(1, len(line)), self.dice.uniform(0, LONGEST_CUT)
            self.write(burst + line[:place])
            time.sleep(delay / 1000)
            self.write(line[place:])
            self.note("cut", round(delay))
        else:
            self.write(burst + line)
        self.is_greeted |= word == b"protover"
        if word == b"time":
            self.clock = int(line.split()[1])
        elif word in (b"usermove", b"go") and self.clock is not None:
            self.asked = milliseconds()
        elif word == b"force":
            self.asked = None
        elif word == b"result":
            self.end_game()
        self.maybe_pause()

    def take_time(self, kind):
        used = milliseconds() - self.asked
        self.note(kind, self.clock, round(used, 1))
        self.moves, self.spent, self.asked = self.moves + 1, self.spent + used, None

    def end_game(self):
        self.note("spent", self.moves, round(self.spent))
        self.moves, self.spent = 0, 0.0
        try:
            with open(f"/proc/{self.engine.pid}/status", encoding="utf-8") as status:
                resident = next(line.split()[1] for line in status if line.startswith("VmRSS"))
            self.note("end", resident)
        except (OSError, StopIteration):
            self.note("end", "")
            self.note("fault", "the engine is gone at the end of the game")
        self.games += 1
        self.clock = None

    def maybe_pause(self):
        if self.is_paused or not self.clock or self.dice.random() >= PAUSE:
            return
        # What is charged to a clock must leave something of it.
        length = self.dice.uniform(0, min(LONGEST_PAUSE, max(0, self.clock) * 10 / 4))
        self.note("pause", round(length))
        self.signal_front_end(signal.SIGSTOP)
        self.is_paused, self.resume_at = True, milliseconds() + length

    def resume(self):
        if self.is_paused:
            self.signal_front_end(signal.SIGCONT)
        self.is_paused = False

    def signal_front_end(self, number):
        try:
            os.kill(self.front_end, number)
        except ProcessLookupError:
            pass  # it has gone

    def answer(self, line):
        """One line on its way to the front end."""
        if line.startswith(b"pong ") and int(line.split()[1]) >= FIRST_PING:
            if not self.pings or int(line.split()[1]) != self.pings.pop(0):
                self.note("fault", "pings are answered in another order: " + line.decode().strip())
            return
        if line.startswith(b"move ") and self.asked is not None:
            self.take_time("move")
        if self.is_paused and not select.select([], [1], [], 0)[1]:
            self.resume()  # it takes no more, and nobody else would wake it
        try:
            os.write(1, line)
        except BrokenPipeError:
            pass  # the front end has gone

    def run(self):
        poll = select.poll()
        pending = {0: b"", self.engine.stdout.fileno(): b""}
        for source in pending:
            poll.register(source, select.POLLIN)
        is_open = True
        while is_open:
            wait = max(0.0, self.resume_at - milliseconds()) if self.is_paused else None
            for source, _ in poll.poll(wait):
                data = os.read(source, 1 << 16)
                *lines, pending[source] = (pending[source] + data).splitlines(keepends=True) + [b""]
                if lines and not lines[-1].endswith(b"\n"):
                    pending[source] = lines.pop()
                for line in lines:
                    (self.deliver if source == 0 else self.answer)(line)
                is_open &= bool(data)
            if self.is_paused and milliseconds() >= self.resume_at:
                self.resume()
        self.resume()
        self.finish(pending[self.engine.stdout.fileno()])

    def finish(self, begun):
        try:
            rest, _ = self.engine.communicate(timeout=LONGEST_END)
            for line in (begun + rest).splitlines(keepends=True):
                self.answer(line)
        except subprocess.TimeoutExpired:
            self.engine.kill()
            self.engine.wait()
            self.note("fault", f"the engine has not ended in {LONGEST_END} s")
        if self.engine.returncode != 0:
            self.note("fault", f"the engine's exit status is {self.engine.returncode}")
        if self.pings:
            self.note("fault", f"{len(self.pings)} pings were not answered")


if __name__ == "__main__":
    line_of_engine = Line(sys.argv[1], sys.argv[2], sys.argv[3:])
    try:
        line_of_engine.run()
    finally:
        line_of_engine.resume()
