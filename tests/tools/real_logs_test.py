"""Compares what corvina-logs reads in real, partly damaged logs with what other readers find there: the System fields and
data values of every record that both read.

Usage: real_logs_test.py PROGRAM [unittest arguments]
The logs are looked for in ../shared/evtx-samples beside the project, or in the folder named by CORVINA_SAMPLES. One of the
other readers takes long; it reads the first records of each log only, or all with CORVINA_ALL_RECORDS=1.
"""

import collections
import os
import re
import subprocess
import sys
import unittest
import xml.etree.ElementTree as ElementTree

from readers import evtxexport, python_evtx, same_value

PROGRAM = os.path.abspath(sys.argv.pop(1))
PROJECT = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
REAL_LOGS = os.environ.get("CORVINA_SAMPLES") or os.path.join(PROJECT, "..", "shared", "evtx-samples")
SLOW_READERS_RECORDS = 1 << 30 if os.environ.get("CORVINA_ALL_RECORDS") else 40

# Records whose second size is missing or wrong: we skip them as damaged, a reader that looks at the first size only does not.
TORN_RECORDS = {
    "Microsoft-Windows-HelloForBusiness%4Operational.evtx": 1,
    "Microsoft-Windows-LanguagePackSetup%4Operational.evtx": 1,
    "sample_with_a_bad_chunk_magic.evtx": 3,
}


def values_of(element, path=""):
    """The attributes and texts below an element that are not empty, in document order, each with its path. Some readers keep
    what has no value, and one writes the items of an array into one element."""
    path += "/" + element.tag.split("}")[-1]
    values = [(path + "/@" + name.split("}")[-1], text) for name, text in sorted(element.attrib.items())]
    children = list(element)
    text = "".join([element.text or ""] + [child.tail or "" for child in children])
    items = re.findall("<string>(.*?)</string>", text, re.DOTALL) or [text]
    values += [(path, item.strip()) for item in items]
    for child in children:
        values += values_of(child, path)
    return [(name, value) for name, value in values if value]


def child_of(event, name):
    return next((child for child in event if child.tag.split("}")[-1] == name), None)


def record_of(event):
    return child_of(child_of(event, "System"), "EventRecordID").text


def parsed(text):
    """An event, or its System part alone where the reader did not escape what the event's values hold."""
    text = re.sub("[\0-\x08\x0b\x0c\x0e-\x1f]", "\ufffd", text)
    try:
        return ElementTree.fromstring(text)
    except ElementTree.ParseError:
        system = re.search(r"<System>.*?</System>", text, re.DOTALL)
        return ElementTree.fromstring("<Event>" + system.group() + "</Event>")


def difference(ours, theirs):
    """What differs between two readings of an event, as a text; empty when nothing does."""
    for part in theirs:
        other = child_of(ours, part.tag.split("}")[-1])
        if other is None:
            return "we lack " + part.tag
        our_values, their_values = values_of(other), values_of(part)
        if [path for path, _ in our_values] != [path for path, _ in their_values]:
            return f"other values: {our_values} / {their_values}"
        for (path, our_value), (_, their_value) in zip(our_values, their_values):
            if not same_value(our_value, their_value):
                return f"{path}: {our_value!r} / {their_value!r}"
    return ""


class RealLogsTest(unittest.TestCase):
    def setUp(self):
        if not os.path.isdir(REAL_LOGS):
            self.skipTest("no real logs here")

    def compare_all(self, read):
        names = sorted(name for name in os.listdir(REAL_LOGS) if name.endswith(".evtx"))
        self.assertGreaterEqual(len(names), 20)
        compared = 0
        for name in names:
            path = os.path.join(REAL_LOGS, name)
            texts = read(path)
            if texts is None:
                self.skipTest("this reader is not installed")
            result = subprocess.run([PROGRAM, "xml", path], capture_output=True, check=True)
            ours = collections.defaultdict(list)
            for line in result.stdout.split(b"\n")[:-1]:
                event = ElementTree.fromstring(line)
                ours[record_of(event)].append(event)
            missing = 0
            for text in texts:
                theirs = parsed(text)
                # A damaged log can hold two records of one number.
                candidates = ours[record_of(theirs)]
                missing += not candidates
                differences = [difference(event, theirs) for event in candidates]
                self.assertTrue(not differences or "" in differences, (name, record_of(theirs), differences[:1]))
                compared += bool(candidates)
            self.assertLessEqual(missing, TORN_RECORDS.get(name, 0), name)
        return compared

    def test_evtxexport_reads_the_same(self):
        self.assertGreater(self.compare_all(evtxexport), 17000)

    def test_python_evtx_reads_the_same(self):
        self.assertGreater(self.compare_all(lambda path: python_evtx(path, SLOW_READERS_RECORDS)), 400)


if __name__ == "__main__":
    unittest.main()
