"""The speed of corvina-logs in ratios. See the script speed beside this file.

Usage: speed.py PROGRAM FOLDER [--quick]      FOLDER: where the generated logs are kept from run to run
Times are processor times (user and system) of whole processes, medians of pairs that run directly after each other.
"""

import collections
import os
import re
import statistics
import subprocess
import sys
import tempfile

PROGRAM, FOLDER = os.path.abspath(sys.argv[1]), os.path.abspath(sys.argv[2])
QUICK = "--quick" in sys.argv
REAL_LOGS = os.environ.get("CORVINA_SAMPLES", "../shared/evtx-samples")
MEBIBYTE = 1 << 20


class Run:
    """One run of a command: its processor time in seconds, its largest memory in bytes. The system counts this script's own
    memory as well, up to the moment when the command starts, so that nothing large may be kept here."""

    def __init__(self, *command, use_line=None):
        with subprocess.Popen(command, stdin=subprocess.DEVNULL,
                              stdout=subprocess.PIPE if use_line else subprocess.DEVNULL) as process:
            for line in process.stdout if use_line else ():
                use_line(line)
            _, status, usage = os.wait4(process.pid, 0)
            process.returncode = os.waitstatus_to_exitcode(status)
        if process.returncode != 0:
            sys.exit(f"{command[0]} ended with {process.returncode}")
        self.seconds = usage.ru_utime + usage.ru_stime
        self.memory = usage.ru_maxrss * 1024


def compare(title, ours, theirs, pairs, goal):
    """Prints how many times faster the first command is."""
    runs = [(Run(*ours), Run(*theirs)) for _ in range(pairs)]
    ratio = statistics.median(slow.seconds / fast.seconds for fast, slow in runs)
    memory = max(fast.memory for fast, _ in runs) / MEBIBYTE
    print(f"{title:66} {ratio:7.1f} x   (goal {goal}; {statistics.median(fast.seconds for fast, _ in runs):.3f} s, "
          f"{memory:.0f} MiB at most)", flush=True)


def generated_log(events):
    """A log of so many events of all kinds: the channels of a generated store, exported into one file."""
    log = os.path.join(FOLDER, f"speed-{events}.evtx")
    if not os.path.exists(log):
        with tempfile.TemporaryDirectory(dir=FOLDER) as folder:
            store = os.path.join(folder, "store")
            Run(PROGRAM, "sample", store, "--events", str(events))
            names = sorted(os.listdir(os.path.join(store, "localhost")))
            channels = [name[:-5].replace("%4", "/") for name in names if name.endswith(".evtx")]
            selects = "".join(f'<Select Path="{channel}">*</Select>' for channel in channels)
            Run(PROGRAM, "export", store, f"<QueryList><Query>{selects}</Query></QueryList>", log)
    return log


def document(log, condition):
    path = "file://" + log
    return (f'<QueryList><Query Id="0" Path="{path}"><Select Path="{path}">*[System[{condition}]]</Select></Query>'
            "</QueryList>")


def condition_for_a_hundredth(log):
    """A condition on level and event identifiers that about one event in a hundred meets."""
    counts = collections.Counter()

    def count(line):
        counts.update(re.findall(rb"<EventID[^>]*>(\d+)</EventID>.*?<Level>(\d+)</Level>", line))

    Run(PROGRAM, "xml", log, use_line=count)
    wanted, chosen, total = counts.total() / 100, [], 0
    for (event, level), count in sorted(counts.items(), key=lambda item: -item[1]):
        if total + count <= wanted * 1.05 and level in (b"2", b"3"):
            chosen.append(event.decode())
            total += count
    events = " or ".join(f"EventID={event}" for event in chosen)
    return f"(Level=2 or Level=3) and ({events})"


def main():
    long_log = generated_log(480_000)
    longest_log = generated_log(1_000_000)
    print(f"long log: {os.path.getsize(long_log) / MEBIBYTE:.0f} MiB; "
          f"log of a million events: {os.path.getsize(longest_log) / MEBIBYTE:.0f} MiB\n")

    for name in ("security.evtx", "system.evtx"):
        log = os.path.join(REAL_LOGS, name)
        if os.path.exists(log):
            compare(f"xml against evtxexport, {name}", (PROGRAM, "xml", log), ("evtxexport", "-f", "xml", log), 9, "35")
    if not QUICK:
        compare("xml against evtxexport, long log", (PROGRAM, "xml", long_log), ("evtxexport", "-f", "xml", long_log), 3,
                "35")

    condition = condition_for_a_hundredth(generated_log(20_000))
    query = (PROGRAM, "query", os.path.dirname(longest_log), document(longest_log, condition))
    lines = collections.Counter()
    Run(*query, use_line=lambda line: lines.update(["events"]))
    print(f"\nthe query selects {lines['events']} events: {condition}")
    compare("query against xml, a million events", query, (PROGRAM, "xml", longest_log), 5, "3")
    compare("info against xml, a million events", (PROGRAM, "info", longest_log), (PROGRAM, "xml", longest_log), 5, "-")
    info, plain = Run(PROGRAM, "info", longest_log), Run("cat", longest_log)
    speed = os.path.getsize(longest_log) / MEBIBYTE / info.seconds
    print(f"info reads {speed:.0f} MiB a second of processor time, {info.seconds / plain.seconds:.1f} times that of cat")


main()
