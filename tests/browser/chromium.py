"""A headless Chromium, driven through its DevTools protocol over a pair of pipes."""

import base64
import fcntl
import json
import os
import select
import shutil
import subprocess
import tempfile
import time

PATIENCE = 30  # seconds for one answer


def find():
    """The browser's program, or None."""
    for name in ("chromium", "chromium-browser", "google-chrome", "chrome"):
        if shutil.which(name):
            return shutil.which(name)
    return None


def _high(descriptor):
    """The same file at a descriptor that the browser's own, 3 and 4, cannot collide with."""
    high = fcntl.fcntl(descriptor, fcntl.F_DUPFD_CLOEXEC, 10)
    os.close(descriptor)
    return high


class Browser:
    """One page of a browser of its own. What went wrong in it since it was opened is in `errors`."""

    def __init__(self, program):
        self._profile = tempfile.TemporaryDirectory(prefix="tovi-browser-", ignore_cleanup_errors=True)
        from_us, self._out = map(_high, os.pipe())
        self._in, to_us = map(_high, os.pipe())
        os.dup2(from_us, 3)
        os.dup2(to_us, 4)
        self._process = subprocess.Popen(
            [program, "--headless=new", "--no-sandbox", "--disable-gpu", "--disable-dev-shm-usage", "--no-first-run",
             "--disable-extensions", "--disable-background-networking", "--hide-scrollbars", "--remote-debugging-pipe",
             "--user-data-dir=" + self._profile.name, "about:blank"],
            pass_fds=(3, 4), stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        for descriptor in (from_us, to_us, 3, 4):
            os.close(descriptor)
        self._buffer, self._last, self._session = b"", 0, None
        self.errors, self.requests, self._loaded = [], [], False
        target = self.call("Target.createTarget", url="about:blank")["targetId"]
        self._session = self.call("Target.attachToTarget", targetId=target, flatten=True)["sessionId"]
        for domain in ("Page", "Runtime", "Log", "Network"):
            self.call(domain + ".enable")

    def __enter__(self):
        return self

    def __exit__(self, *_):
        try:
            self._session = None
            self.call("Browser.close")
            self._process.wait(10)
        except (OSError, RuntimeError, subprocess.TimeoutExpired):
            self._process.kill()
            self._process.wait()
        os.close(self._out)
        os.close(self._in)
        self._profile.cleanup()

    def call(self, method, **parameters):
        """Performs a command of the protocol and returns its result."""
        self._last += 1
        command = {"id": self._last, "method": method, "params": parameters}
        if self._session:
            command["sessionId"] = self._session
        octets = json.dumps(command).encode() + b"\0"
        while octets:
            octets = octets[os.write(self._out, octets):]
        while True:
            message = self._receive()
            if message.get("id") == self._last:
                if "error" in message:
                    raise RuntimeError(f"{method}: {message['error']['message']}")
                return message["result"]

    def open(self, url):
        """Loads a page; `errors` and `requests` are those of this page from then on."""
        self.errors, self.requests, self._loaded = [], [], False
        self.call("Page.navigate", url=url)
        while not self._loaded:
            self._receive()
        self.evaluate("new Promise(done => requestAnimationFrame(() => setTimeout(done, 50)))")

    def evaluate(self, expression):
        """The value of an expression of JavaScript in the page; promises are awaited."""
        result = self.call("Runtime.evaluate", expression=expression, returnByValue=True, awaitPromise=True)
        if "exceptionDetails" in result:
            raise RuntimeError(json.dumps(result["exceptionDetails"]))
        return result["result"].get("value")

    def look(self, width, height, scheme):
        """Sets the size of the window and the scheme, "light" or "dark"."""
        self.call("Emulation.setDeviceMetricsOverride", width=width, height=height, deviceScaleFactor=1, mobile=False)
        self.call("Emulation.setEmulatedMedia", features=[{"name": "prefers-color-scheme", "value": scheme}])

    def screenshot(self, file):
        """The whole page as a PNG file."""
        shot = self.call("Page.captureScreenshot", captureBeyondViewport=True)
        with open(file, "wb") as out:
            out.write(base64.b64decode(shot["data"]))

    def _receive(self):
        end = time.monotonic() + PATIENCE
        while b"\0" not in self._buffer:
            ready, _, _ = select.select([self._in], [], [], max(0, end - time.monotonic()))
            octets = os.read(self._in, 1 << 20) if ready else b""
            if not octets:
                raise RuntimeError("the browser does not answer")
            self._buffer += octets
        message, self._buffer = self._buffer.split(b"\0", 1)
        message = json.loads(message)
        self._note(message.get("method"), message.get("params", {}))
        return message

    def _note(self, event, parameters):
        if event == "Page.loadEventFired":
            self._loaded = True
        elif event == "Log.entryAdded" and parameters["entry"]["level"] in ("error", "warning"):
            self.errors.append(parameters["entry"]["text"])
        elif event == "Runtime.consoleAPICalled" and parameters["type"] in ("error", "warning", "assert"):
            self.errors.append(json.dumps(parameters["args"]))
        elif event == "Runtime.exceptionThrown":
            self.errors.append(parameters["exceptionDetails"]["text"])
        elif event == "Network.requestWillBeSent":
            self.requests.append(parameters["request"]["url"])
