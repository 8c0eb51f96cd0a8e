#!/usr/bin/env python3
"""Reports how a match that scripts/match played went: score, ends, faults, clocks, logs.

Reads XBoard's match.pgn and match.debug and Korvane's GameLog.pgn; exits with 1
when Korvane was at fault or fewer games were finished than asked for.
"""
import argparse
import collections
import os
import re
import subprocess
import sys

# What XBoard (or the engine whose claim it accepted) wrote behind the last
# move, first match wins.  The last column: does such an end put a blame on the loser?
ENDS = [
    ("illegal move", r"forfeit due to (illegal|invalid) move", True),
    ("false claim", r"false .*claim", True),
    ("crash", r"error writing to|exited unexpectedly|program exits", False),  # see read_debug
    ("flag fall", r"on time|flag fell|out of time", True),
    ("resignation", r"resign", False),
    ("stalemate", r"stalemate", False),
    ("mate", r"mate[sd]?\b|checkmate", False),
    ("repetition", r"repetition|3-fold|perpetual", False),
    ("50 moves", r"\b(50|75)|fifty", False),
    ("material", r"material|trivial", False),
    ("draw agreed", r"agree", False),
    ("other adjudication", r"adjudication", False),
]


def read(directory, name):
    """The lines of a file; none when it is not there."""
    path = os.path.join(directory, name)
    return open(path, errors="replace").read().splitlines() if os.path.exists(path) else []


def read_games(directory):
    """The games of XBoard's record: tags, result, the comment on the end, how long they were."""
    games = []
    text = "\n".join(read(directory, "match.pgn"))
    for part in re.split(r"^(?=\[Event )", text, flags=re.M):
        if not part.strip():
            continue
        tags = dict(re.findall(r'^\[(\w+) "(.*)"\]', part, re.M))
        end = re.search(r"^\{([^{}]*)\}\s+(1-0|0-1|1/2-1/2|\*)\s*\Z", part, re.M)
        comment = end.group(1).strip() if end else ""
        if re.match(r"[+-]?\d+\.\d+/\d+", comment):  # a score: the end has no comment
            comment = ""
        moves = re.sub(r"\{[^{}]*\}|^\[.*\]$", " ", part, flags=re.M).split()
        games.append({"tags": tags, "result": tags.get("Result", "*"), "comment": comment,
                      "mated": len(moves) > 1 and moves[-2].endswith("#"),
                      "plies": sum(not re.fullmatch(r"\d+\.*", move) for move in moves[:-1])})
    return games


def end_of(game):
    """The kind of the game's end, and whether it is a fault of the loser (or of both)."""
    if game["result"] == "*":
        return "unfinished", False
    for kind, pattern, fault in ENDS:
        if re.search(pattern, game["comment"], re.I):
            # XBoard lets an engine claim its own loss, so a claimed mate must be on the board.
            if kind == "mate" and not game["mated"] and "adjudication" not in game["comment"]:
                return "false claim", True
            return kind, fault
    return "claim accepted by XBoard" if game["comment"] else "no comment", False


def losers(game):
    """The side or sides that did not win: who is to blame when the end was a fault."""
    white, black = game["tags"].get("White"), game["tags"].get("Black")
    # A flag can fall in a draw, when the other side has a bare king.
    if winner := re.match(r"(White|Black) wins on time", game["comment"]):
        return [black if winner.group(1) == "White" else white]
    return {"1-0": [black], "0-1": [white]}.get(game["result"], [white, black])


def read_debug(directory):
    """From XBoard's debug file: Korvane's clock by game and move, crashes, the engines' names,
    the games of which Korvane heard the result in force mode, in which it logs nothing, and those
    whose end may have crossed with a move of its.

    A clock entry is (centiseconds left before the move, centiseconds used for it): XBoard
    sends "time" when it starts Korvane's clock, and stamps every line with milliseconds.
    """
    clocks, crashes, names, unlogged, crossed = collections.defaultdict(list), {}, {}, set(), set()
    number, left, started, forced, is_passed_on = 0, None, 0, False, True
    for line in read(directory, "match.debug") + read(directory, "xboard.log"):
        if found := re.match(r"New game \((\d+)\)", line):
            number, left = int(found[1]), None
        elif line == "Ignoring extra move from first":
            crossed.add(number)
        elif found := re.match(r"(?:GameEnds|xboard:).*Error(?: writing to|:) (first|second) chess program", line):
            crashes.setdefault(found[1], f"in or after game {number}: crash ({line})")
        elif found := re.match(r"(\d+) ([<>])(first|second) ?: ?(.*)", line):
            stamp, way, who, text = int(found[1]), found[2], found[3], found[4]
            if way == "<" and (name := re.search(r'\bmyname="([^"]*)"', text)):
                names[who] = name[1]
            if who == "second":
                is_passed_on = is_passed_on or way == ">"
                continue
            if way == "<" and text.startswith("move "):
                is_passed_on = False
            if way == ">" and text.startswith("result"):
                if left is not None or not is_passed_on:
                    crossed.add(number)  # by a flag that fell or a claim, before XBoard took up the move
                is_passed_on = True
            if way == ">" and re.match(r"(new|go|playother|force)\b", text):
                forced = text.startswith("force")
            if way == ">" and text.startswith("result") and forced:
                unlogged.add(number)
            if way == ">" and (time := re.match(r"time (-?\d+)", text)):
                left, started = int(time[1]), stamp
            elif left is not None and way == "<" and re.match(r"move \S", text):
                clocks[number].append((left, (stamp - started) / 10))
                left = None
            elif way == ">" and re.match(r"(result|new)\b", text):
                if left is not None and "on time" in text:  # the flag fell before the move came
                    clocks[number].append((left, left))
                left = None
    return clocks, crashes, names, unlogged, crossed


