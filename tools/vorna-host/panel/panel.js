// The control panel: drives the selected camera through vorna-host's JSON
// API. Motion goes out while a control is held and a stop when it is let go,
// left, or the page loses focus or its connection; while anything moves the
// page tells the host every few hundred milliseconds that it is still there,
// since the host stops a camera whose page went quiet for a second.
'use strict';

const token = new URLSearchParams(location.search).get('token') || '';
const HOLD_EVERY_MS = 300;
const KEPT_FRAMES = 100;
const RECENT_FRAMES = 3;
const $ = (id) => document.getElementById(id);

let cameras = [];
let camera = null;           // the selected camera's entry of /api/cameras
const moving = new Map();    // control -> the command that stops it
let holdTimer = null;

function say(text, isError) {
  const message = $('message');
  message.textContent = text;
  message.className = isError ? 'message error' : 'message';
  message.hidden = !text;
}

async function call(method, path, body) {
  const headers = {'Content-Type': 'application/json'};
  if (token) headers.Authorization = 'Bearer ' + token;
  const response = await fetch(path, {
    method, headers, keepalive: true, body: body === undefined ? undefined : JSON.stringify(body)});
  const answer = await response.json().catch(() => ({}));
  if (!response.ok) {
    const error = new Error(answer.error || response.statusText);
    error.status = response.status;
    throw error;
  }
  return answer;
}

function cameraPath(action) {
  return '/api/cameras/' + camera.camera.join('/') + '/' + action;
}

async function act(action, body) {
  if (!camera) return null;
  try {
    const answer = await call('POST', cameraPath(action), body);
    if (action !== 'hold') say(answer.note || '', !!answer.note);
    return answer;
  } catch (error) {
    if (error.status === 409 && confirm(error.message.replace(/; not sent.*/, '') + '. Send it?'))
      return act(action, Object.assign({}, body, {confirmed: true}));
    say(error.message, true);
    return null;
  }
}

const command = (text) => act('command', {command: text});

// --- holding: motion with a heartbeat, stopped on every way of letting go

function startHolding(control, stopCommand) {
  moving.set(control, stopCommand);
  if (!holdTimer) holdTimer = setInterval(() => act('hold', {}), HOLD_EVERY_MS);
}

function stopHolding(control) {
  const stop = moving.get(control);
  if (stop === undefined) return;
  moving.delete(control);
  if (moving.size === 0) {
    clearInterval(holdTimer);
    holdTimer = null;
  }
  stop();
}

function stopEverything() {
  for (const control of Array.from(moving.keys())) stopHolding(control);
  resetKnob();
}

// --- the pad

const pad = $('pad');
const knob = $('knob');
let padPointer = null;
let padDirection = '0,0';

function resetKnob() {
  knob.style.transform = '';
  pad.classList.remove('active');
}

function padMove(event) {
  const box = pad.getBoundingClientRect();
  const radius = box.width / 2;
  const dx = event.clientX - (box.left + radius);
  const dy = event.clientY - (box.top + radius);
  const distance = Math.hypot(dx, dy);
  if (distance > radius * 1.05) return padRelease(event);
  const reach = Math.min(distance, radius * 0.62);
  const angle = Math.atan2(dy, dx);
  knob.style.transform = `translate(${reach * Math.cos(angle)}px, ${reach * Math.sin(angle)}px)`;
  const dead = radius * 0.22;
  const pan = dx > dead ? 1 : dx < -dead ? -1 : 0;
  const tilt = dy < -dead ? 1 : dy > dead ? -1 : 0;
  const direction = pan + ',' + tilt;
  if (direction === padDirection) return;
  padDirection = direction;
  act('move', {pan, tilt});
}

pad.addEventListener('pointerdown', (event) => {
  if (!camera || padPointer !== null) return;
  event.preventDefault();
  padPointer = event.pointerId;
  padDirection = '0,0';
  pad.classList.add('active');
  startHolding(pad, () => act('move', {pan: 0, tilt: 0}));
  padMove(event);
});
pad.addEventListener('pointermove', (event) => {
  if (event.pointerId === padPointer) padMove(event);
});

function padRelease(event) {
  if (event.pointerId !== padPointer) return;
  padPointer = null;
  padDirection = '0,0';
  resetKnob();
  stopHolding(pad);
}
for (const type of ['pointerup', 'pointercancel', 'pointerleave']) pad.addEventListener(type, padRelease);

// --- zoom, focus and iris: held buttons

for (const button of document.querySelectorAll('[data-hold]')) {
  const release = () => stopHolding(button);
  button.addEventListener('pointerdown', (event) => {
    if (!camera) return;
    event.preventDefault();
    command(button.dataset.hold);
    startHolding(button, () => command(button.dataset.release));
  });
  for (const type of ['pointerup', 'pointercancel', 'pointerleave']) button.addEventListener(type, release);
  button.addEventListener('contextmenu', (event) => event.preventDefault());
}

window.addEventListener('blur', stopEverything);
window.addEventListener('pagehide', stopEverything);
document.addEventListener('visibilitychange', () => {
  if (document.hidden) stopEverything();
});

// --- presets

function presetMode() {
  return document.querySelector('input[name=presetMode]:checked').value;
}

function usePreset(number, name) {
  const mode = presetMode();
  const label = name ? `preset ${number} (${name})` : `preset ${number}`;
  if (mode === 'clear' && !confirm(`Clear ${label}?`)) return;
  command(`preset ${mode} ${number}`).then((answer) => {
    if (answer && mode !== 'goto') say(`${mode === 'set' ? 'Stored' : 'Cleared'} ${label}`);
  });
}

