#!/usr/bin/python3
"""usage: run_script.py SCRIPT [ARGUMENT...]

Runs one test script in a fresh temporary folder, which is also its TMPDIR.  The folder goes when the script succeeds
or is skipped (77) and stays, named on stderr, when it fails.  Names that start with an underscore are helpers of other
scripts and never run by themselves; `_*.py` beside the script can be imported.
"""
import os
import shutil
import subprocess
import sys
import tempfile


def command_for(script):
    return [sys.executable, script] if script.endswith('.py') else ['bash', script]


def main():
    if len(sys.argv) < 2:
        sys.exit(__doc__)
    script = os.path.abspath(sys.argv[1])
    folder = tempfile.mkdtemp(prefix=os.path.splitext(os.path.basename(script))[0] + '-')
    environment = dict(os.environ, TMPDIR=folder, HOME=folder, NO_COLOR='1', PYTHONDONTWRITEBYTECODE='1')
    status = subprocess.call(command_for(script) + sys.argv[2:], cwd=folder, env=environment, stdin=subprocess.DEVNULL)
    if status in (0, 77):
        shutil.rmtree(folder, ignore_errors=True)
    else:
        print(f'exit status {status}; what it left is in {folder}', file=sys.stderr)
    sys.exit(status if 0 <= status < 256 else 1)


main()
