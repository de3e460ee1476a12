"""Tests that the translation checks catch each kind of fault and name its id and language."""

import os
import sys
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "../../tools"))
import check_strings  # noqa: E402
import l10n_strings  # noqa: E402
from l10n_strings import LANGUAGES  # noqa: E402


# A word in the script each of these languages must be written in.
SAMPLES = {"ar": "نص", "he": "טקסט", "ru": "текст", "uk": "текст", "bg": "текст", "el": "κείμενο",
           "th": "ข้อความ", "ko": "텍스트", "ja": "テキスト", "zh-CN": "文本", "zh-TW": "文字"}


def translated(language, english):
    """A made-up translation that passes every check."""
    if language in ("en-US", "en-GB") or english.startswith("http"):
        return english
    if language not in SAMPLES:
        return f"{language} {english}"
    kept = check_strings.PLACEHOLDER.findall(english)
    kept += [name for name in check_strings.KEPT_NAMES if name in english]
    return " ".join([SAMPLES[language]] + kept) + (" …" if "…" in english else "")


def make_rows(english_texts):
    return [l10n_strings.Row(1000 + number, "", [translated(lang, text) for lang in LANGUAGES],
                             number + 1) for number, text in enumerate(english_texts)]


def set_text(rows, string_id, language, text):
    rows[string_id - 1000].texts[LANGUAGES.index(language)] = text


ENGLISH = ["Open %s in %llu steps", "http://www.brinmor.com/go/help", "Add File…",
           "Vantrel Player uses tss.cfg", "Remove", "Close", "Website", "Other", "Storage",
           "Playback", "Advanced"]


HEADER = "\t".join(["id", "name", "comment"] + LANGUAGES)


class CheckStringsTest(unittest.TestCase):
    def test_each_fault_is_reported_with_its_id_and_language(self):
        cases = [
            (1000, "de", "Öffne %llu in %s Schritten", "id 1000 [de]: placeholders"),
            (1000, "fr", "Ouvrir %s", "id 1000 [fr]: placeholders"),
            (1000, "ja", "%s を開く %lu", "id 1000 [ja]: placeholders"),
            (1001, "pl", "http://www.brinmor.com/go/pomoc", "id 1001 [pl]: address"),
            (1002, "it", "Aggiungi file...", "id 1002 [it]: three dots"),
            (1002, "es", "Agregar archivo", "id 1002 [es]: the ellipsis"),
            (1003, "ru", "Vantrel Плеер использует tss.cfg", "id 1003 [ru]: 'Vantrel Player'"),
            (1003, "nl", "Vantrel Player gebruikt tss.config", "id 1003 [nl]: 'tss.cfg'"),
            (1004, "ar", "Remove it", "id 1004 [ar]: not written in the ARABIC script"),
            (1004, "he", "نص", "id 1004 [he]: not written in the HEBREW script"),
            (1005, "sv", "", "id 1005 [sv]: empty text"),
            (1006, "fr", "Site web :", "id 1006 [fr]: a no-break space"),
            (1006, "fr", "Site web?", "id 1006 [fr]: a no-break space"),
        ]
        for string_id, language, text, expected in cases:
            with self.subTest(language=language, text=text):
                rows = make_rows(ENGLISH)
                set_text(rows, string_id, language, text)
                problems = check_strings.check(rows)
                self.assertEqual([problem[:len(expected)] for problem in problems], [expected])

    def test_language_left_in_english_is_reported_past_a_tenth_of_its_texts(self):
        # Addresses are the same in every language and do not count.
        english = [f"Text number {number}" for number in range(20)] + ["http://a.example/1"] * 5
        rows = make_rows(english)
        set_text(rows, 1000, "fi", "Text number 0")
        set_text(rows, 1001, "fi", "Text number 1")
        self.assertEqual(check_strings.check_untranslated(rows, "fi"), [])
        set_text(rows, 1002, "fi", "Text number 2")
        self.assertEqual(check_strings.check_untranslated(rows, "fi"), [
            "[fi]: 3 of 20 texts are the English ones (at most 10%): ids 1000, 1001, 1002"])

    def test_malformed_file_names_the_line_and_id(self):
        row = "\t".join(["11000", "kOk", "c"] + ["OK"] * len(LANGUAGES))
        short_row = "\t".join(["11001", "kCancel", "c"] + ["OK"] * 3)
        bad_escape = "\t".join(["11002", "kConfirm", "c"] + ["a\\q"] * len(LANGUAGES))
        same_name = "\t".join(["11003", "kOk", "c"] + ["OK"] * len(LANGUAGES))
        unnamed = "\t".join(["11004", "ok", "c"] + ["OK"] * len(LANGUAGES))
        cases = [
            (f"{HEADER}\n{row}\n{short_row}\n", "t.tsv:3: id 11001 has 6 cells"),
            (f"{HEADER}\n{row}\n{row}\n", "t.tsv:3: id 11000 must come after 11000"),
            (f"{HEADER}\n{bad_escape}\n", "t.tsv:2: id 11002 [en-US]: unknown escape"),
            (f"{HEADER}\n{row}\n{same_name}\n", "t.tsv:3: id 11003: name kOk is already used"),
            (f"{HEADER}\n{unnamed}\n", "t.tsv:2: id 11004: name 'ok' is not k followed"),
            (f"id\tcomment\ten-US\n{row}\n", "t.tsv:1: the header must be"),
        ]
        for content, expected in cases:
            with self.subTest(expected=expected):
                with self.assertRaises(l10n_strings.TableError) as raised:
                    l10n_strings.parse(content, "t.tsv")
                self.assertTrue(str(raised.exception).startswith(expected), raised.exception)

    def test_escapes_are_read(self):
        row = "\t".join(["11000", "kOk", "c"] + ["line\\none\\ttab \\\\ end"] * len(LANGUAGES))
        rows = l10n_strings.parse(f"# note\n{HEADER}\n{row}\n")
        self.assertEqual(rows[0].text("de"), "line\none\ttab \\ end")


if __name__ == "__main__":
    unittest.main()
