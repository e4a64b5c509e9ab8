"""Loads a policy script by name, so that its test can feed it text of its own."""

import importlib.util
import sys
from pathlib import Path

_FOLDER = Path(__file__).resolve().parents[2] / 'scripts' / 'policy'


def policy(name):
    sys.dont_write_bytecode = True
    sys.path.insert(0, str(_FOLDER))
    specification = importlib.util.spec_from_file_location(name, _FOLDER / f'{name}.py')
    module = importlib.util.module_from_spec(specification)
    specification.loader.exec_module(module)
    return module
