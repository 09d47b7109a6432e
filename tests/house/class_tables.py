"""What the compiler made of a class: its bases, its fields and its primary table of virtual operations, in order.

The debug information names every virtual operation with its slot, pure ones too, and its mangled form, which tells
overloads apart.  The compiler's own class dump (-fdump-lang-class) is read as well and must agree slot by slot, so a
misreading of either shows as an error and never as a pass.
"""
import os
import re
import subprocess
import tempfile
from dataclasses import dataclass, field

FLAGS = ['-std=c++20', '-w', '-O0', '-gdwarf-5', '-femit-class-debug-always', '-fdump-lang-class']
DIE = re.compile(r'^ *<([0-9a-f]+)><([0-9a-f]+)>: Abbrev Number: (\d+)(?: \(DW_TAG_(\w+)\))?')
ATTRIBUTE = re.compile(r'^ *<[0-9a-f]+> +DW_AT_(\w+) *: (.*)$')
FORM = re.compile(r'^(?:\([^()]*\) ?|\(offset: 0x[0-9a-f]+\): |\(alt indirect string[^)]*\) ?|: )+')


class LayoutError(Exception):
    """The compiler, or what it printed, did not allow an answer."""


@dataclass
class Operation:
    name: str
    signature: str
    slot: int


@dataclass
class ClassInfo:
    name: str
    bases: list = field(default_factory=list)  # (name, is_virtual)
    fields: list = field(default_factory=list)  # (name, type)
    own: list = field(default_factory=list)  # Operations that the class itself declares


def without_defaults(text):
    """Drops the allocators and plain orders that the library's containers carry as their last arguments."""
    out, index = [], 0
    while index < len(text):
        default = re.compile(r',(?:allocator|less)<').match(text, index)
        if default:
            depth, index = 1, default.end()
            while depth and index < len(text):
                depth += {'<': 1, '>': -1}.get(text[index], 0)
                index += 1
        else:
            out.append(text[index])
            index += 1
    return ''.join(out)


def plain_type(text):
    """One spelling for a type: no namespaces, no allocators, no default orders, no blanks, const on the right."""
    text = re.sub(r'\b(?:\w+::)+', '', text)
    text = re.sub(r'\blong int\b', 'long', text).replace('long unsigned int', 'unsigned long')
    text = re.sub(r'(?<=[<(,])\s*const ([\w]+)', r'\1 const', text)
    text = re.sub(r'\s+', '', text)
    text = text.replace('basic_string<char,char_traits<char>,allocator<char>>', 'string')
    return without_defaults(text)


class Dwarf:
    """The part of the debug information that concerns classes."""

    def __init__(self, text):
        self.dies, self.children, self.path = {}, {}, {}
        self._parse(text)
        self._demangle()

    def _parse(self, text):
        stack, current = [], None
        for line in text.splitlines():
            found = DIE.match(line)
            if found:
                depth, offset, tag = int(found[1], 16), int(found[2], 16), found[4]
                if tag is None:
                    current = None
                    continue
                del stack[depth:]
                current = {'tag': tag, 'offset': offset}
                self.dies[offset] = current
                self.children[offset] = []
                if stack:
                    self.children[stack[-1]].append(offset)
                self.path[offset] = tuple(stack)
                stack.append(offset)
                continue
            found = ATTRIBUTE.match(line)
            if found and current is not None:
                current[found[1]] = found[2].strip()

    def _demangle(self):
        names = [self.text(die, 'linkage_name') for die in self.dies.values() if 'linkage_name' in die]
        done = subprocess.run(['c++filt'], input='\n'.join(names), capture_output=True, text=True, check=True)
        self.plain = dict(zip(names, done.stdout.split('\n')))

    @staticmethod
    def text(die, attribute):
        return FORM.sub('', die.get(attribute, ''))

    def reference(self, die, attribute='type'):
        found = re.search(r'<0x([0-9a-f]+)>', die.get(attribute, ''))
        return self.dies.get(int(found[1], 16)) if found else None

    def qualified(self, die):
        scope = [self.text(self.dies[up], 'name') for up in self.path[die['offset']]
                 if self.dies[up]['tag'] in ('namespace', 'class_type', 'structure_type')]
        return '::'.join(scope + [self.text(die, 'name')])

    def type_name(self, die):
        target = self.reference(die)
        if target is None:
            return 'void'
        tag = target['tag']
        suffix = {'pointer_type': '*', 'reference_type': '&', 'const_type': ' const', 'volatile_type': ' volatile'}
        if tag in suffix:
            return self.type_name(target) + suffix[tag]
        return self.text(target, 'name') or tag

    def classes(self):
        found = {}
        for die in self.dies.values():
            if die['tag'] in ('class_type', 'structure_type') and 'declaration' not in die and 'name' in die:
                found.setdefault(self.qualified(die), die)
        return found


