#!/usr/bin/python3
"""Turns the results of bcast_bench into the tables and pictures of a page.

    report.py [--partial] [--command TEXT] RESULTS.csv PAGE.md

rewrites what stands between <!-- begin NAME --> and <!-- end NAME --> in the page, and the pictures beside it, and prints
the tables. A figure that the results do not have is an error, and the page stays as it was; with --partial it is a dash.
"""

import argparse
import collections
import csv
import os
import re
import sys
import textwrap

HERE = os.path.dirname(os.path.abspath(__file__))
PEERS = os.path.join(HERE, "peers.csv")

Series = collections.namedtuple("Series", "cast rows nulls unfit sel growth x")
Peer = collections.namedtuple("Peer", "cast pair figures")  # figures: by column name, None if not measured

BATCHES = (4096, 65535)
NULLS = (0, 10, 50)

# The targets.
OVER_MEMCPY = 1.5
OVER_BARE = 1.25
FASTER_THAN_DUCKDB = {0: 2.5, 10: 5}
FASTER_WITH_TEXT = 2
FASTER_TO_DATE = 1.5

# The fixed-width casts of the table; the others are in the worst ratios.
FIXED_WIDTH = ("int_to_int", "int_to_smallint", "int_to_int64", "int64_to_int", "int64_to_double", "int_to_boolean",
               "float_to_double", "float_to_int", "date_to_datetime")


def fail(message):
    sys.exit(f"report.py: {message}")


# ---- Reading.

def comma_separated(path, columns):
    """The lines that begin with #, and the rows of the others, each with its line number."""
    try:
        with open(path, encoding="utf-8", newline="") as file:
            lines = file.read().splitlines()
    except (OSError, UnicodeDecodeError) as error:
        fail(f"cannot read {path}: {error}")
    comments = [line[1:].strip() for line in lines if line.startswith("#")]
    try:
        rows = [(at, next(csv.reader([line]))) for at, line in enumerate(lines, 1) if line and not line.startswith("#")]
    except csv.Error as error:
        fail(f"{path}: {error}")
    if not rows or rows[0][1] != columns:
        fail(f"{path}: the first line of the table must be {','.join(columns)}")
    for at, row in rows[1:]:
        if len(row) != len(columns):
            fail(f"{path}, line {at}: {len(row)} fields in place of {len(columns)}")
    if len(rows) == 1:
        fail(f"{path}: the table is empty")
    return comments, [(at, dict(zip(columns, row))) for at, row in rows[1:]]


def number(path, line, column, text, kind=float):
    try:
        value = kind(text)
    except ValueError:
        fail(f"{path}, line {line}: {column} is no number: {text!r}")
    if not 0 <= value < float("inf") or (column == "ns" and value == 0):
        fail(f"{path}, line {line}: {column} cannot be {text}")
    return value


