"""What Orca loads when it starts: no echo of keys, which stand beside what is said anyway; a log of what it makes of each
event; and a socket on which it answers each line as soon as it is at rest, with nothing left of what has reached it."""

import os
import socket
import threading

import orca.debug
import orca.settings
from gi.repository import GLib

orca.settings.enableKeyEcho = False
orca.debug.debugLevel = orca.debug.LEVEL_INFO
orca.debug.debugFile = open(os.environ["VELMORINDAL_EVENT_LOG"], "w", encoding="utf-8", buffering=1)


def answer(client):
    with client, client.makefile("r", encoding="utf-8") as lines:
        for _ in lines:
            # Comes after the sources of what has arrived, and after the queue of events.
            GLib.idle_add(client.sendall, b"at rest\n", priority=GLib.PRIORITY_LOW)


def serve(server):
    while True:
        client, _ = server.accept()
        threading.Thread(target=answer, args=(client,), daemon=True).start()


listening = socket.socket(socket.AF_UNIX)
listening.bind(os.environ["VELMORINDAL_REST_SOCKET"])
listening.listen()
threading.Thread(target=serve, args=(listening,), daemon=True).start()
