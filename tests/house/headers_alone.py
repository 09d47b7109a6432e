#!/usr/bin/python3
"""usage: headers_alone.py ROOT

Every header of lib/ and desktop/ must compile as the only include of a file.  A header that passed is not compiled
again until its text or that of a header it includes, however far, changes; what passed is kept in HOUSE_CACHE.
"""
import hashlib
import json
import os
import re
import subprocess
import sys
from concurrent.futures import ThreadPoolExecutor

TREES = ('lib', 'desktop')
FLAGS = ['-std=c++20', '-fsyntax-only', '-Wall', '-Wextra', '-Wshadow', '-Wnon-virtual-dtor', '-Wno-overloaded-virtual',
         '-Werror', '-x', 'c++', '-']
INCLUDE = re.compile(r'^\s*#\s*include\s*"([^"]+)"', re.M)


class Tree:
    def __init__(self, root):
        self.root = root
        self.roots = [os.path.join(root, 'lib/hostframework'), os.path.join(root, 'lib'), root]
        self.texts = {}

    def headers(self):
        for tree in TREES:
            for folder, _, files in sorted(os.walk(os.path.join(self.root, tree))):
                yield from (os.path.join(folder, name) for name in sorted(files) if name.endswith('.h'))

    def text(self, path):
        if path not in self.texts:
            with open(path, encoding='utf-8') as content:
                self.texts[path] = content.read()
        return self.texts[path]

    def closure(self, path, seen):
        if path in seen:
            return
        seen.add(path)
        for name in INCLUDE.findall(self.text(path)):
            for root in [os.path.dirname(path), *self.roots]:
                candidate = os.path.normpath(os.path.join(root, name))
                if os.path.exists(candidate):
                    self.closure(candidate, seen)
                    break

    def digest(self, path, compiler):
        seen = set()
        self.closure(path, seen)
        whole = hashlib.sha256((compiler + path + ' '.join(FLAGS)).encode())
        for one in sorted(seen):
            whole.update(one.encode() + self.text(one).encode())
        return whole.hexdigest()


def compile_alone(tree, compiler, header):
    name = os.path.relpath(header, tree.root)
    done = subprocess.run([compiler, *[f'-I{root}' for root in tree.roots], *FLAGS], input=f'#include "{name}"\n',
                          capture_output=True, text=True, cwd=tree.root)
    return done.stderr if done.returncode else ''


def main():
    tree = Tree(os.path.abspath(sys.argv[1]))
    compiler = os.environ.get('CXX', 'g++')
    version = subprocess.run([compiler, '--version'], capture_output=True, text=True, check=True).stdout
    cache = os.environ.get('HOUSE_CACHE')
    kept = os.path.join(cache, 'headers_alone.json') if cache else None
    passed = {}
    if kept and os.path.exists(kept):
        with open(kept, encoding='utf-8') as stored:
            passed = json.load(stored)
    digests = {header: tree.digest(header, version) for header in tree.headers()}
    waiting = [header for header, digest in digests.items() if passed.get(header) != digest]
    with ThreadPoolExecutor(max_workers=2) as workers:
        complaints = dict(zip(waiting, workers.map(lambda header: compile_alone(tree, compiler, header), waiting)))
    bad = {header: text for header, text in complaints.items() if text}
    if kept:
        os.makedirs(cache, exist_ok=True)
        with open(kept, 'w', encoding='utf-8') as stored:
            json.dump({header: digest for header, digest in digests.items() if header not in bad}, stored)
    for header, text in bad.items():
        print(f'{os.path.relpath(header, tree.root)} does not compile alone:\n{text[:1500]}', file=sys.stderr)
    print(f'{len(digests)} headers, {len(waiting)} compiled, {len(bad)} bad')
    sys.exit(1 if bad else 0)


if __name__ == '__main__':
    main()