class Results:
    def __init__(self, path, partial):
        comments, rows = comma_separated(path, ["cast", "rows", "nulls", "unfit", "sel", "growth", "x", "variant", "ns"])
        self.about = dict(comment.split(": ", 1) for comment in comments if ": " in comment)
        for key in ("date", "processor", "cores", "system", "compiler", "duckdb"):
            if key not in self.about:
                fail(f"{path}: no line begins with # {key}:")
        self.ns = collections.defaultdict(dict)  # by series, then by variant
        self.missing = []
        for line, row in rows:
            s = Series(row["cast"], *(number(path, line, key, row[key], int) for key in ("rows", "nulls", "unfit")),
                       row["sel"], row["growth"], row["x"])
            if s.growth and s.growth != "selection":
                number(path, line, "x", s.x)
            if row["variant"] in self.ns[s]:
                fail(f"{path}, line {line}: a second figure for {s.cast}, {row['variant']}")
            self.ns[s][row["variant"]] = number(path, line, "ns", row["ns"])
        self.batches = [rows for rows in BATCHES if not partial or any(s.rows == rows and not s.growth for s in self.ns)]

    def get(self, variant, cast, nulls=0, rows=4096, sel="none", unfit=0):
        """A figure that the report cannot do without, or None when it is missing."""
        ns = self.ns.get(Series(cast, rows, nulls, unfit, sel, "", ""), {}).get(variant)
        if ns is None:
            what = f"{cast}/rows:{rows}/nulls:{nulls}{'u' if unfit else ''}/sel:{sel}/{variant}"
            if what not in self.missing:
                self.missing.append(what)
        return ns

    def casts_with(self, *variants):
        """The casts that have such variants, in the order of the file."""
        casts = collections.defaultdict(set)
        for s, ns in self.ns.items():
            if not s.growth:
                casts[s.cast].update(ns)
        return [cast for cast, found in casts.items() if found.issuperset(variants)]

    def worst(self, beside, cast, nulls, **where):
        """The worst ratio of a cast to its limit over null shares and batch sizes, with what it was measured on."""
        found = []
        for rows in self.batches:
            for share in nulls:
                ratio = over(self.get("cast", cast, share, rows, **where), self.get(beside, cast, share, rows, **where))
                if ratio:
                    found.append((ratio, cast, share, rows))
        return max(found, default=None)


def read_peers():
    columns = [f"{engine}_{nulls}" for engine in ("duckdb", "arrow4096", "arrow65535") for nulls in (0, 10)]
    _, rows = comma_separated(PEERS, ["cast", "pair"] + columns)
    return [Peer(row["cast"], row["pair"],
                 {c: number(PEERS, line, "ns", row[c]) if row[c] else None for c in columns})
            for line, row in rows]


# ---- Figures in text.

def over(a, b):
    return a / b if a and b else None


def at_most(ratio, limit):
    return round(ratio, 2) <= limit  # as it is printed


def ns_text(ns):
    if ns is None:
        return "–"
    return f"{ns:.3f}" if ns < 1 else f"{ns:.2f}" if ns < 10 else f"{ns:.1f}"


def ratio_text(ratio):
    return "–" if ratio is None else f"{ratio:.2f}"


def times_text(ratio):
    return "–" if ratio is None else f"{ratio:.1f}"


def met_text(met):
    return {True: "yes", False: "**no**", None: "–"}[met]


def table(heads, rows):
    return "\n".join("| " + " | ".join(row) + " |" for row in [heads, ["---"] * len(heads), *rows])


def where_text(worst):
    """'1.53 (`float_to_int`, 10 % nulls, 4096 rows)'"""
    if worst is None:
        return "–"
    ratio, cast, nulls, rows = worst
    return f"{ratio:.2f} (`{cast}`, {nulls} % nulls, {rows} rows)"


# ---- The blocks of the page. Each takes the results and gives its text.

def run_block(results, command):
    about = results.about
    text = f"""All figures are ns per row of output, one thread, on {about['cores']} virtual cores of an {about['processor']};
        {about['system']}, {about['compiler']}, Release; {about['date']}. All but the recorded figures of other engines come
        from one run of"""
    return textwrap.fill(" ".join(text.split()), 128) + f"\n\n    {command}"


