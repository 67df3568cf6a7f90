#!/usr/bin/env python3
"""check_page.py PAGE PROGRAM DRVSH: runs what a page shows, and compares what it shows of that.

PROGRAM runs the C++ blocks of a page; commands find DRVSH as drvsh and run in the top folder.
Prints PAGE:LINE: and the difference for each fault, the blocks that are not run with their
reasons, and how many were. Ends with 1 if there was a fault.
"""

import difflib
import os
import pathlib
import re
import subprocess
import sys
import tempfile

sys.dont_write_bytecode = True  # leave nothing in the tree

import blocks

LINK = re.compile(r"!?\[[^\]]*\]\(([^)\s]+)\)")


def matches(wanted, printed):
    """Whether lines are as wanted; a wanted "..." (indented or not) stands for any lines."""
    if not wanted:
        return not printed
    if wanted[0].strip() == "...":
        return any(matches(wanted[1:], printed[n:]) for n in range(len(printed) + 1))
    return bool(printed) and wanted[0] == printed[0] and matches(wanted[1:], printed[1:])


class Check:
    def __init__(self, page, program, folder):
        self.page = pathlib.Path(page)
        self.name = blocks.shown(page)
        self.program = program
        self.environment = dict(os.environ, PATH=folder + os.pathsep + os.environ["PATH"])
        self.faults = 0
        self.done = 0

    def fault(self, line, text):
        self.faults += 1
        print("%s:%d: %s" % (self.name, line, text))

    def compare(self, line, wanted, printed, status):
        self.done += 1
        if status != 0:
            self.fault(line, "ended with %d:\n%s" % (status, "\n".join(printed)))
        elif not matches(wanted, printed):
            difference = difflib.unified_diff(wanted, printed, "shown", "printed", lineterm="")
            self.fault(line, "prints something else:\n" + "\n".join(difference))

    def run(self, command, text=None):
        ended = subprocess.run(
            command,
            input=text,
            stdin=subprocess.DEVNULL if text is None else None,
            stdout=subprocess.PIPE,
            stderr=subprocess.STDOUT,
            encoding="utf-8",
            errors="replace",
            cwd=blocks.TOP,
            env=self.environment,
        )
        lines = ended.stdout.split("\n")  # splitlines() cuts at character 30, too
        return lines[:-1] if not lines[-1] else lines, ended.returncode

    def check_program(self, parts):
        if not parts:
            return
        lines, status = self.run([self.program, self.name])
        printed = {}
        for line in lines:
            if line.startswith("\036"):
                current = printed.setdefault(int(line[1:]), [])
            elif not printed:
                self.fault(1, "the program says: " + line)
                return
            else:
                current.append(line)
        if status != 0:
            self.fault(max(printed, default=1), "the program ended with %d here" % status)
        for block in parts:
            if block.line not in printed:
                self.fault(block.line, "the program never came here")
            else:
                self.compare(block.line, block.prints(), printed[block.line], 0)

    def check_console(self, block):
        at = 0
        while at < len(block.lines):
            line = block.line + at
            command = block.lines[at][2:]
            while command.endswith("\\") and at + 1 < len(block.lines):
                at += 1
                command += "\n" + block.lines[at]
            at += 1
            wanted = []
            while at < len(block.lines) and not block.lines[at].startswith("$ "):
                wanted.append(block.lines[at])
                at += 1
            while wanted and not wanted[-1]:
                wanted.pop()
            self.compare(line, wanted, *self.run(["bash", "-c", command]))

    def check_transcript(self, block):
        with tempfile.NamedTemporaryFile("w", suffix=".drv", encoding="utf-8") as script:
            script.write(block.text)
            script.flush()
            printed, status = self.run(["drvsh", "--test", script.name])
        self.compare(block.line, ["..."], printed, status)

    def check_in(self, block):
        self.done += 1
        there = iter((blocks.TOP / block.argument).read_text(encoding="utf-8").splitlines())
        for number, line in enumerate(block.lines, block.line):
            if line not in there:  # which also goes on behind it
                self.fault(number, "%s does not have this line, or not here" % block.argument)
                return

    def check_links(self):
        fenced = False
        for number, line in enumerate(self.page.read_text(encoding="utf-8").split("\n"), 1):
            fenced ^= line.lstrip().startswith("```")
            for target in [] if fenced else LINK.findall(re.sub("`[^`]*`", "", line)):
                if "://" not in target:
                    self.check_link(number, target)

    def check_link(self, number, target):
        path, _, anchor = target.partition("#")
        there = self.page.parent / path if path else self.page
        self.done += 1
        if not there.exists():
            self.fault(number, "there is no %s" % target)
        elif anchor and anchor not in headings(there):
            self.fault(number, "%s has no heading #%s" % (there.name, anchor))

    def check(self):
        parsed = blocks.parse(self.page)
        self.check_program([b for b in parsed if b.kind in ("program", "statements")])
        self.done += sum(b.kind == "declarations" for b in parsed)  # or PROGRAM had not compiled
        for block in parsed:
            if block.kind == "console":
                self.check_console(block)
            elif block.kind == "drvsh":
                self.compare(block.line, block.prints(), *self.run(["drvsh"], block.text))
            elif block.kind == "transcript":
                self.check_transcript(block)
            elif block.kind == "in":
                self.check_in(block)
            elif block.kind == "not run":
                print("%s:%d: not run: %s" % (self.name, block.line, block.argument))
        self.check_links()


def headings(path):
    """The anchors of a page's headings, as the hosts of repositories make them."""
    anchors = set()
    fenced = False
    for line in path.read_text(encoding="utf-8").split("\n"):
        fenced ^= line.lstrip().startswith("```")
        if not fenced and re.match(r"#{1,6} ", line):
            words = re.sub(r"[^\w\- ]", "", line.lstrip("#").strip().lower())
            anchors.add(words.replace(" ", "-"))
    return anchors


def main():
    page, program, drvsh = sys.argv[1:]
    with tempfile.TemporaryDirectory() as folder:
        os.symlink(os.path.abspath(drvsh), os.path.join(folder, "drvsh"))
        check = Check(page, os.path.abspath(program), folder)
        try:
            check.check()
        except blocks.Fault as fault:
            check.fault(fault.line, fault.text)
    print("%s: %d checked, %d faults" % (check.name, check.done, check.faults))
    sys.exit(1 if check.faults else 0)


main()
