"""usage: kill_solve.py [--times N] [--seed SEED]

Kills a solve at random moments, again and again, and asks from outside whether every point that was acknowledged is
there after reopening, bit for bit.  The oracle is the event lines that the solve had printed when it died; the
reference is one solve that nobody disturbed.
"""
import argparse
import json
import os
import random
import shutil
import signal
import subprocess
import sys
import threading
import time

sys.path.insert(0, os.path.join(os.environ['SOLUTIONMANAGER_SOURCE'], 'tests', 'e2e'))
from _solvedesk import LOWPASS, SOLVEDESK, index_of, read, write  # noqa: E402

GRID = ('--vary', 'cscale=0.8:1.2:0.05', '--vary', 'lscale=0.8:1.2:0.05')
POINTS = 81


def desk(*words):
    done = subprocess.run([SOLVEDESK, *words], stdin=subprocess.DEVNULL, capture_output=True, text=True, timeout=300)
    if done.returncode != 0:
        sys.exit(f'solvedesk {" ".join(words)}: exit code {done.returncode}\n{done.stdout}{done.stderr}')
    return done


def touchstone(project, folder):
    """{(setup, variation): bytes of its file}, comments left out, since they may name the moment of writing."""
    desk('touchstone', project, '--to', folder, '--digits', '17')
    return {(row['setup'], row['variation']): data_lines(os.path.join(folder, row['file'])) for row in index_of(folder)}


def data_lines(path):
    return b'\n'.join(line for line in read(path).splitlines() if not line.startswith(b'!'))


def reference():
    """The files of an undisturbed solve, and the seconds from its first event to its last."""
    # More frequencies than the example has, so that there is time to be killed in.
    write('slow.cir', read(LOWPASS).decode().replace('.sp lin 201', '.sp lin 1001'))
    desk('new', 'whole', '--netlist', 'slow.cir')
    process = subprocess.Popen([SOLVEDESK, 'solve', 'whole', *GRID, '--events'], stdin=subprocess.DEVNULL,
                               stdout=subprocess.PIPE, text=True)
    times = [time.monotonic() for line in process.stdout]
    if process.wait() != 0 or len(times) != POINTS + 1:
        sys.exit(f'the undisturbed solve told {len(times)} events and ended with {process.returncode}')
    return touchstone('whole', 'whole-files'), times[-1] - times[0]


def solve_and_kill(project, delay):
    """Kills the solve that many seconds after its first event, unless it ends before; gives what it acknowledged."""
    process = subprocess.Popen([SOLVEDESK, 'solve', project, *GRID, '--events'], stdin=subprocess.DEVNULL,
                               stdout=subprocess.PIPE, text=True)
    lines = [process.stdout.readline()]
    timer = threading.Timer(delay, process.send_signal, (signal.SIGKILL,))
    timer.start()
    lines += process.stdout.readlines()
    process.wait()
    timer.cancel()
    # The last line may have been cut: an acknowledgement is a whole line.
    events = [json.loads(line) for line in lines if line.endswith('\n')]
    killed = process.returncode == -signal.SIGKILL
    return [(e['setup'], e['variation']) for e in events if e['event'] == 'stored'], killed


def info_of(project):
    document = json.loads(desk('info', project, '--json').stdout)
    return {(setup['name'], state['variation']): state
            for setup in document['setups'] for solution in setup['solutions'] for state in solution['variations']}


def check(project, acknowledged, whole):
    """Complaints about points that were acknowledged and are gone, or differ from the undisturbed solve."""
    states = info_of(project)
    complaints = [f'{point} is gone' for point in acknowledged
                  if point not in states or not states[point]['has_data'] or not states[point]['valid']]
    if not states:
        return complaints
    files = touchstone(project, project + '-files')
    complaints += [f'{point} can not be written' for point in acknowledged if point not in files]
    complaints += [f'{point} differs from the undisturbed solve'
                   for point, data in files.items() if data != whole[point]]
    return complaints


def kill_and_finish(project, source, whole, seconds):
    """One death or two in a row, as a recovery that was never saved must be recovered again; then the work is
    finished.  Gives complaints, the number of deaths and of acknowledged points when they came."""
    desk('new', project, '--netlist', 'slow.cir')
    acknowledged, told = [], []
    for _ in range(source.choice((1, 2))):
        left = 1 - len(acknowledged) / POINTS
        points, killed = solve_and_kill(project, source.uniform(0, seconds * left))
        acknowledged += points
        complaints = check(project, acknowledged, whole)
        if killed:
            told.append(len(acknowledged))
        if complaints:
            return complaints, told
    desk('solve', project, *GRID)
    desk('save', project)  # A solve that found all points valid saves nothing.
    states = info_of(project)
    return [f'{point} is missing after the work was finished' for point in whole
            if not (point in states and states[point]['saved'] and states[point]['valid'])], told


def remove(project):
    for name in os.listdir('.'):
        if name.startswith(project):
            shutil.rmtree(name) if os.path.isdir(name) else os.remove(name)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument('--times', type=int, default=20, help='kills')
    parser.add_argument('--seed', type=int, default=random.SystemRandom().randrange(10 ** 9))
    options = parser.parse_args()
    print(f'seed {options.seed} (repeat with --seed {options.seed})', flush=True)
    source = random.Random(options.seed)
    whole, seconds = reference()
    kills, rounds = 0, 0
    while kills < options.times and rounds < 4 * options.times:
        project = f'round{rounds}'
        complaints, told = kill_and_finish(project, source, whole, seconds)
        when = ' and then '.join(f'killed at {count}' for count in told) or 'over before it could be killed, at all'
        print(f'round {rounds}: {when} of {POINTS} points acknowledged', flush=True)
        if complaints:
            sys.exit('\n'.join(complaints + [f'seed {options.seed}, round {rounds}']))
        kills, rounds = kills + len(told), rounds + 1
        remove(project)
    if kills < options.times:
        sys.exit(f'only {kills} solves of {rounds} rounds died before their end: this showed too little')
    print(f'{kills} kills; every acknowledged point was there, bit for bit')


if __name__ == '__main__':
    main()
