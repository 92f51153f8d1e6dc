// Drawings as the program makes them, in SVG: fitted to their place, and saved.
"use strict";

const unitsPerPixel = 15; // of a drawing

/// Shows a drawing. One that stretches fills its place, so that what stands at the ends of its axes is below them; its
/// points stay round and its letters upright.
function showDrawing(element, svg) {
  element.innerHTML = svg.slice(svg.indexOf("<svg"));
  if (!element.classList.contains("stretches") || !element.firstChild) return;
  const drawing = element.firstChild;
  drawing.setAttribute("preserveAspectRatio", "none");
  for (const shape of drawing.querySelectorAll("line, rect, circle")) {
    shape.setAttribute("vector-effect", "non-scaling-stroke");
    const width = Number(shape.getAttribute("stroke-width")) / unitsPerPixel;
    if (width) shape.setAttribute("stroke-width", Math.max(1.2, width));
    const dashes = shape.getAttribute("stroke-dasharray");
    if (dashes) shape.setAttribute("stroke-dasharray", dashes.split(" ").map((dash) => dash / unitsPerPixel).join(" "));
  }
  element.sized = element.sized || new ResizeObserver(() => keepShapes(element));
  element.sized.observe(element);
  keepShapes(element);
}

function keepShapes(element) {
  const drawing = element.firstChild;
  if (!drawing || !drawing.viewBox || element.clientWidth === 0) return;
  const { width, height } = drawing.viewBox.baseVal;
  const across = element.clientWidth / width, down = element.clientHeight / height, even = Math.min(across, down);
  for (const shape of drawing.querySelectorAll("circle, text")) {
    const x = shape.getAttribute("cx") || shape.getAttribute("x"), y = shape.getAttribute("cy") || shape.getAttribute("y");
    shape.setAttribute("transform",
                       `translate(${x} ${y}) scale(${even / across} ${even / down}) translate(${-x} ${-y})`);
  }
}

/// The button by which the drawing of a window is saved.
function savePictureButton(form, told) {
  return make("button", { type: "button", class: "save-picture", data: { key: "s" }, onclick: () => {
    const { svg } = told();
    if (svg) files.hand(`${form.slice(3)}.svg`, new Blob([svg], { type: "image/svg+xml" }));
    else say("There is no drawing to be saved yet.");
  } }, make("u", {}, "S"), "ave picture");
}
