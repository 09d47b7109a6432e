"""usage: kill_writer.py [--runs N] [--seed SEED]

Kills a process that saves, batches, deletes, commits and rewrites at random moments, again and again, and asks a copy
of the files what the library holds: all that was acknowledged, bit for bit, or that and the step that was under way.
Then the next process takes the same files over and goes on.  Two processes at once: the second is refused.
"""
import argparse
import os
import random
import shutil
import signal
import subprocess
import sys
import time

WRITER = os.path.join(os.environ['SOLUTIONMANAGER_BIN'], 'library_writer')
LOCKED = 6
ROUNDS_PER_LIBRARY = 25


def start(path, seed, first, last=None):
    words = [WRITER, 'write', path, str(seed), str(first)] + ([str(last)] if last else [])
    process = subprocess.Popen(words, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                               text=True)
    ready = process.stdout.readline()
    if ready != 'ready\n':
        sys.exit(f'the writer did not start: {process.stderr.read()}')
    return process


def write_and_kill(path, seed, steps, source):
    """Gives the last step that was acknowledged, and whether the process died of the kill."""
    if source.random() < 0.1:  # One that ends in order.
        process = start(path, seed, steps + 1, steps + 1 + source.randrange(20))
        lines = process.stdout.readlines()
    else:
        process = start(path, seed, steps + 1)
        lines = [process.stdout.readline() for _ in range(int(source.expovariate(1 / 15)))]
        time.sleep(source.random() * 0.003)
        process.kill()
        lines += process.stdout.readlines()
    status = process.wait()
    if status not in (0, -signal.SIGKILL):
        sys.exit(f'a step failed: {process.stderr.read()}')
    # The last line may have been cut: an acknowledgement is a whole line.
    told = [int(line) for line in lines if line.endswith('\n')]
    if told != list(range(steps + 1, steps + 1 + len(told))):
        sys.exit(f'steps were left out: {told}')
    return steps + len(told), status != 0


def steps_in(path, seed, acknowledged):
    """What a copy of the files holds, as the number of steps."""
    shutil.rmtree('copy', ignore_errors=True)
    shutil.copytree(os.path.dirname(path), 'copy')
    copy = os.path.join('copy', os.path.basename(path))
    done = subprocess.run([WRITER, 'check', copy, str(seed), str(acknowledged)], capture_output=True, text=True)
    if done.returncode != 0:
        sys.exit(f'seed of the play {seed}, {acknowledged} steps acknowledged: {done.stderr}')
    return int(done.stdout)


def kill_again_and_again(runs, source):
    kills, steps, rounds = 0, 0, 0
    while kills < runs:
        if rounds % ROUNDS_PER_LIBRARY == 0:
            shutil.rmtree('library', ignore_errors=True)
            os.mkdir('library')
            seed, steps = source.randrange(10 ** 9), 0
        path = os.path.join('library', 'a.qsol')
        acknowledged, was_killed = write_and_kill(path, seed, steps, source)
        steps = steps_in(path, seed, acknowledged)
        kills, rounds = kills + was_killed, rounds + 1


def refuse_a_second_writer():
    os.mkdir('shared')
    path = os.path.join('shared', 'a.qsol')
    first = start(path, 1, 1)
    try:
        for _ in range(20):
            first.stdout.readline()
        second = subprocess.run([WRITER, 'write', path, '2', '1', '5'], capture_output=True, text=True)
    finally:
        first.kill()
        lines = first.stdout.readlines()
        first.wait()
    if second.returncode != LOCKED or not second.stderr.strip() or second.stdout:
        sys.exit(f'the second writer was not refused: {second.returncode} {second.stdout}{second.stderr}')
    told = [int(line) for line in lines if line.endswith('\n')]
    steps_in(path, 1, told[-1] if told else 20)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument('--runs', type=int, default=20, help='kills')
    parser.add_argument('--seed', type=int, default=random.SystemRandom().randrange(10 ** 9))
    options = parser.parse_args()
    print(f'seed {options.seed} (repeat with --seed {options.seed})', flush=True)
    refuse_a_second_writer()
    kill_again_and_again(options.runs, random.Random(options.seed))
    print(f'{options.runs} kills; all that was acknowledged was there, and no more than the step under way')


if __name__ == '__main__':
    main()
