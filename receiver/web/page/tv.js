// The page of the TV: sends keys, and what is pointed at in the picture; shows the frames that come back.
"use strict";

const RECONNECT_MS = 500;
const PING_MS = 1000;
const PATIENCE = 3;       // so many pings without an answer, and the receiver is frozen
const HOLD_MS = 450;      // a button that is held for so long repeats,
const REPEAT_MS = 110;    // so often
const DRAG_PX = 10;       // a finger that has moved so far does not tap
const STILL_MS = 60;      // a finger that has not moved for so long leaves the list where it is

const $ = (selector, within = document) => within.querySelector(selector);
const frame = $("#frame");
let socket;
let waiting = [];         // what was sent while the connection was being made
let unanswered = 0;       // pings

// --- The connection -----------------------------------------------------------------------------------------------

function connect() {
  socket = new WebSocket(`ws://${location.host}/tv`);
  socket.onmessage = message => {
    unanswered = 0;
    connection("");
    if (message.data) show(message.data);
  };
  socket.onopen = () => {
    unanswered = 0;
    connection("");
    for (const message of waiting.splice(0)) socket.send(message);
  };
  socket.onclose = () => {
    releaseAll();
    waiting = [];   // a receiver that comes back much later must not get them
    connection("No connection to the receiver; if it has ended, script/run starts it again.");
    setTimeout(connect, RECONNECT_MS);
  };
}

// Says what is wrong with the connection; nothing if it is well.
function connection(problem) {
  document.body.dataset.connected = !problem;
  if ($(".connection").textContent !== problem) $(".connection").textContent = problem;
}

setInterval(() => {
  if (socket.readyState > WebSocket.OPEN) return;
  if (unanswered >= PATIENCE) connection("The receiver does not answer.");
  unanswered += 1;
  if (socket.readyState === WebSocket.OPEN) socket.send("ping");
}, PING_MS);

function send(message) {
  if (socket.readyState === WebSocket.OPEN) socket.send(message);
  else if (socket.readyState === WebSocket.CONNECTING) waiting.push(message);
}

// --- Frames -------------------------------------------------------------------------------------------------------

