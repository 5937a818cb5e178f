"""Translation modules: compiled catalogues of GNU gettext, and resource scripts for Windows."""

import struct

MAGIC = 0x950412DE
HEADER_SIZE = 28
CONTEXT_END = "\4"


def mo_rows(header, pairs):
    """Keys and translations as bytes, in the order of the keys, which readers search by halving."""
    rows = {"": header}
    rows.update({f"{row.number}{CONTEXT_END}{row.english}": translation for row, translation in pairs})
    return sorted((key.encode(), text.encode()) for key, text in rows.items())


def mo_bytes(header, pairs):
    rows = mo_rows(header, pairs)
    translations_at = HEADER_SIZE + 8 * len(rows)
    at = translations_at + 8 * len(rows)
    tables, texts = b"", b""
    for column in zip(*rows):
        for text in column:
            tables += struct.pack("<II", len(text), at + len(texts))
            texts += text + b"\0"
    # The table of hashes is optional and left out.
    return struct.pack("<7I", MAGIC, 0, len(rows), HEADER_SIZE, translations_at, 0, at) + tables + texts


def rc_units(text):
    encoded = text.encode("utf-16-le")
    return (int.from_bytes(encoded[at : at + 2], "little") for at in range(0, len(encoded), 2))


def rc_character(unit):
    """Four digits, since a compiler of resources goes on as far as digits do."""
    special = {0x0A: r"\n", 0x09: r"\t", 0x22: '""', 0x5C: r"\\"}
    return special.get(unit) or (chr(unit) if 0x20 <= unit < 0x7F else rf"\x{unit:04x}")


def rc_text(pairs):
    """A table of texts in no language in particular, so that Windows finds it whatever its own language is."""
    lines = [f'  {row.number}, L"{"".join(map(rc_character, rc_units(text)))}"' for row, text in pairs]
    return "\n".join(["LANGUAGE 0, 0", "STRINGTABLE", "BEGIN", *lines, "END", ""])
