#!/usr/bin/env python3
"""Makes the program's sounds: writes src/gui/sounds/*.wav, mono, 16 bit, 22,050 samples a second."""

import array
import math
import os
import sys
import wave

RATE = 22050
LONGEST = 60000  # bytes of a file


def samples(seconds):
    return range(int(seconds * RATE))


def struck(pitch, seconds, decay, overtones=((1, 1.0),)):
    """A tone that is struck and fades, with its overtones as (multiple, strength)."""
    loudest = sum(strength for _, strength in overtones)
    tone = []
    for i in samples(seconds):
        time = i / RATE
        onset = min(1.0, time / 0.004)
        release = min(1.0, (seconds - time) / 0.02)
        angle = 2 * math.pi * pitch * time
        value = sum(strength * math.exp(-decay * multiple ** 0.5 * time) * math.sin(multiple * angle)
                    for multiple, strength in overtones)
        tone.append(onset * release * value / loudest)
    return tone


def held(pitch, seconds, edge=0.25):
    """A tone of even loudness; the third and fifth overtone give it an edge."""
    tone = []
    for i in samples(seconds):
        time = i / RATE
        fade = min(1.0, time / 0.008, (seconds - time) / 0.008)
        angle = 2 * math.pi * pitch * time
        tone.append(fade * (math.sin(angle) + edge * math.sin(3 * angle) + edge / 2 * math.sin(5 * angle)))
    return tone


def silence(seconds):
    return [0.0 for _ in samples(seconds)]


def mixed(first, second, later):
    """Both together, the second one beginning `later` seconds after the first."""
    offset = int(later * RATE)
    length = max(len(first), offset + len(second))
    total = [0.0] * length
    for i, value in enumerate(first):
        total[i] += value
    for i, value in enumerate(second):
        total[offset + i] += value
    return total


BELL = ((1, 1.0), (2.0, 0.35), (3.01, 0.15))


def calm():
    return mixed(struck(523.25, 1.0, 4.5, BELL), struck(783.99, 1.0, 4.0, BELL), 0.22)


def warning():
    return (held(587.33, 0.18) + silence(0.05) + held(587.33, 0.18) + silence(0.05) + held(440.0, 0.4))


def alarm():
    return (held(880.0, 0.14, 0.4) + held(659.26, 0.14, 0.4)) * 4


def bleep():
    return struck(1046.5, 0.12, 14.0)


def write(path, tone, loudness):
    peak = max(abs(value) for value in tone)
    data = array.array("h", (round(32767 * loudness * value / peak) for value in tone))
    if sys.byteorder == "big":
        data.byteswap()
    with wave.open(path, "wb") as file:
        file.setnchannels(1)
        file.setsampwidth(2)
        file.setframerate(RATE)
        file.writeframes(data.tobytes())
    if os.path.getsize(path) >= LONGEST:
        sys.exit(f"{path} is too long")


def main():
    folder = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "src", "gui", "sounds")
    os.makedirs(folder, exist_ok=True)
    for name, tone, loudness in (("clm", calm(), 0.45), ("zaaz", warning(), 0.55), ("rml", alarm(), 0.7),
                                 ("blp", bleep(), 0.4)):
        write(os.path.join(folder, name + ".wav"), tone, loudness)


if __name__ == "__main__":
    main()
