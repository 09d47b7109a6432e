"""What the end-to-end tests share: running solvedesk, projects to try it on, reading what it prints and writes."""
import csv
import ctypes
import json
import os
import subprocess
import sys
import tempfile
import threading
import unittest

BIN = os.environ['SOLUTIONMANAGER_BIN']
SOURCE = os.environ['SOLUTIONMANAGER_SOURCE']
SOLVEDESK = os.path.join(BIN, 'solvedesk')
LOWPASS = os.path.join(SOURCE, 'examples', 'lowpass', 'lowpass.cir')
SETUP = 'SParameters1'

# One port, one resistor, a capacitor to vary: as small as a circuit gets.
SMALL = """small circuit
.param cap=1e-12 res=50
V1 in 0 dc 0 ac 1 portnum 1 z0 50
R1 in 0 {res}
C1 in 0 {cap}
.sp lin 11 1meg 1g
.end
"""

sys.path.insert(0, os.path.join(SOURCE, 'examples', 'lowpass'))
import closed_form  # noqa: E402  (an example's own check, which tests use too)


class DeskTest(unittest.TestCase):
    """Each test has a folder of its own, which is the current one."""

    def setUp(self):
        self.start = os.getcwd()
        self.folder = tempfile.mkdtemp(prefix=self._testMethodName[:40] + '-')
        self.errors_of = {}
        os.chdir(self.folder)
        self.addCleanup(os.chdir, self.start)

    def run_desk(self, *words, code=0, **options):
        """Runs solvedesk to its end and checks its exit code."""
        done = subprocess.run([SOLVEDESK, *words], stdin=subprocess.DEVNULL, capture_output=True, text=True,
                              timeout=300, **options)
        self.assertEqual(done.returncode, code,
                         f'solvedesk {" ".join(words)}\nstdout: {done.stdout}\nstderr: {done.stderr}')
        return done

    def launch(self, program, *words):
        """A program that runs beside the test; it ends with the test."""
        process = subprocess.Popen([program, *words], stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                                   stderr=subprocess.PIPE, text=True)
        errors = []
        reader = threading.Thread(target=lambda: errors.append(process.stderr.read()))
        reader.start()
        self.errors_of[process] = (reader, errors)
        self.addCleanup(process.stderr.close)
        self.addCleanup(process.stdout.close)
        self.addCleanup(reader.join)
        self.addCleanup(lambda: process.poll() is None and process.kill())
        guard = threading.Timer(240, process.kill)
        guard.start()
        self.addCleanup(guard.cancel)
        return process

    def finish(self, process):
        """What is left of its output, and its errors.  Popen.communicate() would lose lines that readline() read ahead."""
        out = process.stdout.read()
        process.wait()
        reader, errors = self.errors_of[process]
        reader.join()
        return out, errors[0]

    def refuse(self, code, *words, **options):
        """A refusal: the exit code, one line on standard error and nothing on standard output.  Gives the line."""
        done = self.run_desk(*words, code=code, **options)
        self.assertEqual(done.stdout, '')
        lines = done.stderr.splitlines()
        self.assertEqual(len(lines), 1, done.stderr)
        self.assertTrue(lines[0].startswith('solvedesk: '), lines[0])
        return lines[0]

    def document(self, *words, code=0):
        """The one JSON document that a verb prints."""
        document = json.loads(self.run_desk(*words, '--json', code=code).stdout)
        self.assertEqual(document['schema_version'], 1)
        return document

    def variations(self, project, setup=SETUP):
        """{variation: what info tells of it} of the setup's only solution."""
        document = self.document('info', project)
        solutions = [s for entry in document['setups'] if entry['name'] == setup for s in entry['solutions']]
        self.assertEqual(len(solutions), 1, document)
        return {entry['variation']: entry for entry in solutions[0]['variations']}

    def small_project(self, name='small', netlist=SMALL):
        write(f'{name}.cir', netlist)
        self.run_desk('new', name, '--netlist', f'{name}.cir')
        return name


_prctl = ctypes.CDLL(None, use_errno=True).prctl
DROP_FROM_BOUNDING_SET, DAC_OVERRIDE, DAC_READ_SEARCH = 24, 1, 2


def bound_by_permissions():
    """As `preexec_fn`: permissions bind the program even where tests run as root."""
    if os.geteuid() == 0:
        for capability in (DAC_OVERRIDE, DAC_READ_SEARCH):
            if _prctl(DROP_FROM_BOUNDING_SET, capability, 0, 0, 0) != 0:
                raise OSError(ctypes.get_errno(), 'a capability of root cannot be given up')


def write(path, text):
    with open(path, 'w', encoding='utf-8') as file:
        file.write(text)


def read(path):
    with open(path, 'rb') as file:
        return file.read()


def index_of(folder):
    """The rows of index.csv."""
    with open(os.path.join(folder, 'index.csv'), encoding='utf-8', newline='') as file:
        return list(csv.DictReader(file))


def files_below(folder='.'):
    return sorted(os.path.relpath(os.path.join(at, name), folder) for at, _, names in os.walk(folder) for name in names)
