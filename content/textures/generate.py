#!/usr/bin/python3
"""Draws the textures of the starter content: small PNG files, the same bytes at every run.

usage: generate.py [FOLDER]   (default: the folder of this file)
"""
import os
import struct
import sys
import zlib

SIZE = 32  # pixels on a side; chosen: large enough to see the pattern, small enough to read in a dump


def png(pixel):
    """A grey 8-bit PNG of SIZE x SIZE; pixel(x, y) gives 0 to 255."""
    rows = b''.join(b'\0' + bytes(pixel(x, y) for x in range(SIZE)) for y in range(SIZE))

    def chunk(kind, data):
        body = kind + data
        return struct.pack('>I', len(data)) + body + struct.pack('>I', zlib.crc32(body))

    header = struct.pack('>IIBBBBB', SIZE, SIZE, 8, 0, 0, 0, 0)
    return (b'\x89PNG\r\n\x1a\n' + chunk(b'IHDR', header) + chunk(b'IDAT', zlib.compress(rows, 9)) +
            chunk(b'IEND', b''))


PICTURES = {
    'checker.png': lambda x, y: 224 if (x // 8 + y // 8) % 2 else 96,
    'grain.png': lambda x, y: 128 + (x * 37 + y * 11) % 64,
    'gradient.png': lambda x, y: x * 255 // (SIZE - 1),
}


def main():
    folder = sys.argv[1] if len(sys.argv) > 1 else os.path.dirname(os.path.abspath(__file__))
    for name, pixel in PICTURES.items():
        with open(os.path.join(folder, name), 'wb') as out:
            out.write(png(pixel))


main()
