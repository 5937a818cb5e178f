"""Texts of packaged documentation, as lists of paragraphs."""

import gzip
import hashlib
import html.parser
import os
import re
import subprocess
from concurrent.futures import ThreadPoolExecutor

LEAST_CHARACTERS = 2000
MOST_CHARACTERS = 120000
MOST_BYTES = 4 << 20

# kind: folders, ends of names. Translated manual pages are left out: their folders have names of languages.
PLACES = {
    "manual": (["/usr/share/man/" + section for section in ("man1", "man2", "man3", "man4", "man5", "man7", "man8")],
               re.compile(r"\.[1-8][a-z0-9]*(\.gz)?$")),
    "perldoc": (["/usr/share/perl"], re.compile(r"\.(pod|pm)$")),
    "html": (["/usr/share/doc"], re.compile(r"\.html?(\.gz)?$")),
    "text": (["/usr/share/doc", "/usr/share/common-licenses"],
             re.compile(r"(\.(txt|md|rst)|README[^/]*|NEWS|FAQ|TODO|HACKING|licenses/[^/]*)(\.gz)?$")),
}
UNWANTED = re.compile(r"[^\n\t -\ud7ff\ue000-\ufffd\U00010000-\U0010ffff]|[\x7f-\x9f]")

# Rules drawn across a page: as wide as the page that the text was set for.
RULES = re.compile(r"([^\w\s])\1{3,}")


class Page(html.parser.HTMLParser):
    """The paragraphs of an HTML page, as its block elements part them."""

    BLOCKS = {"p", "div", "br", "li", "tr", "h1", "h2", "h3", "h4", "h5", "h6", "pre", "dt", "dd", "table", "title"}
    SILENT = {"script", "style"}

    def __init__(self):
        super().__init__()
        self.pieces = []
        self.silent = 0

    def handle_starttag(self, tag, attrs):
        self.silent += tag in self.SILENT
        if tag in self.BLOCKS:
            self.pieces.append("\n")

    def handle_endtag(self, tag):
        self.silent -= tag in self.SILENT and self.silent > 0
        if tag in self.BLOCKS:
            self.pieces.append("\n")

    def handle_data(self, data):
        if not self.silent:
            self.pieces.append(re.sub(r"\s+", " ", data))


def contents(path):
    with (gzip.open if path.endswith(".gz") else open)(path, "rb") as file:
        return file.read(MOST_BYTES)


def decoded(block):
    try:
        return block.decode("utf-8")
    except UnicodeDecodeError:
        return block.decode("cp1252", "replace")


def output_of(command, block=b""):
    done = subprocess.run(command, input=block, capture_output=True, timeout=60,
                          env={**os.environ, "LC_ALL": "C.UTF-8"})
    return done.stdout.decode("utf-8", "replace")


def lines_of(path, kind):
    """Each line a paragraph."""
    if kind == "manual":
        block = contents(path)
        if block.startswith(b".so "):
            return []
        # A line of any length holds a whole paragraph.
        return output_of(["groff", "-K", "utf8", "-t", "-mandoc", "-Tutf8", "-P-cbou", "-rLL=5000n", "-rHY=0"],
                         block).split("\n")
    if kind == "perldoc":
        return re.split(r"\n\s*\n", output_of(["pod2text", "-u", "-w", "100", path]))
    if kind == "html":
        page = Page()
        page.feed(decoded(contents(path)))
        return "".join(page.pieces).split("\n")
    return re.split(r"\n\s*\n", decoded(contents(path)))


def paragraphs_of(place):
    path, kind = place
    try:
        lines = lines_of(path, kind)
    except (OSError, EOFError, subprocess.SubprocessError, AssertionError):
        return []
    paragraphs = []
    room = MOST_CHARACTERS
    for line in lines:
        paragraph = re.sub(r"\s+", " ", RULES.sub(r"\1\1\1", UNWANTED.sub("", line))).strip()
        room -= len(paragraph) + 1
        if room < 0:
            break
        if paragraph:
            paragraphs.append(paragraph)
    return paragraphs if sum(map(len, paragraphs)) >= LEAST_CHARACTERS else []


def places_of(kind):
    folders, ends = PLACES[kind]
    found = []
    for folder in folders:
        for parent, _, names in os.walk(folder):
            found += [os.path.join(parent, name) for name in names]
    return [(path, kind) for path in sorted(found) if ends.search(path) and not os.path.islink(path)]


class Unlike:
    """Lets in only texts that share little with any before: packages carry many copies of one text, and what is to
    count as unrelated must be so."""

    MOST_SHARED = 0.1

    def __init__(self):
        self.owners = {}

    def admits(self, paragraphs, number):
        words = " ".join(paragraphs).lower().split()
        sample = set()
        for start in range(len(words) - 4):
            digest = hashlib.blake2b(" ".join(words[start:start + 5]).encode(), digest_size=8).digest()
            if digest[0] < 16:
                sample.add(digest)
        shared = {}
        for digest in sample:
            for owner in self.owners.get(digest, ()):
                shared[owner] = shared.get(owner, 0) + 1
        if len(sample) < 5 or max(shared.values(), default=0) > self.MOST_SHARED * len(sample):
            return False
        for digest in sample:
            self.owners.setdefault(digest, []).append(number)
        return True


def collect(count, numbers):
    """[(path, paragraphs)], at most half of them manual pages as long as there is anything else."""
    queues = {}
    for kind in PLACES:
        queues[kind] = places_of(kind)
        numbers.shuffle(queues[kind])
    chosen, unlike = [], Unlike()
    with ThreadPoolExecutor(os.cpu_count()) as pool:
        while len(chosen) < count and any(queues.values()):
            batch = []
            for kind, queue in queues.items():
                share = 60 if kind == "manual" else 20
                batch += queue[:share]
                del queue[:share]
            for (path, _), paragraphs in zip(batch, pool.map(paragraphs_of, batch)):
                if paragraphs and len(chosen) < count and unlike.admits(paragraphs, len(chosen)):
                    chosen.append((path, paragraphs))
    return chosen
