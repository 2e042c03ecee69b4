// The page of the TV: sends the keys of the remote and of the keyboard, shows the frames that come back.
"use strict";

const RECONNECT_MS = 500;
const HOLD_MS = 450;      // a button that is held for so long repeats,
const REPEAT_MS = 110;    // so often

const frame = document.getElementById("frame");
const held = new Map();   // what is pressed now: the button, and its timer if a pointer holds it
let socket;
let waiting = [];         // what was pressed while the connection was being made

// --- Frames -------------------------------------------------------------------------------------------------------

function connect() {
  socket = new WebSocket(`ws://${location.host}/tv`);
  socket.onmessage = message => {
    const fresh = document.createElement("template");
    fresh.innerHTML = message.data;
    morph(frame, fresh.content);
    socket.send("shown");
  };
  socket.onopen = () => {
    connected(true);
    for (const message of waiting.splice(0)) socket.send(message);
  };
  socket.onclose = () => {
    releaseAll();
    waiting = [];   // a receiver that comes back much later must not get them
    connected(false);
    setTimeout(connect, RECONNECT_MS);
  };
}

function connected(yes) {
  document.body.dataset.connected = yes;
  document.querySelector(".connection").textContent = yes ? "" : "No connection to the receiver. Is script/run running?";
}

// Makes the children of `old` like those of `fresh`. What is the same stays: the focus, and a screen reader's place.
function morph(old, fresh) {
  [...fresh.childNodes].forEach((child, place) => {
    const same = old.childNodes[place];
    if (!same) old.append(child.cloneNode(true));
    else if (same.nodeName !== child.nodeName || same.id !== child.id) same.replaceWith(child.cloneNode(true));
    else if (child.nodeType === Node.ELEMENT_NODE) { adopt(same, child); morph(same, child); }
    else if (same.data !== child.data) same.data = child.data;
  });
  while (old.childNodes.length > fresh.childNodes.length) old.lastChild.remove();
}

function adopt(old, fresh) {
  for (const name of old.getAttributeNames()) if (!fresh.hasAttribute(name)) old.removeAttribute(name);
  for (const name of fresh.getAttributeNames())
    if (old.getAttribute(name) !== fresh.getAttribute(name)) old.setAttribute(name, fresh.getAttribute(name));
}

// --- Keys ---------------------------------------------------------------------------------------------------------

const shortcuts = new Map();
for (const button of document.querySelectorAll("button[aria-keyshortcuts]"))
  for (const key of button.getAttribute("aria-keyshortcuts").split(" ")) shortcuts.set(key.toLowerCase(), button);

// flag: m when a key is pressed, r when it repeats, b when it is released
function send(flag, button) {
  button.classList.toggle("pressed", flag !== "b");
  const message = `${flag} ${button.value}`;
  if (socket.readyState === WebSocket.OPEN) socket.send(message);
  else if (socket.readyState === WebSocket.CONNECTING) waiting.push(message);
}

function press(button) {
  if (!held.has(button)) held.set(button, null);
  send("m", button);
}

function release(button) {
  if (!held.has(button)) return;
  clearTimeout(held.get(button));
  held.delete(button);
  send("b", button);
}

function releaseAll() {
  for (const button of [...held.keys()]) release(button);
}

function repeat(button) {
  held.set(button, setTimeout(() => { send("r", button); repeat(button); }, REPEAT_MS));
}

document.addEventListener("keydown", event => {
  const button = shortcuts.get(event.key.toLowerCase());
  const activates = event.key === "Enter" && document.activeElement.matches("button");
  if (!button || activates || event.ctrlKey || event.altKey || event.metaKey) return;
  event.preventDefault();
  if (event.repeat) send("r", button);
  else press(button);
});

document.addEventListener("keyup", event => {
  const button = shortcuts.get(event.key.toLowerCase());
  if (button) release(button);
});

document.addEventListener("pointerdown", event => {
  const button = event.target.closest("button[value]");
  if (!button || event.button !== 0) return;
  event.preventDefault();   // the focus stays where it is: Enter is still OK
  press(button);
  held.set(button, setTimeout(() => { send("r", button); repeat(button); }, HOLD_MS));
});
document.addEventListener("mousedown", event => { if (event.target.closest("button[value]")) event.preventDefault(); });
document.addEventListener("pointerup", releaseAll);
document.addEventListener("pointercancel", releaseAll);
document.addEventListener("contextmenu", event => { if (event.target.closest("button[value]")) event.preventDefault(); });
window.addEventListener("blur", releaseAll);

// A click that no pointer made: a button that has the focus, or a screen reader.
document.addEventListener("click", event => {
  const button = event.target.closest("button[value]");
  if (button && event.detail === 0) { press(button); release(button); }
});

connect();
