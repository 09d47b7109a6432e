#!/usr/bin/python3
"""usage: class_layout.py ROOT EXPECTED.txt

Compares one class with an expected list: slots/<Class>.txt tells its virtual operations in the order of their slots,
fields/<Class>.txt its bases and fields.  A scope is written with dots: io.CBlock.txt.  Exit status 77 (skipped) when no
header defines the class yet.

slots:   one operation per line: a name, or Name(types) in C++ spelling where a name is overloaded, with `const` or
         `nonconst` behind it where only that tells two apart; `...` inside the parentheses stands for any types;
         `destructor`; `~?` where one may stand; `*` for an operation of any name; `@Other` for all of slots/Other.txt.
         A destructor that is not listed may stand last in the part of the class that adds it.
fields:  sections [bases] and [fields]; a base may be marked `virtual`; a field is a name, or `*` for any name,
         with `: type` where the type is to be compared; `...` as the last line allows further fields.
both:    `# text` is a comment, `instance: T<...>` names the instance of a template to look at, `declare: class X;` what
         that instance needs declared, `header: path` the header where looking for the class would find another.
"""
import fcntl
import hashlib
import os
import pickle
import re
import sys

import class_tables
from class_tables import LayoutError, plain_type

HERE = os.path.dirname(os.path.abspath(__file__))
TREES = ('lib', 'desktop', 'products')
SKIPPED = 77


class Expected:
    """One expected file, its lines without comments and its directives."""

    def __init__(self, path):
        self.path = path
        self.kind = os.path.basename(os.path.dirname(path))
        self.class_name = os.path.basename(path)[:-len('.txt')].replace('.', '::')
        self.header, self.instance, self.declare, self.lines = None, None, '', []
        with open(path, encoding='utf-8') as text:
            for line in (re.sub(r'(^|\s)#.*', '', line).strip() for line in text):
                directive = re.match(r'(header|instance|declare): *(.*)', line)
                if directive:
                    setattr(self, directive[1], directive[2])
                elif line:
                    self.lines.append(line)

    def used_name(self):
        return self.instance or self.class_name

    def operations(self):
        """The listed operations; `~?` marks where a destructor that is not listed may stand."""
        found = []
        for line in self.lines:
            if line.startswith('@'):
                found += Expected(os.path.join(os.path.dirname(self.path), line[1:] + '.txt')).operations()
            else:
                found.append(line)
        return found if 'destructor' in found else found + ['~?']

    def section(self, name):
        found, inside = [], False
        for line in self.lines:
            if line.startswith('['):
                inside = line == f'[{name}]'
            elif inside:
                found.append(line)
        return found


def defining_headers(root, class_name):
    stem = class_name.split('::')[-1]
    pattern = re.compile(r'^[^/\n]*\b(?:class|struct)\s+' + re.escape(stem) + r'\b(?![^{;]*;)[^;{()]*\{', re.M)
    for header in project_headers(root):
        with open(header, encoding='utf-8') as text:
            if pattern.search(text.read()):
                yield header


def project_headers(root):
    for tree in TREES:
        for folder, _, files in sorted(os.walk(os.path.join(root, tree))):
            yield from (os.path.join(folder, name) for name in sorted(files) if name.endswith('.h'))


def find_header(root, expected):
    if expected.header:
        path = os.path.join(root, expected.header)
        return path if os.path.exists(path) else None
    found = list(defining_headers(root, expected.class_name))
    named = [path for path in found if os.path.basename(path) == expected.class_name.split('::')[-1] + '.h']
    if len(named or found) > 1:
        raise LayoutError(f'{expected.class_name} is defined in {" and ".join(named or found)}: say which (header: path)')
    return (named or found or [None])[0]


def include_flags(root):
    return [f'-I{root}/lib/hostframework', f'-I{root}/lib', f'-I{root}']


def operation_matches(expected, operation):
    if expected == '*':
        return operation.name != 'destructor'
    if '(' not in expected:
        return expected == operation.name
    required = re.search(r'\)\s*(const|nonconst)$', expected)
    text = re.sub(r'\)\s*(const|nonconst)$', ')', expected)
    pattern = '.*'.join(re.escape(plain_type(part)) for part in text.split('...'))
    constness = {'const': 'const', 'nonconst': '', None: '(const)?'}[required[1] if required else None]
    return re.fullmatch(pattern + constness, operation.signature) is not None