def read_speeds(directory):
    """Nodes per second of both sides over their last thinking lines of at least 0.1 s."""
    nodes, time, last = collections.Counter(), collections.Counter(), {}
    for line in read(directory, "match.debug"):
        found = re.match(r"\d+ <(first|second) ?: ?(.*)", line)
        if not found:
            continue
        who, text = found[1], found[2]
        if thought := re.match(r" *\d+ +-?\d+ +(\d+) +(\d+) +\S", text):
            last[who] = int(thought[1]), int(thought[2])
        elif text.startswith("move ") and who in last:
            centiseconds, count = last.pop(who)
            if centiseconds >= 10:
                nodes[who] += count
                time[who] += centiseconds
    return {who: 100 * nodes[who] / time[who] for who in time}


def long_algebraic(path):
    """pgn-extract's reading of a file: [(moves, result)] and its complaints."""
    run = subprocess.run(
        ["pgn-extract", "-s", "--quiet", "--keepbroken", "-Wlalg", "-7", "-C", "-N", "-V",
         "--nomovenumbers", "--noresults", "-w99999", path],
        capture_output=True, text=True, errors="replace", check=False)
    games = []
    for part in re.split(r"^(?=\[Event )", run.stdout, flags=re.M):
        if part.strip():
            result = re.search(r'^\[Result "(.*)"\]', part, re.M)
            moves = re.sub(r"^\[.*\]$", "", part, flags=re.M).split()
            games.append(([m for m in moves if m != "*"], result.group(1) if result else "none"))
    complaints = [line for line in run.stderr.splitlines() if line.strip()]
    if run.returncode != 0:
        complaints.append(f"pgn-extract ended with status {run.returncode}")
    return games, complaints


def report_clocks(clocks):
    """Prints how Korvane used its clock."""
    moves = [(left, used, number, move) for number in sorted(clocks)
             for move, (left, used) in enumerate(clocks[number], 1)]
    if not moves:
        print("  no moves with a clock in the debug file")
        return
    share = max(moves, key=lambda m: m[1] / max(m[0], 0.1))
    least = min(moves, key=lambda m: m[0] - m[1])
    number = min(clocks, key=lambda n: clocks[n][-1][0] - clocks[n][-1][1])
    print(f"  largest share of the remaining clock for one move: {100 * share[1] / max(share[0], 0.1):.1f}%"
          f" ({share[1] / 100:.2f} of {share[0] / 100:.2f} s, game {share[2]}, its move {share[3]})")
    print(f"  least time left after a move, increment not counted: {(least[0] - least[1]) / 100:.2f} s"
          f" (game {least[2]}, its move {least[3]})")
    print(f"  least time left after a game's last move: {(clocks[number][-1][0] - clocks[number][-1][1]) / 100:.2f} s"
          f" (game {number})")