def fixed_width_block(results, peers):
    rows = []
    for cast in FIXED_WIDTH:
        peer = peers.get(cast)
        measured = {(s.nulls, s.sel, s.unfit) for s in results.ns if s.cast == cast and not s.growth}
        wanted = [where for where in ((10, "none", 1), (10, "sorted", 0), (10, "random", 0)) if where in measured]
        has_plain = cast in results.casts_with("plain")
        for nulls, sel, bad in [(n, "none", 0) for n in NULLS] + wanted:
            def get(variant):
                return results.get(variant, cast, nulls, sel=sel, unfit=bad)
            ns, memcpy, plain = get("cast"), get("memcpy"), get("plain") if has_plain else None
            duckdb, arrow = ((peer.figures.get(f"{engine}_{nulls}") for engine in ("duckdb", "arrow65535"))
                             if peer and sel == "none" and not bad else (None, None))
            rows.append([f"`{cast}`", f"{nulls} %" + (", unfit" if bad else ""), sel, ns_text(ns), ns_text(memcpy),
                         ratio_text(over(ns, memcpy)), ns_text(plain), times_text(over(plain, ns)), ns_text(duckdb),
                         times_text(over(duckdb, ns)), ns_text(arrow), times_text(over(arrow, ns))])
    return table(["Cast", "Nulls", "Selection", "ns per row", "`memcpy`", "cast ÷ `memcpy`", "plain", "plain ÷ cast",
                  "DuckDB", "DuckDB ÷ cast", "Arrow", "Arrow ÷ cast"], rows)


def worst_block(results):
    plain = results.casts_with("cast", "memcpy", "plain")
    copies = [cast for cast in results.casts_with("cast", "memcpy") if cast not in plain]
    refusing = [cast for cast in plain if any(s.cast == cast and s.unfit for s in results.ns)]

    def worst(casts, nulls, **where):
        return where_text(max(filter(None, (results.worst("memcpy", cast, nulls, **where) for cast in casts)), default=None))

    def unfit():
        ratios = [(over(results.get("cast", cast, n, unfit=1), results.get("memcpy", cast, n, unfit=1)), cast, n, 4096)
                  for cast in refusing for n in (10, 50)]
        return where_text(max((r for r in ratios if r[0]), default=None))

    return f"""The worst ratios to `memcpy` of the {len(plain)} casts between integers, `boolean`, `bit`, `float` and `double` that call no
service, in batches of {" and ".join(map(str, results.batches))} rows:

""" + table(["Rows", "Worst ratio"], [
        ["no nulls", worst(plain, [0])],
        ["10 or 50 % nulls", worst(plain, [10, 50])],
        ["the same, with values that do not fit in the null slots", unfit()],
        ["a sorted selection of every other row", worst(plain, NULLS, sel="sorted")],
        ["a random selection of every other row", worst(plain, NULLS, sel="random")],
        [f"copies of temporal values ({', '.join(f'`{c}`' for c in copies)}), any nulls", worst(copies, NULLS)]])


def services_block(results):
    rows = []
    for cast in results.casts_with("cast", "bare"):
        row = [f"`{cast}`"]
        for nulls in NULLS:
            ns, bare = results.get("cast", cast, nulls), results.get("bare", cast, nulls)
            row += [ns_text(ns), ns_text(bare), ratio_text(over(ns, bare))]
        rows.append(row)
    return table(["Cast"] + [head for nulls in NULLS for head in (f"{nulls} %", "bare", "ratio")], rows)


def is_text(peer):
    return "varchar" in peer.pair or "hex" in peer.pair


def slowest(results, cast, nulls):
    """The worse of the two batch sizes."""
    return max(filter(None, (results.get("cast", cast, nulls, rows) for rows in results.batches)), default=None)


def beside_peer(results, peer, nulls):
    """What the cast takes, what it may take by its target (None: no target), and the better peer."""
    ns = slowest(results, peer.cast, nulls)
    duckdb, arrow = (peer.figures[f"{engine}_{nulls}"] for engine in ("duckdb", "arrow65535"))
    better = min(filter(None, (duckdb, arrow)), default=None)
    allowed = None
    if better and is_text(peer):
        allowed = better / (FASTER_TO_DATE if peer.pair == "varchar to date" else FASTER_WITH_TEXT)
    elif duckdb and peer.cast in results.casts_with("plain"):
        memcpy = [results.get("memcpy", peer.cast, nulls, rows) for rows in results.batches]
        allowed = max([duckdb / FASTER_THAN_DUCKDB[nulls]] + [OVER_MEMCPY * ns for ns in memcpy if ns])
    return ns, allowed, better


