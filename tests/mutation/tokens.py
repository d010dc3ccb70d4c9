"""C++ source as tokens, exact enough to change one at a time."""
import re
from dataclasses import dataclass

_PATTERN = re.compile(
    r"""
    (?P<skip>\s+|//[^\n]*|/\*.*?\*/|^[ \t]*\#[^\n]*)
    |(?P<text>(?:u8|[uUL])?"(?:\\.|[^"\\\n])*")
    |(?P<unit>(?:u8|[uUL])?'(?:\\.|[^'\\\n])+')
    |(?P<number>\d[\w.]*(?:'\d+)*)
    |(?P<word>[A-Za-z_]\w*)
    |(?P<mark><=>|->\*|\.\.\.|<<=|>>=|::|->|\+\+|--|&&|\|\||[-+*/%&|^=!<>]=|<<|[-+*/%&|^!~=<>?:;,.(){}\[\]\\@])
    """,
    re.VERBOSE | re.DOTALL | re.MULTILINE,
)


@dataclass(frozen=True)
class Token:
    kind: str  # text, unit, number, word or mark
    text: str
    start: int
    end: int


def tokenise(source):
    """The tokens of `source` without comments and preprocessor lines."""
    tokens = []
    at = 0
    while at < len(source):
        match = _PATTERN.match(source, at)
        if match is None:
            raise ValueError(f"no token at {source[at:at + 20]!r}")
        if match.lastgroup != "skip":
            tokens.append(Token(match.lastgroup, match.group(), match.start(), match.end()))
        at = match.end()
    return tokens


_OPEN = {"(": ")", "[": "]", "{": "}"}


def closing(tokens, at):
    """The index of the bracket that closes the one at `at`."""
    depth = 0
    for index in range(at, len(tokens)):
        if tokens[index].text in _OPEN and tokens[index].kind == "mark":
            depth += 1
        elif tokens[index].text in _OPEN.values() and tokens[index].kind == "mark":
            depth -= 1
            if depth == 0:
                return index
    raise ValueError("a bracket stays open")
