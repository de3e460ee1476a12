"""Reads src/l10n/strings.tsv, the one source of every user-visible text.

Shared by the build step that generates the C++ tables (gen_string_table.py) and by the
translation checks (check_strings.py). The file format is described at the top of strings.tsv.
"""

import re
from dataclasses import dataclass, field

# Column order of the text matrix. The program maps the interface language to these positions,
# so a language is never moved or inserted in the middle: new languages go at the end.
LANGUAGES = [
    "en-US", "cs", "de", "es", "fr", "it", "ja", "ko", "nl", "pl", "pt-BR", "ru",
    "sv", "tr", "zh-CN", "zh-TW", "da", "pt-PT", "nb", "hu", "el", "fi", "en-GB", "ar",
    "he", "sk", "bg", "sl", "ro", "hr", "uk", "lv", "lt", "th", "et", "sr-Latn",
]

ESCAPES = {"n": "\n", "t": "\t", "\\": "\\"}

# The name of a row becomes an enumerator of the generated TextId.
NAME = re.compile(r"k[A-Z][A-Za-z0-9]*")


class TableError(Exception):
    """A malformed file; the message names the line, and the id and language where known."""


@dataclass
class Row:
    id: int
    comment: str
    texts: list = field(default_factory=list)  # one per language, in LANGUAGES order
    line: int = 0
    name: str = ""  # the enumerator of TextId the code uses

    def text(self, language):
        return self.texts[LANGUAGES.index(language)]


def unescape(cell, where):
    out = []
    position = 0
    while position < len(cell):
        char = cell[position]
        if char != "\\":
            out.append(char)
            position += 1
            continue
        code = cell[position + 1: position + 2]
        if code not in ESCAPES:
            raise TableError(f"{where}: unknown escape '\\{code}' (use \\n, \\t or \\\\)")
        out.append(ESCAPES[code])
        position += 2
    return "".join(out)


def parse(content, name="strings.tsv"):
    """Returns the rows of the file content, in file order; raises TableError when malformed."""
    rows = []
    header_seen = False
    for number, raw in enumerate(content.split("\n"), start=1):
        line = raw.rstrip("\r")
        if not line.strip() or line.startswith("#"):
            continue
        cells = line.split("\t")
        if not header_seen:
            expected = ["id", "name", "comment"] + LANGUAGES
            if cells != expected:
                raise TableError(f"{name}:{number}: the header must be: {' '.join(expected)}")
            header_seen = True
            continue
        rows.append(parse_row(cells, f"{name}:{number}", number))
    if not header_seen:
        raise TableError(f"{name}: no header line")
    check_order(rows, name)
    check_names(rows, name)
    return rows


def parse_row(cells, where, number):
    if not re.fullmatch(r"[0-9]{1,10}", cells[0]) or int(cells[0]) > 0xFFFFFFFF:
        raise TableError(f"{where}: '{cells[0]}' is not a 32-bit string id")
    string_id = int(cells[0])
    if len(cells) != 3 + len(LANGUAGES):
        raise TableError(f"{where}: id {string_id} has {len(cells)} cells, "
                         f"expected {3 + len(LANGUAGES)} (id, name, comment, one per language)")
    if not NAME.fullmatch(cells[1]):
        raise TableError(f"{where}: id {string_id}: name '{cells[1]}' is not k followed by "
                         "a capital letter and letters or digits")
    texts = []
    for language, cell in zip(LANGUAGES, cells[3:]):
        texts.append(unescape(cell, f"{where}: id {string_id} [{language}]"))
    return Row(string_id, unescape(cells[2], f"{where}: comment"), texts, number, cells[1])


def check_order(rows, name):
    for previous, row in zip(rows, rows[1:]):
        if row.id <= previous.id:
            raise TableError(f"{name}:{row.line}: id {row.id} must come after {previous.id} "
                             "(ids ascend, each once)")


def check_names(rows, name):
    first_line = {}
    for row in rows:
        if row.name in first_line:
            raise TableError(f"{name}:{row.line}: id {row.id}: name {row.name} is already "
                             f"used on line {first_line[row.name]}")
        first_line[row.name] = row.line


def read(path):
    with open(path, encoding="utf-8", newline="") as source:
        return parse(source.read(), path)
