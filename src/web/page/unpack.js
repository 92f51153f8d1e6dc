// Bytes out of a text of the page: seven bits to a character. Base 64 would make the file a sixth longer.
"use strict";

/// What stands for a character that a script cannot hold in quotes is a higher one, which says which of them it is, and the
/// seven bits that follow (tools/bundle_page.py writes it so).
function bytesOf(text) {
  const unfit = [0, 10, 13, 34, 60, 92];
  const bytes = new Uint8Array(Math.floor((text.length * 14) / 8) + 2);
  let size = 0, bits = 0, held = 0;
  const take = (seven) => {
    bits = (bits << 7) | seven;
    held += 7;
    if (held < 8) return;
    held -= 8;
    bytes[size++] = bits >> held;
    bits &= (1 << held) - 1;
  };
  for (let i = 0; i < text.length; ++i) {
    const code = text.charCodeAt(i);
    if (code < 128) {
      take(code);
    } else {
      take(unfit[(code - 128) >> 7]);
      take(code & 127);
    }
  }
  return bytes.subarray(0, size);
}

/// What was compressed by gzip into so many bytes, as a response that can be read as text or bytes.
function unpacked(text, size) {
  const packed = new Blob([bytesOf(text).subarray(0, size)]);
  return new Response(packed.stream().pipeThrough(new DecompressionStream("gzip")));
}
