"""Tries mutants of the library; see script/mutate."""

import argparse
import os
import pathlib
import random
import re
import resource
import shutil
import subprocess
import sys
import time

WORK = pathlib.Path("build/mutate")
SOURCES = ["src/**/*.cpp", "src/**/*.h", "include/drvrepo/ObserverContainer.h",
           "include/drvrepo/ObserverDelegate.h", "include/drvrepo/ObserverEvent.h",
           "include/drvrepo/CDriverRepository.h", "utility/src/*.cpp",
           "utility/include/utility/TOVA_*.h", "utility/include/utility/TYPtr.h"]
# The fastest first; each is run to its first failure.
PROGRAMS = ["test_driver", "test_channelgroup", "test_foundation", "test_repository",
            "test_failure_memory", "test_failure"]
FILTERS = {"test_failure": "Exceptions.RepositoryIsAsAfterARefusal:Exceptions.Group*:Group*"}
TEST_SECONDS = 30
TEST_BYTES = 2 << 30

# What is replaced by what. Blanks around an operator tell it from a template's bracket.
REPLACEMENTS = [
    (r" == ", " != "), (r" != ", " == "),
    (r" < ", " <= "), (r" <= ", " < "), (r" > ", " >= "), (r" >= ", " > "),
    (r" && ", " || "), (r" \|\| ", " && "),
    (r" \+ ", " - "), (r" - ", " + "), (r" & ", " | "), (r" \| ", " & "),
    (r" << ", " >> "), (r"\+\+", "--"), (r"--", "++"), (r" \+= ", " -= "), (r" -= ", " += "),
    (r"(?<=[( ])!(?=[a-zA-Z(])", ""),
    (r"\btrue\b", "false"), (r"\bfalse\b", "true"),
    (r"(?<![\w.])0(?![\w.])", "1"), (r"(?<![\w.])1(?![\w.])", "0"),
    (r"(?<![\w.])(?:[2-9]|[1-9][0-9]+)(?![\w.])", lambda m: str(int(m.group()) + 1)),
    (r"\bif \((?!auto)(.*)\)(?=( \{)?$)", lambda m: f"if (!({m.group(1)}))"),
    (r"\bwhile \((.*)\)(?=( \{)?$)", lambda m: "while (false)"),
    (r"\bcontinue;", ";"), (r"\bbreak;", ";"),
]
# A statement of one line that is no declaration and no return.
STATEMENT = re.compile(r"^ +(?!return\b|using\b|const\b|static\b|struct\b|class\b|throw;|case\b|"
                       r"public|private|friend\b|default\b|else\b|virtual\b)"
                       r"(?:[\w:>*&.\[\]]|->|\(|\+\+|--)[^{}]*;$")
DECLARATION = re.compile(r"^ +(?:[\w:<>,]+[*&]*(?: const)?[*&]*) +[*&]*\w+(?:\(.*\)|\[.*\])?(?: = .*)?;$")


def blank_out(line):
    """The line with comments and literals replaced by as many blanks."""
    line = re.sub(r'"(?:\\.|[^"\\])*"|\'(?:\\.|[^\'\\])*\'', lambda m: "\0" * len(m.group()), line)
    comment = line.find("//")
    return line if comment < 0 else line[:comment] + "\0" * (len(line) - comment)


def mutants_of(path, text):
    """All mutants of a file: (line number, what is done, new lines by number)."""
    lines = text.split("\n")
    code = [blank_out(line) for line in lines]
    for number, line in enumerate(code):
        if line.lstrip().startswith("#") or not line.strip():
            continue
        for pattern, replacement in REPLACEMENTS:
            for found in re.finditer(pattern, line):
                if callable(replacement): # it shall see the line with its literals
                    found = re.compile(pattern).match(lines[number], found.start())
                    if found is None:
                        continue
                new = replacement(found) if callable(replacement) else replacement
                changed = lines[number][:found.start()] + new + lines[number][found.end():]
                yield number, f"'{found.group().strip()}' becomes '{new.strip()}'" \
                              f" at column {found.start() + 1}", {number: changed}
        if STATEMENT.match(line) and not DECLARATION.match(line):
            yield number, "left out", {number: ""}
            after = code[number + 1] if number + 1 < len(code) else ""
            declares = path.suffix == ".h" # where most such lines are declarations
            if not declares and STATEMENT.match(after) and not DECLARATION.match(after):
                yield number, "changes places with the next line", \
                    {number: lines[number + 1], number + 1: lines[number]}


def all_mutants(pattern):
    mutants = []
    for glob in SOURCES:
        for path in sorted(pathlib.Path().glob(glob)):
            if re.search(pattern, str(path)):
                text = path.read_text()
                for number, what, changes in mutants_of(path, text):
                    mutants.append((str(path), number, what, changes))
    return mutants


