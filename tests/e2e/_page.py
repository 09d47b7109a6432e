"""What a page holds, read from its file alone."""
import base64
import json
import math
import re
import struct


def numbers_of(path):
    """The description of a page and its columns."""
    with open(path, encoding='utf-8') as file:
        html = file.read()
    data = json.loads(re.search(r'id="page-data">(.*?)</script>', html, re.S)[1])
    held = base64.b64decode(re.search(r'id="page-numbers">(.*?)</script>', html, re.S)[1])
    columns = [struct.unpack_from(f'<{count}d', held, first * 8) for first, count in data['columns']]
    return data, columns


def drawable(item, columns):
    """How many samples of an item are numbers that its axes reach."""
    count = 0
    for series in item['series']:
        pair = (series['x'], series['y']) if 'y' in series else (series['re'], series['im'])
        logs = [item.get(axis, {}).get('log', False) if 'y' in series else False for axis in ('x', 'y')]
        count += sum(all(math.isfinite(value) and (value > 0 or not log) for value, log in zip(sample, logs))
                     for sample in zip(*(columns[place] for place in pair)))
    return count
