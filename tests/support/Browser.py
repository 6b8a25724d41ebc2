"""A headless Chromium, driven over WebDriver by chromedriver: what the tests of pages need of it, no more."""

import base64
import contextlib
import json
import os
import re
import shutil
import subprocess
import sys
import tempfile
import time
import urllib.error
import urllib.request

SHIFT, ENTER, ESCAPE, TAB = '\ue008', '\ue007', '\ue00c', '\ue004'
LEFT, UP, RIGHT, DOWN = '\ue012', '\ue013', '\ue014', '\ue015'


@contextlib.contextmanager
def browser_and_folder():
    """A browser and a folder for a while. Exits with 77 where there is no Chromium."""
    missing = [name for name in ('chromium', 'chromedriver') if shutil.which(name) is None]
    if missing:
        print('The tests of the page did not run, without:', *missing)
        sys.exit(77)
    browser = Browser()
    try:
        with tempfile.TemporaryDirectory() as folder:
            yield browser, folder
    finally:
        browser.close()


class Browser:
    def __init__(self):
        self.driver = subprocess.Popen(['chromedriver', '--port=0'], stdout=subprocess.PIPE, stderr=subprocess.DEVNULL,
                                       text=True)
        port = next(filter(None, (re.search(r'started successfully on port (\d+)', line) for line in self.driver.stdout)))
        self.base = f'http://127.0.0.1:{port[1]}/session'
        arguments = ['--headless', '--disable-gpu', '--disable-quic', '--no-first-run', '--disable-dev-shm-usage']
        if os.geteuid() == 0:
            arguments.append('--no-sandbox')  # root has no other way
        options = {'goog:chromeOptions': {'binary': shutil.which('chromium'), 'args': arguments},
                   'goog:loggingPrefs': {'browser': 'ALL'}, 'unhandledPromptBehavior': 'ignore'}
        try:
            self.base += '/' + self.call('', capabilities={'alwaysMatch': options})['sessionId']
        except BaseException:
            self.driver.kill()
            raise
        self.resize(1280, 800)

    def close(self):
        try:
            self.request('DELETE', '', None)
        finally:
            self.driver.terminate()
            self.driver.communicate()

    def request(self, method, path, body):
        data = None if body is None else json.dumps(body).encode()
        request = urllib.request.Request(self.base + path, data, {'Content-Type': 'application/json'}, method=method)
        try:
            with urllib.request.urlopen(request, timeout=120) as answer:
                return json.load(answer)['value']
        except urllib.error.HTTPError as error:
            raise RuntimeError(json.load(error)['value']['message']) from None

    def call(self, path, **body):
        return self.request('POST', path, body)

    def devtools(self, command, **parameters):
        return self.call('/goog/cdp/execute', cmd=command, params=parameters)

    def resize(self, width, height):
        self.devtools('Emulation.setDeviceMetricsOverride', width=width, height=height, deviceScaleFactor=1, mobile=False)

    def prefer(self, **features):
        """prefer(prefers_color_scheme='dark')"""
        self.devtools('Emulation.setEmulatedMedia',
                      features=[{'name': name.replace('_', '-'), 'value': value} for name, value in features.items()])

    def open(self, path, fragment='', ready='document.documentElement.dataset.ready'):
        self.call('/url', url='about:blank')
        self.call('/url', url=f'file://{path}{fragment}')
        self.wait(ready)

    def run(self, script, *arguments):
        return self.call('/execute/sync', script=script, args=arguments)

    def run_async(self, script, *arguments):
        return self.call('/execute/async', script=script, args=arguments)

    def value(self, expression, *arguments):
        return self.run(f'return {expression}', *arguments)

    def wait(self, expression, *arguments):
        for _ in range(400):
            if self.value(expression, *arguments):
                return
            time.sleep(0.025)
        raise AssertionError(f'never: {expression}; {self.errors()}')

    def press(self, *keys, held=None):
        """Types; each text of `keys` key by key."""
        actions = [{'type': kind, 'value': key} for key in ''.join(keys) for kind in ('keyDown', 'keyUp')]
        if held:
            actions = [{'type': 'keyDown', 'value': held}, *actions, {'type': 'keyUp', 'value': held}]
        self.call('/actions', actions=[{'type': 'key', 'id': 'keys', 'actions': actions}])

    def point(self, *paths, kind='mouse'):
        """Each finger, or the mouse, goes down at the first point of its path and up at the last."""
        sources = []
        for number, path in enumerate(paths):
            moves = [{'type': 'pointerMove', 'x': round(x), 'y': round(y), 'duration': 20} for x, y in path]
            actions = [moves[0], {'type': 'pointerDown', 'button': 0}, *moves[1:], {'type': 'pointerUp', 'button': 0}]
            sources.append({'type': 'pointer', 'id': f'{kind}{number}', 'parameters': {'pointerType': kind},
                            'actions': actions})
        self.call('/actions', actions=sources)

    def page_count(self):
        """Of the document on paper."""
        pdf = base64.b64decode(self.devtools('Page.printToPDF', preferCSSPageSize=True)['data'])
        return len(re.findall(rb'/Type\s*/Page\b', pdf))

    def errors(self):
        """What the browser complained of since the last time."""
        return [entry['message'] for entry in self.call('/se/log', type='browser') if entry['level'] == 'SEVERE']
