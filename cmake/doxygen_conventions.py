"""Doxygen's input filter: says of a header's conventional members what the convention says.

An accessor means what its property means, a property without a comment what its documented getter means;
a notifier, an overriding function and a defaulted comparison need no words of their own. Everything else
is left as it is, so that Doxygen finds a missing comment. Line numbers stay true.
"""

import re
import sys

PROPERTY = re.compile(r"Q_PROPERTY\((?P<rest>.*?)\)\s*$", re.DOTALL | re.MULTILINE)
DECLARED = re.compile(r"(?P<name>~?\w+|operator\W+)\s*\(")


def comment_before(lines, index):
    """The text of the comment that ends on the line before `index`; empty when there is none."""
    first = index
    while first > 0 and lines[first - 1].lstrip().startswith("///"):
        first -= 1
    return " ".join(line.lstrip().removeprefix("///").strip() for line in lines[first:index])


def statement(lines, index):
    """A declaration from its first line to the line that ends it."""
    taken = []
    for line in lines[index : index + 6]:
        taken.append(line)
        if re.search(r"[;{}]\s*(///<.*)?$", line) or line.rstrip().endswith(")") and "Q_PROPERTY" in taken[0]:
            break
    return " ".join(part.strip() for part in taken)


def properties(text, lines):
    """What each accessor and each notifier of the header belongs to."""
    readers, writers, notifiers = {}, {}, {}
    for found in PROPERTY.finditer(text):
        words = found["rest"].split()
        value = {word: words[i + 1] for i, word in enumerate(words[:-1]) if word.isupper()}
        first_keyword = next(i for i, word in enumerate(words) if word in ("READ", "MEMBER"))
        name = words[first_keyword - 1].lstrip("*")
        comment = comment_before(lines, text.count("\n", 0, found.start()))
        readers[value.get("READ")] = (name, comment)
        writers[value.get("WRITE")] = name
        notifiers.setdefault(value.get("NOTIFY"), []).append(name)
    return readers, writers, notifiers


def convention(declaration, lines, readers, writers, notifiers):
    """The comment that a convention gives to a declaration; none when it is none of theirs."""
    if declaration.startswith("Q_PROPERTY"):
        reader = re.search(r"READ (\w+)", declaration)
        getter = reader and next((i for i, line in enumerate(lines)
                                  if re.search(rf"\b{reader[1]}\(\)( const|;)", line)), None)
        return comment_before(lines, getter) if getter is not None else ""
    found = DECLARED.search(declaration)
    if not found:
        return ""
    name = found["name"].strip()
    if re.search(r"\boverride\b", declaration):
        return "As the base class says."
    if name.startswith("operator") and declaration.rstrip().endswith("= default;"):
        return "Member by member."
    if re.fullmatch(r"explicit \w+\((QObject|QQuickItem) \*parent = nullptr\);", declaration):
        return "Belongs to its parent, as everywhere in Qt."
    if name in notifiers:
        return "Has changed: " + ", ".join(f"`{changed}`" for changed in notifiers[name]) + "."
    if name in readers:
        return readers[name][1]
    if name in writers:
        return f"Sets `{writers[name]}`."
    return ""


def documented(text):
    """The header with the comments of the conventions put in."""
    lines = text.split("\n")
    known = properties(text, lines)
    result = []
    for index, line in enumerate(lines):
        bare = line.strip()
        is_declaration = bare and not bare.startswith(("//", "#", "}", "{", ":", ",")) and bare[-1] != ":"
        comment = ""
        if is_declaration and "///<" not in line and not comment_before(lines, index):
            comment = convention(statement(lines, index), lines, *known)
        indent = line[: len(line) - len(line.lstrip())]
        result.append(f"{indent}/** {comment} */ {bare}" if comment else line)
    return "\n".join(result)


if __name__ == "__main__":
    with open(sys.argv[1], encoding="utf-8") as header:
        sys.stdout.write(documented(header.read()))
