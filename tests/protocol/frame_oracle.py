"""The wire format of the Velmorindal once more, as plainly as it can be said, to compare the program with.

Nothing here is shared with the program. Field values are integers; a float is its 32-bit pattern, a text is bytes.
"""

HEADER_SIZE = 4
COMMAND, RESPONSE, ERROR = 0x63, 0x72, 0x65
BINARY = 0x62

# class: (type code, its fields with their first values)
MESSAGES = {
    "VCVersion": ("v", {"_versionString": b""}),
    "VCStatus": ("s", {"_linkState": 0}),
    "VCProtocolSelect": ("x", {"proto": 0}),
    "VCWriteSettings": ("w", {}),
    "VCReset": ("z", {}),
    "VCHumDuration": (
        "d",
        {"detect_mode": 0, "min_short": 0, "max_short": 0, "min_long": 0, "max_long": 0, "hold_on": 0, "hold_off": 0},
    ),
    "VCHumThresholds": ("h", {"apThreshold": 0, "siThreshold": 0}),
    "VCKeyboardConfig": (
        "k",
        {
            "shortKey0Modifier": 0,
            "shortKey0": 0,
            "shortKey1Modifier": 0,
            "shortKey1": 0,
            "longKey0Modifier": 0,
            "longKey0": 0,
            "longKey1Modifier": 0,
            "longKey1": 0,
        },
    ),
    "VCOutputPath": ("p", {"path": 0}),
    "VCRelayConfig": (
        "y",
        {
            "config_modeShort": 1,
            "config_modeLong": 1,
            "config_typeShort": 0,
            "config_typeLong": 0,
            "min_pulse_short": 0,
            "min_pulse_long": 0,
            "max_pulse_short": 0,
            "max_pulse_long": 0,
        },
    ),
    "VCLastHumDuration": ("l", {"_duration": 0, "_sourceSI": 0}),
    "VCAutoTune": ("t", {"channel": 0, "_minThreshold": 0, "_maxThreshold": 0}),
}

RESPONSE_FRAME_SIZES = {
    "VCStatus": 5,
    "VCProtocolSelect": 5,
    "VCHumDuration": 15,
    "VCHumThresholds": 12,
    "VCKeyboardConfig": 12,
    "VCOutputPath": 5,
    "VCRelayConfig": 15,
    "VCLastHumDuration": 7,
    "VCAutoTune": 12,
}

NEVER_RECEIVED = ("VCWriteSettings", "VCReset")
NEVER_SENT = ("VCVersion", "VCStatus")
SENT_EVEN_IF_INVALID = ("VCHumThresholds", "VCKeyboardConfig", "VCWriteSettings", "VCReset")


class Thrown(Exception):
    """The protocol error, by its name, that an operation throws."""


class ProcessStops(Exception):
    """The frame is one on which the program stops on purpose."""


def type_code(name):
    return ord(MESSAGES[name][0])


def first_fields(name):
    return {"_valid": 1, **MESSAGES[name][1]}


def verify(frame, expected_type):
    """The line that names the first failing check, or None for a whole frame of that type."""

    def line(*items):
        return " ".join(str(item) for item in items)

    if len(frame) < HEADER_SIZE:
        return line("Header length was ", len(frame), " and I expected at least ", HEADER_SIZE)
    kind, marker, code, announced = frame[:HEADER_SIZE]
    if kind not in (COMMAND, RESPONSE):
        return line("Message type unexpected: ", kind, " command/response/error are ", COMMAND, RESPONSE, ERROR)
    if marker != BINARY:
        return line("Expected binary message (", BINARY, "). Got ", marker)
    if code != expected_type:
        return line("Expected message type ", expected_type, "). Got ", code)
    if len(frame) - HEADER_SIZE != announced:
        return line("Expected total payload length of ", announced, " but got ", len(frame) - HEADER_SIZE)
    return None


