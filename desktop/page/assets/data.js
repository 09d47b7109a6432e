// What the page carries: a description as JSON, all numbers behind one another as little-endian float64 in base64.

function byteArray(base64) {
  const text = atob(base64.trim());
  const bytes = new Uint8Array(text.length);
  for (let i = 0; i < text.length; ++i)
    bytes[i] = text.charCodeAt(i);
  return bytes;
}

/// The description; its `columns` are arrays of numbers, which items name by their places.
function readDocument() {
  const description = JSON.parse(document.getElementById('page-data').textContent);
  const buffer = byteArray(document.getElementById('page-numbers').textContent).buffer;
  description.columns = description.columns.map(([first, count]) => new Float64Array(buffer, first * 8, count));
  return description;
}

/// An element with attributes and children; texts become text, never markup.
function make(name, attributes, ...children) {
  const isSvg = name.startsWith('svg:');
  const element = isSvg ? document.createElementNS('http://www.w3.org/2000/svg', name.slice(4))
                        : document.createElement(name);
  for (const [key, value] of Object.entries(attributes || {})) {
    if (value === true)
      element.setAttribute(key, '');
    else if (value !== false && value !== null && value !== undefined)
      element.setAttribute(key, value);
  }
  element.append(...children.filter(child => child !== null && child !== undefined && child !== ''));
  return element;
}