def compare_operations(expected, actual):
    """The differences, as text lines; an empty list means the same order."""
    wrong, position = [], 0
    for entry in expected:
        here = actual[position] if position < len(actual) else None
        if entry == '~?':
            position += here is not None and here.name == 'destructor'
            continue
        if here is None or not operation_matches(entry, here):
            wrong.append(f'operation {position + 1}: expected {entry}, found {here.signature if here else "the end"}')
            return wrong
        position += 1
    if position < len(actual):
        wrong.append(f'operation {position + 1}: expected the end, found {actual[position].signature}')
    return wrong


def compare_names(what, expected, actual):
    """Compares a list of (name, remark) with lines `name` or `name: remark` or `*`; `...` ends the comparison."""
    for index, line in enumerate(expected):
        if line == '...':
            return []
        name, _, remark = (part.strip() for part in line.partition(':' if what == 'field' else ' '))
        if index >= len(actual):
            return [f'{what} {index + 1}: expected {line}, found the end']
        found, actual_remark = actual[index]
        # A base that is not marked virtual must not be; a field's type is compared only where one is listed.
        same = plain_type(remark) == plain_type(actual_remark) or what == 'field' and not remark
        if name not in ('*', found) or not same:
            return [f'{what} {index + 1}: expected {line}, found {found} ({actual_remark})']
    if len(actual) > len(expected):
        return [f'{what} {len(expected) + 1}: expected the end, found {actual[len(expected)][0]}']
    return []


def differences(expected, layouts):
    name = expected.used_name()
    if expected.kind == 'slots':
        return compare_operations(expected.operations(), layouts.table(layouts.find(name.split('<')[0]).name))
    info = layouts.find(name.split('<')[0])
    bases = [(re.sub(r'<.*', '', base).split('::')[-1], 'virtual' if shared else '') for base, shared in info.bases]
    return (compare_names('base', expected.section('bases'), bases)
            + compare_names('field', expected.section('fields'), info.fields))


def cached_layouts(root):
    """The layouts of all classes with an expected file, compiled once per state of the headers."""
    wanted, includes, declared, digest = [], [], [], hashlib.sha256()
    for kind in ('slots', 'fields'):
        for name in sorted(os.listdir(os.path.join(HERE, kind))):
            expected = Expected(os.path.join(HERE, kind, name))
            header = find_header(root, expected)
            if header and expected.used_name() not in wanted:
                wanted.append(expected.used_name())
                includes.append(header)
                declared.append(expected.declare)
    for path in [*project_headers(root), class_tables.__file__]:
        with open(path, 'rb') as content:
            digest.update(path.encode() + content.read())
    digest.update('\n'.join(wanted).encode())
    cache = os.environ.get('HOUSE_CACHE')
    if not cache:
        return class_tables.compile_classes(includes, wanted, include_flags(root), declared)
    os.makedirs(cache, exist_ok=True)
    kept = os.path.join(cache, 'layouts.pickle')
    with open(kept + '.lock', 'w', encoding='utf-8') as lock:
        fcntl.flock(lock, fcntl.LOCK_EX)
        if os.path.exists(kept):
            with open(kept, 'rb') as stored:
                key, layouts = pickle.load(stored)
            if key == digest.hexdigest():
                return layouts
        layouts = class_tables.compile_classes(includes, wanted, include_flags(root), declared)
        with open(kept, 'wb') as stored:
            pickle.dump((digest.hexdigest(), layouts), stored)
        return layouts


def main():
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    root, expected = os.path.abspath(sys.argv[1]), Expected(os.path.abspath(sys.argv[2]))
    header = find_header(root, expected)
    if header is None:
        print(f'skipped: no header defines {expected.class_name} yet')
        sys.exit(SKIPPED)
    try:
        layouts = cached_layouts(root)
    except LayoutError:
        # One header that does not compile must not hide what the others say.
        layouts = class_tables.compile_classes([header], [expected.used_name()], include_flags(root), [expected.declare])
    wrong = differences(expected, layouts)
    for line in wrong:
        print(f'{expected.class_name}: {line}', file=sys.stderr)
    sys.exit(1 if wrong else 0)


if __name__ == '__main__':
    try:
        main()
    except LayoutError as error:
        sys.exit(f'class_layout: {error}')
