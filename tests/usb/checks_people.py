"""Who may use the dongle, and what the wizard says to those who may not."""

from bench import check, close, expect_reason
from checks_program import program


def saves_as(bench, person):
    dongle = bench.dongle()
    program(bench.connected(person, step="Summary"), dongle)


check("the person at the seat, in no group: saves, exact to the byte", "carer", name="person_at_the_seat")(saves_as)
check("a person in dialout, not at the seat: saves, exact to the byte", "dialer", name="person_in_dialout")(saves_as)


@check("a person with neither: a line on standard error names the port, the refusal and the group that owns it")
def person_with_neither(bench):
    bench.dongle()
    wizard = bench.wizard("stranger")
    wizard.press("alt+n")
    wizard.wait_for_line("Could not connect.")
    wizard.press("Return", title="Connection Failed")
    close(wizard)
    expect_reason(wizard, "/dev/cu.usbmodem0", "Permission denied", "dialout")
