"""The server, spoken to without a browser: who is refused, who gets which frames, and how the program ends."""

import asyncio
import http.client
import os
import socket
import subprocess
import sys
import tempfile
import time
import unittest
from pathlib import Path

import aiohttp

from tests.browser.case import ROOT, SECONDS, Process, environment, new_box
from receiver.web.server import PORT


class ServerTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.etc = new_box(folder.name)

    def start(self, *options, port=0):
        receiver = Process(self.etc, *options, port=port)
        self.addCleanup(lambda: receiver.process.poll() is None and receiver.kill())
        return receiver

    def get(self, receiver, path, **headers):
        """(status, headers, body) of a GET request; `headers` replace the usual ones."""
        connection = http.client.HTTPConnection("127.0.0.1", receiver.port, timeout=SECONDS)
        self.addCleanup(connection.close)
        connection.putrequest("GET", path, skip_host="Host" in headers)
        for name, value in headers.items():
            connection.putheader(name.replace("_", "-"), value)
        connection.endheaders()
        response = connection.getresponse()
        return response.status, response.headers, response.read().decode()


class RefusalTest(ServerTest):
    def test_foreign_names_and_origins(self):
        receiver = self.start()
        own = "127.0.0.1:%d" % receiver.port
        handshake = {"Connection": "Upgrade", "Upgrade": "websocket", "Sec_WebSocket_Version": "13",
                     "Sec_WebSocket_Key": "dGhlIHNhbXBsZSBub25jZQ=="}
        for path, extra in ("/", {}), ("/page/tv.js", {}), ("/tv", handshake):
            for host in "example.org", "example.org:%d" % receiver.port, "127.0.0.1", "127.0.0.1:1", own + ".example.org":
                self.assertEqual(self.get(receiver, path, Host=host, **extra)[0], 403, (path, host))
            for origin in "http://example.org", "null", "https://" + own, "http://localhost:1", "http://127.0.0.1":
                self.assertEqual(self.get(receiver, path, Origin=origin, **extra)[0], 403, (path, origin))
            if path != "/tv":
                self.assertEqual(self.get(receiver, path, Host=own, Origin="http://" + own)[0], 200)
                self.assertEqual(self.get(receiver, path, Host="localhost:%d" % receiver.port)[0], 200)

    def test_loopback_only(self):
        receiver = self.start()
        listening = set()
        for table in "/proc/net/tcp", "/proc/net/tcp6":
            for line in Path(table).read_text().splitlines()[1:]:
                address, port, state = (*line.split()[1].split(":"), line.split()[3])
                if int(port, 16) == receiver.port and state == "0A":
                    listening.add(address)
        self.assertEqual(listening, {"%08X" % int.from_bytes(socket.inet_aton("127.0.0.1"), sys.byteorder)})

    def test_rules_for_the_page(self):
        receiver = self.start()
        for path in "/", "/page/tv.css", "/nothing":
            _, headers, _ = self.get(receiver, path)
            policy = headers["Content-Security-Policy"]
            self.assertIn("default-src 'none'", policy)
            self.assertIn("script-src 'self';", policy)
            self.assertIn("frame-ancestors 'none'", policy)
            self.assertEqual(headers["X-Content-Type-Options"], "nosniff")

    def test_nothing_but_the_page_is_served(self):
        receiver = self.start()
        for path in "/page/../server.py", "/page/..%2fserver.py", "/page/%2e%2e/server.py", "/page", "/page/", "/etc/passwd":
            status, _, body = self.get(receiver, path)
            self.assertIn(status, (403, 404), path)
            self.assertNotIn("import", body)


class PortTest(ServerTest):
    def test_the_usual_port_or_a_free_one(self):
        try:
            taken = socket.create_server(("127.0.0.1", PORT))
        except OSError:  # another program has it already: as good
            taken = socket.socket()
        with taken:
            receiver = self.start(port=None)
            self.assertNotEqual(receiver.port, PORT)
            self.assertEqual(self.get(receiver, "/")[0], 200)

    def test_a_wanted_port_that_is_taken(self):
        with socket.create_server(("127.0.0.1", 0)) as taken:
            port = taken.getsockname()[1]
            code, errors = self.start(port=port).finish()
        self.assertEqual(code, 2)
        self.assertIn("script/run: --port: port %d: Address already in use" % port, errors)
        self.assertNotIn("Traceback", errors)

    def test_no_port(self):
        for port in "65536", "-1", "http":
            code, errors = self.start(port=port).finish()
            self.assertEqual(code, 2)
            self.assertIn("a port is a number", errors)


class DesktopTest(ServerTest):
    def opened(self, **variables):
        """What a receiver with this environment had opened: the addresses, by a stand-in for the desktop's command."""
        opener, opened = self.etc.parent / "xdg-open", self.etc.parent / "opened"
        opener.write_text('#!/bin/sh\necho "$@" >>"%s"\n' % opened)
        opener.chmod(0o755)
        path = "%s:%s" % (opener.parent, os.environ["PATH"])
        receiver = Process(self.etc, PATH=path, **variables)
        for _ in range(100 if variables else 20):
            time.sleep(0.02)
            if opened.exists() and opened.read_text().endswith("\n"):
                break
        self.assertEqual(receiver.interrupt()[0], 0)
        return receiver.address, opened.read_text().split() if opened.exists() else []

    def test_a_browser_opens_on_a_desktop(self):
        for name in "DISPLAY", "WAYLAND_DISPLAY":
            address, opened = self.opened(**{name: "one"})
            self.assertEqual(opened[-1:], [address])

    def test_and_nowhere_else(self):
        self.assertEqual(self.opened()[1], [])


