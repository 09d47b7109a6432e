#!/usr/bin/python3
"""usage: include_direction.py ROOT

Checks who includes whom against the block ```rooms of docs/architecture.md: include direction, no circle between
rooms but those that the block allows, no circle between headers, only standard headers under lib/ outside the room
`file`.  Prints one line per breach.
"""
import fnmatch
import os
import re
import sys

TREES = ('lib', 'desktop', 'products', 'apps')
ROOTS = ('lib/hostframework', 'lib', '')
INCLUDE = re.compile(r'^\s*#\s*include\s*(?:"([^"]+)"|<([^>]+)>)', re.M)
COMMENTS = re.compile(r'/\*.*?\*/', re.S)
FREE_OF_RULES = 'file'  # the one room of lib/ that calls the operating system

STANDARD = set('''algorithm any array atomic barrier bit bitset cassert cctype cerrno cfenv cfloat charconv chrono
cinttypes climits clocale cmath codecvt compare complex concepts condition_variable coroutine csetjmp csignal cstdarg
cstddef cstdint cstdio cstdlib cstring ctime cuchar cwchar cwctype deque exception execution expected filesystem format
forward_list fstream functional future initializer_list iomanip ios iosfwd iostream istream iterator latch limits list
locale map memory memory_resource mutex new numbers numeric optional ostream queue random ranges ratio regex
scoped_allocator semaphore set shared_mutex source_location span sstream stack stdexcept stop_token streambuf string
string_view strstream syncstream system_error thread tuple type_traits typeindex typeinfo unordered_map unordered_set
utility valarray variant vector version'''.split())


class Rules:
    """The rooms, what each may include, and the faces."""

    def __init__(self, document):
        block = re.search(r'^```rooms\n(.*?)^```', document, re.M | re.S)
        if not block:
            raise ValueError('docs/architecture.md has no ```rooms block')
        self.folders, self.groups, self.faces, self.seen = {}, {}, [], {}
        for line in (re.sub(r'#.*', '', line).strip() for line in block[1].splitlines()):
            if line:
                self._read(line)
        self.allowed = {room: self.expand(words) | {room} for room, words in self.seen.items()}
        self.faces = [(pattern, self.expand(words)) for pattern, words in self.faces]

    def _read(self, line):
        room = re.fullmatch(r'room (\S+)\s*= (\S+)\s*:\s*(.*)', line)
        group = re.fullmatch(r'group (\S+)\s*= (.+)', line)
        face = re.fullmatch(r'face (\S+)\s*: (.+)', line)
        if room:
            self.folders[room[2]] = room[1]
            self.seen[room[1]] = room[3].split()
        elif group:
            self.groups[group[1]] = group[2].split()
        elif face:
            self.faces.append((face[1], face[2].split()))
        else:
            raise ValueError(f'docs/architecture.md: the rooms block has a line that says nothing: {line}')

    def expand(self, words):
        rooms = set()
        for word in words:
            if word in self.groups:
                rooms |= self.expand(self.groups[word])
            elif word in self.seen:
                rooms.add(word)
            else:
                raise ValueError(f'docs/architecture.md: no room or group is called {word}')
        return rooms

    def room_of(self, path):
        folder = os.path.dirname(path)
        while folder:
            if folder in self.folders:
                return self.folders[folder]
            folder = os.path.dirname(folder)
        return None

    def by_face(self, path):
        """What a source may include beyond its room's arrows."""
        return set().union(*(rooms for pattern, rooms in self.faces if fnmatch.fnmatch(path, pattern)))


def includes_of(root):
    """Path from ROOT of every source and header to its includes: (path of a project file or None, name as written)."""
    graph = {}
    for tree in TREES:
        for folder, _, files in sorted(os.walk(os.path.join(root, tree))):
            for name in sorted(files):
                if name.endswith(('.h', '.cpp', '.c', '.hpp')):
                    path = os.path.relpath(os.path.join(folder, name), root)
                    graph[path] = read_includes(root, path)
    return graph


def read_includes(root, path):
    with open(os.path.join(root, path), encoding='utf-8') as text:
        found = INCLUDE.findall(COMMENTS.sub('', text.read()))
    return [(locate(root, path, quoted) if quoted else None, f'"{quoted}"' if quoted else f'<{system}>')
            for quoted, system in found]


def locate(root, path, name):
    for base in (os.path.dirname(path), *ROOTS):
        candidate = os.path.normpath(os.path.join(base, name))
        if os.path.isfile(os.path.join(root, candidate)):
            return candidate
    return None


def breaches_of_direction(rules, graph):
    for path, includes in graph.items():
        room = rules.room_of(path)
        if room is None:
            yield f'{path}: stands in no room of docs/architecture.md'
            continue
        allowed = rules.allowed[room] | (rules.by_face(path) if path.endswith('.cpp') else set())
        for target, written in includes:
            if written.startswith('<'):
                if path.startswith('lib/') and room != FREE_OF_RULES and written[1:-1] not in STANDARD:
                    yield f'{path}: includes {written}, which is not of the standard library'
            elif target is None:
                yield f'{path}: includes {written}, which is not there'
            elif rules.room_of(target) not in allowed:
                yield f'{path}: room {room} may not include {target} (room {rules.room_of(target)})'


def circles(graph):
    """The circles of a graph, each as the list of its nodes; found by depth-first search, each closing edge once."""
    state, found = {}, []

    def visit(node, trail):
        state[node] = 'open'
        trail.append(node)
        for target in sorted(graph.get(node, ())):
            if state.get(target) == 'open':
                found.append(trail[trail.index(target):] + [target])
            elif target not in state:
                visit(target, trail)
        trail.pop()
        state[node] = 'done'

    sys.setrecursionlimit(10000)
    for node in sorted(graph):
        if node not in state:
            visit(node, [])
    return found


def breaches_by_circles(rules, graph):
    headers = {path: {target for target, _ in includes if target} for path, includes in graph.items()
               if not path.endswith('.cpp')}
    for circle in circles(headers):
        yield 'headers include each other: ' + ' -> '.join(circle)
    rooms = {}
    for path, includes in graph.items():
        room = rules.room_of(path)
        for target, _ in includes:
            other = rules.room_of(target) if target else None
            if room and other and other != room and not (path.endswith('.cpp') and other in rules.by_face(path)):
                if not (room in rules.allowed[other] and other in rules.allowed[room]):
                    rooms.setdefault(room, set()).add(other)
    for circle in circles(rooms):
        yield 'rooms include each other: ' + ' -> '.join(circle)


def main():
    root = os.path.abspath(sys.argv[1])
    with open(os.path.join(root, 'docs/architecture.md'), encoding='utf-8') as document:
        rules = Rules(document.read())
    graph = includes_of(root)
    breaches = [*breaches_of_direction(rules, graph), *breaches_by_circles(rules, graph)]
    print('\n'.join(breaches) or f'{len(graph)} files keep to the arrows')
    sys.exit(1 if breaches else 0)


if __name__ == '__main__':
    main()
