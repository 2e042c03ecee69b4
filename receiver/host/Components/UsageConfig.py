"""The keys that the receiver's settings screens show."""


def InitUsageConfig(config):
    """Define every key. Call after configfile.load() and env.configure()."""
