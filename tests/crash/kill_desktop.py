"""usage: kill_desktop.py [--runs N] [--seed SEED]

Kills the desktop at random moments of all that it does: solving, editing variables and setups, deleting and solving
again, undoing, saving, discarding, opening after a crash.  Each run is a project that lives through some deaths.  The
oracle stands outside: what a verb acknowledged (a line of events, an exit code of 0) is there when the project is opened
again, valid or stale as it was, and valid points have the bits of one solve that nobody disturbed; what was saved is
there again after a discard, whatever died in between.
"""
import argparse
import json
import os
import random
import shutil
import signal
import subprocess
import sys
import time

sys.path.insert(0, os.path.join(os.environ['SOLUTIONMANAGER_SOURCE'], 'tests', 'e2e'))
from _solvedesk import SMALL, SOLVEDESK, index_of, read, write  # noqa: E402

# Enough frequencies that a point takes a while.
NETLIST = SMALL.replace('.sp lin 11 1meg 1g', '.sp lin 801 1meg 1g')
RES = [str(value) for value in range(40, 60)]
CAP = ['1e-12', '2e-12', '3e-12']
GRID = ('--vary', 'res=' + ','.join(RES), '--vary', 'cap=' + ','.join(CAP))
FIRST, SECOND = 'SParameters1', 'Second'
# What the setups solve; the first one is edited at times.
SWEEP, EDITED, OTHER = 'lin 801 1meg 1g', 'lin 401 1meg 1g', 'lin 601 1meg 1g'


class Broken(Exception):
    """What was acknowledged is not there, or a verb failed that must not."""


def desk(*words):
    done = subprocess.run([SOLVEDESK, *words], stdin=subprocess.DEVNULL, capture_output=True, text=True, timeout=300)
    if done.returncode != 0:
        raise Broken(f'solvedesk {" ".join(words)}: exit code {done.returncode}\n{done.stdout}{done.stderr}')
    return done


def desk_and_kill(delay, *words):
    """Runs a verb for so many seconds; gives its lines, and whether it was killed before its end."""
    process = subprocess.Popen([SOLVEDESK, *words], stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                               stderr=subprocess.PIPE, text=True)
    try:
        out, err = process.communicate(timeout=delay)
    except subprocess.TimeoutExpired:
        process.send_signal(signal.SIGKILL)
        out, err = process.communicate()
    killed = process.returncode == -signal.SIGKILL
    if not killed and process.returncode != 0:
        raise Broken(f'solvedesk {" ".join(words)}: exit code {process.returncode}\n{out}{err}')
    # The last line may have been cut: an acknowledgement is a whole line.
    return [line for line in out.splitlines(keepends=True) if line.endswith('\n')], killed


def write_script(cap, res):
    write('script', '\n'.join((f'setup edit {FIRST} {EDITED}',
                               f'solve --setup {FIRST} --vary cap={cap} --vary res={",".join(res)} --no-save',
                               'undo', f'solve --setup {FIRST} --vary cap={cap} --no-save')) + '\n')


def touchstone(project, folder):
    """{(setup, variation): bytes of its file}, comments left out, since they may name the moment of writing."""
    desk('touchstone', project, '--to', folder, '--digits', '17')
    return {(row['setup'], row['variation']): b'\n'.join(
        line for line in read(os.path.join(folder, row['file'])).splitlines() if not line.startswith(b'!'))
            for row in index_of(folder)}


def remove(prefix):
    for name in os.listdir('.'):
        if name.startswith(prefix):
            shutil.rmtree(name) if os.path.isdir(name) else os.remove(name)


class Reference:
    """The undisturbed solve of all points, and how long the verbs take here."""

    def __init__(self):
        write('small.cir', NETLIST)
        self.seconds = {}
        self.measure('whole')
        self.files = touchstone('whole', 'whole-files')
        if len(self.files) != 2 * len(RES) * len(CAP):
            raise Broken(f'the undisturbed solve has {len(self.files)} points')

    def measure(self, name):
        """What the machine needs now: on one that has become busy, deaths would come before anything was done."""
        desk('new', name, '--netlist', 'small.cir')
        self.time('setup', name, 'add', SECOND, *OTHER.split())
        self.time('solve', name, *GRID, '--no-save')
        self.time('save', name)
        self.time('set', name, 'res=50')
        self.time('info', name)
        self.time('delete', name, '--variation', 'cap=1e-12; res=40')
        write_script(CAP[0], RES[:8])
        self.time('shell', name, 'script')
        self.time('discard', name)
        self.time('set', name, '--rename', 'cap=capacity', of='rename')
        desk('discard', name)

    def time(self, verb, *words, of=None):
        start = time.monotonic()
        desk(verb, *words)
        self.seconds[of or verb] = time.monotonic() - start


