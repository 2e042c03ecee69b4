"""What a screen does on which action."""

from Components.GUIComponent import Component
from enigma import eActionMap


class ActionMap(Component):
    """Binds the contexts, in their order, while its screen runs. A lower `prio` is asked before a higher one."""

    def __init__(self, contexts=None, actions=None, prio=0):
        self.contexts = [contexts] if isinstance(contexts, str) else list(contexts or [])
        self.actions = dict(actions or {})
        self.prio = prio
        self.enabled, self.running, self.bound = True, False, False

    def setEnabled(self, enabled):
        self.enabled = bool(enabled)
        self._update()

    def execBegin(self):
        self.running = True
        self._update()

    def execEnd(self):
        self.running = False
        self._update()

    def _update(self):
        bind = self.running and self.enabled
        if bind == self.bound:
            return
        self.bound = bind
        for context in self.contexts:
            if bind:
                eActionMap.getInstance().bindAction(context, self.prio, self.action)
            else:
                eActionMap.getInstance().unbindAction(context, self.action)

    def action(self, context, action):
        """Run the handler: 0 lets others have the key, and a handler that returns nothing has dealt with it."""
        if action not in self.actions:
            return 0
        result = self.actions[action]()
        return 1 if result is None else result
