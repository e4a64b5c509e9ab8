#!/usr/bin/env python3
"""Reads what a child pours out line by line, parses each, and prints the milliseconds from the child's launch to its end."""
import json
import subprocess
import sys
import time

start = time.monotonic()
events = 0
with subprocess.Popen(['/bin/cat', sys.argv[1]], stdout=subprocess.PIPE) as child:
    for line in child.stdout:
        if 'event' in json.loads(line):
            events += 1
print((time.monotonic() - start) * 1000)
