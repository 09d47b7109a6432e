"""The include check finds what it is there to find."""
import os
import tempfile
import unittest

import include_direction as house

RULES = '''text
```rooms
room low  = lib/low     :
room file = lib/file    : low   # calls the system
room high = lib/high    : lower
room top  = lib/top     : high
group lower = low file
face lib/low/Face*.cpp  : high
```
'''


class Sample(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.addCleanup(self.folder.cleanup)

    def breaches(self, **files):
        for path, text in files.items():
            path = os.path.join(self.folder.name, 'lib', *path.replace('_cpp', '.cpp').replace('_h', '.h').split('__'))
            os.makedirs(os.path.dirname(path), exist_ok=True)
            with open(path, 'w', encoding='utf-8') as out:
                out.write(text)
        rules, graph = house.Rules(RULES), house.includes_of(self.folder.name)
        return [*house.breaches_of_direction(rules, graph), *house.breaches_by_circles(rules, graph)]

    def test_an_arrow_that_is_drawn_may_be_followed(self):
        self.assertEqual(self.breaches(low__A_h='', high__B_h='#include "low/A.h"\n#include <map>\n'), [])

    def test_an_include_against_the_arrows_is_named(self):
        found = self.breaches(high__B_h='', low__A_h='#include "high/B.h"\n')
        self.assertEqual(found, ['lib/low/A.h: room low may not include lib/high/B.h (room high)'])

    def test_arrows_are_not_inherited(self):
        self.assertEqual(len(self.breaches(low__A_h='', top__T_h='#include "low/A.h"\n')), 1)

    def test_a_face_may_include_upwards_in_its_source_only(self):
        line = '#include "high/B.h"\n'
        self.assertEqual(self.breaches(high__B_h='', low__FaceSetups_cpp=line), [])
        self.assertEqual(len(self.breaches(high__B_h='', low__FaceSetups_h=line)), 1)

    def test_a_face_makes_no_circle(self):
        found = self.breaches(low__A_h='', high__B_h='#include "low/A.h"\n', low__Face_cpp='#include "high/B.h"\n')
        self.assertEqual(found, [])

    def test_headers_that_include_each_other_are_named(self):
        found = self.breaches(low__A_h='#include "low/B.h"\n', low__B_h='#include "low/A.h"\n')
        self.assertEqual(found, ['headers include each other: lib/low/A.h -> lib/low/B.h -> lib/low/A.h'])

    def test_rooms_that_include_each_other_are_named(self):
        found = self.breaches(low__A_h='', high__B_h='#include "low/A.h"\n', low__C_cpp='#include "high/B.h"\n')
        self.assertIn('rooms include each other: high -> low -> high', found)

    def test_a_system_header_is_for_the_file_room(self):
        line = '#include <unistd.h>\n'
        self.assertEqual(self.breaches(file__F_cpp=line), [])
        self.assertEqual(len(self.breaches(low__A_cpp=line)), 1)

    def test_a_missing_header_and_a_folder_without_a_room_are_named(self):
        self.assertEqual(len(self.breaches(low__A_cpp='#include "low/None.h"\n')), 1)
        self.assertEqual(len(self.breaches(cellar__A_cpp='')), 2)

    def test_a_line_that_says_nothing_is_refused(self):
        with self.assertRaises(ValueError):
            house.Rules(RULES.replace('group lower = low file', 'lower are low file'))


if __name__ == '__main__':
    unittest.main()