def peers_block(results, peers):
    rows = []
    for peer in peers.values():
        for nulls in (0, 10):
            ns, allowed, better = beside_peer(results, peer, nulls)
            if better is None:
                continue
            figures = [peer.figures[f"{engine}_{nulls}"] for engine in ("duckdb", "arrow4096", "arrow65535")]
            met = at_most(ns / allowed, 1) if ns and allowed else None
            rows.append([f"`{peer.cast}`", peer.pair, f"{nulls} %", ns_text(ns), *map(ns_text, figures),
                         times_text(over(figures[0], ns)), times_text(over(figures[2], ns)),
                         ns_text(allowed), met_text(met)])
    return table(["Cast", "Theirs", "Nulls", "ns per row", "DuckDB", "Arrow 4096", "Arrow 65535", "DuckDB ÷ cast",
                  "Arrow 65535 ÷ cast", "target", "met"], rows)


def queries_block(results, peers):
    measured = results.casts_with("duckdb_with_cast", "duckdb_without")
    if not measured:
        return "This run had no DuckDB: `bench/run --fetch-duckdb` has."
    rows = []
    for cast in measured:
        for nulls in (0, 10):
            with_cast, without = (results.get(variant, cast, nulls, 2048)
                                  for variant in ("duckdb_with_cast", "duckdb_without"))
            difference = with_cast - without if with_cast and without else None
            kernel = peers[cast].figures[f"duckdb_{nulls}"] if cast in peers else None
            rows.append([f"`{cast}`", f"{nulls} %", ns_text(results.get("cast", cast, nulls)), ns_text(with_cast),
                         ns_text(without), ns_text(difference), ns_text(kernel)])
    return f"DuckDB {results.about['duckdb']}:\n\n" + table(
        ["Cast", "Nulls", "ns per row", "DuckDB's query with the cast", "without", "difference", "recorded kernel"], rows)


def targets_block(results, peers):
    rows, misses = [], []

    def add(target, judged):
        """judged: for each case its name, ratio and whether it meets the target."""
        missed = sorted((case for case in judged if not case[2]), key=lambda case: case[1])
        rows.append([target, f"{len(judged) - len(missed)} of {len(judged)}"])
        if missed:
            misses.append(f"- {target}: " + ", ".join(f"{name} ({ratio:.2f})" for name, ratio, _ in missed))

    worst = filter(None, (results.worst("memcpy", cast, NULLS) for cast in results.casts_with("cast", "memcpy")))
    add(f"fixed-width casts, no selection, any nulls: at most {OVER_MEMCPY} times `memcpy`",
        [(f"`{cast}`", ratio, at_most(ratio, OVER_MEMCPY)) for ratio, cast, *_ in worst])

    def beside_peers(text):
        judged = []
        for peer in peers.values():
            for nulls in (0, 10):
                ns, allowed, better = beside_peer(results, peer, nulls)
                if ns and allowed and is_text(peer) == text:
                    figure = better if text else peer.figures[f"duckdb_{nulls}"]
                    judged.append((f"`{peer.cast}`, {nulls} % nulls", figure / ns, at_most(ns / allowed, 1)))
        return judged

    add(f"fixed-width casts: {FASTER_THAN_DUCKDB[0]} times as fast as DuckDB's kernels without nulls, {FASTER_THAN_DUCKDB[10]} "
        f"times with 10 %, or {OVER_MEMCPY} times `memcpy` where that is slower", beside_peers(text=False))
    worst = filter(None, (results.worst("bare", cast, [0]) for cast in results.casts_with("cast", "bare")))
    add(f"casts that call services, no nulls: at most {OVER_BARE} times the bare calls",
        [(f"`{cast}`", ratio, at_most(ratio, OVER_BARE)) for ratio, cast, *_ in worst])
    add(f"from and to text: {FASTER_WITH_TEXT} times as fast as the better of DuckDB and Arrow, text to date "
        f"{FASTER_TO_DATE} times", beside_peers(text=True))
    return table(["Target", "Met by"], rows) + ("\n\nMissed, with the ratio:\n\n" + "\n".join(misses) if misses else "")


