#!/usr/bin/env python3
"""Each rule of check_layers.py on a small tree that breaks just that rule."""
import os
import sys
import tempfile
import unittest

sys.dont_write_bytecode = True
sys.path.insert(0, os.path.join(os.path.dirname(__file__), '..', '..', 'tools', 'checks'))
import check_layers  # noqa: E402

TABLE = '''
# name | folders | may include | outside
nuo     | velmor/nuo      | -         | boost
vfs     | velmor/src/vfs  | nuo       | zlib
core    | include/core    | -         | -
high    | src/high        | vfs       | -
nested  | src/high/nested | nuo       | -
inspect | tools/inspect   | high      | -
command | tools/halvern   | =inspect  | -
'''
HEADER = '#pragma once\n'
SOUND = {
    'layers.txt': TABLE,
    'velmor/nuo/string.h': HEADER + '#include <boost/any.hpp>\n#include <vector>\n',
    'velmor/src/vfs/zip.h': HEADER + '#include <zlib.h>\n',
    'velmor/src/vfs/zip.cpp': '#include "vfs/zip.h"\n\n#include "nuo/string.h"\n',
    'include/core/istring.h': HEADER + '#include <cstdint>\n',
    'src/high/library.h': HEADER + '#include <core/istring.h>\n#include "vfs/zip.h"\n',
    'src/high/nested/table.h': HEADER + '#include "nuo/string.h"\n',
    'tools/inspect/verify.h': HEADER + '#include "high/library.h"\n',
    'tools/halvern/main.cpp': '#include "tools/inspect/verify.h"\n',
    'tests/high/library_test.cpp': '#include "high/library.h"\n#include <gtest/gtest.h>\n',
}


def check(changes):
    files = dict(SOUND, **changes)
    with tempfile.TemporaryDirectory() as root:
        for name, text in files.items():
            path = os.path.join(root, name)
            os.makedirs(os.path.dirname(path), exist_ok=True)
            with open(path, 'w', encoding='utf-8') as out:
                out.write(text)
        return check_layers.Check(root).run()


