"""Every text of the wizard, written down here by hand and not taken from the program."""

WINDOW = "Velmorindal Setup"
STEPS = ["Welcome", "Connect", "Mode", "Ouptut", "Calibration", "Summary"]
VERSION = "Version 1.1M"

WELCOME_PAGE = [
    "[image] Logo",
    "Welcome to the Velmorindal Setup Wizard!",
    "This program will walk you through the steps of setting up your Velmorindal. You can select your input options, "
    "output options, and calibration settings.\n\nTo begin, plug the USB dongle into your computer. Next, ensure that "
    "your Velmorindal is turned off. Put the Velmorindal in Configuration mode by holding down the Pairing button "
    "before pressing the Power button to turn it on.\n\nOnce you see the Velmorindal flash white, it will be in "
    "Configuration mode. Click Next to continue.",
]

CONNECTING = "Connecting..."
CONNECTED = 'Connection successful. Press "Next" to continue.'
NOT_CONNECTED = "Not Connected"
BROKEN = "Unknown Error. Please quit and restart this program."


def connect_page(status, progress=None, reason=None):
    """`reason` is what the last dialog said, to be read again."""
    return [
        "It's time to connect to the Velmorindal.",
        status,
        *([] if reason is None else [" ".join(reason.split())]),
        *([] if progress is None else [f"[progress bar] Connection progress {progress}"]),
        "If you have previously saved a configuration, you can load it here.\n"
        "These settings will not be saved to the Velmorindal until the end.",
        "[button] Load",
    ]


def mode_page(mode, short=None, long=None):
    """`mode` is the entry that is chosen; the two check boxes are there where their states are given."""
    return [
        "The Velmorindal can operate in two modes:",
        "Direct Mode: ",
        "control one output with a hum",
        "Long/Short Mode:",
        "control two outputs with a short hum or a long hum",
        "Which mode would you like?",
        *choices("radio button", ["Direct Mode", "Long/Short Mode"], [mode]),
        *(
            []
            if short is None
            else choices(
                "check box",
                ["Enable short output", "Enable long output"],
                ["Enable short output"] * short + ["Enable long output"] * long,
            )
        ),
    ]


def output_page(path, **keys):
    """`path` is the entry that is chosen; the key lists are those given: keystroke, short, long."""
    labels = {"keystroke": "Keystroke", "short": "Short hum keystroke", "long": "Long hum keystroke"}
    page = [
        "What output would you like the Velmorindal to trigger?",
        *choices("radio button", ["Switch Output", "USB Keyboard", "Bluetooth Keyboard"], [path]),
    ]
    for key, label in labels.items():
        if key in keys:
            page += [label, f"[combo box] {label}: {keys[key]}"]
    return page


KEYS = [
    *"Space Enter Tab Shift+Tab 0 1 2 3 4 ~1 ~2 ~3 ~4".split(),
    "[Up Arrow]",
    "[Down Arrow]",
    "[Left Arrow]",
    "[Right Arrow]",
    *"F1 F2 F3 F4 F5 F6 F7 F8 F9 F10 F11 F12".split(),
]


def calibration_page(
    clarity="0.5",
    cutoff="1",
    level="0",
    last="0",
    lit=False,
    kinds=("off", "off"),
    show=("", ""),
    reading=None,
    hum=None,
):
    """`show` is what is said after the names of the two buttons; `reading` and `hum` are the numbers beside the
    indicators, where there are any."""
    hums = {kind: [hum] if state == "on" and hum else [] for kind, state in zip(("short", "long"), kinds)}
    return [
        "It's time to calibrate your Velmorindal",
        "Please place the device on the user's neck, aligning hte sensor to their vocal cords.",
        "Clarity:",
        "Adjust the slider to set the clarity threshold. Hums with a clarity level higher than the threshold will "
        'activate an output.\nPress "Show Clarity" and hum to see the clarity of the user\'s hums.',
        f"[button] Show Clarity{show[0]}",
        f"[slider] Clarity threshold {clarity}",
        f"{float(clarity):.2f}",
        f"[progress bar] Clarity level {level}",
        f"[image] Clarity indicator: {'Above threshold' if lit else 'Below threshold'}",
        *([] if reading is None else [reading]),
        "Duration:",
        "Adjust the slider to set the cutoff time between short and long hums.\n"
        'Press "Show Duration", then hum and wait. The bar will then show the duration of the last hum after you stop '
        "humming.",
        f"[button] Show Duration{show[1]}",
        f"[slider] Cutoff {cutoff}",
        f"{float(cutoff):.2f} s",
        f"[progress bar] Duration of last hum {last}",
        f"[image] Duration indicator: Short hum: {kinds[0]}",
        "Short hum",
        *hums["short"],
        f"[image] Duration indicator: Long hum: {kinds[1]}",
        "Long hum",
        *hums["long"],
    ]


WRITING = "Writing data..."
WRITTEN = "Settings successfully written. Please restart your Velmorindal."


def summary_page(*rows, status=None, progress=None, reason=None):
    return [
        "You have configured your Velmorindal with the following parameters:",
        *(text for row in rows for text in row),
        *([] if status is None else [status]),
        *([] if reason is None else [" ".join(reason.split())]),
        *([] if progress is None else [f"[progress bar] Write progress {progress}"]),
    ]


def choices(role, entries, chosen):
    return [f"[{role}] {entry} ({'checked' if entry in chosen else 'not checked'})" for entry in entries]


def buttons(*labels):
    return [f"[button] {label}" for label in labels]


# Dialogs: title, text, buttons.

CLOSE_PROGRAM = (
    "Close Program?",
    "No changes have been written to the device;\nany updates will be lost.\n\nAre you sure you want to quit?",
    ["Yes", "No"],
)
SAVE_SETTINGS = ("Save Settings?", "Would you like to program your device with these settings?", ["Yes", "No"])
FILE_AFTER_SUCCESS = (
    "Write Configuration File?",
    "Congratulations! Your Velmorindal has been successfully programmed.\n\n"
    "Your configuration can be saved to disk to save time next time.\n\n"
    "Would you like to save these settings to a file?",
    ["Yes", "No"],
)
FILE_AFTER_FAILURE = (
    "Write Configuration File?",
    "There was an error writing your configuration to the device.\n\n"
    "Your configuration can be saved to disk in order to try again.\n\n"
    "Would you like to save these settings to a file?",
    ["Yes", "No"],
)
SEVERAL_DONGLES = (
    "Warning",
    "Multiple dongles found. To ensure that you program the correct device, please remove any extra USB dongles.",
    ["OK"],
)


NO_DONGLE = "Could not detect Velmorindal Dongle.\nPlease ensure that it is plugged into a USB port."
LINK_DOWN = "Please ensure that your Velmorindal is turned on and in configuration mode."


def connection_failed(text):
    return "Connection Failed", text, ["OK"]


def save_failed(text):
    return (
        "Save Failed",
        f"{text}\n\nPlease restart the Velmorindal in configuration mode and run this program again.",
        ["OK"],
    )


def load_failed(text):
    return "Could Not Load XML File", f"{text}\n\nSettings from the file were NOT loaded.", ["OK"]


# The log.

QUITTING = ["I'm being told to go now.", "Quitting program!", "Setting polling state from  none none", "Farewell"]
LOAD_PANEL = "Load Configuration File"
SAVE_PANEL = "Save Configuration File"
