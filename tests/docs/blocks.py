"""The code blocks of a Markdown page, and what each of them promises.

  ```cpp        declarations; with a main() a whole program, which runs
  ```cpp run    statements, which run
  ```drvsh      commands of the shell, which run
  ```drvsh test the same with what they print among them, as drvsh --test compares it
  ```console    lines "$ COMMAND", each with what it prints under it; also an indented block
  ```text       what the block before it prints; a line "..." stands for any lines
  any other     only behind a mark: <!-- in FILE --> says that these lines stand in FILE in this
                order, <!-- not run: REASON --> that nobody can run it here

All C++ blocks of a page are one program, read from top to bottom: declarations stand before
everything else, all statements in one function. What runs and is not followed by a text block
prints nothing.
"""

import os
import pathlib
import re

TOP = pathlib.Path(__file__).resolve().parents[2]
FENCE = re.compile(r"^( {0,3})(```+|~~~+)\s*(.*?)\s*$")
MARK = re.compile(r"^<!--\s*(in|not run:)\s+(.*?)\s*-->$")
MAIN = re.compile(r"^int main\(", re.MULTILINE)


class Fault(Exception):
    """What is wrong with a page, and in which line."""

    def __init__(self, line, text):
        super().__init__(text)
        self.line = line
        self.text = text


class Block:
    """Lines of code, the line of the page that the first one stands in, and what they are."""

    def __init__(self, kind, line, lines):
        self.kind = kind  # as classify() says, or in, or not run
        self.line = line
        self.lines = lines
        self.argument = ""  # of a mark
        self.output = None  # the text block behind it

    @property
    def text(self):
        return "".join(line + "\n" for line in self.lines)

    def prints(self):
        return self.output.lines if self.output else []


def classify(info, line, lines):
    code = "\n".join(lines)
    if info == "cpp":
        return "program" if MAIN.search(code) else "declarations"
    if info == "cpp run":
        return "statements"
    if info == "drvsh test":
        return "transcript"
    if info in ("drvsh", "console", "text"):
        return info
    if info == "indented" and lines[0].startswith("$ "):
        return "console"
    raise Fault(line, "nobody runs this block (%s)" % (info or "without a language"))


def raw_blocks(lines):
    """Yields (info, number of the first line, lines) of each block, and of each mark."""
    at = 0
    blank = True
    while at < len(lines):
        fence = FENCE.match(lines[at])
        mark = MARK.match(lines[at])
        if fence:
            start = at
            at += 1
            while at < len(lines) and lines[at].strip() != fence.group(2):
                at += 1
            if at == len(lines):
                raise Fault(start + 1, "the block has no end")
            margin = len(fence.group(1))
            yield fence.group(3), start + 2, [line[margin:] for line in lines[start + 1 : at]]
        elif mark:
            yield "mark", at + 1, [mark.group(1), mark.group(2)]
        elif blank and lines[at].startswith("    "):
            start = at
            while at < len(lines) and (lines[at].startswith("    ") or not lines[at].strip()):
                at += 1
            code = [line[4:] for line in lines[start:at]]
            while not code[-1].strip():
                code.pop()
            yield "indented", start + 1, code
            at -= 1
        elif lines[at].strip():
            yield "prose", at + 1, []
        blank = at < len(lines) and not lines[at].strip()
        at += 1


def shown(path):
    """What a page is called: its path from the top folder."""
    return os.path.relpath(path, TOP)


def parse(path):
    """The blocks of the page, in its order; text blocks hang on what prints them."""
    with open(path, encoding="utf-8") as page:
        lines = page.read().split("\n")
    blocks = []
    mark = None
    runnable = None
    for info, line, code in raw_blocks(lines):
        if info == "prose":
            if mark:
                raise Fault(mark.line, "no block follows this mark")
            continue
        if info == "mark":
            mark = Block(code[0].rstrip(":"), line, [])
            mark.argument = code[1]
            continue
        if mark:
            mark.line, mark.lines = line, code
            blocks.append(mark)
            mark = runnable = None
            continue
        if not code:
            raise Fault(line, "the block is empty")
        block = Block(classify(info, line, code), line, code)
        if block.kind == "text":
            if not runnable:
                raise Fault(line, "no block before this one prints it")
            runnable.output = block
            runnable = None
            continue
        runnable = block if block.kind in ("program", "statements", "drvsh") else None
        blocks.append(block)
    if mark:
        raise Fault(mark.line, "no block follows this mark")
    return blocks