class Run:
    """One project, what it acknowledged, and its deaths."""

    def __init__(self, name, source, reference):
        self.name, self.source, self.reference = name, source, reference
        self.acknowledged = set()  # (setup, variation)
        self.edited = set()  # What was solved while the first setup stood edited.
        self.design = {'res': '50', 'cap': '1e-12'}
        self.deaths, self.story = 0, []
        desk('new', name, '--netlist', 'small.cir')

    def live(self):
        actions = [self.solve, self.edit_and_solve, self.save, self.look, self.delete_and_solve, self.add_setup,
                   self.edit_setup_and_undo, self.rename_and_discard, self.delete_and_discard,
                   self.rename_and_back]
        self.source.shuffle(actions)
        self.solve()
        for action in actions[:self.source.randint(3, 6)]:
            action()
            if self.source.random() < 0.7:  # Else several deaths in a row.
                self.check()
        self.finish()

    def attempt(self, verb, *words, like=None):
        """A verb that is killed at a random moment of the time it takes, or comes to its end."""
        delay = self.source.uniform(0, 1.3 * self.reference.seconds[like or verb])
        lines, killed = desk_and_kill(delay, verb, self.name, *words)
        self.deaths += killed
        self.story.append(f'{verb} {" ".join(words)}' + (f' (killed after {delay:.3f} s)' if killed else ''))
        return lines, killed

    def solve(self):
        res = self.source.sample(RES, self.source.randint(5, len(RES)))
        cap = self.source.sample(CAP, self.source.randint(1, len(CAP)))
        words = ['--vary', 'res=' + ','.join(res), '--vary', 'cap=' + ','.join(cap), '--events']
        words += ['--no-save'] if self.source.random() < 0.6 else []
        words += ['--jobs', self.source.choice('12')]
        lines, _ = self.attempt('solve', *words)
        events = [json.loads(line) for line in lines]
        stored = {(event['setup'], event['variation']) for event in events if event['event'] == 'stored'}
        self.acknowledged |= stored
        self.story.append(f'  {len(stored)} points acknowledged')

    def edit_and_solve(self):
        name, values = self.source.choice((('res', RES), ('cap', CAP)))
        value = self.source.choice(values)
        _, killed = self.attempt('set', f'{name}={value}')
        if killed:  # It may have been done or not.
            now = self.variables()[name]
            if now not in (self.design[name], value):
                raise Broken(f'{name} is {now} after an edit to {value} that was killed')
            value = now
        self.design[name] = value
        self.solve()

    def delete_and_solve(self):
        if not self.acknowledged:
            return
        _, variation = self.source.choice(sorted(self.acknowledged))
        self.attempt('delete', '--variation', variation)
        for points in (self.acknowledged, self.edited):
            points -= {(FIRST, variation), (SECOND, variation)}
        self.solve()

    def rename_and_discard(self):
        self.discard_after(lambda: self.attempt('set', '--rename', 'cap=capacity', like='rename'))

    def rename_and_back(self):
        """The name of a variable, and with it that of each point, is one of the two everywhere."""
        _, killed = self.attempt('set', '--rename', 'cap=capacity', like='rename')
        now = self.variables()
        renamed = {('capacity' if name == 'cap' else name): value for name, value in self.design.items()}
        if now not in ((renamed, self.design) if killed else (renamed,)):
            raise Broken(f'the design is {now} after a rename')
        if now == renamed:
            desk('set', self.name, '--rename', 'capacity=cap')
        self.check()

    def delete_and_discard(self):
        if self.acknowledged:
            _, variation = self.source.choice(sorted(self.acknowledged))
            self.discard_after(lambda: self.attempt('delete', '--variation', variation))

    def discard_after(self, work):
        """The saved state is had again, whether what follows it was taken over, or the discard itself was killed."""
        desk('save', self.name)
        work()
        if self.source.random() < 0.7:
            self.look()
        if self.source.random() < 0.5:
            self.attempt('discard')
        desk('discard', self.name)
        self.check()

    def add_setup(self):
        _, killed = self.attempt('setup', 'add', SECOND, *OTHER.split())
        names = [setup['name'] for setup in self.info()['setups']]
        if names not in ([FIRST, SECOND], *([[FIRST]] if killed else [])):
            raise Broken(f'the setups are {names} after adding one')
        self.solve()

    def edit_setup_and_undo(self):
        """What an edit of a setup makes stale is there all the same, and valid again when it is taken back."""
        cap, res = self.source.choice(CAP), self.source.sample(RES, 8)
        write_script(cap, res)
        lines, killed = self.attempt('shell', 'script', '--json')
        done = [json.loads(line) for line in lines]
        if any(line['exit_code'] != 0 for line in done):
            raise Broken(f'a line of the script failed: {done}')
        points = next(setup for setup in self.info()['setups'] if setup['name'] == FIRST)['sweeps'][0]['count']
        self.story.append(f'  {len(done)} lines acknowledged, the sweep has {points} points')
        expected = {0: (401, 801), 1: (401,), 2: (401, 801)}.get(len(done), (801,))
        if points not in (expected if killed else (801,)):
            raise Broken(f'the sweep has {points} points after {len(done)} lines')
        if len(done) >= 2:
            self.edited |= {(FIRST, f'cap={cap}; res={value}') for value in res}
        if len(done) >= 4:
            self.acknowledged.add((FIRST, f'cap={cap}; res={self.design["res"]}'))
        if points == 401:
            self.check(edit_stands=True)
            desk('setup', self.name, 'edit', FIRST, *SWEEP.split())
        self.check()

    def save(self):
        self.attempt('save')

    def look(self):
        """Opening takes over what a crash left: that can be killed too."""
        self.attempt('info')

    def info(self):
        return json.loads(desk('info', self.name, '--json').stdout)

    def variables(self):
        return {entry['name']: entry['value'] for entry in self.info()['design']['variables']}

    def states(self):
        """{(setup, variation): what it is in any version of the setup}"""
        states = {}
        for setup in self.info()['setups']:
            for state in (state for solution in setup['solutions'] for state in solution['variations']):
                states.setdefault((setup['name'], state['variation']), set()).add(
                    'no data' if not state['has_data'] else 'valid' if state['valid'] else 'stale')
        return states

    def check(self, edit_stands=False):
        if self.variables() != self.design:
            raise Broken(f'the design is {self.variables()}, acknowledged was {self.design}')
        states = self.states()
        wanted = [(point, 'stale' if edit_stands and point[0] == FIRST else 'valid') for point in self.acknowledged]
        wanted += [(point, 'valid' if edit_stands else 'stale') for point in self.edited]
        for point, state in wanted:
            if state not in states.get(point, ()):
                raise Broken(f'{point} should be {state}, and is {states.get(point, "gone")}')
        if edit_stands or not self.acknowledged:
            return
        files = touchstone(self.name, self.name + '-files')
        for point in self.acknowledged:
            if files.get(point) != self.reference.files[point]:
                raise Broken(f'{point} differs from the undisturbed solve')

    def finish(self):
        """Nothing stands in the way of going on."""
        desk('save', self.name)
        self.check()
        desk('solve', self.name, *GRID)
        for point, data in touchstone(self.name, self.name + '-files').items():
            if data != self.reference.files[point]:
                raise Broken(f'{point} of the finished project differs from the undisturbed one')


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument('--runs', type=int, default=20, help='projects')
    parser.add_argument('--seed', type=int, default=random.SystemRandom().randrange(10 ** 9))
    options = parser.parse_args()
    print(f'seed {options.seed} (repeat with --seed {options.seed} --runs {options.runs})', flush=True)
    source = random.Random(options.seed)
    reference = Reference()
    deaths = points = idle = 0
    for number in range(options.runs):
        if number % 10 == 9:
            reference.measure('again-')
            remove('again-')
        run = Run(f'run-{number}-', random.Random(source.randrange(10 ** 9)), reference)
        try:
            run.live()
        except Broken as broken:
            sys.exit('\n'.join(run.story + [f'run {number}: {broken}']))
        print(f'run {number}: {run.deaths} deaths, {len(run.acknowledged)} points acknowledged', flush=True)
        deaths += run.deaths
        points += len(run.acknowledged)
        idle += not run.acknowledged
        remove(run.name)
    if deaths < options.runs or 2 * idle > options.runs:
        sys.exit(f'only {deaths} deaths in {options.runs} runs, {idle} of them without a point: this showed too little')
    print(f'{deaths} deaths; all that was acknowledged was there, {points} points at the ends of the runs')


if __name__ == '__main__':
    main()
