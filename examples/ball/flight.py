"""usage: flight.py FILE

Computes the flight of a ball that is thrown from the ground.  FILE has a name and a number in each line: speed (m/s),
angle (degrees), mass (kg), diameter (m), drag (the ball's drag coefficient), step (s).
"""
import csv
import json
import math
import sys

GRAVITY = 9.81  # m/s2
AIR = 1.225     # kg/m3


def read_values(path):
    with open(path, encoding='utf-8') as file:
        return {name: float(number) for name, number in (line.split() for line in file)}


def slope(state, friction):
    """How place and speed change: (x, height, speed along x, speed upwards)."""
    _, _, along, upwards = state
    speed = math.hypot(along, upwards)
    return along, upwards, -friction * speed * along, -GRAVITY - friction * speed * upwards


def step_on(state, friction, step):
    """One Runge-Kutta step of fourth order."""
    def moved(change, part):
        return tuple(a + part * step * b for a, b in zip(state, change))
    first = slope(state, friction)
    second = slope(moved(first, 0.5), friction)
    third = slope(moved(second, 0.5), friction)
    fourth = slope(moved(third, 1.0), friction)
    return tuple(a + step / 6.0 * (p + 2.0 * q + 2.0 * r + s)
                 for a, p, q, r, s in zip(state, first, second, third, fourth))


def fly(values):
    """The path as (time, x, height), with the landing as its last point."""
    if not 0.0 < values['angle'] < 90.0:
        sys.exit(f"angle {values['angle']}: the ball must go up and forward; give 0 to 90 degrees")
    area = math.pi * values['diameter'] ** 2 / 4.0
    friction = 0.5 * AIR * values['drag'] * area / values['mass']
    angle = math.radians(values['angle'])
    state = (0.0, 0.0, values['speed'] * math.cos(angle), values['speed'] * math.sin(angle))
    path = [(0.0, 0.0, 0.0)]
    while True:
        after = step_on(state, friction, values['step'])
        time, x, height = path[-1]
        if after[1] < 0.0:
            part = height / (height - after[1])
            return path + [(time + part * values['step'], x + part * (after[0] - x), 0.0)]
        path.append((time + values['step'], after[0], after[1]))
        state = after


def main():
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    path = fly(read_values(sys.argv[1]))
    with open('flight.csv', 'w', newline='', encoding='utf-8') as file:
        rows = csv.writer(file)
        rows.writerow(['time', 'x', 'height'])
        rows.writerows(path)
    with open('result.json', 'w', encoding='utf-8') as file:
        json.dump({'range': path[-1][1], 'duration': path[-1][0], 'top': {'height': max(row[2] for row in path)}}, file)


main()
