#!/usr/bin/env python3
"""Measures the levels of korvane-uci: plays games between two players, with Korvane itself in force
mode as the referee, and prints the score of the first with its standard error and Elo difference.

usage: levels.py PLAYER PLAYER [--games N] [--jobs N]
       levels.py --table [--games N] [--jobs N]    writes data/levels.csv
       levels.py --markdown                        prints it as a table

A player is korvane:ELO, stockfish:ELO (its own calibrated levels), nodes:N or depth:N (Korvane with
that limit). Every opening is played twice, with colours reversed.
"""
import argparse
import concurrent.futures
import csv
import math
import pathlib
import random
import re
import subprocess
import sys
import tempfile

ROOT = pathlib.Path(__file__).resolve().parent.parent
TABLE = ROOT / "data" / "levels.csv"
BUILD = ROOT / "build" / "release"
OPENING_PLIES = 8
MOST_PLIES = 500  # a longer game counts as drawn
GAMES = "/usr/games/"  # where Debian puts both
STOCKFISH_TIME = 50  # milliseconds a move; its levels are limited by depth, not by time
LEVELS = range(1000, 2401, 200)
LAST_QUICK_LEVEL = 1800  # whose games take a second or two, so there are so many times as many
MORE_GAMES = 4
FIRST_OF_STOCKFISH = 1400  # it offers none below 1350


class Engine:
    """An engine over pipes."""

    def __init__(self, *command):
        self.folder = tempfile.TemporaryDirectory()  # where logs go
        self.process = subprocess.Popen(command, stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                                        text=True, bufsize=1, cwd=self.folder.name)

    def send(self, line):
        self.process.stdin.write(line + "\n")

    def read_until(self, pattern):
        """The lines up to the first that matches."""
        lines = []
        for line in self.process.stdout:
            lines.append(line.rstrip("\n"))
            if re.match(pattern, line):
                return lines
        raise RuntimeError(f"{self.process.args} ended before {pattern}: {lines}")

    def ask(self, line, pattern):
        self.send(line)
        return self.read_until(pattern)


class Player(Engine):
    """A UCI engine at a level."""

    def __init__(self, text):
        kind, _, value = text.partition(":")
        if kind == "stockfish":
            super().__init__(GAMES + "stockfish")
            self.go = f"go movetime {STOCKFISH_TIME}"
        else:
            super().__init__(str(BUILD / "korvane-uci"))
            self.send("setoption name OwnBook value false")
            self.go = f"go {kind} {value}" if kind in ("nodes", "depth") else "go nodes 100000000"
        if kind in ("stockfish", "korvane"):
            self.send("setoption name UCI_LimitStrength value true")
            self.send(f"setoption name UCI_Elo value {value}")
        self.send("setoption name Hash value 16")

    def new_game(self):
        self.send("ucinewgame")
        self.ask("isready", "readyok")

    def move(self, moves):
        self.send("position startpos moves " + " ".join(moves))
        return self.ask(self.go, "bestmove")[-1].split()[1]


class Referee(Engine):
    """Korvane in force mode, which announces how a game ends and refuses illegal moves."""

    def __init__(self):
        super().__init__(str(BUILD / "korvane"), "--no-book", "--hash-size=1")

    def new_game(self):
        self.send("new\nforce")

    def play(self, move):
        """The result, when the move ends the game."""
        lines = self.ask(f"usermove {move}\nping 1", "pong")
        for line in lines:
            if line.startswith("Illegal"):
                raise RuntimeError(line)
            if found := re.match(r"(1-0|0-1|1/2-1/2) ", line):
                return found[1]
        return None


def openings():
    """The first plies of the lines of the default book, each once, in coordinates."""
    run = subprocess.run([GAMES + "pgn-extract", "-s", "--quiet", "-Wlalg", "--notags", "--nomovenumbers",
                          "--noresults", "-w9999", str(ROOT / "data" / "openings.txt")],
                         capture_output=True, text=True, check=False)
    lines = {tuple(re.sub("[+#]", "", line).split()[:OPENING_PLIES]) for line in run.stdout.splitlines() if line.strip()}
    return sorted(line for line in lines if len(line) == OPENING_PLIES)


