#!/usr/bin/env python3
"""Draws the notice icon (a blue disc with a white "i") in every size a screen's scale asks for:
16 and 32 pixels at 100 %, and 20, 24, 40, 48 and 64 for 125 %, 150 % and 200 %."""
import struct
import sys


def pixels(size):
    rows = []
    centre = (size - 1) / 2.0
    radius = size / 2.0 - 0.5
    for y in range(size):
        row = []
        for x in range(size):
            dx, dy = x - centre, y - centre
            distance = (dx * dx + dy * dy) ** 0.5
            if distance > radius:
                row.append((0, 0, 0, 0))
                continue
            alpha = 255 if distance < radius - 1 else int(255 * (radius - distance + 1) / 2)
            colour = (196, 110, 30, alpha)  # blue, as B, G, R, A
            u, v = x / size, y / size
            dot = (u - 0.5) ** 2 + (v - 0.27) ** 2 < 0.009
            stem = 0.42 <= u <= 0.58 and 0.40 <= v <= 0.80
            if dot or stem:
                colour = (255, 255, 255, 255)
            row.append(colour)
        rows.append(row)
    return rows


def image(size):
    rows = pixels(size)
    header = struct.pack("<IiiHHIIiiII", 40, size, size * 2, 1, 32, 0, 0, 0, 0, 0, 0)
    colour = b"".join(bytes(p) for row in reversed(rows) for p in row)
    mask_row = ((size + 31) // 32) * 4
    mask = b"\x00" * (mask_row * size)
    return header + colour + mask


def main(path):
    images = [(size, image(size)) for size in (64, 48, 40, 32, 24, 20, 16)]
    out = struct.pack("<HHH", 0, 1, len(images))
    offset = 6 + 16 * len(images)
    for size, data in images:
        out += struct.pack("<BBBBHHII", size, size, 0, 0, 1, 32, len(data), offset)
        offset += len(data)
    out += b"".join(data for _, data in images)
    with open(path, "wb") as handle:
        handle.write(out)


if __name__ == "__main__":
    main(sys.argv[1] if len(sys.argv) > 1 else "notice.ico")
