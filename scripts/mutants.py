"""The mutants of a C++ file, found in Clang's syntax tree.

Each replaces one range of bytes: operators, constants, conditions, statements and return
values. Assertions at compile time are left alone: they test the code themselves.
"""
import dataclasses
import re

from clang.cindex import CursorKind as K, Index, TokenKind

FLAGS = ['-x', 'c++', '-std=c++20', '-I.', '-pthread', '-DQT_NO_KEYWORDS']
OPERATORS = {
    '<': ['<=', '>='], '<=': ['<', '>'], '>': ['>=', '<='], '>=': ['>', '<'],
    '==': ['!='], '!=': ['=='], '&&': ['||'], '||': ['&&'],
    '+': ['-'], '-': ['+'], '*': ['/'], '/': ['*'], '%': ['*'],
    '&': ['|'], '|': ['&'], '^': ['&'], '<<': ['>>'], '>>': ['<<'],
    '+=': ['-='], '-=': ['+='],
}
STATEMENTS = {K.CALL_EXPR, K.BINARY_OPERATOR, K.COMPOUND_ASSIGNMENT_OPERATOR, K.UNARY_OPERATOR,
              K.UNEXPOSED_EXPR, K.BREAK_STMT, K.CONTINUE_STMT, K.IF_STMT}
LOOPS = {K.FOR_STMT, K.CXX_FOR_RANGE_STMT, K.WHILE_STMT, K.DO_STMT}


@dataclasses.dataclass(frozen=True)
class Mutant:
    file: str
    line: int
    begin: int  # offsets in bytes
    end: int
    text: str
    what: str

    def applied(self, source):
        return source[:self.begin] + self.text.encode() + source[self.end:]


def of_file(path):
    """All mutants of the file, in the order of its lines."""
    with open(path, 'rb') as stream:
        source = stream.read()
    unit = Index.create().parse(path, FLAGS + qt_flags(source))
    errors = [d for d in unit.diagnostics if d.severity >= 3]
    if errors:
        raise SystemExit(f'{path}: {errors[0].spelling}')
    finder = Finder(path, source)
    for cursor in unit.cursor.get_children():
        if cursor.location.file and cursor.location.file.name == path:
            finder.visit(cursor, None)
    return sorted(finder.found, key=lambda m: (m.begin, m.end, m.text))


def qt_flags(source):
    if not re.search(rb'#include <Q', source):
        return []
    import subprocess
    return subprocess.run(['pkg-config', '--cflags', 'Qt6Widgets', 'Qt6DBus'], check=True,
                          capture_output=True, text=True).stdout.split() + ['-fPIC']


def start(cursor):
    return cursor.extent.start.offset


def end(cursor):
    return cursor.extent.end.offset


