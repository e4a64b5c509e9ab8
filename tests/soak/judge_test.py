"""What counts as flat, and that the engine's part can be played."""

import json
import sys
import unittest
from pathlib import Path

sys.dont_write_bytecode = True
sys.path.insert(0, str(Path(__file__).parent))
from judge import judge  # noqa: E402
from transcript import ENDS, transcript  # noqa: E402


def samples(rss=lambda _: 100_000, fds=lambda _: 22, threads=lambda _: 12, count=80):
    return [{'seconds': 5 * at, 'rss_kib': rss(at), 'fds': fds(at), 'threads': threads(at)} for at in range(count)]


class Judge(unittest.TestCase):
    def faults(self, *given, **kinds):
        return judge(samples(*given, **kinds))[1]

    def test_whatStaysAndWhatSettlesInTheFirstQuarterIsFlat(self):
        self.assertEqual(self.faults(), [])
        self.assertEqual(self.faults(rss=lambda at: min(100_000 + 3_000 * at, 130_000)), [])
        self.assertEqual(self.faults(rss=lambda at: 100_000 + at), [])

    def test_aShortPeakIsFlat(self):
        self.assertEqual(self.faults(fds=lambda at: 40 if at == 70 else 22, threads=lambda at: 20 if at == 70 else 12), [])

    def test_memoryThatGrowsIsNotFlat(self):
        self.assertEqual(len(self.faults(rss=lambda at: 100_000 + 200 * at)), 1)

    def test_oneDescriptorOrThreadMoreOrFewerIsNotFlat(self):
        for later in (23, 21):
            self.assertEqual(len(self.faults(fds=lambda at: later if at >= 60 else 22)), 1)
        for later in (13, 11):
            self.assertEqual(len(self.faults(threads=lambda at: later if at >= 60 else 12)), 1)

    def test_fewSamplesAreNoProof(self):
        self.assertEqual(len(self.faults(count=15)), 1)


class Transcript(unittest.TestCase):
    def test_everyLifeHasItsEndAndEveryLineThatIsSentIsJSON(self):
        lines = transcript(1).splitlines()
        self.assertEqual(lines[0], 'again')
        self.assertEqual([line for line in lines if line.startswith(('exit ', 'signal '))], ENDS)
        for line in lines:
            if line.startswith('send '):
                json.loads(line.removeprefix('send '))

    def test_theSeedMakesTheTranscript(self):
        self.assertEqual(transcript(1), transcript(1))
        self.assertNotEqual(transcript(1), transcript(2))


if __name__ == '__main__':
    unittest.main()
