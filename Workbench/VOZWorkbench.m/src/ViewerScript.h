// ViewerScript.h: the script of the interactive view. WebGL 2, nothing else.
//
// Triangles come as indices; the script expands them, so that each corner can carry its barycentric coordinate (sides
// are drawn in the fragment shader, the diagonals of quadrilaterals left out) and its element's colour. The stage runs
// from the blank (0) to the part (1).

#ifndef VIEWERSCRIPT_H
#define VIEWERSCRIPT_H

namespace voz::workbench
{

constexpr char const * kViewerScript = R"JS(<script>
"use strict";
(function () {
  const data = JSON.parse(document.getElementById("view-data").textContent);
  const canvas = document.getElementById("view-canvas");
  const gl = canvas.getContext("webgl2", { antialias: true });
  if (!gl) { document.getElementById("view-none").hidden = false; canvas.hidden = true; return; }
  const bytes = (text) => Uint8Array.from(atob(text), (c) => c.charCodeAt(0));
  const part = new Float32Array(bytes(data.part).buffer);
  const flat = new Float32Array(bytes(data.flat).buffer);
  const corners = new Uint32Array(bytes(data.triangles).buffer);
  const element = new Uint32Array(bytes(data.elements).buffer);
  const inner = bytes(data.inner);
  const fields = data.fields.map((f) => ({ name: f.name, ends: f.ends, colours: f.colours, values: bytes(f.values) }));
  const count = corners.length;

  function compile(type, source) {
    const shader = gl.createShader(type);
    gl.shaderSource(shader, source);
    gl.compileShader(shader);
    return shader;
  }
  const program = gl.createProgram();
  gl.attachShader(program, compile(gl.VERTEX_SHADER, `#version 300 es
    in vec3 onPart; in vec3 onBlank; in vec3 shift; in vec3 bary; in vec3 colour;
    uniform mat3 turn; uniform vec3 centre; uniform float scale, stage, aspect, times;
    out vec3 place, vBary, vColour;
    void main() {
      place = turn * (mix(onBlank, onPart + times * shift, stage) - centre) * scale;
      vBary = bary; vColour = colour;
      gl_Position = vec4(place.x / aspect, place.y, -0.2 * place.z, 1.0);
    }`));
  gl.attachShader(program, compile(gl.FRAGMENT_SHADER, `#version 300 es
    precision highp float;
    in vec3 place, vBary, vColour; uniform float sides; out vec4 result;
    void main() {
      vec3 normal = normalize(cross(dFdx(place), dFdy(place)));
      float light = 0.62 + 0.38 * abs(dot(normal, normalize(vec3(-0.35, 0.5, 0.79))));
      vec3 near = smoothstep(vec3(0.0), fwidth(vBary) * 1.2, vBary);
      float line = mix(1.0, min(near.x, min(near.y, near.z)), 0.35 * sides);
      result = vec4(vColour * light * line, 1.0);
    }`));
  gl.linkProgram(program);
  gl.useProgram(program);

  function attribute(name, size, array, type, normalised) {
    const buffer = gl.createBuffer();
    gl.bindBuffer(gl.ARRAY_BUFFER, buffer);
    gl.bufferData(gl.ARRAY_BUFFER, array, gl.STATIC_DRAW);
    const at = gl.getAttribLocation(program, name);
    gl.enableVertexAttribArray(at);
    gl.vertexAttribPointer(at, size, type, normalised, 0, 0);
    return buffer;
  }
  const expand = (rows) => {
    const out = new Float32Array(3 * count);
    for (let i = 0; i < count; ++i) for (let c = 0; c < 3; ++c) out[3 * i + c] = rows[3 * corners[i] + c];
    return out;
  };
  const bary = new Float32Array(3 * count);
  for (let i = 0; i < count; ++i) for (let c = 0; c < 3; ++c)
    bary[3 * i + c] = (i % 3 === c || (inner[Math.floor(i / 3)] >> c & 1)) ? 1 : 0;
  attribute("onPart", 3, expand(part), gl.FLOAT, false);
  attribute("onBlank", 3, expand(flat), gl.FLOAT, false);
  const shifts = data.sprung ? new Float32Array(bytes(data.sprung.shifts).buffer) : new Float32Array(part.length);
  attribute("shift", 3, expand(shifts), gl.FLOAT, false);
  attribute("bary", 3, bary, gl.FLOAT, false);
  const paint = new Uint8Array(3 * count);
  const paintBuffer = attribute("colour", 3, paint, gl.UNSIGNED_BYTE, true);

  const low = [Infinity, Infinity, Infinity], high = [-Infinity, -Infinity, -Infinity];
  for (const rows of [part, flat]) for (let i = 0; i < rows.length; ++i) {
    low[i % 3] = Math.min(low[i % 3], rows[i]); high[i % 3] = Math.max(high[i % 3], rows[i]);
  }
  const centre = low.map((l, c) => 0.5 * (l + high[c]));
  const size = Math.hypot(high[0] - low[0], high[1] - low[1], high[2] - low[2]) || 1;
  const state = { turn: -0.5, tilt: 0.95, zoom: 2.8, stage: 1, sides: 1, times: 0 };

  function place(name, set) { set(gl.getUniformLocation(program, name)); }
  function draw() {
    const ratio = window.devicePixelRatio || 1;
    canvas.width = canvas.clientWidth * ratio; canvas.height = canvas.clientHeight * ratio;
    gl.viewport(0, 0, canvas.width, canvas.height);
    gl.clearColor(1, 1, 1, 1); gl.enable(gl.DEPTH_TEST); gl.clear(gl.COLOR_BUFFER_BIT | gl.DEPTH_BUFFER_BIT);
    const ct = Math.cos(state.turn), st = Math.sin(state.turn), ce = Math.cos(state.tilt), se = Math.sin(state.tilt);
    place("turn", (at) => gl.uniformMatrix3fv(at, false, [ct, st * ce, -st * se, -st, ct * ce, ct * -se, 0, se, ce]));
    place("centre", (at) => gl.uniform3fv(at, centre));
    place("scale", (at) => gl.uniform1f(at, state.zoom / size));
    place("stage", (at) => gl.uniform1f(at, state.stage));
    place("times", (at) => gl.uniform1f(at, state.times));
    place("sides", (at) => gl.uniform1f(at, state.sides));
    place("aspect", (at) => gl.uniform1f(at, canvas.width / canvas.height));
    gl.drawArrays(gl.TRIANGLES, 0, count);
  }
  const rgb = (hex) => [1, 3, 5].map((i) => parseInt(hex.substr(i, 2), 16));
  function colour(field) {
    const table = field.colours.map(rgb);
    for (let i = 0; i < count; ++i) {
      const value = field.values[element[Math.floor(i / 3)]];
      const c = field.ends ? scale(table, value / 255) : table[value];
      paint.set(c, 3 * i);
    }
    gl.bindBuffer(gl.ARRAY_BUFFER, paintBuffer);
    gl.bufferSubData(gl.ARRAY_BUFFER, 0, paint);
    document.getElementById("view-range").textContent = field.ends ? field.ends[0] + " (dark) to " + field.ends[1] + " (bright)" : "";
    draw();
  }
  function scale(table, share) {
    const at = Math.min(share * (table.length - 1), table.length - 1.000001), k = Math.floor(at);
    return table[k].map((v, c) => Math.round(v + (at - k) * (table[k + 1][c] - v)));
  }

  const choice = document.getElementById("view-field");
  fields.forEach((f, i) => choice.add(new Option(f.name, i)));
  choice.addEventListener("change", () => colour(fields[choice.value]));
  document.getElementById("view-stage").addEventListener("input", (e) => { state.stage = e.target.value / 100; draw(); });
  if (data.sprung) {
    // Steps: the part, then the true shape at a quarter of the way, then ever more of it.
    const slider = document.getElementById("view-sprung"), told = document.getElementById("view-times");
    const show = () => {
      const at = slider.value / 25;
      state.times = at <= 1 ? at : Math.pow(data.sprung.most, (at - 1) / 3);
      told.textContent = at === 0 ? "off" : state.times.toPrecision(2) + " times the deviation";
      draw();
    };
    slider.addEventListener("input", show);
    show();
  }
  document.getElementById("view-sides").addEventListener("change", (e) => { state.sides = e.target.checked ? 1 : 0; draw(); });
  canvas.addEventListener("pointermove", (e) => {
    if (!(e.buttons & 1)) return;
    state.turn += 0.01 * e.movementX; state.tilt += 0.01 * e.movementY; draw();
  });
  canvas.addEventListener("wheel", (e) => { state.zoom *= Math.exp(-0.001 * e.deltaY); e.preventDefault(); draw(); }, { passive: false });
  canvas.addEventListener("keydown", (e) => {
    const step = { ArrowLeft: [-0.1, 0, 1], ArrowRight: [0.1, 0, 1], ArrowUp: [0, -0.1, 1], ArrowDown: [0, 0.1, 1], "+": [0, 0, 1.1], "-": [0, 0, 0.9] }[e.key];
    if (!step) return;
    state.turn += step[0]; state.tilt += step[1]; state.zoom *= step[2]; e.preventDefault(); draw();
  });
  window.addEventListener("resize", draw);
  colour(fields[0]);
})();
</script>
)JS";

} // namespace voz::workbench

#endif
