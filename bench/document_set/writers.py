"""A text as a file of several formats. The same arguments always give the same bytes."""

import email.message
import email.policy
import io
import textwrap
import zipfile
import zlib
from dataclasses import dataclass
from xml.sax.saxutils import escape


@dataclass
class Saving:
    """How a program saves: `later` is another program than the first, on another day."""

    title: str
    later: bool
    width: int  # of lines in plain text; 0: a paragraph is one line
    charset: str  # of plain text

    @property
    def author(self):
        return "B. Second" if self.later else "A. First"

    @property
    def day(self):
        return (2023, 11, 5) if self.later else (2019, 2, 17)

    @property
    def date(self):
        return "%04d-%02d-%02dT10:20:30Z" % self.day


def package(parts, saving, stored=()):
    block = io.BytesIO()
    with zipfile.ZipFile(block, "w") as file:
        for name, text in parts:
            entry = zipfile.ZipInfo(name, (*saving.day, 10, 20, 30))
            entry.compress_type = zipfile.ZIP_STORED if name in stored else zipfile.ZIP_DEFLATED
            file.writestr(entry, text, compresslevel=9 if saving.later else 1)
    return block.getvalue()


XML = '<?xml version="1.0" encoding="UTF-8"?>\n'


def pieces(paragraph, saving):
    """Word processors part a paragraph wherever it was once changed."""
    step = 90 if saving.later else len(paragraph)
    return [paragraph[start:start + step] for start in range(0, len(paragraph), step)]


def txt(paragraphs, saving):
    lines = []
    for paragraph in paragraphs:
        lines += textwrap.wrap(paragraph, saving.width) + [""] if saving.width else [paragraph]
    return ("\r\n" if saving.later else "\n").join([*lines, ""]).encode(saving.charset)


def html(paragraphs, saving):
    opened = "\n    <p class=\"text\">" if saving.later else "\n<p>"
    style = "<style>p.text { margin: 1em; color: #333 }</style>" if saving.later else ""
    text = (f"<!DOCTYPE html>\n<html><head><meta charset=\"utf-8\"><title>{escape(saving.title)}</title>"
            f"<meta name=\"author\" content=\"{saving.author}\">{style}</head>\n<body>"
            + "".join(f"{opened}{escape(paragraph)}</p>" for paragraph in paragraphs) + "\n</body></html>\n")
    return text.encode("ascii" if saving.later else "utf-8", "xmlcharrefreplace")


def rtf(paragraphs, saving):
    def character(one):
        if one in "\\{}":
            return "\\" + one
        if one < "\x80":
            return one
        units = one.encode("utf-16-le")
        numbers = (int.from_bytes(units[at:at + 2], "little", signed=True) for at in range(0, len(units), 2))
        return "".join(f"\\u{number}?" for number in numbers)

    def written(text):
        return "".join(map(character, text))

    body = "".join(("{\\fs24 " if saving.later else "") + written(paragraph) + ("}" if saving.later else "") + "\\par\n"
                   for paragraph in paragraphs)
    return ("{\\rtf1\\ansi\\ansicpg1252\\deff0{\\fonttbl{\\f0 Times New Roman;}}{\\info{\\title " + written(saving.title)
            + "}{\\author " + saving.author + "}}\n" + body + "}\n").encode("ascii")


