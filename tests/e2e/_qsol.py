"""What the end-to-end tests of qsol share: running it, and library files written from their format page alone."""
import json
import os
import subprocess
import tempfile
import unittest

QSOL = os.path.join(os.environ['SOLUTIONMANAGER_BIN'], 'qsol')
PUBLIC_SALT = 0x1122334455667788
PRIVATE_SALT = 0x99aabbccddeeff00
COMMIT = 0x0123456789abcdef
HEADER_SIZE = 76


def _table():
    table = []
    for byte in range(256):
        for _ in range(8):
            byte = byte >> 1 ^ (0x82f63b78 if byte & 1 else 0)
        table.append(byte)
    return table


_TABLE = _table()


def crc32c(data):
    value = 0xffffffff
    for byte in data:
        value = value >> 8 ^ _TABLE[(value ^ byte) & 0xff]
    return value ^ 0xffffffff


class LibraryFile:
    """A library file of text blocks, as docs/formats/qsol.md tells it."""

    def __init__(self, private=False, version=1, base=0):
        self.salt = PRIVATE_SALT if private else PUBLIC_SALT
        kind = 'private' if private else 'public '
        line = f'#qsol {version:04d} {kind} text   little {self.salt:016x} {base:016x} '
        self.bytes = (line + f'{crc32c(line.encode()):08x}\n').encode()
        self.entries = {}

    def record(self, kind, name, payload, flags=0):
        parts = [name.encode() + b'\n', payload.encode() + b'\n']
        line = (f'#q {kind:02x} {flags:02x} {len(parts[0]) - 1:08x} {len(parts[1]) - 1:012x} {self.salt:016x} '
                f'{crc32c(parts[0]):08x} {crc32c(parts[1]):08x} ')
        check = crc32c(f'{len(self.bytes):016x}'.encode() + line.encode())
        offset = len(self.bytes)
        self.bytes += f'{line}{check:08x}\n'.encode() + b''.join(parts)
        return offset

    def block(self, name, body):
        payload = f'{name} {{\n{body}\n}}'
        offset = self.record(1, name, payload)
        size = len(payload.encode())
        check = crc32c(payload.encode() + b'\n')
        self.entries[name] = f'01 00 {offset:016x} {size:012x} {check:08x} {len(name.encode()):08x} {name}'
        return offset

    def commit(self):
        names = sorted(self.entries, key=str.lower)
        index = self.record(3, '', '\n'.join([f'previous {0:016x}'] + [self.entries[name] for name in names]))
        for _ in range(2):
            self.record(4, '', f'index {index:016x} commit {COMMIT:016x} number {1:016x} merged {0:016x} to {0:016x}')
        return self

    def write(self, path):
        with open(path, 'wb') as file:
            file.write(self.bytes)
        return self


def key(variation, setup=3, solution=5, version=12):
    return f'SolutionKey(SimSetup = {setup}, Instance = "{variation}", Solution = {solution}, VersionID = {version})'


def quoted(text):
    return '"' + text.replace('\\', '\\\\').replace('"', '\\"') + '"'


def library(points=2):
    """A name map and so many solved points."""
    made = LibraryFile()
    pairs = []
    for number in range(1, points + 1):
        made.block(f'SolutionBlock{number}', f'  Value = {number}.5')
        pairs.append(f'  {quoted(key(f"a={number}"))} = "SolutionBlock{number}"')
    made.block('BlockMapName', '\n'.join(pairs))
    return made.commit()


class QsolTest(unittest.TestCase):
    """Each test has a folder of its own, which is the current one."""

    def setUp(self):
        start = os.getcwd()
        os.chdir(tempfile.mkdtemp(prefix=self._testMethodName[:40] + '-'))
        self.addCleanup(os.chdir, start)

    def qsol(self, *words, code=0, **options):
        done = subprocess.run([QSOL, *words], stdin=subprocess.DEVNULL, capture_output=True, text=True, timeout=120,
                              **options)
        self.assertEqual(done.returncode, code, f'qsol {" ".join(words)}\n{done.stdout}\n{done.stderr}')
        return done

    def another_user(self):
        """Options of a run that permissions bind: root is refused nothing."""
        if os.getuid() != 0:
            return {}
        # The other user must reach the file to be refused it.
        options = {'user': 65534, 'group': 65534, 'extra_groups': []}
        os.chmod('.', 0o755)
        os.chmod(os.environ['TMPDIR'], 0o755)
        try:
            self.qsol('--version', **options)
        except PermissionError:
            self.skipTest('the programs stand where another user cannot reach them')
        return options

    def document(self, *words, code=0):
        document = json.loads(self.qsol(*words, '--json', code=code).stdout)
        self.assertEqual(document['schema_version'], 1)
        return document

    def refuse(self, code, *words, **options):
        """A refusal: nothing on standard output, one line on standard error, which it gives."""
        done = self.qsol(*words, code=code, **options)
        self.assertEqual(done.stdout, '')
        lines = done.stderr.splitlines()
        self.assertEqual(len(lines), 1, done.stderr)
        self.assertTrue(lines[0].startswith('qsol: '), lines[0])
        return lines[0]