class SocketTest(ServerTest):
    """Pages that a test plays itself."""

    def play(self, scene):
        """Run `scene(session, url, receiver)`, a coroutine function, against a receiver."""
        receiver = self.start()

        async def run():
            async with aiohttp.ClientSession() as session:
                await asyncio.wait_for(scene(session, receiver.address + "/tv", receiver), SECONDS)

        asyncio.run(run())
        return receiver

    def test_a_slow_page_gets_the_newest_frame_and_disturbs_nobody(self):
        async def scene(session, url, receiver):
            async with session.ws_connect(url) as slow, session.ws_connect(url) as quick:
                await slow.receive_str()  # and does not show it for long
                await show_until(quick, 'id="row-0" class="row setting selected"')
                for number in range(1, 21):
                    await quick.send_str("m down")
                    await quick.send_str("b down")
                    await show_until(quick, 'id="row-%d" class="row setting selected"' % number)
                with self.assertRaises(asyncio.TimeoutError):
                    await slow.receive(timeout=0.1)
                await slow.send_str("shown")
                self.assertIn('id="row-20" class="row setting selected"', await slow.receive_str())

        self.play(scene)

    def test_a_page_that_shows_nothing_at_all(self):
        async def scene(session, url, receiver):
            async with session.ws_connect(url), session.ws_connect(url) as quick:
                await show_until(quick, "ORSA Veltro")

        code, errors = self.play(scene).interrupt()
        self.assertEqual(code, 0)
        self.assertNotIn("Traceback", errors)

    def test_a_second_signal_ends_it_at_once(self):
        async def scene(session, url, receiver):
            async with session.ws_connect(url) as page:
                await page.receive_str()  # and does not show it
                begin = time.monotonic()
                for _ in range(2):
                    receiver.process.send_signal(2)
                    await asyncio.sleep(0.1)
                while receiver.process.poll() is None:
                    await asyncio.sleep(0.01)
                self.assertLess(time.monotonic() - begin, 0.8)

        code, errors = self.play(scene).finish()
        self.assertEqual((code, errors), (130, "[EPGCache] there is no /media/hdd/epg.dat yet\n"))

    def test_keys_of_two_pages_are_pressed_in_turn(self):
        async def scene(session, url, receiver):
            async with session.ws_connect(url) as one, session.ws_connect(url) as two:
                for _ in range(500):
                    await one.send_str("m down")
                    await two.send_str("m up")
                await one.send_str("m down")
                await show_until(one, 'id="row-1" class="row setting selected"')
                await show_until(two, 'id="row-1" class="row setting selected"')

        self.play(scene)

    def test_what_is_no_key_ends_the_connection_and_no_other(self):
        async def scene(session, url, receiver):
            async with session.ws_connect(url) as good:
                await show_until(good, "ORSA Veltro")
                for message in "m coffee", "down", "x down", "m", "", "m down " * 20, "m down\n", '{"key": "down"}':
                    async with session.ws_connect(url) as bad:
                        await bad.send_str(message)
                        while (await bad.receive()).type == aiohttp.WSMsgType.TEXT:
                            pass
                        self.assertIn(bad.close_code, (1008, 1009), message)
                async with session.ws_connect(url) as bad:
                    await bad.send_bytes(b"m down")
                    while (await bad.receive()).type == aiohttp.WSMsgType.TEXT:
                        pass
                    self.assertEqual(bad.close_code, 1008)
                await good.send_str("m down")
                await show_until(good, 'id="row-1" class="row setting selected"')

        self.play(scene)

    def test_the_last_frame_and_the_end(self):
        async def scene(session, url, receiver):
            async with session.ws_connect(url) as page:
                await show_until(page, "ORSA Veltro")
                receiver.process.send_signal(2)
                await show_until(page, "switched off")
                self.assertEqual((await page.receive()).type, aiohttp.WSMsgType.CLOSE)
                self.assertEqual(page.close_code, 1001)

        code, errors = self.play(scene).finish()
        self.assertEqual(code, 0)
        self.assertNotIn("Traceback", errors)


async def show_until(page, text):
    """Show frames as a page does, up to the first that holds `text`."""
    while True:
        frame = await page.receive_str()
        await page.send_str("shown")
        if text in frame:
            return frame


class ShotTest(ServerTest):
    def shot(self, *options):
        path = self.etc / "shot.png"
        result = subprocess.run([sys.executable, "-m", "receiver", "--shot", path, *options], cwd=ROOT,
                                env=environment(self.etc), capture_output=True, text=True)
        return result, path.read_bytes() if path.exists() else b""

    def test_the_picture_as_a_png(self):
        for skin, size in ("hd", (1280, 720)), ("fhd", (1920, 1080)):
            result, png = self.shot("--skin", skin, "--keys", "down*4 ok")
            self.assertEqual(result.returncode, 0, result.stderr)
            self.assertEqual(png[:8], b"\x89PNG\r\n\x1a\n")
            self.assertEqual((int.from_bytes(png[16:20], "big"), int.from_bytes(png[20:24], "big")), size)
            self.assertGreater(len(png), 5000)

    def test_a_file_that_cannot_be_written(self):
        (self.etc / "shot.png").mkdir()
        result = subprocess.run([sys.executable, "-m", "receiver", "--shot", self.etc / "shot.png"],
                                cwd=ROOT, env=environment(self.etc), capture_output=True, text=True)
        self.assertEqual(result.returncode, 2)
        self.assertIn("script/run: --shot: %s: Is a directory" % (self.etc / "shot.png"), result.stderr)


if __name__ == "__main__":
    unittest.main()