def play_game(referee, players, opening):
    """The score of white: 1, 0.5 or 0."""
    for side in (referee, *players):
        side.new_game()
    moves = []
    while len(moves) < MOST_PLIES:
        ply = len(moves)
        moves.append(opening[ply] if ply < len(opening) else players[ply % 2].move(moves))
        if result := referee.play(moves[-1]):
            return {"1-0": 1, "0-1": 0}.get(result, 0.5)
    return 0.5


def play_share(first, second, lines):
    """The scores of the first player in two games from each opening."""
    referee, one, two = Referee(), Player(first), Player(second)
    scores = []
    for line in lines:
        scores.append(play_game(referee, (one, two), line))
        scores.append(1 - play_game(referee, (two, one), line))
    for engine in (referee, one, two):
        engine.send("quit")
        engine.process.wait()
    return scores


def elo(score):
    """The difference that a score corresponds to."""
    score = min(max(score, 0.001), 0.999)
    return -400 * math.log10(1 / score - 1)


def measure(first, second, games, jobs):
    """(games, wins, draws, losses, score, its standard error)"""
    lines = openings()
    random.Random(f"{first} {second}").shuffle(lines)
    lines = [lines[i % len(lines)] for i in range(games // 2)]
    with concurrent.futures.ThreadPoolExecutor(jobs) as pool:
        shares = pool.map(lambda job: play_share(first, second, lines[job::jobs]), range(jobs))
        scores = [score for share in shares for score in share]
    mean = sum(scores) / len(scores)
    error = math.sqrt(sum((s - mean) ** 2 for s in scores) / len(scores) / len(scores))
    return (len(scores), scores.count(1), scores.count(0.5), scores.count(0), mean, error)


def report(first, second, result):
    games, wins, draws, losses, mean, error = result
    print(f"{first} against {second}: {games} games, {wins} won, {draws} drawn, {losses} lost: "
          f"{100 * mean:.1f} % +- {100 * error:.1f}, Elo {elo(mean):+.0f} "
          f"({elo(mean - 1.96 * error):+.0f} to {elo(mean + 1.96 * error):+.0f})", flush=True)


def table(games, jobs):
    """All pairs of neighbours, and each level against stockfish's of the same rating."""
    rows = ["level,opponent,games,won,drawn,lost,score,error"]
    for level in LEVELS:
        opponents = [f"korvane:{level - 200}"] if level > LEVELS[0] else []
        opponents += [f"stockfish:{level}"] if level >= FIRST_OF_STOCKFISH else []
        for opponent in opponents:
            count = MORE_GAMES * games if level <= LAST_QUICK_LEVEL else games
            result = measure(f"korvane:{level}", opponent, count, jobs)
            report(f"korvane:{level}", opponent, result)
            rows.append(f"{level},{opponent}," + ",".join(map(str, result[:4])) +
                        f",{result[4]:.4f},{result[5]:.4f}")
    TABLE.write_text("\n".join(rows) + "\n")


def markdown():
    """The table for docs/levels.md."""
    print("| level | opponent | games | won, drawn, lost | score | Elo difference, 95 % |")
    print("|---|---|---|---|---|---|")
    for row in csv.DictReader(TABLE.open()):
        mean, error = float(row["score"]), float(row["error"])
        print(f"| {row['level']} | {row['opponent'].replace(':', ' ')} | {row['games']} |"
              f" {row['won']}, {row['drawn']}, {row['lost']} | {100 * mean:.1f} % ± {100 * error:.1f} |"
              f" {elo(mean):+.0f} ({elo(mean - 1.96 * error):+.0f} to {elo(mean + 1.96 * error):+.0f}) |")


def main():
    parser = argparse.ArgumentParser(description=__doc__,
                                     formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("players", nargs="*")
    parser.add_argument("--table", action="store_true")
    parser.add_argument("--markdown", action="store_true")
    parser.add_argument("--games", type=int, default=60)
    parser.add_argument("--jobs", type=int, default=2)
    args = parser.parse_args()
    if args.table and not args.players:
        table(args.games, args.jobs)
    elif args.markdown and not args.players:
        markdown()
    elif len(args.players) == 2:
        report(*args.players, measure(*args.players, args.games, args.jobs))
    else:
        parser.error("two players, --table or --markdown")
    return 0


if __name__ == "__main__":
    sys.exit(main())
