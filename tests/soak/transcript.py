"""What the scripted engine plays in a soak: a handful of lives, one after the other and over again, each of them a few
runs with reviews, leftovers, log lines and nonsense, and each with an end of its own."""

import json
import random

TRACKS = 30
LIVES = 8
# How each life ends, in turn: in the middle of a run, between two runs, by a signal or by itself.
ENDS = ['signal 9', 'exit 3', 'signal 11', 'exit 255', 'signal 15', 'exit 1', 'signal 6', 'exit 70']

CONFIG = {
    'sources': ['soulseek', 'bandcamp', 'soundcloud', 'youtube'],
    'quality': {'floor': 'mp3-320', 'losslessOnly': False, 'bestQuality': True, 'upgradeEnabled': True},
    'run': {'searchCount': 5, 'concurrency': 4, 'toleranceSec': 5, 'searchTimeoutSec': 30, 'cooloffHours': 24},
    'ui': {'theme': 'dark'},
    'outputDir': '~/Music/soak',
    'identity': {'enabled': True, 'strict': False},
    'proxy': {'enabled': False, 'configured': False},
    'spotifyConnected': True, 'soundcloudConnected': False, 'acoustidConfigured': False, 'appleMusicConnected': True,
}
PLAYLISTS = [
    {'id': f'p{number}', 'source': 'spotify', 'name': name, 'isFolder': False, 'trackCount': TRACKS,
     'artwork': {'kind': 'none'}}
    for number, name in enumerate(['Late Night', 'Morning Shift', 'Warm Up', 'Closing'])]


def track(playlist, row):
    return {'id': f'{playlist}#{row}', 'title': f'Title {row}', 'artist': f'Artist {row % 7}', 'album': f'Album {row % 3}',
            'durationSec': 180.0 + row, 'artwork': {'kind': 'none'}}


def send(event, /, **data):
    return 'send ' + json.dumps({'event': event, 'correlationId': 'soak', 'data': data})


def reply(method, result=None):
    answer = {'id': '%id%', 'ok': True}
    if result is not None:
        answer['result'] = result
    return f'reply {method} {json.dumps(answer)}'


def replies():
    preview = [dict(track('p0', row), onDisk=['present', 'missing'][row % 2]) for row in range(TRACKS)]
    checks = [{'id': f'c{number}', 'title': f'Check {number}', 'status': ['ok', 'warn'][number % 2],
               'detail': 'As it should be.', 'fixable': number == 1} for number in range(5)]
    return [
        reply('getConfig', {'config': CONFIG}),
        reply('setConfig', {'config': CONFIG}),
        reply('listPlaylists', {'playlists': PLAYLISTS}),
        reply('getPlaylistTracks', {'tracks': preview}),
        reply('listOrphans', {'paths': []}),
        reply('runDoctor', {'checks': checks}),
        reply('proxyInfo', {'ok': True, 'nodeCount': 3}),
        reply('startSync'),
    ]


def candidates(row):
    return [{'id': f'c{number}', 'title': f'Artist {row % 7} - Title {row} ({word})', 'channel': 'channel',
             'durationSec': 200.0 + number, 'source': source, 'format': 'FLAC', 'confidence': 0.6 - number / 10,
             'reason': 'different version', 'url': f'https://files.example.net/{row}/{number}'}
            for number, (word, source) in enumerate([('Live', 'soulseek'), ('Edit', 'bandcamp'), ('Dub', 'youtube')])]


def one_track(chance, playlist, row):
    name = f'{playlist}#{row}'
    yield send('trackStarted', trackId=name, index=row, label=f'Artist {row % 7} - Title {row}')
    yield send('diskCheck', trackId=name, result=chance.choice(['present', 'missing', 'broken']))
    for phase in ('searching', 'downloading'):
        yield send('step', trackId=name, phase=phase)
    for percent in (12.5, 40, 66.6, 90, 100):
        yield send('downloadProgress', trackId=name, percent=percent, sizeText='42.0 MB', speedText='2.6 MB/s')
    for phase in ('converting', 'tagging', 'verifying'):
        yield send('step', trackId=name, phase=phase)
    if row % 15 == 3:
        yield send('needsReview', trackId=name, label=f'Title {row}',
                   best={'confidence': 0.6, 'title': 'Live', 'url': f'https://files.example.net/{row}'},
                   candidates=candidates(row))
        # Long enough for somebody to decide; who doesn't is overtaken.
        yield 'idle 12000'
    yield send('trackFinished', trackId=name, status=chance.choice(['ok', 'ok', 'ok', 'low-confidence', 'failed', 'skipped']),
               meta={'format': 'FLAC', 'bitrate': '1024', 'source': 'soulseek'})
    yield send('log', level=chance.choice(['debug', 'info', 'warn', 'error']), message=f'{name} is done')
    yield f'idle {chance.randrange(20, 120)}'


def one_run(chance, number):
    playlists = chance.sample(PLAYLISTS, 2)
    yield send('syncStarted', runId=f'run-{number}', totalPlaylists=len(playlists))
    for index, playlist in enumerate(playlists):
        rows = range(TRACKS)
        yield send('playlistStarted', playlistId=playlist['id'], index=index, name=playlist['name'],
                   tracks=[track(playlist['id'], row) for row in rows])
        for row in rows:
            yield from one_track(chance, playlist['id'], row)
        yield send('playlistFinished', playlistId=playlist['id'], status='ok')
    yield send('orphansFound', paths=[f'/nowhere/{number}/{left}.flac' for left in range(4)])
    yield send('error', scope='run', code='internal', message='Something went wrong on the way.')
    yield send('proxyStatus', status=chance.choice(['off', 'connecting', 'connected', 'down']))
    yield send('somethingNewer', value=1)
    yield 'raw no JSON at all\\n{"event":"step","data":{}}\\n\\xff\\xfe\\n{"id":"r1","ok":true}\\n'
    yield send('syncDone', runId=f'run-{number}', summary={
        'present': 10, 'ok': 40, 'flagged': 2, 'failed': 5, 'skipped': 3, 'upgraded': 0, 'removed': 0})
    yield 'idle 6000'


def transcript(seed):
    chance = random.Random(seed)
    lines = ['again']
    for life in range(LIVES):
        lines += ['launch', *replies(), 'idle 800']
        for number in range(1 + life % 3):
            lines += one_run(chance, f'{life}-{number}')
        if life % 2 == 0:
            # This one goes in the middle of a run, of a list that is never finished and of a line.
            cut = list(one_run(chance, f'{life}-cut'))
            lines += [*cut[:chance.randrange(20, 200)], 'raw {"event":"log","data":{"level":"in']
        lines.append(ENDS[life % len(ENDS)])
    return '\n'.join(lines) + '\n'
