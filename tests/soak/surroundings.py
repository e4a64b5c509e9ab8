"""A display, a session bus, an accessibility bus and a home that vanish with the soak, and the application on them."""

import os
import shutil
import signal
import subprocess
import tempfile


class Surroundings:
    """The application with the scripted engine as its child; all of it ends with the `with` block."""

    def __init__(self, application, engine, transcript):
        self.folder = tempfile.mkdtemp(prefix='zelk-soak.')
        self.home = os.path.join(self.folder, 'home')
        self.script = os.path.join(self.folder, 'transcript')
        self.log = os.path.join(self.folder, 'application.log')
        self._processes = []
        os.makedirs(os.path.join(self.home, '.config', 'orrim'))
        os.makedirs(os.path.join(self.folder, 'run'), mode=0o700)
        with open(os.path.join(self.home, '.config', 'orrim', 'zelk.conf'), 'w', encoding='utf-8') as file:
            file.write('[General]\ndidOnboard=true\n')
        with open(self.script, 'w', encoding='utf-8') as file:
            file.write(transcript)
        keep = {name: value for name, value in os.environ.items() if name in ('PATH', 'LANG', 'TMPDIR')}
        self.environment = dict(
            keep, HOME=self.home, LC_ALL='C.UTF-8', XDG_RUNTIME_DIR=os.path.join(self.folder, 'run'),
            QT_QUICK_BACKEND='software', QT_QPA_PLATFORM='xcb', QT_LINUX_ACCESSIBILITY_ALWAYS_ON='1',
            ZELK_HELPER_PATH=engine, ZELK_SCRIPT=self.script)
        self._application = application
        self.process = None

    def __enter__(self):
        read_end, write_end = os.pipe()
        self._start(['Xvfb', '-displayfd', str(write_end), '-screen', '0', '1400x1000x24', '-nolisten', 'tcp'],
                    pass_fds=(write_end,))
        os.close(write_end)
        with os.fdopen(read_end) as said:
            self.environment['DISPLAY'] = ':' + said.readline().strip()
        bus = self._start(['dbus-daemon', '--session', '--nofork', '--print-address=1'], stdout=subprocess.PIPE)
        self.environment['DBUS_SESSION_BUS_ADDRESS'] = bus.stdout.readline().decode().strip()
        self._start(['/usr/libexec/at-spi-bus-launcher', '--launch-immediately'])
        # What we speak with the application over is the same bus.
        for name in ('DISPLAY', 'DBUS_SESSION_BUS_ADDRESS', 'XDG_RUNTIME_DIR'):
            os.environ[name] = self.environment[name]
        with open(self.log, 'wb') as log:
            self.process = self._start([self._application], stdout=log, stderr=log)
        return self

    def __exit__(self, *failure):
        for process in reversed(self._processes):
            if process.poll() is None:
                os.killpg(process.pid, signal.SIGKILL)
            process.wait()
        shutil.rmtree(self.folder, ignore_errors=True)

    def _start(self, command, **options):
        options.setdefault('stdout', subprocess.DEVNULL)
        options.setdefault('stderr', subprocess.DEVNULL)
        process = subprocess.Popen(command, env=self.environment, start_new_session=True, **options)
        self._processes.append(process)
        return process

    def engine_log(self):
        """What the engine has read and how often it was launched, a line each."""
        try:
            with open(self.script + '.log', encoding='utf-8') as file:
                return file.read().splitlines()
        except FileNotFoundError:
            return []
