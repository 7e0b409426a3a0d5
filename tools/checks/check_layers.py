#!/usr/bin/env python3
"""Holds the sources of this tree against layers.txt and the habits of the house.

usage: check_layers.py ROOT

Prints one line per finding, "FILE:LINE: what is wrong", and exits with 1 when there is one.
"""
import os
import re
import subprocess
import sys

# Where an include is looked up after the folder of the file that has it, as the build does.
ROOTS = ('velmor', 'velmor/src', 'src', 'include', 'tools/halvern', '')

# The headers of each package that layers.txt may call "outside".
OUTSIDE = {
    'boost': ('boost/',),
    'zlib': ('zlib.h', 'zconf.h'),
    'expat': ('expat.h', 'expat_external.h'),
    'libxml2': ('libxml/',),
    'dlfcn': ('dlfcn.h',),
    'cli11': ('CLI/',),
    'nlohmann': ('nlohmann/',),
}
# Folders of the system's own headers.
SYSTEM = ('sys/', 'linux/')

INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^>"]+)[>"]')
STD_STRING = re.compile(r'\bstd::string(_view)?\b')
# The one header that turns nuo's views into standard ones and back.
STD_STRING_BRIDGE = 'velmor/nuo/common/string_ref.h'
# Written with a bracket each, so that this file passes its own check.
LEFT_OPEN = re.compile(r'\b(TO[D]O|FIX[M]E|XX[X]|HAC[K])\b|not (yet )?imple[m]ented', re.IGNORECASE)
DEAD_CODE = re.compile(r'^\s*#\s*if 0\b')
TEST_THAT_CANNOT_FAIL = re.compile(
    r'DISABL[E]D_|GTEST_SK[I]P|SUCC[E]ED\(\)|(EXPECT|ASSERT)_TRUE\(tr[u]e\)')
TEXT = ('.h', '.cpp', '.in', '.py', '.sh', '.cmake', '.md', '.txt', '.map')
LONGEST_FILE = 1000


class Row:
    def __init__(self, name, folders, below, outside):
        self.name = name
        self.folders = folders
        self.below = below
        self.outside = outside
        self.may_include = {name}


def read_rows(path):
    """The rows by name; raises ValueError for a table that contradicts itself."""
    rows = {}
    with open(path, encoding='utf-8') as table:
        for line in table:
            line = line.strip()
            if not line or line.startswith('#'):
                continue
            cells = [cell.strip() for cell in line.split('|')]
            if len(cells) != 4:
                raise ValueError(f'layers.txt: "{line}" does not have four cells')
            name, folders, below, outside = cells
            words = [[] if cell == '-' else cell.split() for cell in (folders, below, outside)]
            row = Row(name, *words)
            for lower in row.below:
                plain = lower.lstrip('=')
                if plain not in rows:
                    raise ValueError(f'layers.txt: {name} names {plain}, which does not stand above it')
                row.may_include |= {plain} if lower != plain else rows[plain].may_include
            for package in row.outside:
                if package not in OUTSIDE:
                    raise ValueError(f'layers.txt: {name} names the unknown package {package}')
            rows[name] = row
    return rows


def list_files(root):
    """Every file that is or may be committed, relative to the root."""
    if os.path.exists(os.path.join(root, '.git')):
        names = subprocess.run(
            ['git', '-C', root, 'ls-files', '-z', '--cached', '--others', '--exclude-standard'],
            capture_output=True, text=True, check=True).stdout.split('\0')
    else:
        names = [os.path.relpath(os.path.join(where, name), root)
                 for where, _, here in os.walk(root) for name in here]
    return sorted(name for name in set(names)
                  if os.path.isfile(os.path.join(root, name)) and not name.startswith('build/'))


