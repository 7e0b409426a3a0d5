#!/usr/bin/env python3
"""Compares the names that a shared library exports with the list of those that it is meant to.

usage: check_exports.py LIBRARY LIST [--write]

LIST has one demangled name per line, sorted; lines that begin with "#" are its own words. Prints
each difference and exits with 1 when there is one. --write puts the names of LIBRARY into LIST
instead; the difference is then for a reviewer to read.
"""
import subprocess
import sys


def exported(library):
    listing = subprocess.run(['nm', '-D', '--defined-only', '--demangle', '--format=posix', library],
                             capture_output=True, text=True, check=True).stdout
    # "name type value size"; a demangled name has blanks of its own. The complete and the base form
    # of a constructor demangle to one name.
    return {line.rsplit(' ', 3)[0] for line in listing.splitlines()}


def read_list(path):
    with open(path, encoding='utf-8') as lines:
        return [line.rstrip('\n') for line in lines]


def write_list(path, names):
    head = [line for line in read_list(path) if line.startswith('#')]
    with open(path, 'w', encoding='utf-8') as out:
        out.write('\n'.join(head + sorted(names)) + '\n')


def main(arguments):
    if len(arguments) not in (3, 4) or arguments[3:] not in ([], ['--write']):
        print(__doc__.strip(), file=sys.stderr)
        return 2
    library, path = arguments[1:3]
    names = exported(library)
    if arguments[3:]:
        write_list(path, names)
        return 0
    listed = {line for line in read_list(path) if line and not line.startswith('#')}
    for name in sorted(names - listed):
        print(f'exported, not listed: {name}')
    for name in sorted(listed - names):
        print(f'listed, not exported: {name}')
    return 1 if names != listed else 0


if __name__ == '__main__':
    sys.exit(main(sys.argv))