function show(html) {
  const fresh = document.createElement("template");
  fresh.innerHTML = html;
  morph(frame, fresh.content);
  follow();
  socket.send("shown");
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

function adopt(old, fresh) {   // whether the console is open is the page's business
  for (const name of old.getAttributeNames()) if (!fresh.hasAttribute(name) && name !== "open") old.removeAttribute(name);
  for (const name of fresh.getAttributeNames())
    if (old.getAttribute(name) !== fresh.getAttribute(name)) old.setAttribute(name, fresh.getAttribute(name));
}

// --- The remote and the keyboard ----------------------------------------------------------------------------------

const held = new Map();   // what is pressed now: the button, and its timer if a pointer holds it
const shortcuts = new Map();
for (const button of document.querySelectorAll(".remote button"))
  for (const key of button.getAttribute("aria-keyshortcuts").split(" ")) shortcuts.set(key.toLowerCase(), button);

// flag: m when a key is pressed, r when it repeats, b when it is released
function key(flag, button) {
  following = true;
  button.classList.toggle("pressed", flag !== "b");
  send(`${flag} ${button.value}`);
}

function press(button) {
  if (!held.has(button)) held.set(button, null);
  key("m", button);
}

function release(button) {
  if (!held.has(button)) return;
  clearTimeout(held.get(button));
  held.delete(button);
  key("b", button);
}

function releaseAll() {
  for (const button of [...held.keys()]) release(button);
}

function tap(name) {
  const button = $(`.remote button[value="${name}"]`);
  press(button);
  release(button);
}

function repeat(button, wait) {
  held.set(button, setTimeout(() => { key("r", button); repeat(button, REPEAT_MS); }, wait));
}

document.addEventListener("keydown", event => {
  const button = shortcuts.get(event.key.toLowerCase());
  const activates = [" ", "Enter"].includes(event.key) && document.activeElement.matches("button, summary");
  const typed = event.key.length === 1 && !/[0-9]/.test(event.key) && !(button && event.shiftKey);
  if (!button && !typed || activates || event.ctrlKey || event.altKey || event.metaKey) return;
  event.preventDefault();
  if (typed) { following = true; send(`c ${event.key}`); }   // for a list that searches; else, and with Shift, some are keys
  else if (event.key === "Enter" && $(".off")) send("on");
  else if (event.repeat) key("r", button);
  else press(button);
});

document.addEventListener("keyup", event => {
  const button = shortcuts.get(event.key.toLowerCase());
  if (button) release(button);
});

// A mouse presses a button at once. A finger may be about to swipe: it presses when it is lifted, or holds still.
let finger;               // the one on a button that is not pressed yet
$(".remote").addEventListener("pointerdown", event => {
  const button = event.target.closest("button");
  if (!button || event.button !== 0) return;
  event.preventDefault();   // the focus stays where it is: Enter is still OK
  if (event.pointerType === "touch")
    finger = {button, x: event.clientX, y: event.clientY, timer: setTimeout(() => { finger = null; hold(button); }, HOLD_MS)};
  else hold(button);
});

function hold(button) {
  press(button);
  repeat(button, HOLD_MS);
}

function lift(pressing) {
  if (!finger) return;
  clearTimeout(finger.timer);
  if (pressing) { press(finger.button); release(finger.button); }
  finger = null;
}

document.addEventListener("pointermove", event => { if (finger && isFar(event, finger)) lift(false); });
document.addEventListener("pointerup", () => { lift(true); releaseAll(); });
document.addEventListener("pointercancel", () => { lift(false); releaseAll(); });
window.addEventListener("blur", () => { lift(false); releaseAll(); });
document.addEventListener("mousedown", event => { if (event.target.closest(".remote button, summary")) event.preventDefault(); });
$(".remote").addEventListener("contextmenu", event => { if (event.target.closest("button")) event.preventDefault(); });

function isFar(event, start) {
  return Math.hypot(event.clientX - start.x, event.clientY - start.y) > DRAG_PX;
}

// A click that no pointer made: a button that has the focus, or a screen reader.
document.addEventListener("click", event => {
  const button = event.target.closest("button");
  if (button && button.value === "on") send("on");
  else if (button && event.detail === 0) tap(button.value);
});

// --- The picture --------------------------------------------------------------------------------------------------

let following = true;     // the part of the list that is seen goes with the cursor, until something scrolls it
let rest = 0;             // what was scrolled by less than a row
let drag;                 // the pointer that is down on the picture

const openList = () => $(".screen:not([aria-hidden]) .list");
const rowNumber = row => Number(row.getAttribute("aria-posinset")) - 1;

// In a small window the list shows a part of its rows.
function follow() {
  const row = following && $(".screen:not([aria-hidden]) .row.selected");
  if (!row) return;
  const list = row.parentElement, top = row.getBoundingClientRect().top - list.getBoundingClientRect().top;
  if (top < 0) list.scrollTop += top;
  else if (top + row.offsetHeight > list.clientHeight) list.scrollTop += top + row.offsetHeight - list.clientHeight;
}

// What a finger has set going runs down, unless a key or another finger stops it.
function coast(speed) {
  requestAnimationFrame(() => {
    if (following || drag || Math.abs(speed) < 1) return;
    roll(speed);
    coast(speed * 0.95);
  });
}

const isCut = list => list.scrollHeight > list.clientHeight + 2;

// Scrolls the rows that are there, then asks for others; where all are seen, the cursor moves.
function roll(pixels) {
  const list = openList();
  if (!list || !list.firstElementChild) return;
  following = false;
  const before = list.scrollTop, height = list.firstElementChild.offsetHeight;
  list.scrollTop += pixels;
  rest += pixels - (list.scrollTop - before);
  const rows = Math.trunc(rest / height);
  rest -= rows * height;
  if (rows && (list.matches(".scrolling") || !isCut(list))) send(`s ${rows}`);
}

// A row is selected by the first click and gets OK by the second; in a menu, or where a question is asked, by the first.
function point(target) {
  const screen = $(".screen:not([aria-hidden])"), list = openList(), row = target.closest(".row");
  const name = target.closest("[data-key]")?.dataset.key;
  if (!screen) return;
  following = true;
  if (row) {
    const selected = row.matches(".selected");
    if (!selected) send(`g ${rowNumber(row)}`);
    if (name) tap(name);
    else if (screen.matches(".window, [data-name=MainMenu]")) tap("ok");
    else if (selected) tap($(".switch", row) ? "right" : "ok");
  }
  else if (name) tap(name);
  else if (!screen.contains(target)) tap("exit");
  else if (!list) tap("ok");
}

function jump(event, bar) {
  const box = bar.getBoundingClientRect(), rows = openList().firstElementChild.getAttribute("aria-setsize");
  following = true;
  send(`g ${Math.round(Math.min(Math.max((event.clientY - box.top) / box.height, 0), 1) * (rows - 1))}`);
}

document.addEventListener("pointerdown", event => {
  if (event.button !== 0 || !event.target.closest(".scene") || event.target.closest("button")) return;
  const bar = event.target.closest(".scrollbar"), list = openList();
  if (event.target === list && event.offsetX >= list.clientWidth) return;   // on the browser's own scroll bar
  drag = {x: event.clientX, y: event.clientY, last: event.clientY, moved: Boolean(bar), bar};
  rest = 0;
  if (bar) jump(event, bar);
});
document.addEventListener("pointermove", event => {
  if (!event.buttons) drag = null;
  if (!drag || !(drag.moved ||= isFar(event, drag))) return;
  if (drag.bar) jump(event, drag.bar);
  else if (openList() && (openList().matches(".scrolling") || isCut(openList()))) roll(drag.speed = drag.last - event.clientY);
  drag.last = event.clientY;
  drag.time = event.timeStamp;
});
document.addEventListener("pointerup", event => {
  if (drag?.speed && event.pointerType === "touch" && event.timeStamp - drag.time < STILL_MS) coast(drag.speed);
  if (drag && !drag.moved) point(document.elementFromPoint(drag.x, drag.y));
  drag = null;
});
document.addEventListener("pointercancel", () => { drag = null; });

document.addEventListener("wheel", event => {
  if (event.ctrlKey || !event.target.closest(".scene")) return;
  event.preventDefault();
  roll(event.deltaMode === WheelEvent.DOM_DELTA_PIXEL ? event.deltaY : event.deltaY * 30);
}, {passive: false});

new ResizeObserver(() => { following = true; follow(); }).observe($(".area"));

follow();
connect();
