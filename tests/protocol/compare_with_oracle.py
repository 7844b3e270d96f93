"""Puts the same questions to the program's codec and to frame_oracle, and fails on the first difference.

Usage: compare_with_oracle.py FRAME_DRIVER
"""

import collections
import random
import signal
import subprocess
import sys

import frame_oracle as oracle

SEED = 20240229
CREATED_FRAMES = 24000
DESERIALIZED_FRAMES = 12000
VERIFIED_FRAMES = 4000
SERIALIZED_OBJECTS = 12000
SECONDS = 100

FLOATS = ("apThreshold", "siThreshold", "_minThreshold", "_maxThreshold")
WORDS = (
    "min_short",
    "max_short",
    "min_long",
    "max_long",
    "min_pulse_short",
    "min_pulse_long",
    "max_pulse_short",
    "max_pulse_long",
    "_duration",
)
LAST_CASES = {
    "detect_mode": 3,
    "proto": 1,
    "path": 1,
    "config_modeShort": 2,
    "config_modeLong": 2,
    "config_typeShort": 1,
    "config_typeLong": 1,
    "_sourceSI": 1,
    "_valid": 1,
}

MANGLINGS = (
    *("none", "none", "none", "truncated", "extended", "kind", "marker", "type", "length"),
    *("resized", "command", "noise"),
)

Question = collections.namedtuple("Question", "request answer outcome")


def hexadecimal(data):
    return data.hex() or "-"


def fields_text(fields):
    def text(name, value):
        if isinstance(value, bytes):
            return hexadecimal(value)
        return f"{value:08x}" if name in FLOATS else str(value)

    return "".join(f" {name}={text(name, value)}" for name, value in fields.items())


class Generator:
    """Frames and objects, good and bad, the same ones for the same seed."""

    def __init__(self, seed):
        self.random = random.Random(seed)

    def data(self, length):
        revealing = (0x00, 0x01, 0x03, 0x7F, 0x80, 0xFF)
        return bytes(self.random.choice((*revealing, self.random.randrange(256))) for _ in range(length))

    def text(self):
        characters = "".join(
            chr(self.random.choice((0, 0x41, 0x7F, 0x80, 0x7FF, 0x800, 0xD7FF, 0xE000, 0xFFFF, 0x10000, 0x10FFFF)))
            for _ in range(self.random.randrange(64))
        )
        return self.random.choice((b"", b"Velmorindal 1.2", b"v" * 255, characters.encode()))

    def payload(self, name):
        if name == "VCVersion":
            return self.text()
        if name in oracle.NEVER_RECEIVED:
            return self.data(self.random.choice((0, 0, 1)))
        return self.data(oracle.RESPONSE_FRAME_SIZES[name] - oracle.HEADER_SIZE)

    def name(self):
        return self.random.choice(list(oracle.MESSAGES))

    def good_frame(self, name):
        payload = self.payload(name)
        kind = self.random.choice((oracle.COMMAND, oracle.RESPONSE))
        return bytes((kind, oracle.BINARY, oracle.type_code(name), len(payload))) + payload

    def frame(self, name):
        frame = bytearray(self.good_frame(name))
        mangling = self.random.choice(MANGLINGS)
        if mangling == "truncated":
            del frame[self.random.randrange(len(frame)) :]
        elif mangling == "extended":
            frame += self.data(self.random.choice((self.random.randrange(1, 20), 256)))  # 256 wraps a byte
        elif mangling in ("kind", "marker", "type", "length"):
            offset = ("kind", "marker", "type", "length").index(mangling)
            common = (oracle.ERROR, 0x00, 0x41, *b"dhklpstvwxyz", self.random.randrange(256))
            frame[offset] = self.random.choice(common)
        elif mangling == "resized":  # a whole frame whose payload has another length
            payload = self.data(self.random.randrange(256 if self.random.random() < 0.1 else 18))
            frame[3:] = bytes((len(payload),)) + payload
        elif mangling == "command" and name not in oracle.NEVER_SENT:
            frame = bytearray(oracle.serialize(name, {**self.fields(name), "_valid": 1}))
        elif mangling == "noise":
            frame = bytearray(self.data(self.random.randrange(20)))
        return bytes(frame)

    def fields(self, name):
        fields = oracle.first_fields(name)
        for field in fields:
            if isinstance(fields[field], bytes):
                fields[field] = self.text()
            elif field in LAST_CASES:
                fields[field] = self.random.randint(0, LAST_CASES[field])
            elif field in FLOATS:
                fields[field] = int.from_bytes(self.data(4), "little")
            else:
                fields[field] = int.from_bytes(self.data(2 if field in WORDS else 1), "little")
        return fields

    def create(self):
        name = self.name()
        frame = self.frame(name)
        made, fields, lines = oracle.create(frame)
        answer = made + fields_text(fields) if made else "nothing"
        outcome = (made, "valid" if fields["_valid"] else "invalid") if made else (name, "nothing")
        return Question(f"create {hexadecimal(frame)}", [*lines, f"= {answer}"], outcome)

    def deserialize(self):
        name = self.name()
        frame = self.frame(name if self.random.random() < 0.8 else self.name())
        before = self.fields(name)
        request = f"deserialize {name} {hexadecimal(frame)}{fields_text(before)}"
        try:
            result, after, lines = oracle.deserialize(name, before, frame)
        except oracle.Thrown as error:
            return Question(request, [f"= throws {error}"], (name, "throws"))
        answer = f"= {'true' if result else 'false'} {name}{fields_text(after)}"
        return Question(request, [*lines, answer], (name, "decoded" if result else "refused"))

    def verify(self):
        frame = self.frame(self.name())
        other = self.random.randrange(256)
        code = frame[2] if len(frame) > 2 and self.random.random() < 0.7 else other
        line = oracle.verify(frame, code)
        answer = ["= true"] if line is None else [line, "= false"]
        return Question(f"verify {code} {hexadecimal(frame)}", answer, ("header", answer[-1]))

    def serialize(self):
        name = self.name()
        fields = self.fields(name)
        try:
            answer, outcome = hexadecimal(oracle.serialize(name, fields)), "sent"
        except oracle.Thrown as error:
            answer, outcome = f"throws {error}", str(error)
        return Question(f"serialize {name}{fields_text(fields)}", [f"= {answer}"], (name, outcome))

    def questions(self, count, ask):
        """That many questions, leaving out those that stop the process."""
        asked = []
        while len(asked) < count:
            try:
                asked.append(ask())
            except oracle.ProcessStops:
                pass
        return asked


