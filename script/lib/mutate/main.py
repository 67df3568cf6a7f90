"""Tries mutants of the library; see script/mutate."""

import argparse
import pathlib
import random
import sys
import time

from mutants import all_mutants
from workshop import HEADERS, NOT_COMPILED, Libraries, Templates

KINDS = ("caught", "survives", "same code", "no mutant")


def named(program):
    """The verdict when this program notices."""
    return ("no mutant" if program == NOT_COMPILED else "caught"), program


def judge_template(templates, path, changes):
    """(verdict, by what), or None when its own tests don't notice though the code differs."""
    with templates.changed(path, changes):
        program = templates.caught(path)
        if program is not None:
            return named(program)
        # Its own tests make more of a template than the libraries do.
        if templates.is_same(path):
            return "same code", ""
        program = templates.caught(path, "optimised")
        return None if program is None else named(program)


def judge_library(libraries, path, changes):
    with libraries.changed(path, changes):
        if not libraries.make():
            return named(NOT_COMPILED)
        program = libraries.caught_fast(path)
        if program is not None:
            return named(program)
        if libraries.is_same() and path not in HEADERS:
            return "same code", ""
        program = libraries.caught_fast(path, "optimised") or libraries.caught_slowly(path)
        return ("survives", "") if program is None else named(program)


def judge(libraries, templates, path, changes):
    """(verdict, by what)"""
    verdict = judge_template(templates, path, changes) if path in HEADERS else None
    return verdict or judge_library(libraries, path, changes)


def read_verdicts(results):
    verdicts = {}
    if results.exists():
        for line in results.read_text().splitlines():
            place, what, source, verdict, by = line.split("\t")
            verdicts[place, what, source] = verdict, by
    return verdicts


def summary(verdicts, seed, total):
    count = {kind: sum(1 for verdict, _ in verdicts.values() if verdict == kind) for kind in KINDS}
    judged = count["caught"] + count["survives"]
    for (place, what, source), (verdict, _) in sorted(verdicts.items()):
        if verdict == "survives":
            print(f"survives: {place}: {what}: {source}")
    share = 100 * count["caught"] / judged if judged else 0
    print(f"{judged} mutants of {total} places judged, {count['caught']} caught ({share:.1f} %),"
          f" {count['survives']} survive; {count['same code']} more change nothing in what the"
          f" compiler makes, {count['no mutant']} don't compile; seed {seed}")


def arguments():
    parser = argparse.ArgumentParser(prog="script/mutate")
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--sample", type=int)
    parser.add_argument("--seconds", type=float)
    parser.add_argument("--files", default=".")
    parser.add_argument("--jobs", type=int, default=1)
    parser.add_argument("--again", action="store_true")
    parser.add_argument("--tests", default="build/dev")
    parser.add_argument("--results", type=pathlib.Path, default="build/mutate/results.tsv")
    return parser.parse_args()


def main():
    options = arguments()
    mutants = all_mutants(options.files)
    random.Random(options.seed).shuffle(mutants)
    chosen = mutants[:options.sample]
    options.results.parent.mkdir(parents=True, exist_ok=True)
    libraries = Libraries(options.tests, options.jobs)
    templates = Templates(options.tests, options.jobs)
    program = libraries.caught_fast("") or libraries.caught_slowly("")
    for header in HEADERS:
        program = program or templates.caught(header)
    if program is not None:
        sys.exit(f"script/mutate: {program} fails without a mutant")

    verdicts = read_verdicts(options.results)
    mine = {}
    tried = 0
    began = time.monotonic()
    end = began + options.seconds if options.seconds else None
    for mutant in chosen:
        path, number, what, changes = mutant
        source = pathlib.Path(path).read_text().split("\n")[number].strip().replace("\t", " ")
        key = f"{path}:{number + 1}", what, source
        known = verdicts.get(key)
        if known is None or options.again and known[0] == "survives":
            if end is not None and time.monotonic() > end:
                break
            verdicts[key] = judge(libraries, templates, path, changes)
            tried += 1
            with options.results.open("a") as file:
                file.write("\t".join(key + verdicts[key]) + "\n")
        elif options.again:
            continue
        mine[key] = verdicts[key]
    summary(mine, options.seed, len(mutants))
    if tried:
        print(f"{tried} tried now, {(time.monotonic() - began) / tried:.1f} s each")


main()
