"""The ways in which the source is changed. Each rule looks at tokens alone, so that new code is covered as it comes."""
from tokens import closing, tokenise

# A binary operator has blanks around it, by which it is told from a template's brackets or a reference.
_SWAPPED = {
    "==": "!=", "!=": "==", "<": "<=", "<=": "<", ">": ">=", ">=": ">",
    "&&": "||", "||": "&&", "+": "-", "-": "+", "*": "/", "/": "*", "&": "|", "|": "&",
    "+=": "=", "-=": "=", "|=": "=", "&=": "=",
}  # fmt: skip


class Change:
    """One change of one file: the characters from `start` to `end` become `new`."""

    def __init__(self, start, end, new, name):
        self.start, self.end, self.new, self.name = start, end, new, name


def _operators(source, tokens):
    for token in tokens:
        spaced = source[token.start - 1 : token.start] == " " and source[token.end : token.end + 1] in (" ", "\n")
        if token.kind == "mark" and token.text in _SWAPPED and spaced:
            new = _SWAPPED[token.text]
            yield Change(token.start, token.end, new, f"{token.text} becomes {new}")
        elif token.text in ("++", "--"):
            new = "--" if token.text == "++" else "++"
            yield Change(token.start, token.end, new, f"{token.text} becomes {new}")
        elif token.text == "!":
            yield Change(token.start, token.end, "", "! left out")


def _constants(source, tokens):
    for before, token in zip([None] + tokens, tokens):
        if token.text in ("true", "false"):
            new = "false" if token.text == "true" else "true"
            yield Change(token.start, token.end, new, f"{token.text} becomes {new}")
        elif token.kind == "number":
            new = "1" if token.text == "0" else "0"
            yield Change(token.start, token.end, new, f"{token.text} becomes {new}")
            if new == "0":
                new = f"({token.text} + 1)"
                yield Change(token.start, token.end, new, f"{token.text} becomes {new}")
        elif token.kind == "text" and (before is None or before.text != "extern"):
            yield Change(token.end - 1, token.end - 1, "~", f"{token.text} gets a ~ at its end")
            opening = token.text.index('"') + 1
            if token.end - token.start > opening + 1:
                yield Change(token.start, token.end, token.text[:opening] + '"', f"{token.text} becomes empty")
        elif token.kind == "unit":
            new = token.text[: token.text.index("'")] + "'~'"
            yield Change(token.start, token.end, new, f"{token.text} becomes {new}")


def _conditions(source, tokens):
    for index, token in enumerate(tokens):
        if token.text not in ("if", "while") or tokens[index + 1].text != "(":
            continue
        close = closing(tokens, index + 1)
        inner = [token.text for token in tokens[index + 2 : close]]
        first = index + 2
        if ";" in inner:
            first += inner.index(";") + 1
        elif "=" in inner:
            continue  # declares a variable
        start, end = tokens[first].start, tokens[close].start
        if source[start:end] != "true":
            yield Change(start, end, f"!({source[start:end]})", "condition negated")
            yield Change(start, end, "true", "condition always holds")
        yield Change(start, end, "false", "condition never holds")


def _choices(source, tokens):
    for index, token in enumerate(tokens):
        if token.text != "?":
            continue
        depth = 0
        colon = stop = None
        for inner in range(index + 1, len(tokens)):
            text = tokens[inner].text
            if text in ("(", "[", "{"):
                depth += 1
            elif text in (")", "]", "}") and depth > 0:
                depth -= 1
            elif text == ":" and depth == 0 and colon is None:
                colon = inner
            elif text in (";", ",", ")", "]", "}") and depth == 0:
                stop = inner
                break
        yes = source[tokens[index + 1].start : tokens[colon - 1].end]
        no = source[tokens[colon + 1].start : tokens[stop - 1].end]
        yield Change(tokens[index + 1].start, tokens[stop - 1].end, f"{no} : {yes}", "choice turned round")


_NO_STEP = {
    "return", "if", "for", "while", "do", "switch", "case", "default", "else", "using", "template", "typename",
    "struct", "class", "enum", "namespace", "extern", "static", "constexpr", "const", "inline", "auto", "public",
    "private", "protected", "static_assert", "explicit", "virtual", "friend", "operator",
}  # fmt: skip


def _is_step(statement):
    """Whether the tokens of a statement, without its semicolon, do something and declare nothing."""
    first = statement[0].text
    if first in ("break", "continue", "throw", "delete", "++", "--"):
        return True
    if statement[0].kind != "word" or first in _NO_STEP or statement[-1].text in ("delete", "default"):
        return False
    at = 1  # a name, then what is called or set: a second name without a mark between declares a variable
    while at + 1 < len(statement) and statement[at].text in ("::", ".", "->", ".*") and statement[at + 1].kind == "word":
        at += 2
    return at < len(statement) and statement[at].text in ("(", "[", "=", "+=", "-=", "|=", "&=", ".*", ".", "->")


def _steps(source, tokens):
    for index, token in enumerate(tokens):
        if token.text not in (";", "{", "}", ")", "else", ":"):
            continue
        if token.text == ":" and tokens[index - 1].text in ("public", "private", "protected"):
            continue
        depth = 0
        for end in range(index + 1, len(tokens)):
            text = tokens[end].text
            if text in ("(", "[", "{"):
                depth += 1
            elif text in (")", "]", "}"):
                depth -= 1
                if depth < 0:
                    break
            elif text == ";" and depth == 0:
                if end > index + 1 and _is_step(tokens[index + 1 : end]):
                    yield Change(tokens[index + 1].start, tokens[end].start, "", "step left out")
                break


def _returns(source, tokens):
    for index, token in enumerate(tokens):
        if token.text != "return":
            continue
        end = index + 1
        while tokens[end].text != ";":
            end = closing(tokens, end) + 1 if tokens[end].text in ("(", "[", "{") else end + 1
        value = source[token.end : tokens[end].start].strip()
        if not value:
            yield Change(token.start, tokens[end].start, "", "return left out")
        elif value not in ("true", "false", "{}"):
            yield Change(token.end, tokens[end].start, " {}", "return value emptied")
            if "==" in value or "&&" in value or "!=" in value or value.startswith("!"):
                yield Change(token.end, tokens[end].start, f" !({value})", "return value negated")


def changes(source):
    """All changes of the text `source`, in its order."""
    tokens = tokenise(source)
    kept = []
    for index, token in enumerate(tokens):
        if token.text == "static_assert":
            kept.append((token.start, tokens[closing(tokens, index + 1)].end))
        elif token.text == "[" and tokens[index + 1].text == "[":  # an attribute
            kept.append((token.start, tokens[closing(tokens, index)].end))
    found = {}
    for rule in (_operators, _constants, _conditions, _choices, _steps, _returns):
        for change in rule(source, tokens):
            if not any(start <= change.start < end for start, end in kept):
                found.setdefault((change.start, change.end, change.new), change)
    return [found[key] for key in sorted(found)]
