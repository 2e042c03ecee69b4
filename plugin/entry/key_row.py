"""The row of the colour keys in a layout: yellow and blue beside a skin's red and green, or a row of our own."""

from __future__ import absolute_import, division

import re
import xml.etree.ElementTree as ElementTree

from .flat_layout import Item

COLOURS = ("red", "green", "yellow", "blue")
PAINT = {"red": "#00e5383b", "green": "#002fa84f", "yellow": "#00f2b705", "blue": "#003a86ff"}


class KeyRow(object):
    """The part of a layout that is about its keys. items, labels, need, parts, flat, and carve, line_height and text_line
    are the layout's."""

    def put_in_keys(self):
        missing = [colour for colour in self.need.keys if "key_" + colour in self.parts
                   and colour not in self.labels and not self.in_addon("key_" + colour)]
        if not missing:
            return
        if "red" in self.labels and "green" in self.labels and self.labels["red"].rect and self.labels["green"].rect:
            self._continue_row([colour for colour in missing if colour in ("yellow", "blue")])
        else:
            self._own_row()

    def in_addon(self, name):
        for item in self.items:
            names = item.get("connection", "").split(",") if item.get("addon") else []
            if "key_red" in names:
                if name not in names:
                    item.element.set("connection", ",".join(names + [name]))
                return True
        return False

    def _continue_row(self, missing):
        """Yellow and blue, as far from green as green is from red; all four closer together where that doesn't fit."""
        red, green = self.labels["red"], self.labels["green"]
        step = [green.rect[0] - red.rect[0], green.rect[1] - red.rect[1]]
        pairs = [(red, green)] + self._companions(red, green, step)
        made = [item for colour in missing for item in self._row_of(colour, pairs, step)]
        if not all(self._is_free(item) for item in made) and step[1] == 0:
            made = self._squeezed(missing, pairs)
        self.items.extend(made)

    def _companions(self, red, green, step):
        """What stands to green as another element of its kind stands to red: the pictures, the bars."""
        pairs = []
        for one in self.items:
            for other in self.items:
                if (one.rect and other.rect and one is not red and other is not green and one is not other
                        and one.element.tag == other.element.tag and one.rect[2:] == other.rect[2:]
                        and [other.rect[0] - one.rect[0], other.rect[1] - one.rect[1]] == step
                        and abs(one.rect[1] - red.rect[1]) <= max(red.rect[3], one.rect[3])
                        and abs(one.rect[0] - red.rect[0]) <= max(abs(step[0]), red.rect[2])):
                    pairs.append((one, other))
        return pairs

    def _row_of(self, colour, pairs, step):
        times = COLOURS.index(colour)
        made = []
        for red, green in pairs:
            item = green.placed([red.rect[0] + times * step[0], red.rect[1] + times * step[1]] + green.rect[2:])
            for key, value in green.element.attrib.items():
                if value != red.get(key):
                    item.element.set(key, _recoloured(value, red.get(key, ""), colour))
            made.append(item)
        return made

    def _squeezed(self, missing, pairs):
        left = min(red.rect[0] for red, green in pairs)
        label = pairs[0][0].rect
        right = self.flat.size[0] - min(left, self.flat.size[0] // 20)
        ours = [item for pair in pairs for item in pair]
        for item in self.items:
            if (item.rect and item not in ours and item.rect[0] > pairs[0][1].rect[0] and item.rect[2] < self.flat.size[0] // 2
                    and item.rect[1] < label[1] + label[3] and item.rect[1] + item.rect[3] > label[1]):
                right = min(right, item.rect[0])
        step = (right - left) // 4
        for red, green in pairs:
            if red is pairs[0][0]:
                green.rect[2] = red.rect[2] = min(red.rect[2], step - (label[0] - left) - max(4, step // 40))
            elif red.rect[2] > step:
                green.rect[2] = red.rect[2] = step - max(4, step // 40)
            green.rect[0] = red.rect[0] + step
        return [item for colour in missing for item in self._row_of(colour, pairs, [step, 0])]

    def _is_free(self, made):
        x, y, width, height = made.rect
        if x < 0 or y < 0 or x + width > self.flat.size[0] or y + height > self.flat.size[1]:
            return False
        for item in self.items:
            # What lies behind all is no obstacle, nor is what our row is made from.
            if item.rect and item.rect[2] < self.flat.size[0] // 2 and item.rect[3] < self.flat.size[1] // 2:
                if (item.rect[0] < x + width and x < item.rect[0] + item.rect[2] and item.rect[1] < y + height
                        and y < item.rect[1] + item.rect[3] and item not in self.labels.values()):
                    return False
        return True

    def _own_row(self):
        """All keys in a row of their own below the list, for a skin that labels none or in a way not seen before."""
        for item in list(self.items):
            if any(is_label(item, "key_" + colour) for colour in COLOURS):
                self.items.remove(item)
        x, y, width, height = self.carve(self.line_height() * 3 // 2)
        step, bar = width // len(self.need.keys), max(4, height // 5)
        for index, colour in enumerate(self.need.keys):
            self.items.append(Item(ElementTree.Element("eLabel", {"backgroundColor": PAINT[colour]}),
                                   [x + index * step, y + height // 6, bar, height * 2 // 3]))
            self.items.append(self.text_line("key_" + colour, [x + index * step + 2 * bar, y, step - 3 * bar, height]))


def name_of(item):
    element = item.element[0] if item.element.tag == "panel" and len(item.element) else item.element
    return element.get("name") or element.get("source")


def is_label(item, name):
    return name_of(item) == name and not item.get("pixmap") and item.get("render", "Label") != "Pixmap"



def _recoloured(green, red, colour):
    """What says green, by a word or by a colour's number, for another colour."""
    for old, new in (("green", colour), ("Green", colour.capitalize()), ("GREEN", colour.upper())):
        if old in green:
            return green.replace(old, new)
    if _NUMBER.match(green) and _NUMBER.match(red):
        return _mixed(_NUMBER.match(red), _NUMBER.match(green), colour)
    return green


_NUMBER = re.compile("#([0-9a-fA-F]{2}|)([0-9a-fA-F]{2})([0-9a-fA-F]{2})([0-9a-fA-F]{2})$")


def _mixed(red, green, colour):
    """Yellow or blue as strong as the skin's red and green."""
    strong_red, strong_green = red.group(2), green.group(3)
    weak = min(red.group(3), red.group(4), green.group(2), green.group(4))
    light = (strong_red, strong_green, weak) if colour == "yellow" else (weak, weak, max(strong_red, strong_green))
    return "#" + green.group(1) + "".join(light)
