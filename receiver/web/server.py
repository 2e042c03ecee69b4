"""Serves a receiver to pages in a browser, on the receiver's own loop: keys come in, frames go out.

A page sends "m KEY", "r KEY" or "b KEY" when a key is pressed, repeats or is released, "c X" when a character is typed,
"g ROW" to move the cursor to a row, "s ROWS" to scroll by so many, "on" to switch the receiver on, and "shown" when it
shows the frame it got last. "ping" is answered by an empty message, so that a page notices when nobody is there.

A frame is the whole fragment of receiver.web.html. A page is sent nothing while it has one that it does not show yet: a
slow page gets fewer frames, always the newest, and keeps nobody waiting.
"""

import asyncio
import contextlib
import errno
import functools
import re
import signal
import socket

from aiohttp import WSMsgType, web

from receiver.actions import BREAK, KEYS, LETTERS, MAKE, REPEAT
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


class PortTaken(Exception):
    """Another program listens on the port that the user asked for."""


class Server:
    """Shows one receiver to any number of pages, switched on or off, until a signal ends it.

    receiver -- its `on_change` is taken over
    """

    def __init__(self, receiver):
        self.receiver = receiver
        self.port = None
        self._pages = set()
        self._keys = asyncio.Queue()
        self._frame = None
        self._end = asyncio.Event()

    @property
    def address(self):
        return "http://%s:%d" % (HOST, self.port)

    async def run(self, port, ready):
        """Serve until a signal comes: it switches the receiver off in good order.

        port -- the port to listen on; None for the usual one, or a free one if that is taken
        ready -- called when pages can be opened
        """
        listener = listen(port)
        self.port = listener.getsockname()[1]
        runner = web.AppRunner(self._application(), handle_signals=False, access_log=None)
        with self._signals(), listener:
            await runner.setup()
            await web.SockSite(runner, listener, shutdown_timeout=GOODBYE_SECONDS).start()
            keys = asyncio.ensure_future(self._press_keys())
            self.receiver.on_change = self._changed
            self.receiver.switch_on()
            try:
                ready()
                end = asyncio.ensure_future(self._end.wait())
                await asyncio.wait({end, keys}, return_when=asyncio.FIRST_COMPLETED)
                if keys.done():
                    keys.result()  # keys are pressed for ever: it raises what ended that
                await self._goodbye()
            finally:
                self.receiver.on_change = lambda: None
                self.receiver.switch_off()
                keys.cancel()
                await runner.cleanup()

    @contextlib.contextmanager
    def _signals(self):
        """A signal switches the receiver off in good order; the same signal again ends the program at once."""
        loop = asyncio.get_running_loop()

        def switch_off(number):
            loop.remove_signal_handler(number)
            self.receiver.switch_off()
            self._end.set()

        numbers = (signal.SIGINT, signal.SIGTERM, signal.SIGHUP)
        for number in numbers:
            loop.add_signal_handler(number, switch_off, number)
        try:
            yield
        finally:
            for number in numbers:
                loop.remove_signal_handler(number)

    # --- Frames

    def _changed(self):
        """The picture may have changed. Frames are made later, when the turn is over and a page waits for one."""
        self._frame = None
        for page in self._pages:
            page.change()

    def frame(self):
        """The newest frame."""
        if self._frame is None:
            picture = self.receiver.picture()  # may end the GUI, whose crash is then part of this frame
            self._frame = html.fragment(picture, self.receiver.console.lines)
        return self._frame

    async def _goodbye(self):
        """Give every page the last frame, which says that the receiver is off."""
        shown = [asyncio.ensure_future(page.idle.wait()) for page in self._pages]
        if shown:
            await asyncio.wait(shown, timeout=GOODBYE_SECONDS)
        for page in set(self._pages):
            await page.socket.close(code=1001, message=b"switched off")

    # --- Keys

    async def _press_keys(self):
        """Do what the pages ask for, one thing after the other. A key waits until a screen is there to get it."""
        while True:
            act = await self._keys.get()
            for _ in range(CLOSING_TURNS):
                if not self.receiver.is_closing:
                    break
                await asyncio.sleep(0)
            act()
            await asyncio.sleep(0)

    async def _take(self, page, text):
        """A message of a page. False for what no page of ours sends, which ends the connection."""
        if text == "shown":
            page.shown.set()
        elif text == "ping":
            with contextlib.suppress(ConnectionError):
                await page.socket.send_str("")
        else:
            act = self._act(*text.partition(" ")[::2])
            if act is None:
                return False
            self._keys.put_nowait(act)
        return True

    def _act(self, what, value):
        """What a message asks for, to be called; None if it makes no sense."""
        if what in (MAKE, REPEAT, BREAK) and value in KEYS:
            return functools.partial(self.receiver.key, value, what)
        if what in ("g", "s") and re.fullmatch("-?[0-9]{1,6}", value):
            return functools.partial(self.receiver.go_to if what == "g" else self.receiver.scroll, int(value))
        if what == "c" and len(value) == 1:
            return functools.partial(self._type, value)
        return self._switch_on if (what, value) == ("on", "") else None

    def _type(self, char):
        if not self.receiver.type(char) and char.lower() in LETTERS:
            self.receiver.press(LETTERS[char.lower()])

    def _switch_on(self):
        if not self.receiver.is_on:
            self.receiver.switch_on()

    # --- HTTP

    def _application(self):
        application = web.Application(middlewares=[self._only_own_pages])
        application.on_response_prepare.append(_set_headers)
        application.router.add_get("/", self._document)
        application.router.add_get("/tv", self._tv)
        application.router.add_static("/page", html.PAGE)
        return application

    @web.middleware
    async def _only_own_pages(self, request, handler):
        """Refuse other hosts' names for this address, and pages of other origins: a web site must not press keys."""
        hosts = [name + ("" if self.port == 80 else ":%d" % self.port) for name in (HOST, "localhost")]
        origin = request.headers.get("Origin")
        if request.host not in hosts or origin not in (None, "http://" + request.host):
            raise web.HTTPForbidden(text="Only for pages of %s\n" % self.address, headers=HEADERS)
        return await handler(request)

    async def _document(self, request):
        return web.Response(text=html.document(self.frame()), content_type="text/html")

    async def _tv(self, request):
        socket = web.WebSocketResponse(heartbeat=HEARTBEAT_SECONDS, max_msg_size=LONGEST_MESSAGE, compress=False)
        await socket.prepare(request)
        page = _Page(socket)
        self._pages.add(page)
        sender = asyncio.ensure_future(page.send(self.frame))
        try:
            async for message in socket:
                if message.type != WSMsgType.TEXT or not await self._take(page, message.data):
                    await socket.close(code=1008, message=b"not a key")
        finally:
            self._pages.discard(page)
            sender.cancel()
            with contextlib.suppress(asyncio.CancelledError, ConnectionError):
                await sender
        return socket