class Layers(unittest.TestCase):
    def test_a_sound_tree_has_no_findings(self):
        self.assertEqual(check({}), [])

    def test_an_include_upward_is_found(self):
        self.assertEqual(
            check({'velmor/nuo/string.h': HEADER + '#include "vfs/zip.h"\n'}),
            ['velmor/nuo/string.h:2: nuo includes vfs/zip.h of vfs, which it may not use'])

    def test_an_include_beside_the_own_file_is_found_too(self):
        self.assertEqual(
            check({'src/high/nested/table.h': HEADER + '#include "../library.h"\n'}),
            ['src/high/nested/table.h:2: nested includes ../library.h of high, '
             'which it may not use'])

    def test_the_longest_folder_decides_whose_file_it_is(self):
        self.assertEqual(
            check({'src/high/nested/table.h': HEADER + '#include "vfs/zip.h"\n'}),
            ['src/high/nested/table.h:2: nested includes vfs/zip.h of vfs, which it may not use'])

    def test_a_row_after_an_equals_sign_opens_itself_alone(self):
        self.assertEqual(
            check({'tools/halvern/main.cpp': '#include "high/library.h"\n'}),
            ['tools/halvern/main.cpp:1: command includes high/library.h of high, '
             'which it may not use'])

    def test_an_include_of_a_file_without_a_layer_is_found(self):
        self.assertEqual(
            check({'src/other/x.h': HEADER,
                   'src/high/library.h': HEADER + '#include "other/x.h"\n'}),
            ['src/high/library.h:2: high includes other/x.h, which belongs to no layer'])

    def test_an_outside_package_is_not_inherited(self):
        self.assertEqual(
            check({'src/high/library.h': HEADER + '#include <zlib.h>\n'}),
            ['src/high/library.h:2: high includes zlib.h of zlib, which it may not use'])

    def test_an_unknown_package_is_found(self):
        self.assertEqual(
            check({'src/high/library.h': HEADER + '#include <fmt/core.h>\n'}),
            ['src/high/library.h:2: fmt/core.h belongs to no package that layers.txt knows'])

    def test_a_quoted_include_without_a_file_is_found(self):
        self.assertEqual(check({'src/high/library.h': HEADER + '#include "gone.h"\n'}),
                         ['src/high/library.h:2: gone.h is no file of this tree'])

    def test_a_public_header_that_includes_a_private_one_is_found(self):
        self.assertEqual(
            check({'include/core/istring.h': HEADER + '#include "nuo/string.h"\n'}),
            ['include/core/istring.h:2: a public header includes nuo/string.h, '
             'which is not public'])

    def test_a_host_that_includes_a_private_header_is_found(self):
        for path in ('examples/x/main.cpp', 'tests/host/x_test.cpp'):
            self.assertEqual(
                check({path: '#include "nuo/string.h"\n'}),
                [f'{path}:1: a host includes nuo/string.h, which is not public'])

    def test_a_standard_string_is_found_below_the_interface_only(self):
        text = HEADER + 'std::' + 'string a;\nstd::' + 'string_view b;\nstd::stringstream c;\n'
        what = 'a standard string below the interface; take nuo\'s'
        self.assertEqual(check({'src/high/a.h': text, 'tools/inspect/a.h': text}),
                         [f'src/high/a.h:2: {what}', f'src/high/a.h:3: {what}'])

    def test_an_own_header_that_is_not_first_is_found(self):
        self.assertEqual(
            check({'velmor/src/vfs/zip.cpp': '#include <vector>\n#include "vfs/zip.h"\n'}),
            ['velmor/src/vfs/zip.cpp:2: its own header is not the first include'])

    def test_a_header_without_pragma_once_is_found(self):
        self.assertEqual(check({'src/high/a.h': 'int a;\n'}),
                         ['src/high/a.h:1: a header without #pragma once'])

    def test_words_that_leave_something_open_are_found_anywhere(self):
        for word in ('TO' + 'DO', 'FIX' + 'ME', 'not yet imple' + 'mented'):
            self.assertEqual(check({'docs/a.md': f'one\n{word}: two\n'}),
                             [f'docs/a.md:2: "{word}" may not stand in the project'])

    def test_dead_code_is_found(self):
        self.assertEqual(check({'src/high/a.cpp': '#if ' + '0\n#endif\n'}),
                         ['src/high/a.cpp:1: dead code'])

    def test_a_test_that_is_off_is_found(self):
        for line in ('TEST(A, DISABL' + 'ED_b) {}', 'GTEST_SK' + 'IP();', 'SUCC' + 'EED();',
                     'EXPECT_TRUE(tr' + 'ue);'):
            self.assertEqual(check({'tests/high/a_test.cpp': line + '\n'}),
                             ['tests/high/a_test.cpp:1: a test that is off or cannot fail'])

    def test_a_file_of_more_than_a_thousand_lines_is_found(self):
        self.assertEqual(check({'src/high/a.cpp': ';\n' * 1000}), [])
        self.assertEqual(check({'src/high/a.cpp': ';\n' * 1001}),
                         ['src/high/a.cpp:1001: longer than 1000 lines'])


class Table(unittest.TestCase):
    def refuse(self, row, what):
        with self.assertRaises(ValueError) as raised:
            check({'layers.txt': TABLE + row + '\n'})
        self.assertEqual(str(raised.exception), what)

    def test_a_row_may_only_name_rows_above_it(self):
        self.refuse('a | src/a | b | -', 'layers.txt: a names b, which does not stand above it')

    def test_a_row_has_four_cells(self):
        self.refuse('a | src/a | -', 'layers.txt: "a | src/a | -" does not have four cells')

    def test_an_outside_package_must_be_known(self):
        self.refuse('a | src/a | - | qt', 'layers.txt: a names the unknown package qt')


if __name__ == '__main__':
    unittest.main()