def run(command, seconds, **more):
    """Returns the exit status, or None when it took too long."""
    try:
        return subprocess.run(command, timeout=seconds, stdin=subprocess.DEVNULL,
                              stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                              **more).returncode
    except subprocess.TimeoutExpired:
        return None


def build():
    return run(["nice", "ninja", "-C", str(WORK / "build"), "drvrepo"], 600)


def prepare():
    """Makes the copy and builds it as it is."""
    tree = WORK / "tree"
    shutil.rmtree(tree, ignore_errors=True)
    for folder in ("src", "include", "utility", "cmake"):
        shutil.copytree(folder, tree / folder)
    shutil.copy("CMakeLists.txt", tree)
    off = [f"-DDRVREPO_{part}=OFF" for part in ("TESTS", "TOOLS", "EXAMPLES", "INSTALL")]
    status = run(["cmake", "-G", "Ninja", "-S", str(tree), "-B", str(WORK / "build"),
                  "-DCMAKE_CXX_COMPILER=g++", "-DCMAKE_CXX_FLAGS=-O1 -w", *off], 120)
    if status != 0 or build() != 0:
        sys.exit("script/mutate: the library doesn't build as it is")


def limit():
    """A mutant may ask for memory without end."""
    resource.setrlimit(resource.RLIMIT_AS, (TEST_BYTES, TEST_BYTES))


def caught_by(tests):
    """The program that fails with the library as it is now, or None."""
    environment = dict(os.environ, LD_LIBRARY_PATH=str((WORK / "build/lib").resolve()))
    for program in PROGRAMS:
        command = [str(pathlib.Path(tests) / "bin" / program), "--gtest_fail_fast",
                   "--gtest_brief=1"]
        if program in FILTERS:
            command.append("--gtest_filter=" + FILTERS[program])
        status = run(command, TEST_SECONDS, env=environment, cwd=str(WORK), preexec_fn=limit)
        if status != 0:
            return program + (" (too slow)" if status is None else "")
    return None


def judge(mutant, tests):
    path, _, _, changes = mutant
    file = WORK / "tree" / path
    original = file.read_text()
    lines = original.split("\n")
    for number, line in changes.items():
        lines[number] = line
    file.write_text("\n".join(lines))
    try:
        if build() != 0:
            return "no mutant", "doesn't compile"
        program = caught_by(tests)
        return ("survives", "") if program is None else ("caught", program)
    finally:
        file.write_text(original)


def read_verdicts(results):
    verdicts = {}
    if results.exists():
        for line in results.read_text().splitlines():
            place, what, source, verdict, by = line.split("\t")
            verdicts[place, what, source] = verdict, by
    return verdicts


def summary(verdicts, seed, total):
    count = {kind: sum(1 for verdict, _ in verdicts.values() if verdict == kind)
             for kind in ("caught", "survives", "no mutant")}
    judged = count["caught"] + count["survives"]
    for (place, what, source), (verdict, _) in sorted(verdicts.items()):
        if verdict == "survives":
            print(f"survives: {place}: {what}: {source}")
    share = 100 * count["caught"] / judged if judged else 0
    print(f"{judged} mutants of {total} places judged, {count['caught']} caught ({share:.1f} %),"
          f" {count['survives']} survive; {count['no mutant']} don't compile; seed {seed}")


def main():
    parser = argparse.ArgumentParser(prog="script/mutate")
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--sample", type=int)
    parser.add_argument("--seconds", type=float)
    parser.add_argument("--files", default=".")
    parser.add_argument("--tests", default="build/dev")
    parser.add_argument("--results", type=pathlib.Path, default=WORK / "results.tsv")
    options = parser.parse_args()

    end = time.monotonic() + options.seconds if options.seconds else None
    mutants = all_mutants(options.files)
    random.Random(options.seed).shuffle(mutants)
    chosen = mutants[:options.sample]
    WORK.mkdir(parents=True, exist_ok=True)
    prepare()
    program = caught_by(options.tests)
    if program is not None:
        sys.exit(f"script/mutate: {program} fails without a mutant")
    verdicts = read_verdicts(options.results)
    mine = {}
    for mutant in chosen:
        path, number, what, _ = mutant
        source = pathlib.Path(path).read_text().split("\n")[number].strip().replace("\t", " ")
        key = f"{path}:{number + 1}", what, source
        if key not in verdicts:
            if end is not None and time.monotonic() > end:
                break
            verdicts[key] = judge(mutant, options.tests)
            with options.results.open("a") as file:
                file.write("\t".join(key + verdicts[key]) + "\n")
        mine[key] = verdicts[key]
    summary(mine, options.seed, len(mutants))


main()
