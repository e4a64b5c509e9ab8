#!/usr/bin/python3
"""Runs the application for a while under an engine that runs, crashes and comes back, and a user who presses what there
is, samples it from /proc, and fails unless memory, descriptors and threads stay flat. scripts/soak builds and calls it."""

import argparse
import csv
import os
import sys
import time

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
from judge import RSS_GROWTH, judge  # noqa: E402
from surroundings import Surroundings  # noqa: E402
from transcript import transcript  # noqa: E402

SAMPLE_EVERY = 5
ACT_EVERY = 2
START_WITHIN = 30


def sample(process_id, begin):
    with open(f'/proc/{process_id}/status', encoding='ascii', errors='replace') as file:
        status = dict(line.split(':', 1) for line in file)
    return {'seconds': round(time.monotonic() - begin, 1), 'rss_kib': int(status['VmRSS'].split()[0]),
            'fds': len(os.listdir(f'/proc/{process_id}/fd')), 'threads': int(status['Threads'])}


def count(engine_log):
    """How often the engine was launched, and how many requests of each method it has read."""
    counts = {}
    for line in engine_log:
        word = 'launches' if line.startswith('launch ') else None
        if line.startswith('line '):
            word = line.partition('"method":"')[2].partition('"')[0]
        if word:
            counts[word] = counts.get(word, 0) + 1
    return counts


class Nobody:
    presses = {}

    def act(self):
        pass


def soak(surroundings, seconds, table, make_user):
    """The samples, what the user pressed, and why it was over before its time."""
    process = surroundings.process
    user = make_user(process.pid)
    samples, begin = [], time.monotonic()
    writer = csv.DictWriter(table, ['seconds', 'rss_kib', 'fds', 'threads'])
    writer.writeheader()
    next_sample = next_act = begin
    while (now := time.monotonic()) < begin + seconds:
        if process.poll() is not None:
            return samples, user.presses, f'the application ended with status {process.returncode}'
        if now >= next_sample:
            next_sample = now + SAMPLE_EVERY
            samples.append(sample(process.pid, begin))
            writer.writerow(samples[-1])
            table.flush()
        if now >= next_act:
            user.act()
            next_act = time.monotonic() + ACT_EVERY
        if not samples[-1]['fds'] or (now - begin > START_WITHIN and not surroundings.engine_log()):
            return samples, user.presses, 'the engine was never started'
        time.sleep(0.2)
    return samples, user.presses, None


def main():
    options = argparse.ArgumentParser()
    options.add_argument('--application', required=True)
    options.add_argument('--engine', required=True)
    options.add_argument('--minutes', type=float, default=30)
    options.add_argument('--table', required=True, help='where the samples go, as CSV')
    options.add_argument('--seed', type=int, default=1)
    options.add_argument('--alone', action='store_true', help='nobody presses anything')
    options.add_argument('--rss-growth', type=float, default=RSS_GROWTH, help='per cent between second quarter and last')
    given = options.parse_args()

    def make_user(process_id):
        if given.alone:
            return Nobody()
        from user import User  # needs the bus that the surroundings have made
        return User(process_id, given.seed)

    with Surroundings(given.application, given.engine, transcript(given.seed)) as surroundings, \
            open(given.table, 'w', newline='', encoding='ascii') as table:
        samples, presses, fault = soak(surroundings, given.minutes * 60, table, make_user)
        counts = count(surroundings.engine_log())
        if fault:
            with open(surroundings.log, encoding='utf-8', errors='replace') as log:
                print(log.read()[-4000:])
    print('the engine saw:', ', '.join(f'{number} {what}' for what, number in sorted(counts.items())))
    print('the user pressed:', ', '.join(f'{number} {what}' for what, number in sorted(presses.items())))
    report, faults = judge(samples, given.rss_growth)
    print('\n'.join(report))
    faults += [fault] if fault else []
    # A soak in which nothing happened says nothing.
    needed = ['launches'] if given.alone else ['launches', 'startSync', 'reviewDecision']
    faults += [f'there was no {what}' for what in needed if not counts.get(what)]
    for each in faults:
        print('NOT FLAT:' if 'grew' in each or 'fell' in each else 'FAILED:', each)
    return 1 if faults else 0


if __name__ == '__main__':
    sys.exit(main())
