"""Where mutants are made and judged: copies of the tree, and builds of them."""

import contextlib
import hashlib
import os
import pathlib
import resource
import shutil
import signal
import subprocess
import sys

WORK = pathlib.Path("build/mutate")
# The templates: each is judged by its own tests first, built with it.
HEADERS = [f"utility/include/utility/{name}.h"
           for name in ("TOVA_HashTable", "TOVA_List", "TOVA_UUID", "TOVA_Vector", "TYPtr")] + \
          [f"include/drvrepo/{name}.h"
           for name in ("ObserverContainer", "ObserverDelegate", "ObserverEvent")]
# Programs of tests, each run to its first failure, with what of them is left out. The fastest first,
# but for the one of the mutant's folder.
FAST = {"utility_memory": "", "driver": "", "driver_memory": "", "foundation": "",
        "foundation_memory": "", "failure_memory": "", "channelgroup": "",
        "channelgroup_memory": "", "utility": "", "repository_memory": "", "repository": ""}
# For mutants that survive these: random calls compared with a model, every call-out that throws,
# but not the depth of the stack, for which the copy isn't optimised enough. They say little of what
# lies below observers.
SLOW = {"helpers": "", "helpers_memory": "", "failure": "*Depth*", "model": ""}
BELOW = ("utility/", "src/driver/", "src/foundation/")
CPU_SECONDS = 6 # the slowest of the first takes one
SLOW_SECONDS = 120
BYTES = 1 << 30
NOT_COMPILED = "doesn't compile"


def run(command, seconds, limits=None, **more):
    """The exit status, None when it took too long. What it started is ended with it."""
    process = subprocess.Popen(command, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                               stderr=subprocess.DEVNULL, start_new_session=True,
                               preexec_fn=limits, **more)
    try:
        return process.wait(seconds)
    except subprocess.TimeoutExpired:
        return None
    finally:
        try:
            os.killpg(process.pid, signal.SIGKILL)
        except ProcessLookupError:
            pass
        process.wait()


def limits(cpu):
    """A mutant may compute, or ask for memory, without end."""
    def set_limits():
        resource.setrlimit(resource.RLIMIT_CPU, (cpu, cpu))
        resource.setrlimit(resource.RLIMIT_AS, (BYTES, BYTES))
        resource.setrlimit(resource.RLIMIT_CORE, (0, 0))
    return set_limits


def passes(program, seconds, library_path, *arguments):
    """Whether a program of tests passes with the libraries of that folder."""
    command = [str(program.resolve()), "--gtest_fail_fast", "--gtest_brief=1", *arguments]
    environment = dict(os.environ, LD_LIBRARY_PATH=str(library_path))
    return run(command, 4 * seconds, limits(seconds), env=environment, cwd=WORK) == 0


def copy_if_new(source, target):
    """Leaves what is the same already, so that it isn't built again."""
    source, target = pathlib.Path(source), pathlib.Path(target)
    if not target.exists() or source.read_bytes() != target.read_bytes():
        shutil.copyfile(source, target)


def mirror(source, target):
    """Makes a folder the same as another."""
    for file in target.rglob("*"):
        if file.is_file() and not (source / file.relative_to(target)).exists():
            file.unlink()
    shutil.copytree(source, target, copy_function=copy_if_new, dirs_exist_ok=True)


class Workshop:
    """A copy of the tree with two builds: one that is soon there, and one as it is delivered, for
    what survives in the first."""

    def __init__(self, project, compiler, jobs, **definitions):
        """`project` names the folder of the build's CMakeLists.txt."""
        self.tree = WORK / project / "tree"
        self.jobs = jobs
        for part in ("src", "include", "utility", "cmake", "tests"):
            mirror(pathlib.Path(part), self.tree / part)
        copy_if_new("CMakeLists.txt", self.tree / "CMakeLists.txt")
        defined = [f"-D{key}={value}" for key, value in definitions.items()]
        for name, option in ("judged", "-O0"), ("optimised", "-O2"):
            command = ["cmake", "-G", "Ninja", "-S", f"script/lib/mutate/{project}",
                       "-B", str(self.folder(name)), f"-DTREE={self.tree.resolve()}",
                       f"-DCMAKE_CXX_COMPILER={compiler}", f"-DCMAKE_CXX_FLAGS={option} -w",
                       "-DDRVREPO_INSTALL=OFF", *defined]
            if run(command, 120) != 0 or not self.build(name, "all"):
                sys.exit(f"script/mutate: the {project} don't build as they are")

    def folder(self, name="judged"):
        return self.tree.parent / name

    def build(self, name, target):
        """Whether the target builds."""
        command = ["ninja", "-C", str(self.folder(name)), "-j", str(self.jobs), target]
        return run(command, 600) == 0

    def digests(self, target, pattern):
        """What the optimising compiler makes of the copy, None when it doesn't compile."""
        if not self.build("optimised", target):
            return None
        return [hashlib.sha256(file.read_bytes()).hexdigest()
                for file in sorted(self.folder("optimised").glob(pattern))]

    @contextlib.contextmanager
    def changed(self, path, changes):
        """The copy has these lines instead of its own within the block."""
        file = self.tree / path
        original = file.read_text()
        lines = original.split("\n")
        for number, line in changes.items():
            lines[number] = line
        file.write_text("\n".join(lines))
        try:
            yield
        finally:
            file.write_text(original)


class Libraries(Workshop):
    """Mutants of the libraries, judged by programs that link them."""

    def __init__(self, tests, jobs):
        super().__init__("libraries", "g++", jobs)
        self.programs = pathlib.Path(tests) / "bin"
        self.unchanged = self.code()

    def make(self):
        return self.build("judged", "drvrepo")

    def code(self):
        return self.digests("drvrepo", "lib/lib*.so.1.*")

    def is_same(self):
        return self.code() == self.unchanged

    def failing(self, programs, names, seconds, build="judged"):
        """The first of the programs that fails with the libraries as they are now, or None."""
        library_path = (self.folder(build) / "lib").resolve()
        for name in names:
            program = self.programs / f"test_{name}"
            if not passes(program, seconds, library_path, f"--gtest_filter=-{programs[name]}"):
                return program.name
        return None

    def caught_fast(self, path, build="judged"):
        nearest = pathlib.Path(path).parent.name
        names = sorted(FAST, key=lambda name: not name.startswith(nearest))
        return self.failing(FAST, names, CPU_SECONDS, build)

    def caught_slowly(self, path):
        return self.failing(SLOW, [] if path.startswith(BELOW) else SLOW, SLOW_SECONDS)


class Templates(Workshop):
    """Mutants of templates, judged by the tests that are built with them."""

    def __init__(self, tests, jobs):
        self.libraries = (pathlib.Path(tests) / "lib").resolve()
        super().__init__("templates", "clang++", jobs, HEADERS=";".join(HEADERS), LIBRARIES=self.libraries)
        self.unchanged = {header: self.code(header) for header in HEADERS}

    @staticmethod
    def programs(path):
        name = f"own_{pathlib.Path(path).stem}"
        return [name, f"{name}_memory"]

    def code(self, path):
        """As Libraries.code."""
        return [self.digests(name, f"bin/{name}") for name in self.programs(path)]

    def is_same(self, path):
        return self.code(path) == self.unchanged[path]

    def caught(self, path, build="judged"):
        """The program that fails, or doesn't compile, with the template as it is now, or None."""
        for name in self.programs(path):
            if not self.build(build, name):
                return NOT_COMPILED
            if not passes(self.folder(build) / "bin" / name, CPU_SECONDS, self.libraries):
                return name
        return None
