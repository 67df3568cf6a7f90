#!/usr/bin/env python3
"""make_program.py PAGE OUT.cpp: writes the C++ blocks of a page as one source.

Before what a block prints, the program writes the character 30 and the number of the block's line.
A page that check_page.py refuses makes a program without blocks.
"""

import pathlib
import re
import sys

sys.dont_write_bytecode = True  # leave nothing in the tree

import blocks

INCLUDE = re.compile(r"^\s*#\s*include\b")


def source(shown, parsed):
    includes, declarations, calls = [], [], []

    def add(where, block, lines):
        where.append('#line %d "%s"' % (block.line, shown))
        where.extend(lines)

    for block in parsed:
        if block.kind not in ("declarations", "program", "statements"):
            continue
        for number, line in enumerate(block.lines):
            if INCLUDE.match(line):
                includes += ['#line %d "%s"' % (block.line + number, shown), line]
        code = ["" if INCLUDE.match(line) else line for line in block.lines]
        if block.kind != "declarations":
            calls.append('pages::begin(%d);' % block.line)
        if block.kind == "statements":
            add(calls, block, code)
        else:
            add(declarations, block, code)
        if block.kind == "program":
            calls.append("if (main() != 0) return 1;")
    space = "page_" + re.sub(r"\W", "_", shown)
    return "\n".join(
        includes
        + ['#include "pages.h"', "namespace %s" % space, "{"]
        + declarations
        + ["static int run()", "{"]
        + calls
        + ["return 0;", "}", 'static const pages::Page page("%s", &run);' % shown, "}", ""]
    )


def main():
    page, out = sys.argv[1:]
    try:
        parsed = blocks.parse(page)
    except blocks.Fault:
        parsed = []
    pathlib.Path(out).write_text(source(blocks.shown(page), parsed), encoding="utf-8")


main()
