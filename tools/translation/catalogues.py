"""Catalogues beside the rows: what is wrong with one, and how it is brought up to date."""

from .po import Catalogue, Entry
from .rows import placeholders

HEADER = (
    "Project-Id-Version: Kelvane\n"
    "Language: \n"
    "MIME-Version: 1.0\n"
    "Content-Type: text/plain; charset=UTF-8\n"
    "Content-Transfer-Encoding: 8bit\n"
)
# A catalogue whose header says so must have every text; another one may be a beginning.
COMPLETE = "X-Complete"


def notes(row):
    return [f"number {row.number}" + (f"; {row.note}" if row.note else "")]


def template(rows):
    return Catalogue(HEADER, [Entry(row.name, row.english, notes=notes(row)) for row in rows])


def updated_entry(row, old):
    if old is None:
        return Entry(row.name, row.english, notes=notes(row))
    entry = Entry(row.name, row.english, old.translation, notes(row), old.remarks, old.previous, old.fuzzy)
    if old.english != row.english and old.translation:
        entry.fuzzy, entry.previous = True, old.previous or old.english
    return entry


def updated(catalogue, rows):
    """The same translations for today's rows; one whose English has changed is fuzzy until somebody has looked."""
    old = catalogue.by_context()
    return Catalogue(catalogue.header, [updated_entry(row, old.get(row.name)) for row in rows], catalogue.remarks)


def edges(text):
    """White space at both ends, which belongs to the layout and is easily lost."""
    return text[: len(text) - len(text.lstrip())], text[len(text.rstrip()):]


def translation_fault(row, entry):
    if entry.english != row.english:
        return "its English text has changed; run tools/make_translation --update"
    if placeholders(entry.translation) != placeholders(row.english):
        return f"its placeholders are not those of \"{row.english}\""
    if edges(entry.translation) != edges(row.english):
        return "it begins or ends with other white space than the English text"
    return None


def usable(catalogue, rows):
    """(row, translation) of every text that a module can have."""
    entries = catalogue.by_context()
    for row in rows:
        entry = entries.get(row.name)
        if entry and entry.translation and not entry.fuzzy and translation_fault(row, entry) is None:
            yield row, entry.translation


def header_faults(catalogue):
    if not catalogue.field("Language"):
        yield "the header names no Language"
    if "charset=UTF-8" not in catalogue.field("Content-Type"):
        yield "the header does not say charset=UTF-8"


def entry_faults(row, entry, complete):
    if entry is None or not entry.translation:
        if complete or row.name == "languageName":
            yield f"{row.name}: not translated"
    elif entry.fuzzy:
        if complete:
            yield f"{row.name}: fuzzy; look at it and remove the mark"
    elif fault := translation_fault(row, entry):
        yield f"{row.name}: {fault}"


def faults(catalogue, rows):
    yield from header_faults(catalogue)
    complete = catalogue.field(COMPLETE) == "yes"
    entries = catalogue.by_context()
    for row in rows:
        yield from entry_faults(row, entries.get(row.name), complete)
    for context in entries.keys() - {row.name for row in rows}:
        yield f"{context}: there is no such text; run tools/make_translation --update"