def read_class(dwarf, die):
    info = ClassInfo(dwarf.qualified(die))
    for offset in dwarf.children[die['offset']]:
        child = dwarf.dies[offset]
        if child['tag'] == 'inheritance':
            base = dwarf.reference(child)
            while base is not None and base['tag'] == 'typedef':
                base = dwarf.reference(base)
            info.bases.append((dwarf.qualified(base), 'virtuality' in child))
        elif child['tag'] == 'member' and 'data_member_location' in child and 'artificial' not in child:
            info.fields.append((dwarf.text(child, 'name'), dwarf.type_name(child)))
        elif child['tag'] == 'subprogram' and 'virtuality' in child:
            info.own.append(read_operation(dwarf, info.name, child))
    return info


def read_operation(dwarf, class_name, die):
    place = re.search(r'DW_OP_(?:constu: |lit)(\d+)', die.get('vtable_elem_location', ''))
    slot = int(place[1]) if place else None
    name = dwarf.text(die, 'name')
    if name.startswith('~'):
        return Operation('destructor', 'destructor', slot)
    if slot is None:
        raise LayoutError(f'{class_name}::{name} is virtual and has no slot')
    whole = dwarf.plain[dwarf.text(die, 'linkage_name')]
    # The demangled form begins with the class; what follows is the operation with its arguments and its const.
    rest = whole[whole.index('::' + name + '(', max(0, len(class_name.split('<')[0]) - 1)) + 2:]
    return Operation(name, plain_type(rest), slot)


