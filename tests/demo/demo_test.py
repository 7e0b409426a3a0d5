#!/usr/bin/env python3
"""Runs the demo and holds what it prints against transcript.txt, times aside.

usage: demo_test.py PROGRAM CONTENT
"""
import os
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

PROGRAM, CONTENT = sys.argv[1:3]
TRANSCRIPT = os.path.join(os.path.dirname(os.path.abspath(__file__)), 'transcript.txt')


class Demo(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.mkdtemp()
        self.addCleanup(shutil.rmtree, self.folder)

    def run_demo(self, *arguments):
        environment = dict(os.environ, TMPDIR=self.folder)
        return subprocess.run([PROGRAM, *arguments], capture_output=True, encoding='utf-8',
                              env=environment, check=False)

    def path(self, *names):
        return os.path.join(self.folder, *names)

    def copy_of_content(self, changed, old, new):
        """The content with one text of one file replaced."""
        content = self.path('content')
        shutil.copytree(CONTENT, content)
        with open(os.path.join(content, changed), encoding='utf-8') as file:
            text = file.read()
        self.assertIn(old, text)
        with open(os.path.join(content, changed), 'w', encoding='utf-8') as file:
            file.write(text.replace(old, new))
        return content

    def test_tells_the_main_job(self):
        done = self.run_demo()
        self.assertEqual(done.stderr, '')
        with open(TRANSCRIPT, encoding='utf-8') as transcript:
            self.assertEqual(re.sub(r'in [0-9]+\.[0-9] ms', 'in N ms', done.stdout),
                             transcript.read())
        self.assertEqual(done.returncode, 0)

    def test_leaves_nothing_behind(self):
        self.run_demo()
        self.assertEqual(os.listdir(self.folder), [])

    def test_ends_at_the_first_difference(self):
        content = self.copy_of_content('messages/Starter-ENG.xlf', '<target>Grain<',
                                       '<target>Corn<')
        done = self.run_demo('--content', content)
        self.assertEqual(done.returncode, 1)
        self.assertEqual(
            done.stderr, 'halvern_demo: this was expected: grain | Grain | An even grain for rough '
            'surfaces. | Textures | pattern\n')
        self.assertTrue(done.stdout.endswith(
            '      grain | Corn | An even grain for rough surfaces. | Textures | pattern\n'))

    def test_ends_when_a_line_is_missing(self):
        content = self.copy_of_content('schemas/CeramicSchema.xml', 'maximum="5"', 'maximum="9"')
        done = self.run_demo('--content', content)
        self.assertEqual(done.returncode, 1)
        self.assertEqual(done.stderr, 'halvern_demo: this was expected: refused: Relief 7 '
                                      '(Value out of range)\n')

    def test_names_what_could_not_be_loaded(self):
        done = self.run_demo('--content', self.path('absent'))
        self.assertEqual(done.returncode, 1)
        self.assertEqual(done.stderr, 'halvern_demo: CeramicSchema could not be loaded\n')

    def test_keeps_the_library_when_asked_to(self):
        kept = self.path('kept')
        self.assertEqual(self.run_demo('--keep', kept).returncode, 0)
        self.assertEqual(sorted(os.listdir(kept)),
                         ['starter-DEU.xlf', 'starter-ENG.xlf', 'starter.jpk'])

    def test_refuses_a_folder_that_is_not_empty(self):
        with open(self.path('file'), 'w', encoding='utf-8'):
            pass
        done = self.run_demo('--keep', self.folder)
        self.assertEqual(done.returncode, 1)
        self.assertEqual(done.stderr, f'halvern_demo: {self.folder} is not empty\n')
        self.assertEqual(os.listdir(self.folder), ['file'])

    def test_refuses_an_option_that_it_does_not_know(self):
        done = self.run_demo('--fast')
        self.assertEqual(done.returncode, 2)
        self.assertEqual(done.stderr, 'usage: halvern_demo [--content FOLDER] [--keep FOLDER]\n')


if __name__ == '__main__':
    unittest.main(argv=sys.argv[:1])
