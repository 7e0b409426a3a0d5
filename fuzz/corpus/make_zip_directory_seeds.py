#!/usr/bin/env python3
"""Writes the seeds of zip_directory_fuzzer.cpp into fuzz/corpus/zip_directory/."""

import pathlib
import struct
import zlib


def raw_deflate(data):
    packer = zlib.compressobj(9, zlib.DEFLATED, -15)
    return packer.compress(data) + packer.flush()


def make_zip(entries, comment=b""):
    """entries: (name, content, method, attributes, extra)."""
    body = b""
    directory = b""
    for name, content, method, attributes, extra in entries:
        data = raw_deflate(content) if method == 8 else content
        common = struct.pack("<HHHHLLLHH", 0x0800, method, 0x6000, 0x5A21, zlib.crc32(content),
                             len(data), len(content), len(name), len(extra))
        directory += struct.pack("<LHH", 0x02014B50, 20, 20) + common
        directory += struct.pack("<HHHLL", 0, 0, 0, attributes, len(body)) + name + extra
        body += struct.pack("<LH", 0x04034B50, 20) + common + name + extra + data
    end = struct.pack("<LHHHHLLH", 0x06054B50, 0, 0, len(entries), len(entries), len(directory),
                      len(body), len(comment))
    return body + directory + end + comment


SEEDS = {
    "empty": b"",
    "no-entries": make_zip([]),
    "stored": make_zip([(b"a.txt", b"hi", 0, 0, b"")]),
    "deflated": make_zip([(b"a.txt", b"hello hello hello", 8, 0, b"")]),
    "folders": make_zip([(b"a/", b"", 0, 16, b""), (b"a/b/c", b"1", 0, 0, b""),
                         (b"d", b"x" * 500, 8, 0, b"")]),
    "extra": make_zip([(b"a", b"text", 0, 0, b"extra")], b"comment"),
    "duplicate": make_zip([(b"a", b"1", 0, 0, b""), (b"a", b"2", 0, 0, b"")]),
    "below-a-file": make_zip([(b"a", b"1", 0, 0, b""), (b"a/b", b"2", 0, 0, b"")]),
    "cut-stream": make_zip([(b"a", raw_deflate(b"text" * 90)[:-3], 0, 0, b"")]).replace(
        struct.pack("<HH", 0x0800, 0), struct.pack("<HH", 0x0800, 8)),
    "odd-names": make_zip([(b"", b"", 0, 0, b""), (b"//", b"", 0, 16, b""),
                           (b"/x//y/", b"z", 0, 0, b""), (b"../up", b"u", 0, 0, b"")]),
    "zeros": make_zip([(b"z", bytes(70000), 8, 0, b"")]),
}

folder = pathlib.Path(__file__).parent / "zip_directory"
folder.mkdir(exist_ok=True)
for seed, content in SEEDS.items():
    (folder / seed).write_bytes(content)