def docx(paragraphs, saving):
    main = "http://schemas.openxmlformats.org/wordprocessingml/2006/main"
    relations = "http://schemas.openxmlformats.org/package/2006/relationships"
    office = "http://schemas.openxmlformats.org/officeDocument/2006/relationships/officeDocument"
    body = "".join("<w:p>" + "".join(f'<w:r><w:t xml:space="preserve">{escape(piece)}</w:t></w:r>'
                                     for piece in pieces(paragraph, saving)) + "</w:p>" for paragraph in paragraphs)
    parts = [
        ("[Content_Types].xml", XML + '<Types xmlns="http://schemas.openxmlformats.org/package/2006/content-types">'
         '<Default Extension="rels" ContentType="application/vnd.openxmlformats-package.relationships+xml"/>'
         '<Default Extension="xml" ContentType="application/xml"/><Override PartName="/word/document.xml" ContentType='
         '"application/vnd.openxmlformats-officedocument.wordprocessingml.document.main+xml"/></Types>'),
        ("_rels/.rels", XML + f'<Relationships xmlns="{relations}"><Relationship Id="r1" Type="{office}" '
         'Target="word/document.xml"/></Relationships>'),
        ("docProps/core.xml", XML + '<cp:coreProperties xmlns:cp="http://schemas.openxmlformats.org/package/2006/'
         'metadata/core-properties" xmlns:dc="http://purl.org/dc/elements/1.1/">'
         f"<dc:title>{escape(saving.title)}</dc:title><dc:creator>{saving.author}</dc:creator></cp:coreProperties>"),
        ("word/document.xml", XML + f'<w:document xmlns:w="{main}"><w:body>{body}</w:body></w:document>'),
    ]
    return package(parts, saving)


def odt(paragraphs, saving):
    names = "urn:oasis:names:tc:opendocument:xmlns:"
    kind = "application/vnd.oasis.opendocument.text"
    body = "".join("<text:p>" + "".join(f"<text:span>{escape(piece)}</text:span>"
                                        for piece in pieces(paragraph, saving)) + "</text:p>"
                   for paragraph in paragraphs)
    parts = [
        ("mimetype", kind),
        ("content.xml", XML + f'<office:document-content xmlns:office="{names}office:1.0" xmlns:text="{names}text:1.0" '
         f'office:version="1.2"><office:body><office:text>{body}</office:text></office:body></office:document-content>'),
        ("meta.xml", XML + f'<office:document-meta xmlns:office="{names}office:1.0" xmlns:dc="http://purl.org/dc/'
         f'elements/1.1/"><office:meta><dc:title>{escape(saving.title)}</dc:title><dc:creator>{saving.author}'
         f"</dc:creator><dc:date>{saving.date}</dc:date></office:meta></office:document-meta>"),
        ("META-INF/manifest.xml", XML + f'<manifest:manifest xmlns:manifest="{names}manifest:1.0">'
         f'<manifest:file-entry manifest:full-path="/" manifest:media-type="{kind}"/>'
         '<manifest:file-entry manifest:full-path="content.xml" manifest:media-type="text/xml"/></manifest:manifest>'),
    ]
    return package(parts, saving, ("mimetype",))


def epub(paragraphs, saving):
    step = 60 if saving.later else 40
    chapters = [paragraphs[start:start + step] for start in range(0, len(paragraphs), step)]
    files = [f"chapter{number:03d}.xhtml" for number in range(len(chapters))]
    listed = "".join(f'<item id="c{n}" href="{file}" media-type="application/xhtml+xml"/>'
                     for n, file in enumerate(files))
    order = "".join(f'<itemref idref="c{n}"/>' for n in range(len(files)))
    parts = [
        ("mimetype", "application/epub+zip"),
        ("META-INF/container.xml", XML + '<container version="1.0" xmlns="urn:oasis:names:tc:opendocument:xmlns:'
         'container"><rootfiles><rootfile full-path="book.opf" media-type="application/oebps-package+xml"/></rootfiles>'
         "</container>"),
        ("book.opf", XML + '<package xmlns="http://www.idpf.org/2007/opf" version="2.0" unique-identifier="id">'
         f'<metadata xmlns:dc="http://purl.org/dc/elements/1.1/"><dc:title>{escape(saving.title)}</dc:title>'
         f'<dc:creator>{saving.author}</dc:creator><dc:identifier id="id">{saving.date}</dc:identifier></metadata>'
         f"<manifest>{listed}</manifest><spine>{order}</spine></package>"),
    ]
    for file, chapter in zip(files, chapters):
        text = "\n".join(f"<p>{escape(paragraph)}</p>" for paragraph in chapter)
        parts.append((file, XML + '<html xmlns="http://www.w3.org/1999/xhtml"><head><title></title></head><body>\n'
                      f"{text}\n</body></html>"))
    return package(parts, saving, ("mimetype",))


