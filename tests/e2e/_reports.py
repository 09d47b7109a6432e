"""What tests of reports share: a low-pass of three elements, and how it is asked."""
import json

from _solvedesk import DeskTest, read, write

# A low-pass of three elements between two ports, each element a variable.
LADDER = """ladder
.param c1=1 l2=1 c3=1
V1 in 0 dc 0 ac 1 portnum 1 z0 50
C1 in 0 {c1*3.2e-12}
L2 in out {l2*1e-8}
C3 out 0 {c3*3.2e-12}
V2 out 0 dc 0 ac 0 portnum 2 z0 50
.sp lin 201 10meg 2.01g
.end
"""
FEW = LADDER.replace('lin 201 10meg 2.01g', 'lin 3 1g 3g')
ONE_PORT = FEW.replace('V2 out 0 dc 0 ac 0 portnum 2 z0 50', 'R2 out 0 50')


class ReportTest(DeskTest):
    def project(self, netlist=FEW):
        return self.small_project('ladder', netlist)

    def solved(self, netlist=FEW):
        self.project(netlist)
        self.run_desk('solve', 'ladder', '--vary', 'c1=0.9,1,1.1', '--vary', 'l2=0.9,1', '--quiet')

    def run_shell(self, lines, code=0):
        """The results of the lines that have one, in order, and those that failed with their errors."""
        write('script.txt', '\n'.join(lines) + '\n')
        done = self.run_desk('shell', 'ladder', 'script.txt', '--json', '--keep-going', code=code)
        return [json.loads(line) for line in done.stdout.splitlines()]

    def rows(self, *words):
        return self.document('report', 'ladder', 'show', *words)['rows']

    def change_project_file(self, old, new):
        """As somebody would who also knows the checksum."""
        text = read('ladder.sproject').decode()
        changed = text.replace(old, new, 1)
        self.assertNotEqual(changed, text)
        body = changed[:changed.rindex('Checksum(')]
        write('ladder.sproject', f'{body}Checksum("{crc32c(body.encode()):08x}")\n')


def crc32c(data):
    """The checksum of project files."""
    crc = 0xffffffff
    for byte in data:
        crc ^= byte
        for _ in range(8):
            crc = crc >> 1 ^ (0x82f63b78 if crc & 1 else 0)
    return crc ^ 0xffffffff
