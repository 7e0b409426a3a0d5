#!/usr/bin/env python3
"""check_exports.py on a small library with two exported names."""
import contextlib
import io
import os
import subprocess
import sys
import tempfile
import unittest

sys.dont_write_bytecode = True
sys.path.insert(0, os.path.join(os.path.dirname(__file__), '..', '..', 'tools', 'checks'))
import check_exports  # noqa: E402

SOURCE = 'namespace a { struct B { B(); }; B::B() {} int c(int x) { return x; } }\n'


class Exports(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.library = os.path.join(folder.name, 'libsmall.so')
        self.list = os.path.join(folder.name, 'exports.txt')
        subprocess.run(['g++', '-shared', '-fPIC', '-x', 'c++', '-', '-o', self.library],
                       input=SOURCE, text=True, check=True)

    def check(self, listed, *options):
        with open(self.list, 'w', encoding='utf-8') as out:
            out.write(listed)
        printed = io.StringIO()
        with contextlib.redirect_stdout(printed):
            status = check_exports.main(['', self.library, self.list, *options])
        return status, printed.getvalue()

    def test_equal_sets_pass(self):
        self.assertEqual(self.check('# words\na::B::B()\na::c(int)\n'), (0, ''))

    def test_each_difference_is_told(self):
        self.assertEqual(self.check('a::B::B()\na::gone()\n'),
                         (1, 'exported, not listed: a::c(int)\nlisted, not exported: a::gone()\n'))

    def test_write_keeps_the_words_and_takes_the_names(self):
        self.assertEqual(self.check('# words\na::gone()\n', '--write'), (0, ''))
        with open(self.list, encoding='utf-8') as lines:
            self.assertEqual(lines.read(), '# words\na::B::B()\na::c(int)\n')


if __name__ == '__main__':
    unittest.main()