class Check:
    def __init__(self, root):
        self.root = root
        self.rows = read_rows(os.path.join(root, 'layers.txt'))
        self.files = list_files(root)
        self.known = set(self.files)
        self.by_folder = sorted(
            ((folder, row) for row in self.rows.values() for folder in row.folders),
            key=lambda pair: -len(pair[0]))
        self.findings = []

    def report(self, path, line, what):
        self.findings.append(f'{path}:{line}: {what}')

    def row_of(self, path):
        for folder, row in self.by_folder:
            if path.startswith(folder + '/'):
                return row
        return None

    def resolve(self, path, kind, name):
        """The file of this tree that an include means, or None."""
        folders = [os.path.dirname(path)] if kind == '"' else []
        for folder in folders + list(ROOTS):
            candidate = os.path.normpath(os.path.join(folder, name))
            if candidate in self.known:
                return candidate
        return None

    def run(self):
        for path in self.files:
            if not path.endswith(TEXT):
                continue
            with open(os.path.join(self.root, path), encoding='utf-8') as text:
                lines = text.read().splitlines()
            self.check_words(path, lines)
            if path.endswith(('.h', '.cpp')):
                self.check_source(path, lines)
        return self.findings

    def check_words(self, path, lines):
        for number, line in enumerate(lines, 1):
            found = LEFT_OPEN.search(line)
            if found:
                self.report(path, number, f'"{found.group(0)}" may not stand in the project')

    def check_source(self, path, lines):
        if len(lines) > LONGEST_FILE:
            self.report(path, len(lines), f'longer than {LONGEST_FILE} lines')
        if path.endswith('.h') and '#pragma once' not in lines:
            self.report(path, 1, 'a header without #pragma once')
        includes = []
        for number, line in enumerate(lines, 1):
            found = INCLUDE.match(line)
            if found:
                includes.append((number, found.group(1), found.group(2)))
            if DEAD_CODE.match(line):
                self.report(path, number, 'dead code')
            if path.startswith('tests/') and TEST_THAT_CANNOT_FAIL.search(line):
                self.report(path, number, 'a test that is off or cannot fail')
            if (path.startswith(('velmor/', 'src/')) and path != STD_STRING_BRIDGE
                    and STD_STRING.search(line)):
                self.report(path, number, 'a standard string below the interface; take nuo\'s')
        self.check_own_header(path, includes)
        for number, kind, name in includes:
            self.check_include(path, number, kind, name)

    def check_own_header(self, path, includes):
        if not path.endswith('.cpp'):
            return
        stem = os.path.splitext(os.path.basename(path))[0]
        own = [index for index, (_, _, name) in enumerate(includes)
               if os.path.splitext(os.path.basename(name))[0] == stem
               and name.endswith('.h') and self.resolve(path, '"', name)]
        if own and own[0] != 0:
            self.report(path, includes[own[0]][0], 'its own header is not the first include')

    def check_include(self, path, number, kind, name):
        target = self.resolve(path, kind, name)
        if target is None:
            self.check_outside(path, number, kind, name)
        elif path.startswith('include/') and not target.startswith('include/'):
            self.report(path, number, f'a public header includes {name}, which is not public')
        elif path.startswith('examples/') and not target.startswith(('include/', 'examples/')):
            self.report(path, number, f'a host includes {name}, which is not public')
        elif path.startswith('tests/host/') and not target.startswith(('include/', 'tests/')):
            self.report(path, number, f'a host includes {name}, which is not public')
        else:
            self.check_direction(path, number, name, target)

    def check_direction(self, path, number, name, target):
        row = self.row_of(path)
        if row is None or (path.startswith('src/') and target.startswith('include/')):
            return
        target_row = self.row_of(target)
        if target_row is None:
            self.report(path, number, f'{row.name} includes {name}, which belongs to no layer')
        elif target_row.name not in row.may_include:
            self.report(path, number,
                        f'{row.name} includes {name} of {target_row.name}, which it may not use')

    def check_outside(self, path, number, kind, name):
        row = self.row_of(path)
        if row is None:
            return
        package = next((package for package, starts in OUTSIDE.items()
                        if name.startswith(starts)), None)
        if package is not None:
            if package not in row.outside:
                self.report(path, number,
                            f'{row.name} includes {name} of {package}, which it may not use')
        elif kind == '"':
            self.report(path, number, f'{name} is no file of this tree')
        elif '/' in name and not name.startswith(SYSTEM):
            self.report(path, number, f'{name} belongs to no package that layers.txt knows')


def main(arguments):
    if len(arguments) != 2:
        print(__doc__.strip(), file=sys.stderr)
        return 2
    try:
        findings = Check(arguments[1]).run()
    except ValueError as problem:
        findings = [str(problem)]
    for finding in findings:
        print(finding)
    return 1 if findings else 0


if __name__ == '__main__':
    sys.exit(main(sys.argv))
