"""The layout check reads the compiler right and sees every kind of difference."""
import os
import tempfile
import unittest

import class_layout
import class_tables

SAMPLE = '''
#pragma once
#include <map>
#include <string>
#include <vector>
struct Key;
struct First { virtual void One() = 0; virtual ~First() = default; virtual int Two(int); virtual int Two(std::string const &); };
struct Facet { virtual void Side() = 0; virtual void Over(Key const &) const = 0; };
struct Shared { virtual void Deep() = 0; };
struct LateEnd { virtual void Work(); virtual ~LateEnd(); };
namespace inner {
class Whole : public First, public Facet, public virtual Shared {
public:
  void Side() override;
  virtual void Own();
  void One() override;
  virtual void Side(int);
  void Deep() override;
  virtual long Sum(std::vector<Key *> &, std::map<long, Key *> const &) const;
  virtual long Sum(std::vector<Key *> &, std::map<long, Key *> const &);
private:
  virtual void Hidden() = 0;
  long m_ID = 0;
  std::string m_Name;
  static int s_Count;
  Key const * m_Key = nullptr;
};
}
struct Heir : LateEnd { void Work() override; virtual void More(); };
template <class T> struct Box { virtual void Put(T); T m_value; };
struct Bare { int a; };
'''


class Layouts(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        with tempfile.TemporaryDirectory() as folder:
            header = os.path.join(folder, 'Sample.h')
            with open(header, 'w', encoding='utf-8') as out:
                out.write(SAMPLE)
            cls.layouts = class_tables.compile_classes(
                [header], ['First', 'inner::Whole', 'LateEnd', 'Heir', 'Box<long>', 'Bare'], [])

    def signatures(self, name):
        return [operation.signature for operation in self.layouts.table(name)]

    def wrong(self, kind, name, text, **others):
        with tempfile.TemporaryDirectory() as folder:
            for stem, content in {name: text, **others}.items():
                os.makedirs(os.path.join(folder, kind), exist_ok=True)
                with open(os.path.join(folder, kind, stem + '.txt'), 'w', encoding='utf-8') as out:
                    out.write(content)
            expected = class_layout.Expected(os.path.join(folder, kind, name + '.txt'))
            return class_layout.differences(expected, self.layouts)

    def test_pure_operations_and_overloads_keep_their_names(self):
        self.assertEqual(self.signatures('First'), ['One()', 'destructor', 'Two(int)', 'Two(stringconst&)'])

    def test_operations_of_other_bases_are_not_in_the_primary_table(self):
        self.assertEqual(self.signatures('inner::Whole'), [
            'One()', 'destructor', 'Two(int)', 'Two(stringconst&)', 'Own()', 'Side(int)',
            'Sum(vector<Key*>&,map<long,Key*>const&)const', 'Sum(vector<Key*>&,map<long,Key*>const&)', 'Hidden()'])

    def test_the_right_order_has_no_difference(self):
        text = '''@First
Own
Side
Sum(std::vector<Key *> &, ...) const   # the reading form
Sum(std::vector<Key *> &, ...) nonconst
*
'''
        first = 'One\ndestructor\nTwo(int)\nTwo(std::string const &)\n'
        self.assertEqual(self.wrong('slots', 'inner.Whole', text, First=first), [])

    def test_swapped_operations_are_a_difference(self):
        self.assertEqual(self.wrong('slots', 'First', 'One\nTwo(int)\ndestructor\nTwo'),
                         ['operation 2: expected Two(int), found destructor'])

    def test_swapped_overloads_are_a_difference(self):
        self.assertEqual(len(self.wrong('slots', 'First', 'One\ndestructor\nTwo(std::string const &)\nTwo(int)')), 1)

    def test_a_missing_or_extra_operation_is_a_difference(self):
        self.assertEqual(len(self.wrong('slots', 'First', 'One\ndestructor\nTwo\nTwo\nThree')), 1)
        self.assertEqual(self.wrong('slots', 'First', 'One\ndestructor\nTwo'),
                         ['operation 4: expected the end, found Two(stringconst&)'])

    def test_a_destructor_that_is_not_listed_may_stand_last(self):
        self.assertEqual(self.wrong('slots', 'LateEnd', 'Work'), [])
        self.assertEqual(self.wrong('slots', 'Heir', '@LateEnd\nMore', LateEnd='Work'), [])
        self.assertEqual(len(self.wrong('slots', 'First', 'One\nTwo\nTwo')), 1)

    def test_bases_and_fields_are_compared_in_order(self):
        text = '[bases]\nFirst\nFacet\nShared virtual\n[fields]\nm_ID : long\n* : std::string\nm_Key : Key const *\n'
        self.assertEqual(self.wrong('fields', 'inner.Whole', text), [])
        self.assertEqual(len(self.wrong('fields', 'inner.Whole', text.replace('First\nFacet', 'Facet\nFirst'))), 1)
        self.assertEqual(len(self.wrong('fields', 'inner.Whole', text.replace(': long', ': int'))), 1)
        self.assertEqual(len(self.wrong('fields', 'inner.Whole', text.replace(' virtual', ''))), 1)

    def test_further_fields_need_leave(self):
        self.assertEqual(len(self.wrong('fields', 'inner.Whole', '[bases]\n...\n[fields]\nm_ID\n')), 1)
        self.assertEqual(self.wrong('fields', 'inner.Whole', '[bases]\n...\n[fields]\nm_ID\n...\n'), [])

    def test_a_template_is_looked_at_through_an_instance(self):
        self.assertEqual(self.wrong('slots', 'Box', 'instance: Box<long>\nPut(long)\n'), [])

    def test_a_class_without_virtual_operations_has_no_table(self):
        with self.assertRaises(class_tables.LayoutError):
            self.layouts.table('Bare')


class Definitions(unittest.TestCase):
    def test_a_declaration_is_not_a_definition(self):
        with tempfile.TemporaryDirectory() as root:
            os.makedirs(os.path.join(root, 'lib'))
            for name, text in (('User.h', 'class Thing;\nstruct Other { Thing * t; };\n'),
                               ('Thing.h', 'class Thing\n    : public Base {\n};\n')):
                with open(os.path.join(root, 'lib', name), 'w', encoding='utf-8') as out:
                    out.write(text)
            self.assertEqual(list(class_layout.defining_headers(root, 'Thing')), [os.path.join(root, 'lib', 'Thing.h')])


if __name__ == '__main__':
    unittest.main()
