"""What people do to a text: little, or much."""

import re


def sentences_of(paragraph):
    return re.split(r"(?<=[.!?;:]) ", paragraph)


def with_other_words(paragraph, share, vocabulary, numbers):
    words = paragraph.split(" ")
    return " ".join(numbers.choice(vocabulary) if numbers.random() < share else word for word in words)


def moved(paragraphs, numbers):
    """One sentence goes to the end of the next paragraph."""
    place = numbers.randrange(len(paragraphs))
    sentences = sentences_of(paragraphs[place])
    if len(sentences) < 2 or place + 1 >= len(paragraphs):
        return paragraphs
    taken = sentences.pop(numbers.randrange(len(sentences)))
    return [*paragraphs[:place], " ".join(sentences), paragraphs[place + 1] + " " + taken, *paragraphs[place + 2:]]


def lightly(paragraphs, numbers):
    """One word in a hundred is another, a few sentences stand elsewhere, one is dropped or added."""
    vocabulary = " ".join(paragraphs).split(" ")
    changed = [with_other_words(paragraph, 0.01, vocabulary, numbers) for paragraph in paragraphs]
    for _ in range(min(4, 1 + len(paragraphs) // 20)):
        changed = moved(changed, numbers)
    place = numbers.randrange(len(changed))
    sentences = sentences_of(changed[place])
    if numbers.random() < 0.5 and len(sentences) > 1:
        sentences.pop()
    else:
        sentences.append(" ".join(numbers.choice(vocabulary) for _ in range(8)) + ".")
    return [*changed[:place], " ".join(sentences), *changed[place + 1:]]


def heavily(paragraphs, numbers):
    """One word in five is another, a third of the sentences is gone, and paragraphs stand in another order."""
    vocabulary = " ".join(paragraphs).split(" ")
    changed = []
    for paragraph in paragraphs:
        kept = [sentence for sentence in sentences_of(paragraph) if numbers.random() > 0.33]
        if kept:
            changed.append(with_other_words(" ".join(kept), 0.2, vocabulary, numbers))
    half = len(changed) // 2
    return changed[half:] + changed[:half] or paragraphs
