"""The Python side of the engine that runs scripts in a host.

The C++ side gives this module three functions before it runs: host_print(bytes), host_register(bytes, int) -> int and
host_version() -> bytes. It calls boot() once, then load() and run_command(), and end() when the process ends.
"""

import atexit
import gc
import io
import linecache
import os
import resource
import site
import stat
import sys
import traceback
import types


class _ConsoleBytes(io.RawIOBase):
    """The host's console as a stream of bytes."""

    def writable(self):
        return True

    def write(self, data):
        host_print(bytes(data))
        return len(data)


def _console():
    return io.TextIOWrapper(_ConsoleBytes(), "utf-8", "backslashreplace", newline="\n", write_through=True)


def _nothing():
    return io.TextIOWrapper(io.BytesIO(), "utf-8")


def _print(text):
    """Prints text to the host's console as it stands; the caller supplies line ends."""
    if not isinstance(text, str):
        raise TypeError(f"kest.print: a str is expected, not {type(text).__name__}")
    host_print(text.encode("utf-8", "backslashreplace"))


def _host_version():
    """The host's version text."""
    return host_version().decode("utf-8", "replace")


def _register_command(name, function):
    """Registers function, which takes no arguments, as the host's command of this name; letter case does not matter.

    Returns whether the host accepts it: False for an empty name and for one that belongs to another component.
    """
    if not isinstance(name, str):
        raise TypeError(f"kest.register_command: a name of type str is expected, not {type(name).__name__}")
    if not callable(function):
        raise TypeError(f"kest.register_command: a function is expected, not {type(function).__name__}")
    number = len(_commands)
    if not host_register(name.encode("utf-8", "surrogateescape"), number):
        return False
    script = _running[-1] if _running else None
    _commands.append((function, script))
    if script is not None:
        # The same name again: the host has just let go of the command before. (In other letters it may still have
        # it: that is up to its locale.)
        earlier = script.numbers.get(name)
        if earlier is not None:
            _commands[earlier] = None
        script.numbers[name] = number
        script.new_numbers.append(number)
    return True


class _Script:
    """One script, which runs as a main program does: in a module "__main__", with its folder first in sys.path.

    What it imports from its folder is seen by the scripts of that folder alone, so that bundles may name their modules
    alike; a folder that a script itself adds to sys.path is shared with all.
    """

    def __init__(self, file):
        self.file = file
        self.folder = os.path.dirname(file)
        self.module = None
        self.modules_beside = _modules_beside.setdefault(self.folder, {})
        self.numbers = {}  # of its commands, by name
        self.new_numbers = []  # registered by the load that runs

    def begin(self):
        """Makes a new module to run in."""
        self.module = types.ModuleType("__main__")
        self.module.__dict__.update(__file__=self.file, __cached__=None, __builtins__=__builtins__, __annotations__={})
        self.new_numbers = []

    def enter(self):
        """Makes this script the main program; returns what leave() needs."""
        _mend()
        _take_streams()
        before = (sys.modules.get("__main__"), sys.argv, sys.getrecursionlimit())
        sys.modules["__main__"] = self.module
        sys.argv = [self.file]
        sys.path.insert(0, self.folder)
        hidden = {name: sys.modules[name] for name in self.modules_beside if name in sys.modules}
        sys.modules.update(self.modules_beside)
        _running.append(self)
        return before, hidden, set(sys.modules)

    def leave(self, state):
        (main, argv, limit), hidden, known = state
        sys.setrecursionlimit(limit)
        _running.pop()
        _mend()
        sys.argv = argv
        if self.folder in sys.path:
            sys.path.remove(self.folder)
        if self.folder not in sys.path:
            for name in list(sys.modules.keys() - known):
                if self._is_beside(name):
                    self.modules_beside[name] = sys.modules[name]
            for name in self.modules_beside:
                sys.modules.pop(name, None)
            sys.modules.update(hidden)
        if main is None:
            sys.modules.pop("__main__", None)
        else:
            sys.modules["__main__"] = main
        _flush(sys.stdout)
        _flush(sys.stderr)

    def _is_beside(self, name):
        top = sys.modules.get(name.partition(".")[0])
        file = getattr(top, "__file__", None)
        if isinstance(file, str):
            folder = os.path.dirname(file)
            return folder == self.folder or (hasattr(top, "__path__") and os.path.dirname(folder) == self.folder)
        try:  # a package without a file of its own
            return any(os.path.dirname(folder) == self.folder for folder in top.__path__)
        except (AttributeError, TypeError):
            return False