# ---- Pictures.

BARS = {"libbcast": "#1b6ca8", "limit: memcpy, or the bare calls": "#9aa5b1", "plain loop": "#d9a441", "DuckDB": "#c0504d",
        "Arrow": "#6b8e4e"}
GROWTH = {"batch": "rows of a batch", "text": "bytes of a text", "nulls": "% of nulls", "selection": "selection"}


def pyplot():
    import matplotlib
    matplotlib.use("svg")
    # The same data give the same file; text stays text.
    matplotlib.rcParams.update({"svg.hashsalt": "bcast", "svg.fonttype": "none", "font.size": 8,
                                "axes.spines.top": False, "axes.spines.right": False, "axes.axisbelow": True,
                                "axes.grid": True, "grid.color": "#dddddd", "grid.linewidth": 0.5})
    from matplotlib import pyplot as plt
    return plt


def log_axis(axis, steps):
    from matplotlib import ticker
    axis.axes.set(**{axis.axis_name + "scale": "log"})
    axis.set_major_locator(ticker.LogLocator(subs=steps))
    axis.set_minor_locator(ticker.NullLocator())
    axis.set_major_formatter("{x:g}")


def save(plt, figure, path):
    figure.savefig(path, metadata={"Date": None}, bbox_inches="tight")
    plt.close(figure)


def bars_of(results, peer, cast, nulls, limit):
    figures = peer.figures if peer else {}
    plain = results.get("plain", cast, nulls) if limit == "memcpy" else None
    return [results.get("cast", cast, nulls), results.get(limit, cast, nulls), plain, figures.get(f"duckdb_{nulls}"),
            figures.get(f"arrow65535_{nulls}")]


def draw_kinds(plt, results, peers, path):
    """A cast, its limit, the plain loop, DuckDB and Arrow, as bars."""
    fixed = [cast for cast in FIXED_WIDTH if cast in results.casts_with("plain")]
    services = [peer.cast for peer in peers.values() if peer.cast not in fixed and "1 % bad" not in peer.cast]
    panels = [(f"Fixed width, {nulls} % nulls", fixed, nulls, "memcpy", (0.05, 5)) for nulls in (0, 10)]
    panels.append(("With services, no nulls", services, 0, "bare", (0.1, 200)))
    figure, all_axes = plt.subplots(1, 3, figsize=(13, 8))
    for axes, (title, casts, nulls, limit, span) in zip(all_axes, panels):
        height = 0.8 / (len(BARS) if limit == "memcpy" else len(BARS) - 1)
        for y, cast in enumerate(casts):
            drawn = [bar for bar in zip(BARS.values(), bars_of(results, peers.get(cast), cast, nulls, limit)) if bar[1]]
            for place, (colour, length) in enumerate(drawn):
                axes.barh(y - 0.4 + (place + 0.5) * height, length, height, color=colour)
        log_axis(axes.xaxis, (1, 2, 5) if limit == "memcpy" else (1,))
        axes.set_yticks(range(len(casts)), [cast.replace(", ", ",\n") for cast in casts])
        axes.set(title=title, xlabel="ns per row", xlim=span, ylim=(len(casts) - 0.5, -0.5))
        axes.grid(axis="y", visible=False)
    figure.legend(handles=[plt.Rectangle((0, 0), 1, 1, color=colour) for colour in BARS.values()], labels=list(BARS),
                  loc="upper center", ncols=len(BARS), bbox_to_anchor=(0.5, 1.03))
    figure.tight_layout()
    save(plt, figure, path)


