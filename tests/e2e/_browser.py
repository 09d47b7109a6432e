"""Chromium for tests, driven by chromedriver's WebDriver protocol; nothing but Python's own library is needed."""
import base64
import json
import os
import shutil
import socket
import subprocess
import tempfile
import time
import urllib.error
import urllib.parse
import urllib.request

FLAGS = ['--headless', '--no-sandbox', '--disable-gpu', '--disable-quic', '--no-first-run',
         '--disable-background-networking', '--disable-component-update', '--disable-sync',
         '--disable-dev-shm-usage', '--force-device-scale-factor=1', '--window-size=1280,900',
         # No name leads anywhere, so that nothing could be fetched even if a page tried.
         '--host-resolver-rules=MAP * ~NOTFOUND']
ELEMENT = 'element-6066-11e4-a52e-4f735466cecf'


def is_there():
    return bool(shutil.which('chromium') and shutil.which('chromedriver'))


class Browser:
    """One browser with one window; use it in a `with` statement."""

    def __init__(self):
        self.folder = tempfile.mkdtemp(prefix='browser-')
        self.opened = {'data:,'}  # the window's own first page
        with socket.socket() as finder:
            finder.bind(('127.0.0.1', 0))
            self.port = finder.getsockname()[1]
        self.log = open(os.path.join(self.folder, 'driver.log'), 'wb')
        self.driver = subprocess.Popen([shutil.which('chromedriver'), f'--port={self.port}'], stdin=subprocess.DEVNULL,
                                       stdout=self.log, stderr=subprocess.STDOUT)
        try:
            self.session = self._start()
            # Its own first page asks for much.
            self.ask('POST', '/url', {'url': 'about:blank'})
            self.console(), self.requests()
        except BaseException:
            self.close()
            raise

    def __enter__(self):
        return self

    def __exit__(self, *_):
        try:
            self.ask('DELETE', '')
        finally:
            self.close()

    def close(self):
        self.driver.terminate()
        self.driver.wait()
        self.log.close()
        shutil.rmtree(self.folder, ignore_errors=True)

    def _start(self):
        options = {'binary': shutil.which('chromium'),
                   'args': FLAGS + ['--user-data-dir=' + os.path.join(self.folder, 'profile')],
                   'perfLoggingPrefs': {'enableNetwork': True, 'enablePage': False}}
        wish = {'capabilities': {'alwaysMatch': {'browserName': 'chrome', 'goog:chromeOptions': options,
                                                 'goog:loggingPrefs': {'browser': 'ALL', 'performance': 'ALL'}}}}
        deadline = time.monotonic() + 60
        while True:
            try:
                return self._send('POST', '/session', wish)['sessionId']
            except (urllib.error.URLError, ConnectionError):
                if time.monotonic() > deadline or self.driver.poll() is not None:
                    raise
                time.sleep(0.1)

    def _send(self, method, path, body=None):
        request = urllib.request.Request(f'http://127.0.0.1:{self.port}{path}', method=method,
                                         data=None if body is None else json.dumps(body).encode(),
                                         headers={'Content-Type': 'application/json'})
        opener = urllib.request.build_opener(urllib.request.ProxyHandler({}))
        try:
            with opener.open(request, timeout=120) as answer:
                return json.load(answer)['value']
        except urllib.error.HTTPError as error:
            raise RuntimeError(f'{path}: {error.read().decode(errors="replace")[:2000]}') from error

    def ask(self, method, path, body=None):
        return self._send(method, f'/session/{self.session}{path}', body)

    def open(self, path):
        address = 'file://' + os.path.abspath(path)
        self.opened.add(address)
        self.ask('POST', '/url', {'url': address})

    def run(self, script, *arguments):
        return self.ask('POST', '/execute/sync', {'script': script, 'args': list(arguments)})

    def cdp(self, command, **parameters):
        return self.ask('POST', '/goog/cdp/execute', {'cmd': command, 'params': parameters})

    def element(self, selector):
        return self.ask('POST', '/element', {'using': 'css selector', 'value': selector})

    def click(self, selector):
        self.ask('POST', f'/element/{self.element(selector)[ELEMENT]}/click', {})

    def keys(self, *keys):
        """Pressed one after the other in whatever has the focus."""
        actions = [{'type': kind, 'value': key} for key in keys for kind in ('keyDown', 'keyUp')]
        self.ask('POST', '/actions', {'actions': [{'type': 'key', 'id': 'keys', 'actions': actions}]})

    def pointer(self, selector, *steps):
        """Steps are words ('down', 'up') or places from the middle of the element."""
        origin = self.element(selector)
        self.run("arguments[0].scrollIntoView({block: 'center'})", origin)
        actions = [{'type': 'pointerDown' if step == 'down' else 'pointerUp', 'button': 0} if isinstance(step, str) else
                   {'type': 'pointerMove', 'duration': 0, 'origin': origin, 'x': step[0], 'y': step[1]} for step in steps]
        self.ask('POST', '/actions', {'actions': [{'type': 'pointer', 'id': 'mouse', 'parameters': {'pointerType': 'mouse'},
                                                   'actions': actions}]})

    def wheel(self, selector, distance):
        self.ask('POST', '/actions', {'actions': [{'type': 'wheel', 'id': 'wheel', 'actions': [
            {'type': 'scroll', 'origin': self.element(selector), 'x': 0, 'y': 0, 'deltaX': 0, 'deltaY': distance,
             'duration': 0}]}]})

    def console(self):
        """What the page complained about since the last call."""
        return [entry['message'] for entry in self.ask('POST', '/se/log', {'type': 'browser'})
                if entry['level'] in ('SEVERE', 'WARNING')]

    def requests(self):
        """Addresses that were asked for since the last call."""
        events = [json.loads(entry['message'])['message']
                  for entry in self.ask('POST', '/se/log', {'type': 'performance'})]
        return [event['params']['request']['url'] for event in events if event['method'] == 'Network.requestWillBeSent']

    def strangers(self):
        """Addresses that were asked for since the last call and are none of the pages that were opened."""
        return [url for url in self.requests() if urllib.parse.unquote(url) not in self.opened]

    def prefer(self, theme):
        self.cdp('Emulation.setEmulatedMedia', features=[{'name': 'prefers-color-scheme', 'value': theme}])

    def picture(self, path, width=1280):
        """The whole page as PNG."""
        height = min(12000, int(self.run('return document.documentElement.scrollHeight')))
        self.cdp('Emulation.setDeviceMetricsOverride', width=width, height=height, deviceScaleFactor=1, mobile=False)
        self.run('return solvedeskPage.drawAll()')
        shot = self.cdp('Page.captureScreenshot', format='png', captureBeyondViewport=True)
        self.cdp('Emulation.clearDeviceMetricsOverride')
        with open(path, 'wb') as file:
            file.write(base64.b64decode(shot['data']))

    def pdf(self, path):
        with open(path, 'wb') as file:
            file.write(base64.b64decode(self.cdp('Page.printToPDF', printBackground=True)['data']))
