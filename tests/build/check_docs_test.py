#!/usr/bin/env python3
"""check_docs.py on a tree of three pages."""
import os
import sys
import tempfile
import unittest

sys.dont_write_bytecode = True
sys.path.insert(0, os.path.join(os.path.dirname(__file__), '..', '..', 'tools', 'checks'))
import check_docs  # noqa: E402

SOUND = {
    'README.md': 'see [the index](docs/README.md) and [elsewhere](scheme://host/page)\n',
    'docs/README.md': '[zip](formats/zip.md#layout)\n',
    'docs/formats/zip.md': 'bytes\n',
}


def check(changes):
    with tempfile.TemporaryDirectory() as root:
        for name, text in dict(SOUND, **changes).items():
            path = os.path.join(root, name)
            os.makedirs(os.path.dirname(path), exist_ok=True)
            with open(path, 'w', encoding='utf-8') as out:
                out.write(text)
        return check_docs.check(root)


class Docs(unittest.TestCase):
    def test_a_sound_tree_has_no_findings(self):
        self.assertEqual(check({}), [])

    def test_a_link_to_nothing_is_found(self):
        self.assertEqual(check({'README.md': 'one\n[two](docs/gone.md)\n'}),
                         ['README.md:2: docs/gone.md does not exist'])

    def test_a_format_page_that_the_index_leaves_out_is_found(self):
        self.assertEqual(check({'docs/formats/xlf.md': 'text\n'}),
                         ['docs/README.md:1: docs/formats/xlf.md is not linked'])


if __name__ == '__main__':
    unittest.main()
