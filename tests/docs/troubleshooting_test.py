#!/usr/bin/python3 -I
"""docs/troubleshooting.md tells every line that the sources write to the system log, no other."""

import pathlib
import re
import unittest

PROJECT = pathlib.Path(__file__).resolve().parents[2]

GAP = "…"  # stands in the page where a line names what it is about

# What a source puts together before it writes it: the statement, and the admin log's own line.
PUT_TOGETHER = {
    "src/lib/db/base.cpp": ['ATTACH DATABASE "…" AS …'],
    "src/lib/log/adminlog/logger/logger.cpp": [],
}

TEXT = r'"(?:\\.|[^"\\\n])*"'
# Comments, and the literals that may look like one.
COMMENT = re.compile(rf"//[^\n]*|/\*.*?\*/|({TEXT}|'(?:\\.|[^'\\\n])*')", re.DOTALL)
LITERAL = re.compile(rf"{TEXT}|'(?:\\.|[^'\\\n])*'")
CONSTANT = re.compile(rf"constexpr char (k\w+)\[\] = ({TEXT});")
CONVERSION = re.compile(r"%(?:%|[-+ #0]*\d*(?:\.\d+)?(?:hh|h|ll|l|z)?[diouxXfgcsp])")
# What writes a line, with the number of its arguments before the format.
WRITERS = {"SERVERLOG_ERROR_LINE": 0, "maillog": 1, "syslog": 1, "utils::WriteErrorLine": 2}
CALL = re.compile(rf"(?<!void )\b(?:({'|'.join(WRITERS)})|make_exception<ETag::(\w+)>)\(")
ENUMERATION = re.compile(r"enum class (\w+)Error : [\w:]+ \{(.*?)\}", re.DOTALL)
MESSAGES = re.compile(r"k(\w+)Messages\[\] = \{(.*?)\};", re.DOTALL)


def written_lines():
    """Every line of the library, of the Linux platform layer and of the programs, with its places."""
    messages = exception_messages()
    found = {}
    for folder in ("src/lib", "platform/linux", "apps"):
        for path in sorted((PROJECT / folder).rglob("*")):
            if path.suffix not in (".cpp", ".h"):
                continue
            source = str(path.relative_to(PROJECT))
            for line, number in lines_of(code_of(path), messages):
                for text in PUT_TOGETHER[source] if line == GAP else [line]:
                    found.setdefault(text, []).append(f"{source}:{number}")
    return found


def exception_messages():
    """What stands before the detail of an exception, by family and name of the code."""
    header = code_of(PROJECT / "src/include/exception/exception.h")
    source = code_of(PROJECT / "src/lib/exception/exception.cpp")
    codes = {family: re.findall(r"(\w+) = \d+", body) for family, body in ENUMERATION.findall(header)}
    return {(family, code): unescaped(text)
            for family, body in MESSAGES.findall(source)
            for code, text in zip(codes[family], re.findall(TEXT, body), strict=True)}


def code_of(path):
    """A source without its comments; the lines keep their numbers."""
    text = path.read_text("utf-8")
    return COMMENT.sub(lambda found: found[1] or "\n" * found[0].count("\n"), text)


def lines_of(code, messages):
    """The lines that a source writes, each with its number in there."""
    constants = {name: unescaped(text) for name, text in CONSTANT.findall(code)}
    for call in CALL.finditer(code):
        writer, family = call.groups()
        arguments = split_call(code, call.end(), ",")
        if family:
            found = exception_texts(family, arguments, messages, constants, code)
        else:
            found = [formatted_text(arguments[WRITERS[writer]:], constants)]
        number = code.count("\n", 0, call.start()) + 1
        yield from ((re.sub(f"{GAP}(?: ?{GAP})+", GAP, line), number) for line in found)


def exception_texts(family, arguments, messages, constants, code):
    named = rf"\b{family}Error::(\w+)"
    # A code that a function of the source is handed is one of those that the source names.
    names = re.findall(named, arguments[0]) or re.findall(named, code)
    detail = ""
    if len(arguments) > 1:
        parts = split_call(arguments[1] + ")", 0, "+")
        detail = ", " + "".join(value_of(part, constants) for part in parts)
    return sorted({messages[family, name] + detail for name in names})


def formatted_text(arguments, constants):
    """What printf makes of the arguments."""
    values = iter(arguments[1:])

    def filled(conversion):
        return "%" if conversion[0] == "%%" else value_of(next(values), constants)

    return CONVERSION.sub(filled, value_of(arguments[0], constants)).rstrip()


def value_of(expression, constants):
    """The text of a literal or a constant, a gap for all else."""
    if re.fullmatch(rf"(?:{TEXT}\s*)+", expression):
        return "".join(unescaped(text) for text in re.findall(TEXT, expression))
    return constants.get(expression, GAP)


def unescaped(literal):
    return re.sub(r"\\(.)", lambda found: {"n": "\n"}.get(found[1], found[1]), literal[1:-1])


def split_call(code, start, separator):
    """What stands from start up to the parenthesis that closes there, divided at the separator."""
    parts, depth, begin, place = [], 0, start, start
    while True:
        literal = LITERAL.match(code, place)
        if literal:
            place = literal.end()
            continue
        character = code[place]
        if depth == 0 and character in (separator, ")"):
            parts.append(code[begin:place].strip())
            begin = place + 1
            if character == ")":
                return parts
        depth += {"(": 1, "{": 1, "[": 1, ")": -1, "}": -1, "]": -1}.get(character, 0)
        place += 1


def told_lines():
    """The lines that the tables of the page tell."""
    page = (PROJECT / "docs/troubleshooting.md").read_text("utf-8")
    tables = page.partition("\n## By error line\n")[2]
    cells = re.findall(r"^\| (`[^|]+`) \|", tables, re.MULTILINE)
    return [line for cell in cells for line in re.findall("`([^`]+)`", cell)]


def is_instance(line, general):
    """Whether `line` spells out a gap of `general`."""
    pattern = ".*".join(re.escape(piece) for piece in general.split(GAP))
    return re.fullmatch(pattern, line) is not None


class TroubleshootingTest(unittest.TestCase):
    def test_page_tells_what_the_sources_write(self):
        written, told = written_lines(), told_lines()
        untold = set(written) - set(told)
        # What the page tells otherwise than a source has it spells out a gap of one line: of the
        # closest.
        spelt_out = set()
        for line in set(told) - set(written):
            general = [each for each in untold if is_instance(line, each)]
            with self.subTest(line):
                self.assertTrue(general, "no source writes it")
            spelt_out.update(sorted(general, key=len)[-1:])
        for line in untold - spelt_out:
            with self.subTest(line):
                self.fail(f"not in the page, but written by {', '.join(written[line])}")

    def test_no_line_is_told_twice(self):
        told = told_lines()
        self.assertEqual(sorted(told), sorted(set(told)))


if __name__ == "__main__":
    unittest.main()
