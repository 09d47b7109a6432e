"""usage: kill_save.py [--runs N] [--seed SEED]

Kills a desktop whose solutions keep files, mostly in the middle of saves, at times again while it opens what that left.
The oracle stands outside: each round replaces all that the project has, so whatever is shown must be of one round in
all its places: design, points, files of four stores, managed files.  The saved round is the last one acknowledged or the
one behind it, and work that was ready for its save is there in the next session.  A discard leaves the saved round and
not a file more.
"""
import argparse
import os
import random
import shutil
import subprocess
import sys
import time

SAVER = os.path.join(os.environ['SOLUTIONMANAGER_BIN'], 'project_saver')
POINTS = 6


def saver(*words):
    done = subprocess.run([SAVER, *map(str, words)], stdin=subprocess.DEVNULL, capture_output=True, text=True)
    if done.returncode != 0:
        sys.exit(f'project_saver {words}: {done.stderr}')
    return done.stdout.splitlines()


def round_shown(lines, allowed, what):
    """The one round of all that is shown."""
    rounds = {line.split()[1] for line in lines if line.startswith('design')}
    for line in lines:
        if not line.startswith('point'):
            continue
        words = line.split(' ')
        if int(words[1]) < POINTS:
            rounds |= {words[2], words[4]}
    if len(rounds) != 1 or int(next(iter(rounds))) not in allowed:
        sys.exit(f'{what} shows {sorted(rounds)} where {sorted(allowed)} are possible:\n' + '\n'.join(lines))
    shown = int(next(iter(rounds)))
    last = [line.split(' ')[4] for line in lines if line.startswith(f'point {POINTS} ')][0]
    if last != (str(shown) if shown % 2 == 0 else ''):
        sys.exit(f'{what} of round {shown}: the point that comes and goes has the file {last!r}')
    return shown


def files_below(folder):
    return sorted(os.path.join(path, name) for path, _, names in os.walk(folder) for name in names)


def work_and_kill(project, first, source):
    """The last round that was saved, and the last one that was ready for it."""
    process = subprocess.Popen([SAVER, 'work', project, str(first), str(first + 20)], stdin=subprocess.DEVNULL,
                               stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True)
    told = [process.stdout.readline() for _ in range(1 + 2 * source.randrange(3))]  # Now a save is under way.
    time.sleep(source.random() * 0.03)
    process.kill()
    out, err = process.communicate()
    if err:
        sys.exit(err)
    lines = [line for line in told + out.splitlines(keepends=True) if line.endswith('\n')]
    rounds = {word: [int(line.split()[1]) for line in lines if line.startswith(word)] for word in ('saved', 'ready')}
    return max([first - 1] + rounds['saved']), max(rounds['ready'])


def open_and_kill(project, source):
    process = subprocess.Popen([SAVER, 'show', project, 'work'], stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                               stderr=subprocess.DEVNULL)
    time.sleep(source.random() * 0.03)
    process.kill()
    process.wait()


def check_discard(project, allowed, before, first):
    """On a copy: the saved round, and no file of another one.  Gives the rounds that were saved ever."""
    shutil.rmtree('copy', ignore_errors=True)
    shutil.copytree(os.path.dirname(project), 'copy')
    copy = os.path.join('copy', os.path.basename(project))
    saver('discard', copy)
    shown = round_shown(saver('show', copy, 'work'), allowed, 'a discard')
    rounds = before + list(range(first, shown + 1))
    results = copy + '.results'
    files = files_below(os.path.join(results, 'fake'))
    # A name that was made and is in no list yet is an empty file.
    managed = sorted(filter(None, (read(path) for path in files_below(results) if '/mf_' in path)), key=int)
    if len(files) != 4 * (POINTS + (1 if shown % 2 == 0 else 0)) or managed != [str(one) for one in rounds]:
        sys.exit(f'after a discard to round {shown} there are {files} and the managed files of {managed}')
    if os.path.exists(copy + '.sproject.saving') or os.path.exists(os.path.join(results, 'saving')):
        sys.exit('a settled save left its files')
    return rounds


def read(path):
    with open(path, encoding='utf-8') as content:
        return content.read()


def main():
    words = argparse.ArgumentParser()
    words.add_argument('--runs', type=int, default=25)
    words.add_argument('--seed', type=int, default=random.randrange(1 << 30))
    options = words.parse_args()
    print(f'seed {options.seed}', flush=True)
    source = random.Random(options.seed)
    os.mkdir('project')
    project = os.path.join('project', 'study')
    with open('circuit.txt', 'w', encoding='utf-8') as out:
        out.write('param C 1\nparam L 2\nsetup Sweep\n')
    saver('new', project, 'circuit.txt')
    saver('work', project, 1, 1)
    rounds, next_round, interrupted = [1], 2, 0
    for _ in range(options.runs):
        saved, ready = work_and_kill(project, next_round, source)
        interrupted += os.path.exists(project + '.sproject.saving')
        if source.random() < 0.4:
            open_and_kill(project, source)
        former = rounds
        rounds = check_discard(project, {max(saved, former[-1]), ready}, former, next_round)
        lines = saver('show', project, 'work')
        if saved < ready:  # Else the next round may be there in part.
            round_shown(lines, {ready}, 'the next session')
            if (lines[0] == 'unsaved 0') != (rounds[-1] == ready):
                sys.exit(f'round {ready}, {rounds[-1]} is saved: {lines[0]}')
        round_shown(saver('show', project, 'saved'), {rounds[-1]}, 'a reader')
        saver('discard', project)
        next_round = ready + 2
        saver('work', project, ready + 1, ready + 1)
        rounds.append(ready + 1)
    print(f'{options.runs} deaths, {interrupted} of them in the middle of a save')
    if interrupted == 0 and options.runs >= 20:
        sys.exit('no death hit a save: the test shows nothing')


main()
