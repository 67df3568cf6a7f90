"""What can be made wrong in a source: one operator, constant, condition, order or call at a time."""

import pathlib
import re

SOURCES = ["src/**/*.cpp", "src/**/*.h", "include/drvrepo/ObserverContainer.h",
           "include/drvrepo/ObserverDelegate.h", "include/drvrepo/ObserverEvent.h",
           "include/drvrepo/CDriverRepository.h", "include/drvrepo/EntryRoom.h", "utility/src/*.cpp",
           "utility/include/utility/TOVA_*.h", "utility/include/utility/TYPtr.h"]

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


def replaced(line, code):
    """What can be replaced in a line: (what is done, the new line)."""
    for pattern, replacement in REPLACEMENTS:
        for found in re.finditer(pattern, code):
            if callable(replacement): # it shall see the line with its literals
                found = re.compile(pattern).match(line, found.start())
                if found is None:
                    continue
            new = replacement(found) if callable(replacement) else replacement
            yield f"'{found.group().strip()}' becomes '{new.strip()}' at column {found.start() + 1}", \
                line[:found.start()] + new + line[found.end():]


def is_statement(code):
    return STATEMENT.match(code) and not DECLARATION.match(code) and \
        not code.endswith(("= default;", "= delete;"))


def mutants_of(path, text):
    """All mutants of a file: (line number, what is done, new lines by number)."""
    lines = text.split("\n")
    code = [blank_out(line) for line in lines]
    for number, line in enumerate(code):
        if line.lstrip().startswith("#") or not line.strip():
            continue
        for what, changed in replaced(lines[number], line):
            yield number, what, {number: changed}
        if is_statement(line):
            yield number, "left out", {number: ""}
            after = code[number + 1] if number + 1 < len(code) else ""
            declares = path.suffix == ".h" # where most such lines are declarations
            if not declares and is_statement(after):
                yield number, "changes places with the next line", \
                    {number: lines[number + 1], number + 1: lines[number]}


def all_mutants(pattern):
    """The mutants of all files whose path matches: (path, line number, what is done, new lines)."""
    mutants = []
    for glob in SOURCES:
        for path in sorted(pathlib.Path().glob(glob)):
            if re.search(pattern, str(path)):
                for number, what, changes in mutants_of(path, path.read_text()):
                    mutants.append((str(path), number, what, changes))
    return mutants
