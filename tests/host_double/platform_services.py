"""enigma, the services and the environment: EPG cache, timer, service references, bouquets, paths."""

from .recorder import CallbackList, Strict, recorder


class EPGCacheInstance(Strict):
    def load(self):
        recorder.call("eEPGCache.load")

    def save(self):
        recorder.call("eEPGCache.save")

    def clearDB(self):
        recorder.call("eEPGCache.clearDB")

    def setCacheFile(self, path):
        recorder.call("eEPGCache.setCacheFile", path)


class eEPGCache(Strict):
    _instance = EPGCacheInstance()

    @staticmethod
    def getInstance():
        recorder.call("eEPGCache.getInstance")
        return eEPGCache._instance


class eTimer(Strict):
    """The main-loop timer. `_armed` is the delay that runs, `fire` is the main loop reaching it."""

    def __init__(self):
        recorder.call("eTimer")
        self._callback = CallbackList("eTimer.callback")
        self._armed = None

    @property
    def callback(self):
        recorder.look("eTimer.callback")
        return self._callback

    def start(self, *arguments):
        recorder.call("eTimer.start", *arguments)
        self._armed = arguments[0]

    def _fire(self):
        self._armed = None
        for callback in list(self._callback):
            callback()


class eServiceReference(Strict):
    """A reference by its text. Its flags are the second field, as on a box."""

    isDirectory = 1
    isMarker = 64

    def __init__(self, text):
        self._text = text

    @property
    def flags(self):
        recorder.look("flags", self._text)
        return int(self._text.split(":")[1])

    def valid(self):
        recorder.call("valid", self._text)
        return self._text != ""

    def toString(self):
        recorder.call("toString", self._text)
        return self._text


class ServiceReference(Strict):
    """A service with its name, made from a reference or its text. `names` is the service database: text -> name."""

    names = {}

    def __init__(self, reference):
        recorder.call("ServiceReference", reference)
        self._ref = reference if isinstance(reference, eServiceReference) else eServiceReference(reference)

    @property
    def ref(self):
        recorder.look("ref", self._ref._text)
        return self._ref

    def getServiceName(self):
        recorder.call("getServiceName", self._ref._text)
        return self.names.get(self._ref._text, "")


class Content(Strict):
    """The services of one list; an invalid reference ends it."""

    def __init__(self, texts):
        self._left = iter(texts)

    def getNext(self):
        recorder.call("getNext")
        return eServiceReference(next(self._left, ""))


class eServiceCenter(Strict):
    """`contents`: text of a bouquet -> the texts in it. What is not in there has no content (None)."""

    contents = {}

    @staticmethod
    def getInstance():
        recorder.call("eServiceCenter.getInstance")
        return eServiceCenter()

    def list(self, reference):
        recorder.call("eServiceCenter.list", reference)
        texts = self.contents.get(reference._text)
        return None if texts is None else Content(texts)


class eEnv(Strict):
    sysconfdir = "/etc"

    @staticmethod
    def resolve(text):
        recorder.call("eEnv.resolve", text)
        return text.replace("${sysconfdir}", eEnv.sysconfdir)