def fb2(paragraphs, saving):
    text = "\n".join(f"<p>{escape(paragraph)}</p>" for paragraph in paragraphs)
    return (XML + '<FictionBook xmlns="http://www.gribuser.ru/xml/fictionbook/2.0"><description><title-info>'
            f"<author><nickname>{saving.author}</nickname></author><book-title>{escape(saving.title)}</book-title>"
            f"</title-info></description><body><section>\n{text}\n</section></body></FictionBook>\n").encode()


def eml(paragraphs, saving):
    message = email.message.EmailMessage(policy=email.policy.SMTP)
    message["From"] = f"{saving.author} <somebody@example.org>"
    message["To"] = "list@example.org"
    message["Date"] = "Sun, 05 Nov 2023 10:20:30 +0000" if saving.later else "Sun, 17 Feb 2019 10:20:30 +0000"
    message["Subject"] = saving.title
    message.set_content("\n".join([*paragraphs, ""]), cte="base64" if saving.later else "quoted-printable")
    return message.as_bytes()


def pdf(paragraphs, saving):
    """Pages of one of the fonts that every reader has; characters beyond cp1252 are refused."""
    width, lines_of_page = (80, 50) if saving.later else (95, 60)
    lines = []
    for paragraph in paragraphs:
        lines += [*textwrap.wrap(paragraph, width), ""]
    objects = [b"<< /Type /Catalog /Pages 2 0 R >>", b"",
               b"<< /Type /Font /Subtype /Type1 /BaseFont /Helvetica /Encoding /WinAnsiEncoding >>",
               b"<< /Author (%s) /Producer (make_documents) >>" % saving.author.encode()]
    pages = []
    for start in range(0, len(lines), lines_of_page):
        shown = b"".join(b"(" + line.encode("cp1252").replace(b"\\", b"\\\\").replace(b"(", b"\\(").replace(b")", b"\\)")
                         + b") '\n" for line in lines[start:start + lines_of_page])
        stream = zlib.compress(b"BT /F1 10 Tf 12 TL 50 800 Td\n" + shown + b"ET\n", 9 if saving.later else 1)
        objects.append(b"<< /Length %d /Filter /FlateDecode >>\nstream\n%s\nendstream" % (len(stream), stream))
        objects.append(b"<< /Type /Page /Parent 2 0 R /MediaBox [0 0 595 842] /Contents %d 0 R /Resources << /Font << "
                       b"/F1 3 0 R >> >> >>" % len(objects))
        pages.append(b"%d 0 R" % len(objects))
    objects[1] = b"<< /Type /Pages /Count %d /Kids [%s] >>" % (len(pages), b" ".join(pages))
    return with_table(objects)


def with_table(objects):
    block = bytearray(b"%PDF-1.4\n")
    places = []
    for number, body in enumerate(objects, 1):
        places.append(len(block))
        block += b"%d 0 obj\n%s\nendobj\n" % (number, body)
    start = len(block)
    block += b"xref\n0 %d\n0000000000 65535 f \n" % (len(objects) + 1)
    block += b"".join(b"%010d 00000 n \n" % place for place in places)
    block += b"trailer\n<< /Size %d /Root 1 0 R /Info 4 0 R >>\nstartxref\n%d\n%%%%EOF\n" % (len(objects) + 1, start)
    return bytes(block)


# format: writer, how often it is chosen
FORMATS = {"txt": (txt, 20), "html": (html, 15), "pdf": (pdf, 15), "docx": (docx, 15), "odt": (odt, 10), "rtf": (rtf, 8),
           "epub": (epub, 7), "fb2": (fb2, 5), "eml": (eml, 5)}
