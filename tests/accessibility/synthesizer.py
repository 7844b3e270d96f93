"""A speech synthesizer that writes down what it is given: it speaks the protocol of Speech Dispatcher on a socket, so
that a screen reader needs neither a sound device nor to be changed."""

import html
import re
import socket
import threading

# What is answered before the status line, to the commands that ask for a list.
LISTS = {
    "HISTORY GET CLIENT_ID": "245-1",
    "LIST OUTPUT_MODULES": "250-paper",
    "LIST VOICES": "249-MALE1",
    "LIST SYNTHESIS_VOICES": "249-paper\ten\tnone",
    "GET OUTPUT_MODULE": "251-paper",
    "GET RATE": "251-0",
    "GET PITCH": "251-0",
    "GET VOLUME": "251-100",
}


class Synthesizer:
    """Serves one screen reader. `utterances` grows while it listens; an entry that is None stands for an order to be
    silent, which cuts off what was said before it."""

    def __init__(self, path):
        self.utterances = []
        self._server = socket.socket(socket.AF_UNIX)
        self._server.bind(str(path))
        self._server.listen()
        threading.Thread(target=self._accept, daemon=True).start()

    def _accept(self):
        while True:
            client, _ = self._server.accept()
            threading.Thread(target=self._serve, args=(client,), daemon=True).start()

    def _serve(self, client):
        with client, client.makefile("r", encoding="utf-8", newline="\r\n") as lines:
            message = 0
            for line in lines:
                command = line.strip()
                verb = command.upper().split(" ")[0]
                if verb == "SPEAK":
                    client.sendall(b"230 OK RECEIVING DATA\r\n")
                    self._hear("".join(iter(lambda: next(lines), ".\r\n")))
                    message += 1
                    client.sendall(f"225-{message}\r\n225 OK MESSAGE QUEUED\r\n".encode())
                elif verb in ("CHAR", "KEY"):
                    self.utterances.append(command.split(" ", 1)[1])
                    client.sendall(b"225 OK MESSAGE QUEUED\r\n")
                else:
                    if verb in ("STOP", "CANCEL"):
                        self.utterances.append(None)
                    answer = next((LISTS[asked] for asked in LISTS if command.upper().startswith(asked)), None)
                    if answer is None:
                        client.sendall(b"200 OK\r\n")
                    else:
                        # The status line has the code of the lines before it.
                        client.sendall(f"{answer}\r\n{answer[:3]} OK\r\n".encode())
                    if verb == "QUIT":
                        return

    def _hear(self, data):
        text = html.unescape(re.sub(r"<[^>]*>", "", data.replace("\r\n", "\n")))
        if text.strip():
            self.utterances.append(" ".join(text.split()))
