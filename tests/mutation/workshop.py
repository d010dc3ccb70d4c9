"""Builds the test programs once, then each changed source alone into a copy of them, and runs the tests."""
import json
import os
import re
import resource
import shlex
import shutil
import subprocess
import threading
from pathlib import Path

# These need most of the time. They notice nothing that the others do not notice, and are left out.
_LEFT_OUT = "DependencyChainTest.AVeryLong*:DependencyOrderTest.LoadingAndGathering*:VariantTextTest.ATextThatIsTooLong*"
# These run only for a change of the files that they are about, and only when the others did not notice it.
_SLOW = {
    "DependencyChainTest.*:DependencyOrderTest.TheAttemptsAre*": ("bundle/DependencyOrder.cc",),
    "MenuOrderTest.ThousandsOf*": ("bundle/DependencyOrder.cc", "menus/MenuGathering.cc"),
    "MenuRegistrationModelTest.*": ("menus/MenuRegistration.cc",),
    "LogFormatTest.AVeryLong*:LogFormatTest.EveryCodeUnit*": ("bundle/LogFormat.cc", "bundle/ErrorLog.cc"),
    "ModuleKindTest.Folding*": ("loading/ModuleKind.cc",),
    "*DeathTest.*": ("loading/ComponentLoaders.cc",),
}  # fmt: skip
_HEADERS = "algorithm csignal cstdio ctime functional map memory queue stdexcept string unordered_map unordered_set vector"
_MEBI = 1 << 20


def _limited(memory, seconds):
    def limit():
        resource.setrlimit(resource.RLIMIT_AS, (memory, memory))
        resource.setrlimit(resource.RLIMIT_CPU, (seconds, seconds))
        resource.setrlimit(resource.RLIMIT_CORE, (0, 0))

    return limit


class Workshop:
    def __init__(self, top, folder):
        self.top = top
        self.folder = folder
        self.build = folder / "build"
        self.build_lock = threading.Lock()  # of the shared library, which has one place that the tests know

    def prepare(self):
        """Builds everything unchanged, without optimisation, and reads how each part is made."""
        self.folder.mkdir(parents=True, exist_ok=True)
        configure = ["cmake", "-S", self.top, "-B", self.build, "-G", "Ninja", "-DCMAKE_BUILD_TYPE=",
                     "-DCMAKE_CXX_FLAGS=-O0 -w", "-DCMAKE_EXE_LINKER_FLAGS=-fuse-ld=gold",
                     "-DCMAKE_SHARED_LINKER_FLAGS=-fuse-ld=gold"]  # fmt: skip
        subprocess.run(configure, check=True, stdout=subprocess.DEVNULL)
        targets = ["kest_unit_tests", "kest_library_tests", "kestbundle"]
        subprocess.run(["cmake", "--build", self.build, "--target", *targets], check=True, stdout=subprocess.DEVNULL)

        self.compile = {}
        for entry in json.loads((self.build / "compile_commands.json").read_text()):
            command = shlex.split(entry["command"])
            if "kest_core.dir" in entry["command"]:
                path = str(Path(entry["file"]).resolve().relative_to(self.top))
                self.compile[path] = command[: command.index("-o")]
                self.compile[path] += [command[command.index("-o") + 1]]
        self.link_tests = self._link_command("kest_unit_tests")
        self.library = next((self.build / "lib").glob("libkestbundle.so.?.*"))
        self.link_library = self._link_command("kestbundle")
        headers = self.folder / "headers.h"
        headers.write_text("".join(f"#include <{name}>\n" for name in _HEADERS.split()))
        command = next(iter(self.compile.values()))[:-1]
        subprocess.run([*command, "-x", "c++-header", headers, "-o", f"{headers}.gch"], check=True, cwd=self.build)

    def _link_command(self, target):
        commands = subprocess.run(["ninja", "-C", self.build, "-t", "commands", target],
                                  check=True, capture_output=True, text=True).stdout  # fmt: skip
        return [line for line in commands.splitlines() if " -o " in line and " -c " not in line][-1]

    def sources_of(self, path):
        """The sources to compile when the file at `path` changes: itself, or those that include the header."""
        if path in self.compile:
            return [path]
        including, changed = {path}, True
        while changed:
            changed = False
            for file in [f for d in ("bundle", "manifest", "loading", "menus") for f in (self.top / d).glob("*.*")]:
                name = str(file.relative_to(self.top))
                includes = set(re.findall(r'#include "([^"]+)"', file.read_text()))
                if name not in including and includes & including:
                    including.add(name)
                    changed = True
        return sorted(including & set(self.compile))

    def judge(self, worker, path, text):
        """What becomes of the product when the file at `path` holds `text`: "not compiled", "noticed: BY" or "unnoticed"."""
        place = self.folder / f"worker{worker}"
        shutil.rmtree(place, ignore_errors=True)
        changed = place / "source" / path
        changed.parent.mkdir(parents=True)
        changed.write_text(text)
        replaced = {}
        for source in self.sources_of(path):
            command = list(self.compile[source])
            made = place / (source.replace("/", "_") + ".o")
            replaced[command.pop()] = str(made)
            if source != path:  # its includes find the changed header first
                shutil.copy(self.top / source, place / "source" / Path(source).name)
                source = Path(source).name
            command += ["-include", str(self.folder / "headers.h"), "-iquote", str(place / "source")]
            command += ["-c", str(place / "source" / source), "-o", str(made)]
            if self._run(command, _limited(4096 * _MEBI, 300)) != 0:
                return "not compiled"
        tests = place / "kest_unit_tests"
        if self._link(self.link_tests, replaced, {"-o bin/kest_unit_tests": f"-o {tests}"}) != 0:
            return "not compiled"
        if self._tests([tests, f"--gtest_filter=-{_LEFT_OUT}:{':'.join(_SLOW)}"], 1024 * _MEBI, 5) != 0:
            return "noticed"
        slow = ":".join(pattern for pattern, paths in _SLOW.items() if path in paths)
        if slow and self._tests([tests, f"--gtest_filter={slow}-{_LEFT_OUT}"], 1024 * _MEBI, 120) != 0:
            return "noticed by slow tests"
        with self.build_lock:
            return self._judge_library(place, replaced)

    def _judge_library(self, place, replaced):
        kept = place / "unchanged.so"
        shutil.copy(self.library, kept)
        try:
            if self._link(self.link_library, replaced, {}) != 0:
                return "noticed by the linker"
            if self._tests([self.build / "bin/kest_library_tests"], 1024 * _MEBI, 60) != 0:
                return "noticed by the library's tests"
        finally:
            kept.replace(self.library)
        return "unnoticed"

    def _link(self, command, objects, others):
        for old, new in {**objects, **others}.items():
            assert old in command, old
            command = command.replace(old, new)
        return self._run(["bash", "-c", command], _limited(4096 * _MEBI, 300))

    def _tests(self, command, memory, seconds):
        return self._run([*map(str, command), "--gtest_fail_fast", "--gtest_brief=1"], _limited(memory, seconds))

    def _run(self, command, limit):
        """The exit status. What takes too much of the processor's time fails, and what sleeps for long."""
        process = subprocess.Popen(command, cwd=self.build, preexec_fn=limit, start_new_session=True,
                                   stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)  # fmt: skip
        try:
            return process.wait(timeout=1200)
        except subprocess.TimeoutExpired:
            os.killpg(process.pid, 9)
            return process.wait()
