#!/usr/bin/env python3
"""Holds the documents together: every relative link leads to a file of the tree, and every page in
docs/formats/ is linked from docs/README.md.

usage: check_docs.py ROOT
"""
import glob
import os
import re
import sys

LINK = re.compile(r'\]\(([^)#]+)(#[^)]*)?\)')
PAGES = ('*.md', 'docs/**/*.md', 'examples/**/*.md', 'content/**/*.md', 'fuzz/*.md', 'bench/*.md',
         'tests/**/*.md')


def links(path):
    with open(path, encoding='utf-8') as page:
        for number, line in enumerate(page, 1):
            for found in LINK.finditer(line):
                if '://' not in found.group(1):
                    target = os.path.join(os.path.dirname(path), found.group(1))
                    yield number, found.group(1), os.path.normpath(target)


def check(root):
    findings = []
    for pattern in PAGES:
        for path in sorted(glob.glob(os.path.join(root, pattern), recursive=True)):
            for number, name, target in links(path):
                if not os.path.exists(target):
                    findings.append(f'{os.path.relpath(path, root)}:{number}: {name} does not exist')
    index = os.path.join(root, 'docs', 'README.md')
    linked = {target for _, _, target in links(index)}
    for page in sorted(glob.glob(os.path.join(root, 'docs', 'formats', '*.md'))):
        if os.path.normpath(page) not in linked:
            findings.append(f'docs/README.md:1: {os.path.relpath(page, root)} is not linked')
    return findings


def main(arguments):
    if len(arguments) != 2:
        print(__doc__.strip(), file=sys.stderr)
        return 2
    findings = check(arguments[1])
    for finding in findings:
        print(finding)
    return 1 if findings else 0


if __name__ == '__main__':
    sys.exit(main(sys.argv))
