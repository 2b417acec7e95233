"""Exports logs with corvina-logs: kills it at random moments, and compares what it writes with what it read, by itself and
with other readers of event logs.

Usage: export_test.py PROGRAM [unittest arguments]
Real logs are looked for in ../shared/evtx-samples beside the project, or in the folder named by CORVINA_SAMPLES. What is
not there is skipped.
"""

import glob
import os
import random
import re
import shutil
import signal
import subprocess
import sys
import tempfile
import time
import unittest
from xml.sax.saxutils import quoteattr

from readers import evtxexport, python_evtx

PROGRAM = os.path.abspath(sys.argv.pop(1))
PROJECT = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
REAL_LOGS = os.environ.get("CORVINA_SAMPLES") or os.path.join(PROJECT, "..", "shared", "evtx-samples")

KILLS = 200
MOST_FOR_PYTHON = 40  # it takes some milliseconds an event


def run(*arguments):
    return subprocess.run([PROGRAM, *arguments], capture_output=True, check=False)


def bytes_of(path):
    with open(path, "rb") as file:
        return file.read()


def document_of(log):
    """The query document of all events of a file."""
    return f"<QueryList><Query><Select Path={quoteattr('file://' + log)}>*</Select></Query></QueryList>"


def by_record_id(texts):
    found = {}
    for text in texts or []:
        match = re.search(r"<EventRecordID[^>]*>(\d+)<", text)
        if match:
            found[int(match.group(1))] = text
    return found


class ExportTest(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.mkdtemp(prefix="corvina-export-")
        self.addCleanup(shutil.rmtree, self.folder)
        self.store = os.path.join(self.folder, "store")
        self.out = os.path.join(self.folder, "out")
        os.mkdir(self.out)

    def sample(self, events):
        self.assertEqual(run("sample", self.store, "--events", str(events)).returncode, 0)
        return os.path.join(self.store, "localhost")

    def export(self, what, target, *options):
        result = run("export", *options, self.store, what, target)
        self.assertEqual((result.returncode, result.stderr), (0, b""))

    def kill_export(self, seconds, target, *options):
        """Kills an export of the System log after a while. Whether it was still running."""
        with subprocess.Popen([PROGRAM, "export", *options, self.store, "System", target], stdout=subprocess.DEVNULL,
                              stderr=subprocess.DEVNULL) as process:
            time.sleep(seconds)
            process.send_signal(signal.SIGKILL)
            return process.wait() == -signal.SIGKILL

    def test_a_killed_export_leaves_the_old_state_or_the_new_one(self):
        logs = self.sample(60000)
        source = os.path.join(logs, "System.evtx")
        target = os.path.join(self.out, "target.evtx")
        began = time.monotonic()
        self.export("System", target)
        duration = time.monotonic() - began
        exported = bytes_of(target)
        source_before = bytes_of(source)
        moments = random.Random(1)
        killed = unfinished = 0
        for number in range(KILLS):
            # A new file, one that replaces another, and one that replaces what it is read from.
            kind = number % 3
            if kind == 0 and os.path.exists(target):
                os.remove(target)
            elif kind == 1:
                with open(target, "wb") as file:
                    file.write(b"old")
            place = source if kind == 2 else target
            options = ("--overwrite",) if kind else ()
            killed += self.kill_export(moments.uniform(0, 1.2 * duration), place, *options)
            unfinished += any(name.endswith("-tmp") for name in os.listdir(os.path.dirname(place)))
            # assertTrue, since the bytes of files are nothing to print.
            source_now = bytes_of(source)
            if kind == 2:
                self.assertTrue(source_now in (source_before, exported))
            else:
                self.assertTrue(source_now == source_before)
                allowed = (b"old", exported) if kind == 1 else (None, exported)
                self.assertTrue((bytes_of(target) if os.path.exists(target) else None) in allowed)
            source_before = source_now
        # Otherwise nothing was tried.
        self.assertGreater(killed, KILLS // 4)
        self.assertGreater(unfinished, KILLS // 20)
        # What was left behind is no channel, is in nobody's way, and goes.
        self.export("System", target, "--overwrite")
        self.export("System", source, "--overwrite")
        self.assertTrue(bytes_of(target) == exported)
        self.assertTrue(bytes_of(source) == exported)
        self.assertEqual(os.listdir(self.out), ["target.evtx"])
        self.assertFalse([name for name in os.listdir(logs) if name.endswith("-tmp")])

    def check_export(self, log):
        """Exports a log. Returns how many of its events other readers found to be the same."""
        first = os.path.join(self.out, "first.evtx")
        second = os.path.join(self.out, "second.evtx")
        self.export(document_of(log), first, "--overwrite")
        self.export(document_of(first), second, "--overwrite")
        self.assertTrue(bytes_of(first) == bytes_of(second), log)
        ours = run("xml", log).stdout
        self.assertTrue(ours == run("xml", first).stdout, log)
        self.assertIn(b"damage:           none", run("info", first).stdout)
        sound = by_record_id(ours.decode().splitlines())
        compared = 0
        for reader in (evtxexport, lambda path: python_evtx(path, MOST_FOR_PYTHON)):
            before = by_record_id(reader(log))
            after = by_record_id(reader(first))
            both = before.keys() & after.keys() & sound.keys()
            for record in both:
                self.assertEqual(before[record], after[record], (log, record))
            compared += len(both)
        return compared

    def test_exports_of_sample_logs_are_what_they_were(self):
        logs = sorted(glob.glob(os.path.join(self.sample(2000), "*.evtx")), key=os.path.getsize)
        for log in logs[0], *logs[-4:]:
            compared = self.check_export(log)
            count = len(run("xml", log).stdout.splitlines())
            if shutil.which("evtxexport"):
                self.assertGreaterEqual(compared, count)

    def test_exports_of_real_logs_are_what_they_were(self):
        logs = sorted(glob.glob(os.path.join(REAL_LOGS, "*.evtx")))
        if not logs:
            self.skipTest("no real logs here")
        self.sample(10)
        compared = sum(self.check_export(log) for log in logs)
        if shutil.which("evtxexport"):
            # It ends at the first record that it cannot read, and it meets the records of a log that wrapped in another
            # order than in its export, so some are never compared.
            self.assertGreater(compared, 15000)


if __name__ == "__main__":
    unittest.main()
