#!/usr/bin/env python3
"""Draws the sample setup folder's pictures and sound from nothing but arithmetic, so that no
picture of any real product ends up in the sample: the promo images, the skin's title-bar
icon, the program and file icons, and a short tone for the bundled media.

    sample/tools/make-art.py            rewrites the files under sample/ (they are committed)
"""
import math
import os
import struct
import zlib

HERE = os.path.dirname(os.path.abspath(__file__))
SAMPLE = os.path.dirname(HERE)

# Sonora's colours: a deep blue, a warm orange accent, and a light background.
BLUE = (28, 62, 122)
ORANGE = (240, 138, 36)
LIGHT = (236, 240, 246)


def mix(a, b, t):
    return tuple(int(round(a[i] + (b[i] - a[i]) * t)) for i in range(3))


def disc_picture(size, ring):
    """A round badge: an orange disc with a blue sound-wave ring, transparent outside."""
    pixels = []
    c = (size - 1) / 2.0
    for y in range(size):
        row = []
        for x in range(size):
            d = math.hypot(x - c, y - c) / (size / 2.0)
            if d > 1.0:
                row.append((0, 0, 0, 0))
            elif ring and 0.45 < d < 0.62:
                row.append(BLUE + (255,))
            elif d > 0.9:
                row.append(BLUE + (255,))
            else:
                row.append(mix(ORANGE, (255, 200, 120), 1 - d) + (255,))
        pixels.append(row)
    return pixels


def promo_picture(width, height, phase):
    """A gradient with a row of equaliser bars; `phase` changes the bars between images."""
    pixels = []
    bars = 12
    for y in range(height):
        row = []
        for x in range(width):
            base = mix(BLUE, LIGHT, y / float(height - 1) * 0.8)
            bar = x * bars // width
            gap = (x * bars) % width < width // (bars * 4)
            level = 0.35 + 0.5 * abs(math.sin(bar * 0.9 + phase))
            if not gap and y > height * (1 - level) and y < height - 8:
                base = mix(ORANGE, (255, 220, 150), (height - y) / float(height))
            row.append(base + (255,))
        pixels.append(row)
    return pixels


def png(pixels):
    height = len(pixels)
    width = len(pixels[0])
    raw = b"".join(b"\x00" + bytes(v for p in row for v in p) for row in pixels)

    def chunk(kind, data):
        return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data) & 0xFFFFFFFF)

    return (b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", struct.pack(">IIBBBBB", width, height, 8, 6, 0, 0, 0)) +
            chunk(b"IDAT", zlib.compress(raw, 9)) + chunk(b"IEND", b""))


def ico(pictures):
    """An icon file with 32-bit DIB images (bottom-up BGRA plus an AND mask), which every
    Windows version and every resource compiler reads."""
    images = []
    for pixels in pictures:
        size = len(pixels)
        header = struct.pack("<IiiHHIIiiII", 40, size, size * 2, 1, 32, 0, 0, 0, 0, 0, 0)
        xor = b"".join(bytes((p[2], p[1], p[0], p[3])) for row in reversed(pixels) for p in row)
        mask_row = ((size + 31) // 32) * 4
        mask = b""
        for row in reversed(pixels):
            bits = bytearray(mask_row)
            for x, p in enumerate(row):
                if p[3] == 0:
                    bits[x // 8] |= 0x80 >> (x % 8)
            mask += bytes(bits)
        images.append((size, header + xor + mask))
    out = struct.pack("<HHH", 0, 1, len(images))
    offset = 6 + 16 * len(images)
    for size, data in images:
        out += struct.pack("<BBBBHHII", size % 256, size % 256, 0, 0, 1, 32, len(data), offset)
        offset += len(data)
    return out + b"".join(data for _, data in images)


def wav(seconds, frequency, rate=8000):
    count = int(seconds * rate)
    samples = b"".join(
        struct.pack("<h", int(12000 * math.sin(2 * math.pi * frequency * i / rate) * min(1.0, (count - i) / 800.0)))
        for i in range(count))
    return (b"RIFF" + struct.pack("<I", 36 + len(samples)) + b"WAVEfmt " +
            struct.pack("<IHHIIHH", 16, 1, 1, rate, rate * 2, 2, 16) + b"data" + struct.pack("<I", len(samples)) +
            samples)


def write(relative, data):
    path = os.path.join(SAMPLE, *relative.split("/"))
    os.makedirs(os.path.dirname(path), exist_ok=True)
    with open(path, "wb") as f:
        f.write(data)
    print(relative, len(data), "bytes")


def main():
    write("media/Setup/Promo1.png", png(promo_picture(480, 160, 0.0)))
    write("media/Setup/Promo2.png", png(promo_picture(480, 160, 1.7)))
    write("media/Listenwell/Skins/Standard View/Titlebar Icon.png", png(disc_picture(16, False)))
    write("media/Listenwell/Data/Default Art/Application.ico", ico([disc_picture(32, True), disc_picture(16, True)]))
    write("media/Listenwell/Data/Default Art/fileimage.ico", ico([disc_picture(32, False), disc_picture(16, False)]))
    write("programs/Sonora/Sonora.ico", ico([disc_picture(32, True), disc_picture(16, True)]))
    write("media/Bundled Media/Welcome Tone.wav", wav(0.6, 440))


if __name__ == "__main__":
    main()