def expected_outcomes():
    """Every way in which a message can end; a generator that misses one proves too little."""
    outcomes = {("header", "= true"), ("header", "= false")}
    for name in oracle.MESSAGES:
        if name in oracle.NEVER_RECEIVED:
            outcomes |= {(name, "nothing"), (name, "throws")}
        else:
            outcomes |= {(name, "valid"), (name, "invalid"), (name, "decoded"), (name, "refused")}
        outcomes.add((name, "NotImplementedError" if name in oracle.NEVER_SENT else "sent"))
        if name not in oracle.SENT_EVEN_IF_INVALID:
            outcomes.add((name, "InvalidMessageError"))
    return outcomes


def driver_run(driver, requests):
    text = "".join(f"{request}\n" for request in requests)
    return subprocess.run([driver], input=text, capture_output=True, text=True, errors="replace", timeout=SECONDS)


def compare(driver, questions):
    run = driver_run(driver, [question.request for question in questions])
    lines = iter(run.stdout.splitlines())
    for number, question in enumerate(questions, 1):
        answer = []
        for line in lines:
            answer.append(line)
            if line.startswith("= "):
                break
        if answer != question.answer:
            print(f"Question {number} of {len(questions)}: {question.request}")
            print("The oracle says:", *question.answer, sep="\n    ")
            print("The program says:", *answer, sep="\n    ")
            print(run.stderr, end="")
            return False
    surplus = list(lines)
    if surplus or run.stderr or run.returncode != 0:
        print("After the last answer:", *surplus[:5], run.stderr, f"exit status {run.returncode}", sep="\n    ")
        return False
    return True


def stops_on(driver, text):
    """Whether the driver aborts with one line on standard error and no answer, as the oracle foresees."""
    frame = bytes((oracle.RESPONSE, oracle.BINARY, ord("v"), len(text))) + text
    try:
        oracle.create(frame)
        foreseen = False
    except oracle.ProcessStops:
        foreseen = True
    run = driver_run(driver, [f"create {hexadecimal(frame)}"])
    stopped = run.returncode == -signal.SIGABRT and not run.stdout and len(run.stderr.splitlines()) == 1
    if not foreseen or not stopped:
        print(f"Version text {hexadecimal(text)}: the oracle {'stops' if foreseen else 'goes on'}, the program:")
        print(f"    exit status {run.returncode}", run.stdout, run.stderr, sep="\n    ")
    return foreseen and stopped


NOT_UTF8 = (
    b"\xff",  # no such byte
    b"\x80",  # a continuation of nothing
    b"Velmorindal \xc3",  # cut off after the first of two bytes
    b"\xe2\x82 ",  # cut off after the second of three
    b"\xc0\x80",  # NUL in two bytes
    b"\xe0\x9f\xbf",  # U+07FF in three bytes
    b"\xf0\x8f\xbf\xbf",  # U+FFFF in four bytes
    b"\xed\xa0\x80",  # a surrogate
    b"\xf4\x90\x80\x80",  # beyond U+10FFFF
)


def main(driver):
    generator = Generator(SEED)
    frames = (
        generator.questions(CREATED_FRAMES, generator.create)
        + generator.questions(DESERIALIZED_FRAMES, generator.deserialize)
        + generator.questions(VERIFIED_FRAMES, generator.verify)
    )
    objects = generator.questions(SERIALIZED_OBJECTS, generator.serialize)
    missed = expected_outcomes() - {question.outcome for question in frames + objects}
    if missed:
        print("Never generated:", sorted(missed))
        return 1
    if not compare(driver, frames + objects) or not all([stops_on(driver, text) for text in NOT_UTF8]):
        return 1
    print(
        f"Compared {len(frames)} received frames, {len(objects)} sent objects and {len(NOT_UTF8)} texts that are"
        " not UTF-8: no difference."
    )
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1]))
