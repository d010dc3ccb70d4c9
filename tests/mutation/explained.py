"""Lists of exceptions with their reasons, one entry a paragraph, one field a line: "name: text"."""


def read(path, names):
    """The entries of the file at `path`: the fields before the last one to the last one, the reason."""
    known = {}
    for block in path.read_text().split("\n\n"):
        lines = [line for line in block.splitlines() if line and not line.startswith("#")]
        if not lines:
            continue
        fields = dict(line.split(": ", 1) for line in lines)
        if tuple(fields) != names or not all(fields.values()):
            raise SystemExit(f"{path}: an entry has the fields {', '.join(names)}; this has not:\n{block}")
        known[tuple(fields.values())[:-1]] = fields["reason"]
    return known