def decoded_fields(name, payload):
    """The fields that a payload of the right size sets."""

    def pattern(offset):
        return int.from_bytes(payload[offset : offset + 4], "little")

    if name == "VCVersion":
        try:
            payload.decode("utf-8")
        except UnicodeDecodeError as error:
            raise ProcessStops from error
        return {"_versionString": payload}
    if name == "VCStatus":
        return {"_linkState": payload[0]}
    if name == "VCProtocolSelect":
        return {"proto": payload[0] % 2}
    if name == "VCHumDuration":
        return {
            "detect_mode": payload[0] % 4,
            "min_short": payload[1],
            "max_short": payload[3],
            "min_long": payload[5],
            "max_long": payload[7],
            "hold_on": payload[9],
            "hold_off": payload[10],
        }
    if name == "VCHumThresholds":
        return {"apThreshold": pattern(0), "siThreshold": pattern(4)}
    if name == "VCKeyboardConfig":
        return dict(zip(MESSAGES[name][1], payload))
    if name == "VCOutputPath":
        return {"path": payload[0] % 2}
    if name == "VCRelayConfig":
        half = {
            "config_mode": {0: 0, 1: 1, 2: 2, 3: 1}[payload[0] % 4],
            "config_type": payload[1] % 2,
            "min_pulse_": payload[2],
            "max_pulse_": payload[4],
        }
        names = {"config_mode": ("Short", "Long"), "config_type": ("Short", "Long")}
        return {
            field + ending: value for field, value in half.items() for ending in names.get(field, ("short", "long"))
        }
    if name == "VCLastHumDuration":
        return {"_duration": payload[0], "_sourceSI": 0 if payload[2] == 0 else 1}
    if name == "VCAutoTune":
        return {"_minThreshold": pattern(0), "_maxThreshold": pattern(4)}
    raise KeyError(name)


def deserialize(name, fields, frame):
    """(whether it succeeded, the fields afterwards, the printed lines)"""
    if name in NEVER_RECEIVED:
        raise Thrown("NotImplementedError")
    complaint = verify(frame, type_code(name))
    if complaint is not None:
        return False, {**fields, "_valid": 0}, [complaint]
    if len(frame) != RESPONSE_FRAME_SIZES.get(name, len(frame)):
        return False, {**fields, "_valid": 0}, []
    return True, {**fields, **decoded_fields(name, frame[HEADER_SIZE:]), "_valid": 1}, []


def create(frame):
    """(class or None, its fields, the printed lines)"""
    if len(frame) < HEADER_SIZE:
        return None, {}, []
    for name in MESSAGES:
        if type_code(name) == frame[2] and name not in NEVER_RECEIVED:
            _, fields, lines = deserialize(name, first_fields(name), frame)
            return name, fields, lines
    return None, {}, []


def command_payload(name, fields):
    def byte(*names):
        return bytes(fields[each] for each in names)

    def word(*names):
        return b"".join(fields[each].to_bytes(2, "little") for each in names)

    def pattern(*names):
        return b"".join(fields[each].to_bytes(4, "little") for each in names)

    if name in ("VCWriteSettings", "VCReset"):
        return b""
    if name == "VCProtocolSelect":
        return byte("proto")
    if name == "VCHumDuration":
        return (
            byte("detect_mode") + word("min_short", "max_short", "min_long", "max_long") + byte("hold_on", "hold_off")
        )
    if name == "VCHumThresholds":
        return pattern("apThreshold", "siThreshold")
    if name == "VCKeyboardConfig":
        return byte(*MESSAGES[name][1])
    if name == "VCOutputPath":
        return byte("path")
    if name == "VCRelayConfig":
        return (
            byte("config_modeShort", "config_typeShort")
            + word("min_pulse_short", "max_pulse_short")
            + byte("config_modeLong", "config_typeLong")
            + word("min_pulse_long", "max_pulse_long")
        )
    if name == "VCLastHumDuration":
        return word("_duration") + byte("_sourceSI")
    if name == "VCAutoTune":
        return byte("channel")
    raise KeyError(name)


def serialize(name, fields):
    if not fields["_valid"] and name not in SENT_EVEN_IF_INVALID:
        raise Thrown("InvalidMessageError")
    if name in NEVER_SENT:
        raise Thrown("NotImplementedError")
    payload = command_payload(name, fields)
    return bytes((COMMAND, BINARY, type_code(name), len(payload))) + payload