class _Page:
    """One open page. changed: there is a newer picture. shown: it shows what it was sent. idle: there is nothing to send."""

    def __init__(self, socket):
        self.socket = socket
        self.changed = asyncio.Event()
        self.shown = asyncio.Event()
        self.idle = asyncio.Event()
        self.change()

    def change(self):
        self.changed.set()
        self.idle.clear()

    async def send(self, newest):
        """Send the newest frame whenever there is one and the page shows the one before. An error ends the connection."""
        try:
            await self._send(newest)
        except Exception:
            await self.socket.close()
            raise

    async def _send(self, newest):
        sent = None
        while True:
            await self.changed.wait()
            self.changed.clear()
            frame = newest()
            if frame != sent:
                sent = frame
                self.shown.clear()
                await self.socket.send_str(frame)
                await self.shown.wait()
            if not self.changed.is_set():
                self.idle.set()


async def _set_headers(request, response):
    response.headers.update(HEADERS)


def listen(port=None):
    """A socket on this machine's own address. PortTaken if `port` is given and not free; None: PORT or any free one."""
    for wanted in ([PORT, 0] if port is None else [port]):
        listener = socket.socket(socket.AF_INET, socket.SOCK_STREAM)
        try:
            listener.setsockopt(socket.SOL_SOCKET, socket.SO_REUSEADDR, 1)
            listener.bind((HOST, wanted))
            listener.listen(128)
            listener.setblocking(False)
            return listener
        except OSError as error:
            listener.close()
            if error.errno not in (errno.EADDRINUSE, errno.EACCES):
                raise
            problem = error
    raise PortTaken("port %d: %s" % (port, problem.strerror))