class Finder:
    def __init__(self, path, source):
        self.path, self.source = path, source
        self.found = set()
        self.table = False  # within the initialiser of a constant

    def text(self, begin, stop):
        return self.source[begin:stop].decode()

    def add(self, begin, stop, new, what=None):
        old = self.text(begin, stop)
        if what is None:
            what = f'{shortened(old)} -> {shortened(new)}'
        line = self.source.count(b'\n', 0, begin) + 1
        self.found.add(Mutant(self.path, line, begin, stop, new, what))

    def visit(self, cursor, parent):
        if cursor.kind == K.STATIC_ASSERT:
            return
        outer = self.table
        if cursor.kind == K.VAR_DECL and parent is None or (
                cursor.kind == K.VAR_DECL and parent.kind == K.NAMESPACE):
            self.table = True
        self.mutate(cursor, parent)
        for child in cursor.get_children():
            self.visit(child, cursor)
        self.table = outer

    def mutate(self, cursor, parent):
        kind = cursor.kind
        children = list(cursor.get_children())
        if kind in (K.BINARY_OPERATOR, K.COMPOUND_ASSIGNMENT_OPERATOR) and len(children) == 2:
            self.operator(cursor, children)
        elif kind == K.CALL_EXPR and re.fullmatch(r'operator(==|!=|<|>|<=|>=|\+|\+=)',
                                                  cursor.spelling) and len(children) == 3:
            self.operator(cursor, [children[0], children[2]])
        elif kind == K.UNARY_OPERATOR:
            self.unary(cursor)
        elif kind in (K.INTEGER_LITERAL, K.FLOATING_LITERAL, K.CHARACTER_LITERAL,
                      K.STRING_LITERAL, K.CXX_BOOL_LITERAL_EXPR):
            self.constant(cursor)
        elif kind == K.DECL_REF_EXPR:
            self.enumerator(cursor)
        elif kind in (K.IF_STMT, K.WHILE_STMT, K.CONDITIONAL_OPERATOR):
            self.condition(cursor, children)
        elif kind == K.FOR_STMT:
            self.remove(cursor, 'loop removed')
        elif kind == K.RETURN_STMT and children:
            self.returned(children[0])
        elif kind == K.COMPOUND_STMT:
            self.block(children)
        if kind in LOOPS or kind == K.IF_STMT:
            for child in children[1:]:
                if child.kind in STATEMENTS:
                    self.remove(child)
        if kind == K.CXX_FOR_RANGE_STMT:
            self.remove(cursor, 'loop removed')

    def operator(self, cursor, sides):
        left, right = sides
        between = self.source[end(left):start(right)].decode()
        match = re.fullmatch(r'\)*\s*([-+*/%&|^<>=!]+)\s*\(*', between)
        if not match:
            return
        sign = match[1]
        begin = end(left) + len(between[:match.start(1)].encode())
        joins_text = cursor.kind == K.CALL_EXPR and sign in ('+', '+=')
        if not joins_text:
            for other in OPERATORS.get(sign, []):
                self.add(begin, begin + len(sign), other,
                         f'{shortened(self.text(start(cursor), end(cursor)))}: {sign} -> {other}')
        if sign in ('&&', '||') or joins_text and sign == '+':
            for side in sides:
                if between.count('(') == between.count(')') == 0:
                    self.add(start(cursor), end(cursor), self.text(start(side), end(side)))

    def unary(self, cursor):
        text = self.text(start(cursor), end(cursor))
        if re.match('!(?!=)', text):
            self.add(start(cursor), start(cursor) + 1, '', f'{shortened(text)}: ! removed')
        elif text.startswith('-') and not text.startswith('--'):
            self.add(start(cursor), start(cursor) + 1, '', f'{shortened(text)}: - removed')

    def constant(self, cursor):
        text = self.text(start(cursor), end(cursor))
        if cursor.kind == K.CXX_BOOL_LITERAL_EXPR:
            if text in ('true', 'false'):
                self.add(start(cursor), end(cursor), 'false' if text == 'true' else 'true')
        elif cursor.kind == K.STRING_LITERAL:
            if not text.endswith('"'):
                return
            if self.table or text.endswith('""'):
                self.add(end(cursor) - 1, end(cursor) - 1, '~',
                         f'{shortened(text)} lengthened')
            else:
                self.add(start(cursor), end(cursor), '""')
        elif cursor.kind == K.CHARACTER_LITERAL:
            if text.startswith("'"):
                self.add(start(cursor), end(cursor), f'static_cast<char>({text} + 1)')
        elif text[:1].isdigit():
            self.add(start(cursor), end(cursor), f'({text} + 1)')
            if cursor.kind == K.INTEGER_LITERAL and not re.fullmatch('0+[uUlL]*', text):
                self.add(start(cursor), end(cursor), f'({text} - 1)')

    def enumerator(self, cursor):
        target = cursor.referenced
        if target is None or target.kind != K.ENUM_CONSTANT_DECL:
            return
        names = [c.spelling for c in target.semantic_parent.get_children()
                 if c.kind == K.ENUM_CONSTANT_DECL]
        if len(names) < 2:
            return
        other = names[(names.index(target.spelling) + 1) % len(names)]
        stop = end(cursor)
        self.add(stop - len(target.spelling), stop, other)

    def condition(self, cursor, children):
        asked = children[0]
        text = self.text(start(asked), end(asked))
        if asked.kind in (K.DECL_STMT, K.VAR_DECL) or not text:
            return
        if not re.search(r'&&|\|\|', text) and re.search(r'^!| [!=]= ', text):
            return  # the mutant of its operator is the same
        self.add(start(asked), end(asked), f'!({text})')

    def returned(self, value):
        text = self.text(start(value), end(value))
        if re.fullmatch(r'[\w.]+|".*"|\{\}|\{.*', text, re.S) and value.kind != K.DECL_REF_EXPR:
            return
        self.add(start(value), end(value), '{}', f'return {shortened(text)} -> return {{}}')

    def block(self, children):
        for child in children:
            if child.kind in STATEMENTS:
                self.remove(child)
        for first, second in zip(children, children[1:]):
            if {first.kind, second.kind} & {K.DECL_STMT, K.RETURN_STMT, K.BREAK_STMT}:
                continue
            a, b = self.whole(first), self.whole(second)
            if independent(self.text(*a), self.text(*b)):
                continue
            self.add(a[0], b[1], self.text(*b) + self.text(a[1], b[0]) + self.text(*a),
                     f'swapped: {shortened(self.text(*a))} and {shortened(self.text(*b))}')

    def whole(self, cursor):
        """The range of a statement with its semicolon."""
        stop = end(cursor)
        if self.source[stop - 1:stop] not in (b'}', b';'):
            stop = self.source.index(b';', stop) + 1
        elif self.source[stop:stop + 1] == b';':
            stop += 1
        return start(cursor), stop

    def remove(self, cursor, what=None):
        begin, stop = self.whole(cursor)
        text = self.text(begin, stop)
        self.add(begin, stop, ';', f'{what or "removed"}: {shortened(text)}')


def independent(first, second):
    """Whether both are assignments without calls, of which none reads what the other sets."""
    sides = [re.fullmatch(r'([\w.>-]+) = ([^()=]*);', text) for text in (first, second)]
    return all(sides) and sides[0][1] not in second and sides[1][1] not in first


def shortened(text):
    text = ' '.join(text.split())
    return text if len(text) <= 60 else text[:57] + '...'
