"""Programs a simulated device with the wizard by keyboard alone: on a separate X server, by keys that reach the window
from outside."""

import contextlib
import functools
import os
import pathlib
import random
import signal
import subprocess
import sys
import threading

import waiting
from waiting import Failed

SECONDS = 600

wait_for = functools.partial(waiting.wait_for, seconds=SECONDS)


class Program:
    """A program whose standard output is read line by line. Ends when its context does."""

    def __init__(self, command, environment):
        self.name = command[0]
        self.lines = []
        self.process = subprocess.Popen(
            command, env=environment, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True
        )
        self.reader = threading.Thread(target=self.read)
        self.reader.start()

    def read(self):
        for line in self.process.stdout:
            self.lines.append(line.rstrip("\n"))

    def __enter__(self):
        return self

    def __exit__(self, kind, *_):
        if self.process.poll() is None:
            self.process.kill()
        self.process.wait()
        self.reader.join()
        if kind:
            print(
                f"{self.name} ended with {self.process.returncode}, and had said:",
                *self.lines,
                sep="\n    ",
                file=sys.stderr,
            )

    def wait_for_line(self, start, seconds=SECONDS):
        def found():
            return next((line for line in list(self.lines) if line.startswith(start)), None)

        return wait_for(found, f"the line {start}", seconds=seconds)

    def end(self, *signals):
        for each in signals:
            self.process.send_signal(each)
        status = self.process.wait(SECONDS)
        self.reader.join()
        return status


class Screen:
    """An X server with a window manager: without one, Qt 6.8 can lose the keyboard when a dialog closes."""

    def __init__(self, stack):
        # A number that no other server uses. The server cannot look for the first free one itself: in a process name
        # space, it takes the lock of a server outside for a stale one.
        number = f":{random.randrange(10000, 50000)}"
        reader, writer = os.pipe()
        command = ["Xvfb", number, "-displayfd", str(writer), "-screen", "0", "1280x800x24", "-ac", "-nolisten", "tcp"]
        self.server = subprocess.Popen(command, pass_fds=[writer], stderr=subprocess.DEVNULL)
        stack.callback(self.server.wait)
        stack.callback(self.server.terminate)
        os.close(writer)
        with os.fdopen(reader) as ready:
            self.display = ":" + ready.readline().strip()
        if self.display != number:
            raise Failed(f"the X server {number}")
        self.manage(stack)

    def manage(self, stack):
        reader, writer = os.pipe()
        # What it starts says that it manages the windows.
        manager = subprocess.Popen(
            ["openbox", "--startup", f"sh -c 'echo ready >/proc/{os.getpid()}/fd/{writer}'"],
            env=os.environ | {"DISPLAY": self.display},
            stdout=subprocess.DEVNULL,
            stderr=subprocess.DEVNULL,
        )
        stack.callback(manager.wait)
        stack.callback(manager.terminate)
        with os.fdopen(reader) as ready:
            ready.readline()
        os.close(writer)

    def xdotool(self, *arguments):
        return subprocess.run(
            ["xdotool", *arguments], env=os.environ | {"DISPLAY": self.display}, capture_output=True, text=True
        ).stdout.split()

    def windows(self, title):
        return self.xdotool("search", "--onlyvisible", "--name", f"^{title}$")

    def press(self, title, key):
        """Presses a key in the window of that title, as soon as there is one."""
        window = wait_for(lambda: self.windows(title), f"the window {title}")[0]
        self.xdotool("windowfocus", "--sync", window, "key", "--clearmodifiers", key)


def program_a_device(wizard, screen, look):
    """From the first page to the end of the program. `wizard` is the Program, looked at once it is connected."""
    title = "Velmorindal Setup"
    screen.press(title, "alt+n")
    wizard.wait_for_line("Successful connection!")
    look(wizard)

    def press_until(line, *keys):
        def comes():
            for key in keys:
                screen.press(title, key)
            with contextlib.suppress(Failed):
                return wizard.wait_for_line(line, 0.5)

        wait_for(comes, f"the line {line}")

    # A button that is not shown takes no key: Next works up to the last page, Save only there.
    press_until("Save pressed", "alt+n", "alt+s")
    screen.press("Save Settings\\?", "alt+y")
    wizard.wait_for_line("All done!")
    screen.press("Write Configuration File\\?", "alt+n")

    press_until("Farewell", "alt+e")
    status = wizard.end()
    if status != 0:
        raise Failed(f"the wizard ended with {status}")


def run(
    wizard_command,
    simulator_command,
    simulator_environment,
    wizard_environment,
    port_is_there=lambda port: None,
    look=lambda wizard: None,
):
    """Starts both programs and programs a device. `port_is_there` is called with the simulated port before the wizard
    starts. The simulator's command ends with its directory.

    Returns the lines in which the simulated device lists what it has stored."""
    with contextlib.ExitStack() as stack:
        screen = Screen(stack)
        simulator = stack.enter_context(Program(simulator_command, simulator_environment))
        port = simulator.wait_for_line(f"{simulator_command[-1]}/")
        port_is_there(pathlib.Path(port))
        wizard = stack.enter_context(Program(wizard_command, wizard_environment | {"DISPLAY": screen.display}))
        program_a_device(wizard, screen, look)
        if simulator.end(signal.SIGINT) != 0:
            raise Failed("the simulator failed")
        stored = simulator.lines[1:]
        if "Protocol: Gazell" not in stored:
            raise Failed(f"the device has stored {stored}")
        return wizard.lines, stored