def _mend():
    """What a script takes away from all is there again for the next."""
    if not isinstance(sys.path, list):
        sys.path = []
    sys.path.extend(folder for folder in _start_path if folder not in sys.path)
    for name, module in _start_modules.items():
        sys.modules.setdefault(name, module)


def _take_streams():
    """The standard streams of scripts are the host's console; there is nobody to ask, so input is at its end."""
    for name, stream in _streams.items():
        if _is_closed(stream):
            stream = _streams[name] = _nothing() if name == "stdin" else _console()
        setattr(sys, name, stream)


def _is_closed(stream):
    try:
        return stream.closed
    except ValueError:  # its inside was taken out
        return True


def _flush(stream):
    try:
        stream.flush()
    except Exception:  # a stream of the script's own
        pass


def _one_line(text):
    text = " ".join(text.split())
    return text if len(text) <= 1000 else text[:1000] + "..."


def _traceback_from(error):
    """The traceback of error from the script's own frame on, without frames of this module at either end; None when
    the script did not come to run.
    """
    first = error.__traceback__
    while first is not None and first.tb_frame.f_globals is globals():
        first = first.tb_next
    last = place = first
    while place is not None:
        if place.tb_frame.f_globals is not globals():
            last = place
        place = place.tb_next
    if last is not None:
        last.tb_next = None
    return first


def _describe(error, place, folder):
    """What went wrong in one line: the error and the innermost place in a file of folder; failing that, anywhere."""
    lines = traceback.format_exception_only(type(error), error)
    text = _one_line(lines[-1] if isinstance(error, SyntaxError) else "".join(lines))
    if isinstance(error, SyntaxError) and error.filename is not None:
        return f"{text} ({os.path.basename(error.filename)}, line {error.lineno})"
    where, is_beside = "", False
    while place is not None:
        place_folder, name = os.path.split(place.tb_frame.f_code.co_filename)
        if place_folder == folder or not is_beside:
            where, is_beside = f" ({name}, line {place.tb_lineno})", place_folder == folder
        place = place.tb_next
    return text + where


def _ending(code):
    """What an exit with this code says: why it is a failure, or None; and the exit status of a process."""
    if code is None:
        return None, 0
    if isinstance(code, int):
        return (f"it ended with exit status {code}" if code != 0 else None), code & 0xFF
    try:
        return _one_line(f"it ended: {code}"), 1
    except Exception:
        return f"it ended with an object of type {type(code).__name__} that has no text", 1


def _run_here(script, action, heading):
    """Returns why action failed, or None, and the exit status that a process would have; prints what there is to say
    at length.
    """
    try:
        state = script.enter()
        try:
            action()
        finally:
            script.leave(state)
        return None, 0
    except SystemExit as end:
        problem, status = _ending(end.code)
        if problem is not None:
            _print(f"{heading}: {problem}\n")
        return problem, status
    except BaseException as error:
        place = _traceback_from(error)
        problem = _describe(error, place, script.folder)
        linecache.checkcache()
        text = "".join(traceback.format_exception(type(error), error, place))
        _print(f"{heading}: {problem}\n{text}")
        return problem, 1


def _run(script, action, heading):
    """Runs action for script. Returns why it failed, or None."""
    process = os.getpid()
    problem, status = _run_here(script, action, heading)
    if os.getpid() != process:  # a child that the script has made: the host is the parent's
        os._exit(status)
    return problem


def _source_of(file):
    # Not to wait: a pipe would, for its other end.
    with io.FileIO(file, opener=lambda name, flags: os.open(name, flags | os.O_NONBLOCK)) as source:
        if not stat.S_ISREG(os.fstat(source.fileno()).st_mode):
            raise OSError("it is no regular file")
        return source.readall()