class Layouts:
    """All classes of one translation unit by qualified name, with their primary tables."""

    def __init__(self, dwarf_text, dump_text):
        dwarf = Dwarf(dwarf_text)
        self.all = {name: read_class(dwarf, die) for name, die in dwarf.classes().items()}
        self.dump = read_dump(dump_text)

    def find(self, name):
        if name in self.all:
            return self.all[name]
        stem = [info for known, info in self.all.items() if known.split('<')[0] == name]
        if not stem:
            raise LayoutError(f'the compiler knows no class {name}')
        return stem[0]

    def is_dynamic(self, name):
        info = self.find(name)
        return bool(info.own) or any(is_virtual or self.is_dynamic(base) for base, is_virtual in info.bases)

    def primary_base(self, info):
        direct = [base for base, is_virtual in info.bases if not is_virtual and self.is_dynamic(base)]
        if direct:
            return direct[0]
        shared = [base for base, is_virtual in info.bases
                  if is_virtual and self.is_dynamic(base) and not self.find(base).fields]
        return shared[0] if shared else None

    def slots(self, name):
        """The primary table as the compiler lays it out: slot to Operation; a destructor takes two slots."""
        info = self.find(name)
        base = self.primary_base(info)
        table = dict(self.slots(base)) if base else {}
        homeless = None
        for operation in info.own:
            if operation.slot is None:
                homeless = operation
            else:
                table[operation.slot] = operation
        if homeless and not any(operation.name == 'destructor' for operation in table.values()):
            # A defaulted destructor comes without its place: it stands in the gap, or last where there is none.
            gaps = [slot for slot in range(len(table)) if slot not in table]
            table[gaps[0] if gaps else len(table)] = homeless
        return table

    def ancestors(self, name):
        for base, _ in self.find(name).bases:
            yield base
            yield from self.ancestors(base)

    def primary_chain(self, name):
        base = self.primary_base(self.find(name))
        while base:
            yield base
            base = self.primary_base(self.find(base))

    def table(self, name):
        """The operations of the primary table in order, without those entries that this compiler repeats there for
        operations which belong to the table of another base."""
        chain = set(self.primary_chain(name))
        elsewhere = {operation.signature for base in self.ancestors(name) if base not in chain
                     for operation in self.find(base).own}
        inherited = {operation.signature for base in chain for operation in self.find(base).own}
        slots = self.slots(name)
        self.agree_with_dump(name, slots)
        return [operation for _, operation in sorted(slots.items())
                if operation.signature in inherited or operation.signature not in elsewhere
                or operation.name == 'destructor']

    def agree_with_dump(self, name, slots):
        dumped = self.dump.get(self.find(name).name.replace(' ', ''))
        if dumped is None:
            raise LayoutError(f'the class dump has no table of {name}')
        length = max(slots, default=-1) + 1
        length += bool(slots) and slots[length - 1].name == 'destructor'
        # Zeros behind the table are offsets of the next one; a destructor that can't be called is two zeros too.
        if len(dumped) < length or any(entry != '0' for entry in dumped[length:]):
            raise LayoutError(f'{name}: the class dump has {len(dumped)} slots, the debug information {length}')
        for slot, entry in enumerate(dumped[:length]):
            operation = slots.get(slot) or slots.get(slot - 1)
            if operation is None:
                raise LayoutError(f'{name}: the class dump has {entry} in slot {slot}, the debug information nothing')
            if entry not in ('__cxa_pure_virtual', operation.name) and not \
                    (operation.name == 'destructor' and (entry.startswith('~') or entry == '0')):
                raise LayoutError(f'{name}: slot {slot} is {entry} in the class dump, {operation.name} elsewhere')


def read_dump(text):
    """Class (blanks dropped) to the names in its primary table, read from the text of -fdump-lang-class."""
    tables = {}
    for section in re.split(r'^(?=Vtable for |VTT for |Class |Construction vtable for )', text, flags=re.M):
        if not section.startswith('Vtable for '):
            continue
        head, *lines = section.splitlines()
        names, inside = [], False
        for line in lines:
            entry = re.sub(r'^\d+\s+|^\s+', '', line)
            if '(& _ZTI' in entry:
                if inside:
                    break
                inside = True
            elif inside and re.match(r'^\(int \(\*\)\(\.\.\.\)\)-?\d+$|^\d{2,}$', entry):
                break
            elif inside and entry:
                target = entry.replace('(int (*)(...))', '')
                names.append(re.sub(r'<.*>', '', target).split('::')[-1])
        tables[head[len('Vtable for '):].split(' [with')[0].replace(' ', '')] = names
    return tables


def compile_classes(includes, names, flags, declarations=()):
    """Compiles the headers and returns the Layouts of the named classes and all that they are made of."""
    with tempfile.TemporaryDirectory() as folder:
        source = os.path.join(folder, 'unit.cpp')
        with open(source, 'w', encoding='utf-8') as out:
            out.writelines(f'#include "{header}"\n' for header in includes)
            out.writelines(f'{line}\n' for line in declarations if line)
            for index, name in enumerate(names):
                out.write(f'{name} * used_{index};\nchar size_{index}[sizeof({name})];\n')
        done = subprocess.run([os.environ.get('CXX', 'g++'), *FLAGS, *flags, '-c', source, '-o', 'unit.o'],
                              cwd=folder, capture_output=True, text=True)
        if done.returncode:
            raise LayoutError('does not compile:\n' + done.stderr[:2000])
        info = subprocess.run(['readelf', '-W', '--debug-dump=info', 'unit.o'], cwd=folder, capture_output=True,
                              text=True, check=True)
        dump = [file for file in os.listdir(folder) if file.endswith('.class')]
        with open(os.path.join(folder, dump[0]), encoding='utf-8') as text:
            return Layouts(info.stdout, text.read())
