"""A private display with a window manager, and what a program costs that is started on it."""

import os
import shutil
import signal
import subprocess
import tempfile
import threading
import time
from pathlib import Path


class Display:
    """Xvfb with openbox, for as long as the `with` lasts."""

    def __enter__(self):
        listen, tell = os.pipe()
        self._server = subprocess.Popen(
            ['Xvfb', '-displayfd', str(tell), '-screen', '0', '1400x1000x24', '-nolisten', 'tcp'],
            pass_fds=(tell,), stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        os.close(tell)
        with os.fdopen(listen) as number:
            self.name = ':' + number.readline().strip()
        self._manager = subprocess.Popen(['openbox', '--sm-disable'], env={**os.environ, 'DISPLAY': self.name},
                                         stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        deadline = time.monotonic() + 20
        while not self._is_managed() and time.monotonic() < deadline:
            time.sleep(0.1)
        return self

    def _is_managed(self):
        told = subprocess.run(['xprop', '-display', self.name, '-root', '_NET_CLIENT_LIST'], capture_output=True, text=True)
        return 'window id' in told.stdout

    def __exit__(self, *_):
        for process in (self._manager, self._server):
            process.terminate()
            process.wait()


class Program:
    """A program with a home, a session bus and a display of its own, which all go with it.

    `milliseconds` is the time from its launch to its first window that the window manager has taken on, None if none came.
    """

    def __init__(self, command, display, prepare=None, patience=60):
        self._folder = Path(tempfile.mkdtemp(prefix='zelk-compare.'))
        home = self._folder / 'home'
        run = self._folder / 'run'
        home.mkdir()
        run.mkdir(mode=0o700)
        if prepare:
            prepare(home)
        self._bus = subprocess.Popen(['dbus-daemon', '--session', '--nofork', '--print-address=1'],
                                     stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True, start_new_session=True)
        environment = {key: value for key, value in os.environ.items()
                       if not key.startswith(('XDG_', 'ZELK_', 'QT_', 'GTK_', 'WAYLAND_', 'AT_SPI_'))}
        environment.update(
            HOME=str(home), XDG_CONFIG_HOME=str(home / '.config'), XDG_CACHE_HOME=str(home / '.cache'),
            XDG_DATA_HOME=str(home / '.local/share'), XDG_STATE_HOME=str(home / '.local/state'), XDG_RUNTIME_DIR=str(run),
            DBUS_SESSION_BUS_ADDRESS=self._bus.stdout.readline().strip(), DISPLAY=display.name, NO_AT_BRIDGE='1',
            LC_ALL='C.UTF-8')
        listener = subprocess.Popen(['xprop', '-display', display.name, '-spy', '-root', '_NET_CLIENT_LIST'],
                                    stdout=subprocess.PIPE, text=True)
        listener.stdout.readline()  # what was there before
        start = time.monotonic()
        self._process = subprocess.Popen(command, env=environment, cwd=home, stdin=subprocess.DEVNULL,
                                         stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, start_new_session=True)
        self.milliseconds = None
        ending = threading.Timer(patience, listener.kill)
        ending.start()
        for line in listener.stdout:
            if '0x' in line:
                self.milliseconds = (time.monotonic() - start) * 1000
                break
        ending.cancel()
        listener.kill()
        listener.communicate()

    def __enter__(self):
        return self

    def __exit__(self, *_):
        for process, sign in ((self._process, signal.SIGTERM), (self._process, signal.SIGKILL), (self._bus, signal.SIGKILL)):
            try:
                os.killpg(process.pid, sign)
                process.wait(5)
            except (ProcessLookupError, subprocess.TimeoutExpired):
                pass
        shutil.rmtree(self._folder, ignore_errors=True)

    def _processes(self):
        """Of the program and what it has started, but not of the bus."""
        found = []
        for entry in Path('/proc').glob('[0-9]*'):
            try:
                session = int((entry / 'stat').read_text().rpartition(')')[2].split()[3])
            except (OSError, ValueError, IndexError):
                continue
            if session == self._process.pid:
                found.append(entry)
        return found

    def is_running(self):
        return self._process.poll() is None

    def memory(self):
        """Resident and proportional MiB."""
        sums = {'Rss': 0, 'Pss': 0}
        for process in self._processes():
            try:
                for line in (process / 'smaps_rollup').read_text().splitlines():
                    name, _, rest = line.partition(':')
                    if name in sums:
                        sums[name] += int(rest.split()[0])
            except OSError:
                continue
        return sums['Rss'] / 1024, sums['Pss'] / 1024

    def _processor_seconds(self):
        nanoseconds = 0
        for process in self._processes():
            for statistics in process.glob('task/*/schedstat'):
                try:
                    nanoseconds += int(statistics.read_text().split()[0])
                except OSError:
                    continue
        return nanoseconds / 1e9

    def idle_processor(self, seconds):
        """Milliseconds of the processor that it takes in each second while nobody touches it."""
        before = self._processor_seconds()
        time.sleep(seconds)
        # A thread that has ended meanwhile takes what it used with it.
        return max(0.0, self._processor_seconds() - before) * 1000 / seconds