def load(path):
    """Runs the script at path (bytes) as a main program. Returns why it failed, or None."""
    file = os.fsdecode(path)
    script = _scripts.setdefault(file, _Script(file))
    script.begin()

    def action():
        code = compile(_source_of(file), file, "exec", dont_inherit=True)
        exec(code, script.module.__dict__)

    problem = _run(script, action, f"{file}: could not be loaded")
    if problem is not None:
        for number in script.new_numbers:  # the host forgets them as well
            _commands[number] = None
        script.numbers = {name: number for name, number in script.numbers.items() if _commands[number]}
    return None if problem is None else problem.encode("utf-8", "backslashreplace")


def run_command(number):
    """Runs a command. Returns why it failed, or None."""
    function, script = _commands[number]
    problem = _run(script or _no_script, function, "the command failed")
    return None if problem is None else problem.encode("utf-8", "backslashreplace")


def boot(environment):
    """Ends the start. environment (bytes): what was changed for it, as it is to be: NAME=VALUE or NAME, each ended by
    a zero byte.
    """
    for entry in environment.split(b"\0")[:-1]:
        name, is_set, value = entry.partition(b"=")
        if is_set:
            os.environb[name] = value
        else:
            os.environb.pop(name, None)
    sys.path[:0] = [folder for folder in os.environ.get("PYTHONPATH", "").split(os.pathsep) if folder]
    sys.dont_write_bytecode = bool(os.environ.get("PYTHONDONTWRITEBYTECODE"))
    if not os.environ.get("PYTHONNOUSERSITE"):
        _add_modules_of_user()
    # What the search found on PATH is another Python, as likely as not.
    executable = os.path.join(sys.exec_prefix, "bin", "python%d.%d" % sys.version_info[:2])
    sys.executable = executable if os.access(executable, os.X_OK) else ""
    _bound_recursion()
    kest = types.ModuleType("kest", "What the host offers to scripts.")
    kest.register_command = _register_command
    kest.print = _print
    kest.host_version = _host_version
    for name in ("register_command", "print", "host_version"):
        function = getattr(kest, name)
        function.__module__, function.__name__, function.__qualname__ = "kest", name, name
    sys.modules["kest"] = kest
    _take_streams()
    _start_path.extend(sys.path)
    _start_modules.update((name, module) for name, module in sys.modules.items() if name != "__main__")


def _add_modules_of_user():
    """What the user has installed for himself; it must not keep Python from starting."""
    try:
        folder = site.getusersitepackages()
        if os.path.isdir(folder):
            site.addsitedir(folder)
    except BaseException:
        pass


def _bound_recursion():
    """Calls that go through C take stack for every level, and a limit that is set too high ends the process where an
    error is due. A sort that calls a sort takes most: 2,600 bytes a level, more than twice that from 3.13 on.
    """
    stack = resource.getrlimit(resource.RLIMIT_STACK)[0]
    most = (8 << 20 if stack == resource.RLIM_INFINITY else stack) // (4096 if sys.version_info < (3, 13) else 6144)
    set_limit = sys.setrecursionlimit

    def setrecursionlimit(limit, /):
        set_limit(min(limit, most) if isinstance(limit, int) else limit)

    setrecursionlimit.__doc__ = set_limit.__doc__
    sys.setrecursionlimit = setrecursionlimit


def end():
    """What main programs do at their end, save for waiting for threads: the host's end must not hang."""
    _take_streams()
    atexit._run_exitfuncs()
    for thing in gc.get_objects():
        try:
            is_stream = isinstance(thing, io.IOBase) and not isinstance(thing, _ConsoleBytes)
        except Exception:  # a proxy of what is gone
            continue
        if is_stream:
            _flush(thing)


_start_path = []  # sys.path at the end of the start
_start_modules = {}  # by name, likewise
_running = []  # scripts, innermost last
_modules_beside = {}  # by folder, then by name
_scripts = {}  # by path
_commands = []  # by number: function and script; None when it is gone
_no_script = _Script("")
_streams = {"stdin": _nothing(), "stdout": _console(), "stderr": _console()}