def report_logs(directory, unlogged, crossed, must_exist):
    """Compares Korvane's GameLog.pgn with XBoard's record; returns the faults found."""
    path = os.path.join(directory, "korvane", "GameLog.pgn")
    if not os.path.exists(path):
        print("  there is no GameLog.pgn" + ("" if must_exist else " (only korvane writes one)"))
        return ["Korvane wrote no GameLog.pgn"] if must_exist else []
    record, objections = long_algebraic(os.path.join(directory, "match.pgn"))
    logged, complaints = long_algebraic(path)
    if objections:
        print("  pgn-extract objects to XBoard's own record:", *objections[:5], sep="\n    ")
    numbers = [n for n in range(1, len(record) + 1) if n not in unlogged]
    record = [record[n - 1] for n in numbers]
    pairs = list(zip(record, logged))
    equal = sum(a[0] == b[0] for a, b in pairs)
    results = sum(a[1] == b[1] for a, b in pairs)
    crossed = {n for n, (theirs, ours) in zip(numbers, pairs) if n in crossed and theirs[0] == ours[0][:-1]}
    if crossed:
        print(f"  logged with a move that crossed with the end of the game: {len(crossed)} games")
    if unlogged:
        print(f"  not to be logged, their results came in force mode: {len(unlogged)} games")
    print(f"  to be logged by XBoard's record: {len(record)} games, logged: {len(logged)};"
          f" in order, moves equal in {equal}, results in {results}")
    print(f"  pgn-extract read GameLog.pgn with {len(complaints)} lines of complaint")
    faults = ["pgn-extract on GameLog.pgn: " + "; ".join(complaints[:3])] if complaints else []
    if len(record) != len(logged):
        faults.append(f"GameLog.pgn holds {len(logged)} games, XBoard's record {len(record)}")
    for number, (theirs, ours) in zip(numbers, pairs):
        if theirs[0] != ours[0] and number not in crossed:
            faults.append(f"game {number}: GameLog.pgn has other moves ({len(ours[0])} half-moves,"
                          f" XBoard {len(theirs[0])})")
        if theirs[1] != ours[1]:
            faults.append(f"game {number}: GameLog.pgn has the result {ours[1]}, XBoard {theirs[1]}")
    return faults


def main():
    parser = argparse.ArgumentParser()
    for option in ("dir", "engine", "opponent", "setup", "ended"):
        parser.add_argument("--" + option, required=True)
    parser.add_argument("--games", type=int, required=True)
    args = parser.parse_args()
    me, other = args.engine, args.opponent
    games = read_games(args.dir)
    clocks, crashes, names, unlogged, crossed = read_debug(args.dir)

    faults = {me: [], other: []}
    for side, text in crashes.items():
        faults[me if side == "first" else other].append(text)
    score, ends = collections.Counter(), collections.Counter()
    comments = collections.defaultdict(collections.Counter)
    for number, game in enumerate(games, 1):
        kind, fault = end_of(game)
        ends[kind] += 1
        comments[kind][game["comment"] or "no comment"] += 1
        if game["result"] != "*":
            winner = {"1-0": "White", "0-1": "Black"}.get(game["result"])
            score["draws" if winner is None else "wins" if game["tags"][winner] == me else "losses"] += 1
        for side in losers(game) if fault else ():
            faults[side].append(f"game {number}: {kind} ({game['comment']})")

    print(f"{me} ({names.get('first', 'unnamed')}) against {other} ({names.get('second', 'unnamed')}), {args.setup}")
    print(args.ended)
    finished = sum(score.values())
    print(f"games asked for {args.games}, finished {finished}")
    print(f"score of {me}: {score['wins']} wins, {score['draws']} draws, {score['losses']} losses")
    colours = "".join("w" if g["tags"].get("White") == me else "b" for g in games)
    print(f"its colours, game by game: {colours}")
    wrong = 0
    # XBoard counts the moves of a record from 1, so the FENs' counters may differ.
    if fens := [" ".join(line.split()[:4]) for line in read(args.dir, "positions.fen")]:
        begun = [" ".join(g["tags"].get("FEN", "").split()[:4]) for g in games]
        wrong = sum(fen != fens[i // 2 % len(fens)] for i, fen in enumerate(begun))
        print(f"started from their position of the file: {len(games) - wrong} of {len(games)} games")
    print("\nhow the games ended")
    for kind, count in ends.most_common():
        print(f"  {count:3}  {kind:25}", ", ".join(f'{n} x "{c}"' for c, n in comments[kind].most_common()))
    print(f"\nclock of {me}")
    report_clocks(clocks)
    speeds = read_speeds(args.dir)
    if len(speeds) == 2:
        first, second = speeds["first"], speeds["second"]
        print(f"\nnodes per second: {me} {first / 1e6:.2f} million, {other} {second / 1e6:.2f} million,"
              f" ratio {first / second:.2f}")
    print(f"\nlogs of {me}")
    faults[me] += report_logs(args.dir, unlogged, crossed,
                              me.startswith("korvane") and not me.startswith("korvane-uci"))
    for side in (me, other):
        print(f"\nfaults of {side}: {len(faults[side]) or 'none'}")
        for fault in faults[side]:
            print("  " + fault)
    return 1 if faults[me] or finished < args.games or wrong else 0


if __name__ == "__main__":
    sys.exit(main())
