"""The base of what a layout shows with `source=` and `render=`: a value without a widget of its own."""


class Source:
    text = ""

    def execBegin(self):
        pass

    def execEnd(self):
        pass

    def destroy(self):
        self.__dict__.clear()
