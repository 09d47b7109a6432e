#!/usr/bin/python3
"""The part of the demo that needs more than a shell.

demo-kill.py expect N   reads `solvedesk info --json` and fails unless N variations are valid, have data and are saved
demo-kill.py kill       starts a solve, kills it in the middle, opens the project again and compares every point that
                        was acknowledged with an uninterrupted solve, bit for bit
"""
import csv
import json
import os
import signal
import subprocess
import sys

GRID = ['--vary', 'cscale=0.8:1.2:0.02', '--vary', 'lscale=0.8:1.2:0.02']
POINTS = 21 * 21
KILL_AFTER = 150


def states(document):
    return {(setup['name'], state['variation']): state
            for setup in document['setups'] for solution in setup['solutions'] for state in solution['variations']}


def is_good(state):
    return state['valid'] and state['has_data'] and state['saved']


def expect(count):
    found = states(json.load(sys.stdin))
    good = sum(map(is_good, found.values()))
    if good != count or len(found) != count:
        sys.exit(f'{good} of {len(found)} variations are valid, with data and saved; expected {count}')
    print(f'all {count} variations are valid, have data and are saved')


def desk(*words):
    return subprocess.run(['solvedesk', *words], check=True, stdout=subprocess.PIPE, text=True).stdout


def info(project):
    return states(json.loads(desk('info', project, '--json')))


def exact_files(project):
    """{(setup, variation): numbers of its Touchstone file with 17 digits}"""
    folder = project + '-touchstone'
    desk('touchstone', project, '--to', folder, '--digits', '17')
    with open(os.path.join(folder, 'index.csv'), encoding='utf-8', newline='') as file:
        return {(row['setup'], row['variation']): numbers(os.path.join(folder, row['file']))
                for row in csv.DictReader(file)}


def numbers(path):
    with open(path, encoding='utf-8') as file:
        return [line for line in file if not line.startswith('!')]


def solve_and_kill(project):
    """The points that the solve had acknowledged when it died."""
    process = subprocess.Popen(['solvedesk', 'solve', project, *GRID, '--events'], stdout=subprocess.PIPE, text=True)
    lines = []
    for line in process.stdout:
        lines.append(line)
        if len(lines) == KILL_AFTER:
            process.send_signal(signal.SIGKILL)
    if process.wait() != -signal.SIGKILL:
        sys.exit('the solve was over before it could be killed')
    events = [json.loads(line) for line in lines if line.endswith('\n')]  # an acknowledgement is a whole line
    return [(event['setup'], event['variation']) for event in events if event['event'] == 'stored']


def kill():
    desk('new', 'killed', '--netlist', 'lowpass.cir')
    acknowledged = solve_and_kill('killed')
    print(f'killed with {len(acknowledged)} of {POINTS} points acknowledged')
    found = info('killed')
    lost = [point for point in acknowledged if not found.get(point, {}).get('has_data')]
    more = [point for point, state in found.items() if state['has_data'] and point not in set(acknowledged)]
    print(f'reopened: {len(acknowledged) - len(lost)} of {len(acknowledged)} acknowledged points have their data, '
          f'and {len(more)} more that were stored and not yet told')
    if lost:
        sys.exit(f'lost: {lost}')
    recovered = exact_files('killed')

    desk('new', 'whole', '--netlist', 'lowpass.cir')
    desk('solve', 'whole', *GRID)
    whole = exact_files('whole')
    different = [point for point in acknowledged if recovered.get(point) != whole[point]]
    different += [point for point in recovered if recovered[point] != whole[point]]
    if different:
        sys.exit(f'differs from an uninterrupted solve: {different}')
    print(f'all {len(recovered)} recovered points equal those of an uninterrupted solve in 17 digits')

    print(desk('solve', 'killed', *GRID).strip())
    if sum(map(is_good, info('killed').values())) != POINTS:
        sys.exit('the work could not be finished after the crash')
    print('finished after the crash: only the missing points were solved')


def main():
    if sys.argv[1:2] == ['expect'] and len(sys.argv) == 3:
        expect(int(sys.argv[2]))
    elif sys.argv[1:] == ['kill']:
        kill()
    else:
        sys.exit(__doc__)


if __name__ == '__main__':
    try:
        main()
    except subprocess.CalledProcessError as error:
        sys.exit(str(error))
