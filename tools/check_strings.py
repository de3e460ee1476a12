#!/usr/bin/env python3
"""Checks the translations in src/l10n/strings.tsv.

usage: check_strings.py strings.tsv

Every problem is printed as "id N [language]: what is wrong"; the exit status is 1 when there is
any. The checks: every cell holds a text; a translation has exactly the printf placeholders of
its English text, in the same order; addresses are the same in every language; the names and
file names that are never translated are kept; an ellipsis stays an ellipsis; a language keeps
no more than a tenth of its texts in English; languages with their own script use it; French
puts a no-break space before ':' and '?'.
"""

import os
import re
import sys
import unicodedata

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
import l10n_strings  # noqa: E402
from l10n_strings import LANGUAGES  # noqa: E402

ENGLISH = "en-US"
ENGLISH_COLUMNS = {"en-US", "en-GB"}
MAX_UNTRANSLATED_SHARE = 0.10

PLACEHOLDER = re.compile(r"%(?:%|[-+ #0]*(?:\d+|\*)?(?:\.(?:\d+|\*))?"
                         r"(?:hh|h|ll|l|j|z|t|L|I64)?[diouxXeEfFgGaAcspn])")

# Kept as they are in every language whenever the English text has them.
KEPT_NAMES = ["Vantrel Player", "Brinmor", "Tessaline", "tss.cfg", "HTTPS", "ActiveX", "NPAPI",
              "PPAPI", "*.vtm", "VTM", "(*.*)", "www.example.com", "Google Chrome", "Chromium"]

# Units that languages with their own script may write in Latin letters ("%llu byte").
LATIN_UNITS = re.compile(r"\b(?:bytes?|[kKMG]B)\b")

# Unicode script words (from character names) that a language's texts must be written in.
SCRIPTS = {
    "ar": ("ARABIC",), "he": ("HEBREW",), "ru": ("CYRILLIC",), "uk": ("CYRILLIC",),
    "bg": ("CYRILLIC",), "el": ("GREEK",), "th": ("THAI",), "ko": ("HANGUL",),
    "ja": ("HIRAGANA", "KATAKANA", "CJK"), "zh-CN": ("CJK",), "zh-TW": ("CJK",),
}


# French typography: a no-break space (plain or narrow) before these marks, so that a wrapped
# line never starts with one.
FRENCH_SPACED_MARKS = re.compile(r"(?<![\u00a0\u202f])[:?]")


def is_address(english):
    return english.startswith(("http://", "https://"))


def script_letters(text, scripts):
    """Letters of the text in one of the scripts, and letters of other scripts outside the kept
    names and units."""
    for name in KEPT_NAMES:
        text = text.replace(name, "")
    text = LATIN_UNITS.sub("", text)
    text = PLACEHOLDER.sub("", text)
    own = foreign = 0
    for char in text:
        if not char.isalpha():
            continue
        if unicodedata.name(char, "").startswith(scripts):
            own += 1
        else:
            foreign += 1
    return own, foreign


def check_cell(row, language, text, english):
    problems = []
    where = f"id {row.id} [{language}]"
    if not text.strip():
        return [f"{where}: empty text"]
    if PLACEHOLDER.findall(text) != PLACEHOLDER.findall(english):
        problems.append(f"{where}: placeholders {PLACEHOLDER.findall(text)} differ from the "
                        f"English {PLACEHOLDER.findall(english)}")
    if is_address(english):
        if text != english:
            problems.append(f"{where}: address '{text}' differs from '{english}'")
        return problems
    for name in KEPT_NAMES:
        if name in english and name not in text:
            problems.append(f"{where}: '{name}' must be kept as it is")
    if "..." in text:
        problems.append(f"{where}: three dots instead of the ellipsis character …")
    elif "…" in english and "…" not in text:
        problems.append(f"{where}: the ellipsis … of the English text is missing")
    if language == "fr" and FRENCH_SPACED_MARKS.search(text):
        problems.append(f"{where}: a no-break space must stand before ':' and '?'")
    if language in SCRIPTS and text != english:
        own, foreign = script_letters(text, SCRIPTS[language])
        if foreign > own:
            problems.append(f"{where}: not written in the {'/'.join(SCRIPTS[language])} script")
    return problems


def check_untranslated(rows, language):
    column = LANGUAGES.index(language)
    english = LANGUAGES.index(ENGLISH)
    texts = [row for row in rows if not is_address(row.texts[english])]
    same = [row.id for row in texts if row.texts[column] == row.texts[english]]
    if len(same) > MAX_UNTRANSLATED_SHARE * len(texts):
        listed = ", ".join(str(string_id) for string_id in same)
        return [f"[{language}]: {len(same)} of {len(texts)} texts are the English ones "
                f"(at most {int(MAX_UNTRANSLATED_SHARE * 100)}%): ids {listed}"]
    return []


def check(rows):
    problems = []
    english = LANGUAGES.index(ENGLISH)
    for row in rows:
        for language, text in zip(LANGUAGES, row.texts):
            problems += check_cell(row, language, text, row.texts[english])
    for language in LANGUAGES:
        if language not in ENGLISH_COLUMNS:
            problems += check_untranslated(rows, language)
    return problems


def main(arguments):
    if len(arguments) != 2:
        print(__doc__, file=sys.stderr)
        return 2
    try:
        rows = l10n_strings.read(arguments[1])
    except (l10n_strings.TableError, UnicodeDecodeError) as error:
        print(f"error: {error}", file=sys.stderr)
        return 1
    problems = check(rows)
    for problem in problems:
        print(problem)
    print(f"{len(rows)} ids in {len(LANGUAGES)} languages: {len(problems)} problems")
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv))
