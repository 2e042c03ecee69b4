"""Serves a receiver to pages in a browser, on the receiver's own loop: keys come in, frames go out.

A page sends "m KEY", "r KEY" or "b KEY" when a key is pressed, repeats or is released, "c X" when a character is typed,
"g ROW" to move the cursor to a row, "s ROWS" to scroll by so many, "on" to switch the receiver on, and "shown" when it
shows the frame it got last. "ping" is answered by an empty message, so that a page notices when nobody is there.

A frame is the whole fragment of receiver.web.html. A page is sent nothing while it has one that it does not show yet: a
slow page gets fewer frames, always the newest, and keeps nobody waiting.
"""

import asyncio
import contextlib
import os
import re
import signal
import socket

from aiohttp import WSMsgType, web

from receiver.actions import BREAK, KEYS, MAKE, REPEAT
from receiver.options import UsageError
from receiver.web import html

HOST = "127.0.0.1"
PORT = 8420
HEARTBEAT_SECONDS = 20
GOODBYE_SECONDS = 1
CLOSING_TURNS = 20  # of the loop, for a screen that closes; two are usual
LONGEST_MESSAGE = 64

HEADERS = {
    # Inline style attributes hold where a box stands. Scripts come from the page's folder only.
    "Content-Security-Policy": "default-src 'none'; script-src 'self'; style-src 'self'; style-src-attr 'unsafe-inline'; "
                               "img-src 'self'; connect-src 'self'; base-uri 'none'; form-action 'none'; frame-ancestors 'none'",
    "X-Content-Type-Options": "nosniff",
    "Referrer-Policy": "no-referrer",
    "Cross-Origin-Resource-Policy": "same-origin",
    "Cache-Control": "no-store",
}


class Server:
    """Shows one receiver to any number of pages, switched on or off, until a signal ends it.

    receiver -- its `on_change` is taken over
    """

    def __init__(self, receiver):
        self.receiver = receiver
        self.port = None
        self._pages = set()
        self._turn = asyncio.Lock()  # of who presses a key
        self._frame = None

    def run(self, port, ready):
        """Serve until a signal comes: it switches the receiver off in good order. UsageError when the port is taken.

        port -- the port to listen on; None for the usual one, or a free one if that is taken
        ready -- called with the TV's address when pages can be opened
        """
        listener = listen(port)
        self.port = listener.getsockname()[1]
        application = web.Application(middlewares=[self._only_own_pages])
        application.add_routes([web.get("/", self._document), web.get("/tv", self._tv), web.static("/page", html.PAGE)])
        application.on_response_prepare.append(_set_headers)
        application.on_startup.append(self._start)
        application.on_shutdown.append(self._end)
        web.run_app(application, sock=listener, loop=self.receiver.loop, shutdown_timeout=GOODBYE_SECONDS, access_log=None,
                    print=lambda text: ready("http://%s:%d" % (HOST, self.port)))

    async def _start(self, application):
        self.receiver.loop.add_signal_handler(signal.SIGHUP, signal.raise_signal, signal.SIGINT)  # which the library knows
        self.receiver.on_change = self._changed
        self.receiver.switch_on()

    async def _end(self, application):
        """Wait until every page shows the last frame, which says that the receiver is off, but not for long."""
        self.receiver.switch_off()
        for number in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP):  # whoever has no patience
            self.receiver.loop.add_signal_handler(number, os._exit, 128 + number)
        for _ in range(100):
            if not any(page.changed.is_set() or not page.shown.is_set() for page in self._pages):
                break
            await asyncio.sleep(GOODBYE_SECONDS / 100)
        for page in set(self._pages):
            await page.close(code=1001, message=b"switched off")

    # --- Frames

    def _changed(self):
        """The picture may have changed. Frames are made later, when the turn is over and a page waits for one."""
        self._frame = None
        for page in self._pages:
            page.changed.set()

    def frame(self):
        """The newest frame."""
        if self._frame is None:
            picture = self.receiver.picture()  # may end the GUI, whose crash is then part of this frame
            self._frame = html.fragment(picture, self.receiver.console.lines)
        return self._frame

    async def _send_frames(self, page):
        """Send the newest frame whenever there is one and the page shows the one before. An error ends the connection."""
        sent = None
        try:
            while True:
                await page.changed.wait()
                page.changed.clear()
                frame = self.frame()
                if frame != sent:
                    sent = frame
                    page.shown.clear()
                    await page.send_str(frame)
                    await page.shown.wait()
        finally:
            await page.close()

    # --- Keys

    async def _take(self, page, text):
        """A message of a page. False for what no page of ours sends, which ends the connection."""
        if text == "shown":
            page.shown.set()
        elif text == "ping":
            await page.send_str("")
        else:
            async with self._turn:
                for _ in range(CLOSING_TURNS):
                    await asyncio.sleep(0)
                    if not self.receiver.is_closing:
                        break
                return self._act(*text.partition(" ")[::2])
        return True

    def _act(self, what, value):
        """Do what a message asks for. False if it makes no sense."""
        if what in (MAKE, REPEAT, BREAK) and value in KEYS:
            self.receiver.key(value, what)
        elif what in ("g", "s") and re.fullmatch("-?[0-9]{1,6}", value):
            (self.receiver.go_to if what == "g" else self.receiver.scroll)(int(value))
        elif what == "c" and len(value) == 1:
            self.receiver.type(value)
        elif (what, value) == ("on", ""):
            if not self.receiver.is_on:
                self.receiver.switch_on()
        else:
            return False
        return True

    # --- HTTP

    @web.middleware
    async def _only_own_pages(self, request, handler):
        """Refuse other hosts' names for this address, and pages of other origins: a web site must not press keys."""
        hosts = [name + ("" if self.port == 80 else ":%d" % self.port) for name in (HOST, "localhost")]
        origin = request.headers.get("Origin")
        if request.host not in hosts or origin not in (None, "http://" + request.host):
            raise web.HTTPForbidden(text="Only for the receiver's own pages\n")
        return await handler(request)

    async def _document(self, request):
        return web.Response(text=html.document(self.frame()), content_type="text/html")

    async def _tv(self, request):
        page = _Page()
        await page.prepare(request)
        self._pages.add(page)
        sender = asyncio.ensure_future(self._send_frames(page))
        try:
            async for message in page:
                if message.type != WSMsgType.TEXT or not await self._take(page, message.data):
                    await page.close(code=1008, message=b"not a key")
        except ConnectionError:
            pass  # the page is gone
        finally:
            self._pages.discard(page)
            sender.cancel()
            with contextlib.suppress(asyncio.CancelledError, ConnectionError):
                await sender
        return page


class _Page(web.WebSocketResponse):
    """The connection to an open page. changed: there is a newer picture. shown: it shows what it was sent."""

    def __init__(self):
        super().__init__(heartbeat=HEARTBEAT_SECONDS, timeout=GOODBYE_SECONDS, max_msg_size=LONGEST_MESSAGE, compress=False)
        self.changed, self.shown = asyncio.Event(), asyncio.Event()
        self.changed.set()
        self.shown.set()


async def _set_headers(request, response):
    response.headers.update(HEADERS)


def listen(port=None):
    """A socket on this machine's own address. UsageError if `port` is given and not free; None: PORT or any free one."""
    for wanted in (PORT, 0) if port is None else (port,):
        try:
            return socket.create_server((HOST, wanted))
        except OSError as error:
            problem = error
    raise UsageError("--port: port %d: %s" % (wanted, os.strerror(problem.errno)))
