"""Catalogues of translators, in the PO format of GNU gettext: one entry a text, its name as the context."""

import re
from dataclasses import dataclass, field

LINE = re.compile(r'^(?P<key>msgctxt|msgid|msgstr)?\s*"(?P<text>(?:\\.|[^"\\])*)"$')
ESCAPES = {"n": "\n", "t": "\t", '"': '"', "\\": "\\"}


class PoError(Exception):
    """A catalogue that cannot be read."""


@dataclass
class Entry:
    context: str
    english: str
    translation: str = ""
    notes: list = field(default_factory=list)  # "#. ", for translators, made from the rows
    remarks: list = field(default_factory=list)  # "# ", by translators
    previous: str = ""  # the English text that a fuzzy translation was made for
    fuzzy: bool = False


@dataclass
class Catalogue:
    header: str
    entries: list
    remarks: list = field(default_factory=list)

    def field(self, name):
        match = re.search(rf"^{name}:[ ]*(.*)$", self.header, re.M)
        return match[1].strip() if match else ""

    def by_context(self):
        return {entry.context: entry for entry in self.entries}


def unquoted(text):
    return re.sub(r"\\(.)", lambda match: ESCAPES.get(match[1], match[0]), text)


def quoted(key, text):
    """A text of several lines begins with an empty one and has a line of the file for each of its own."""
    text = text.replace("\\", "\\\\").replace('"', '\\"').replace("\t", "\\t")
    lines = [line.replace("\n", "\\n") for line in text.splitlines(keepends=True)]
    if len(lines) <= 1:
        return f'{key} "{"".join(lines)}"\n'
    return f'{key} ""\n' + "".join(f'"{line}"\n' for line in lines)


class Block:
    """The lines between two empty ones."""

    def __init__(self):
        self.texts = {}
        self.notes, self.remarks, self.flags = [], [], []
        self.key = None

    def take(self, line):
        if line.startswith("#."):
            self.notes.append(line[2:].strip())
        elif line.startswith("#,"):
            self.flags += [flag.strip() for flag in line[2:].split(",")]
        elif line.startswith("#|"):
            self.take_text(line[2:].strip(), "previous ")
        elif line.startswith("#"):
            self.remarks.append(line[1:].strip())
        else:
            self.take_text(line, "")

    def take_text(self, line, prefix):
        match = LINE.match(line)
        if not match or not (match["key"] or self.key):
            raise PoError(f"not understood: {line}")
        if match["key"]:
            self.key = prefix + match["key"]
            if self.key in self.texts:
                raise PoError(f"a second {self.key}: {line}")
        self.texts[self.key] = self.texts.get(self.key, "") + unquoted(match["text"])

    def entry(self):
        if "msgid" not in self.texts or "msgstr" not in self.texts:
            raise PoError(f"an entry without msgid or msgstr: {self.texts}")
        texts = self.texts
        return Entry(texts.get("msgctxt", ""), texts["msgid"], texts["msgstr"], self.notes, self.remarks,
                     texts.get("previous msgid", ""), "fuzzy" in self.flags)


def blocks(text):
    block = Block()
    for line in text.splitlines() + [""]:
        if line.strip() and not line.startswith("#~"):
            block.take(line.strip())
        elif block.texts:
            yield block
            block = Block()


def read_po(text):
    entries = [block.entry() for block in blocks(text)]
    if not entries or entries[0].english or entries[0].context:
        raise PoError("it does not begin with a header")
    contexts = [entry.context for entry in entries[1:]]
    for context in contexts:
        if contexts.count(context) > 1:
            raise PoError(f"{context} is there twice")
    return Catalogue(entries[0].translation, entries[1:], entries[0].remarks)


def entry_text(entry):
    text = "".join(f"# {line}".rstrip() + "\n" for line in entry.remarks)
    text += "".join(f"#. {line}\n" for line in entry.notes)
    if entry.fuzzy:
        text += "#, fuzzy\n"
    if entry.previous:
        text += "".join(f"#| {line}\n" for line in quoted("msgid", entry.previous).splitlines())
    if entry.context:
        text += quoted("msgctxt", entry.context)
    return text + quoted("msgid", entry.english) + quoted("msgstr", entry.translation)


def po_text(catalogue):
    header = Entry("", "", catalogue.header, remarks=catalogue.remarks)
    return "\n".join(entry_text(entry) for entry in [header, *catalogue.entries])