def growth_lines(results, kind):
    """For each cast the points (x, ns), in the order of the file. The loop over the batches is taken off where it was
    measured."""
    lines = collections.defaultdict(list)
    for s, ns in results.ns.items():
        if s.growth == kind and "cast" in ns:
            lines[s.cast].append((s.x if kind == "selection" else float(s.x), ns["cast"] - ns.get("harness", 0)))
    return lines


def draw_growth(plt, results, path):
    """What a row costs by rows of a batch, bytes of text, share of nulls, and selection."""
    figure, all_axes = plt.subplots(2, 2, figsize=(12, 9))
    for axes, (kind, label) in zip(all_axes.flat, GROWTH.items()):
        lines = growth_lines(results, kind)
        for cast, points in lines.items():
            xs, ys = zip(*(points if kind == "selection" else sorted(points)))
            axes.plot(xs, ys, marker="o", markersize=3, linestyle="" if kind == "selection" else "-", label=cast)
        log_axis(axes.yaxis, (1, 2, 5))
        if kind in ("batch", "text"):
            log_axis(axes.xaxis, (1,))
        if lines:
            low, high = axes.get_ylim()
            axes.set_ylim(low, max(high, 10 * low))  # else small differences look large
            axes.legend(fontsize=7)
        axes.set(xlabel=label, ylabel="ns per row")
    figure.tight_layout()
    save(plt, figure, path)


# ---- The page.

def with_blocks(path, page, blocks):
    for name, text in blocks.items():
        begin, end = f"<!-- begin {name} -->", f"<!-- end {name} -->"
        if page.count(begin) != 1 or page.count(end) != 1 or page.index(begin) > page.index(end):
            fail(f"{path}: must have {begin} and then {end}, each once")
        page = page[:page.index(begin) + len(begin)] + "\n" + text + "\n" + page[page.index(end):]
    for name in re.findall(r"<!-- begin (.*?) -->", page):
        if name not in blocks:
            fail(f"{path}: there is no block of the name {name}")
    return page


def report_missing(missing, args):
    if not missing:
        return
    shown = 20
    lines = [f"{args.results} lacks {len(missing)} figures:"] + missing[:shown]
    if len(missing) > shown:
        lines.append(f"and {len(missing) - shown} more")
    if not args.partial:
        fail("\n    ".join(lines) + f"\n{args.page} was left as it was; --partial puts dashes in their places")
    print("\n    ".join(lines), file=sys.stderr)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("results", metavar="RESULTS.csv")
    parser.add_argument("page", metavar="PAGE.md")
    parser.add_argument("--partial", action="store_true", help="a dash for what the results do not have")
    parser.add_argument("--command", default="bench/run", help="what the page says that it was made by")
    args = parser.parse_args()

    results = Results(args.results, args.partial)
    peers = {peer.cast: peer for peer in read_peers()}
    blocks = {
        "run": run_block(results, args.command),
        "targets": targets_block(results, peers),
        "fixed-width": fixed_width_block(results, peers),
        "worst": worst_block(results),
        "services": services_block(results),
        "peers": peers_block(results, peers),
        "queries": queries_block(results, peers),
    }
    for kind in GROWTH:
        if not growth_lines(results, kind):
            results.missing.append(f"any series with /growth:{kind}:")
    report_missing(results.missing, args)
    try:
        with open(args.page, encoding="utf-8") as file:
            page = with_blocks(args.page, file.read(), blocks)
        beside = os.path.dirname(os.path.abspath(args.page))
        plt = pyplot()
        draw_kinds(plt, results, peers, os.path.join(beside, "kinds.svg"))
        draw_growth(plt, results, os.path.join(beside, "growth.svg"))
        with open(args.page, "w", encoding="utf-8") as file:
            file.write(page)
    except OSError as error:
        fail(f"{error.filename}: {error.strerror}")
    print("\n\n".join(blocks.values()))
    print(f"\nWritten: {args.page}, and beside it kinds.svg and growth.svg")


if __name__ == "__main__":
    main()