function showPresets() {
  const list = $('presets');
  list.textContent = '';
  for (const preset of camera ? camera.presets : []) {
    const button = document.createElement('button');
    button.innerHTML = '<b></b><span></span>';
    button.firstChild.textContent = preset.number;
    button.lastChild.textContent = preset.name;
    button.addEventListener('click', () => usePreset(preset.number, preset.name));
    list.appendChild(button);
  }
  $('presetNumber').max = camera && camera.presetCount ? camera.presetCount : '';
}

$('presetForm').addEventListener('submit', (event) => {
  event.preventDefault();
  usePreset(Number($('presetNumber').value));
});
for (const radio of document.querySelectorAll('input[name=presetMode]')) {
  radio.addEventListener('change', () => {
    const words = {goto: 'Go to number', set: 'Set number', clear: 'Clear number'};
    $('presetGo').textContent = words[presetMode()];
    document.body.dataset.presetMode = presetMode();
  });
}

// --- speeds, tour, alarm

const DEFAULT_SPEEDS = {pan: 31, tilt: 31, zoom: 1};

function showSpeeds() {
  for (const slider of document.querySelectorAll('.slider input')) {
    const axis = slider.dataset.axis;
    const highest = camera ? camera.speeds[axis] : null;
    slider.parentElement.hidden = highest === null;
    if (highest === null) continue;
    slider.max = highest;
    slider.value = Math.min(DEFAULT_SPEEDS[axis], highest);
    slider.nextElementSibling.value = slider.value;
  }
}

for (const slider of document.querySelectorAll('.slider input')) {
  slider.addEventListener('input', () => { slider.nextElementSibling.value = slider.value; });
  slider.addEventListener('change', () => command(`speed ${slider.dataset.axis} ${slider.value}`));
}

function showTour() {
  $('tourEnabled').checked = !!(camera && camera.tour.enabled);
  $('tourDwell').value = camera ? camera.tour.dwell : '';
}

$('tourEnabled').addEventListener('change', () =>
  act('tour', {enabled: $('tourEnabled').checked}).then(loadCameras));
$('tourDwellSet').addEventListener('click', () =>
  act('tour', {dwell: Number($('tourDwell').value)}).then(loadCameras));
$('alarmStart').addEventListener('click', () => command(`alarm start 1 60 ${$('alarmPreset').value}`));
$('alarmEnd').addEventListener('click', () => command(`alarm end 1 60 ${$('alarmPreset').value}`));

// --- cameras

function selectCamera(name) {
  stopEverything();
  camera = cameras.find((entry) => entry.name === name) || null;
  showPresets();
  showSpeeds();
  showTour();
}

async function loadCameras() {
  try {
    cameras = (await call('GET', '/api/cameras')).cameras;
  } catch (error) {
    say(error.message, true);
    return;
  }
  const select = $('camera');
  const chosen = camera ? camera.name : select.value;
  select.textContent = '';
  for (const entry of cameras) {
    const option = document.createElement('option');
    option.value = entry.name;
    option.textContent = `${entry.name} · ${entry.port} ${entry.protocol || 'no protocol'} #${entry.address}`;
    select.appendChild(option);
  }
  if (cameras.some((entry) => entry.name === chosen)) select.value = chosen;
  selectCamera(select.value);
  if (cameras.length === 0) say('The module has no cameras: add them to VORNA.xml', true);
}

$('camera').addEventListener('change', () => selectCamera($('camera').value));

// --- the live log: frames and line counters

function showLines(lines) {
  const list = $('lines');
  list.textContent = '';
  for (const line of lines) {
    const row = document.createElement('div');
    row.innerHTML = '<b></b><span></span>';
    row.firstChild.textContent = line.line;
    row.lastChild.textContent = ` ${line.sent} sent · ${line.replaced} replaced · ${line.waiting} waiting · ` +
      `median ${(line.medianLatencyUs / 1000).toFixed(1)} ms`;
    list.appendChild(row);
  }
}

function showFrame(frame) {
  const item = document.createElement('li');
  item.innerHTML = '<span class="time"></span><span class="line"></span><code></code><span class="meaning"></span>';
  item.children[0].textContent = (frame.ms / 1000).toFixed(3);
  item.children[1].textContent = frame.line;
  item.children[2].textContent = frame.hex;
  item.children[3].textContent = frame.meaning;
  const list = $('frames');
  list.insertBefore(item, list.firstChild);
  while (list.children.length > KEPT_FRAMES) list.removeChild(list.lastChild);

  const line = document.createElement('li');
  line.innerHTML = '<code></code><span></span>';
  line.firstChild.textContent = frame.line;
  line.lastChild.textContent = frame.meaning || frame.hex;
  const recent = $('recent');
  recent.insertBefore(line, recent.firstChild);
  while (recent.children.length > RECENT_FRAMES) recent.removeChild(recent.lastChild);
}

function follow() {
  const events = new EventSource('/api/frames' + (token ? '?token=' + encodeURIComponent(token) : ''));
  const link = $('link');
  events.addEventListener('open', () => {
    link.textContent = 'online';
    link.className = 'link online';
  });
  events.addEventListener('frame', (event) => showFrame(JSON.parse(event.data)));
  events.addEventListener('lines', (event) => showLines(JSON.parse(event.data).lines));
  events.addEventListener('error', () => {
    link.textContent = 'offline';
    link.className = 'link';
    stopEverything();
  });
}

loadCameras();
follow();
