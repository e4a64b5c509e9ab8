"""Says whether what was sampled from a process stays flat."""

from statistics import median

# What a process may grow by between the second quarter and the last, in per cent: an allocator's pages come and go.
RSS_GROWTH = 3.0


def quarter(samples, number):
    """The samples of one of four equal spans of time, the first being 0."""
    begin, end = samples[0]['seconds'], samples[-1]['seconds']
    span = (end - begin) / 4
    return [sample for sample in samples if begin + number * span <= sample['seconds'] <= begin + (number + 1) * span]


def judge(samples, rss_growth=RSS_GROWTH):
    """The lines of a report and the list of what isn't flat. `samples` have the keys seconds, rss_kib, fds, threads."""
    report, faults = [], []
    if len(samples) < 16:
        return report, ['too few samples to judge']
    early, late = quarter(samples, 1), quarter(samples, 3)
    for key, most in (('rss_kib', rss_growth), ('fds', 0), ('threads', 0)):
        before, after = (median(sample[key] for sample in part) for part in (early, late))
        growth = 100 * (after - before) / before
        report.append(f'{key}: {before:g} in the second quarter, {after:g} in the last ({growth:+.2f} %)')
        if growth > most:
            faults.append(f'{key} grew by {growth:.2f} %, more than {most:g} %')
        if most == 0 and growth < 0:
            faults.append(f'{key} fell by {-growth:.2f} %, so it was not at rest')
    return report, faults
