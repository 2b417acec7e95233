"""Other programs that read event logs, and what it takes to compare their reading with ours: they differ in how they write
numbers, times and bytes. They are run, and where they are not installed the comparison is left out."""

import base64
import binascii
import datetime
import json
import re
import shutil
import subprocess
import sys

# Prints the events of a log, up to a number of them, as a list of texts; none for one that it cannot read.
PYTHON_READER = """
import itertools, json, sys
import Evtx.Evtx
events = []
with Evtx.Evtx.Evtx(sys.argv[1]) as log:
    for record in itertools.islice(log.records(), int(sys.argv[2])):
        try:
            events.append(record.xml())
        except Exception:
            events.append(None)
json.dump(events, sys.stdout)
"""


def evtxexport(log):
    """The texts of all events; None when the program is not installed."""
    if not shutil.which("evtxexport"):
        return None
    result = subprocess.run(["evtxexport", "-f", "xml", log], capture_output=True, check=False)
    return re.findall(r"<Event xmlns.*?</Event>", result.stdout.decode("utf-8", "replace"), re.DOTALL)


def python_evtx(log, most=1 << 30):
    """The texts of the first events that it can read; None when the library is not installed. Arrays that have empty items
    are left out: it repeats and drops their items."""
    for python in (sys.executable, "/usr/bin/python3"):
        if subprocess.run([python, "-c", "import Evtx.Evtx"], capture_output=True, check=False).returncode == 0:
            result = subprocess.run([python, "-c", PYTHON_READER, log, str(most)], capture_output=True, check=True)
            texts = json.loads(result.stdout)
            return [text for text in texts if text is not None and "&lt;string&gt;&lt;/string&gt;" not in text]
    return None


def time_of(text):
    match = re.fullmatch(r"(\d{4}-\d\d-\d\d)[T ](\d\d:\d\d:\d\d)(?:\.(\d{1,9}))?Z?", text)
    if match is None:
        return None
    whole = datetime.datetime.fromisoformat(match.group(1) + " " + match.group(2))
    return whole + datetime.timedelta(microseconds=int((match.group(3) or "0").ljust(6, "0")[:6]))


def number_of(text):
    if re.fullmatch(r"0x[0-9a-fA-F]+", text):
        return int(text, 16)
    return int(text) if re.fullmatch(r"\d+", text) else None


def same_value(ours, theirs):
    """Whether two readers mean the same value."""
    if ours.split() == theirs.split() or ours.lower() == theirs.lower():
        return True
    if number_of(ours) is not None and number_of(ours) == number_of(theirs):
        return True
    if time_of(ours) and time_of(theirs):
        return abs(time_of(ours) - time_of(theirs)) < datetime.timedelta(milliseconds=1)
    if re.fullmatch(r"-\d+", ours) and re.fullmatch(r"-\d+", theirs):
        # evtxexport writes the value's bits without their sign behind a minus.
        return int(ours) & 0x7FFFFFFF == -int(theirs)
    try:
        return base64.b64decode(theirs, validate=True) == bytes.fromhex(ours)
    except (ValueError, binascii.Error):
        return False
