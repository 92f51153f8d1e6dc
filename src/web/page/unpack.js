// What the page has of packed bytes, in texts: a character for a byte, as the character set of the page has it. Nothing of it
// is kept once it has been unpacked: neither the texts, nor the scripts in which they stand, nor the bytes.
"use strict";

let packedPieces = [];

function takePacked(text) {
  packedPieces.push(bytesOf(text));
  document.currentScript.remove();
}

/// Unpacks what has these sizes: the script of the page, which is run, what the compiler made, and the module. `start` takes
/// what gives the last two.
function unpackPage([pageSize, glueSize, moduleSize], start) {
  const packed = new Uint8Array(packedPieces.reduce((sum, piece) => sum + piece.length, 0));
  packedPieces.reduce((at, piece) => (packed.set(piece, at), at + piece.length), 0);
  packedPieces = null;
  const all = unpacked(packed, pageSize + glueSize + moduleSize);
  const text = (begin, size) => new TextDecoder().decode(all.subarray(begin, begin + size));
  document.body.append(Object.assign(document.createElement("script"), { textContent: text(0, pageSize) }));
  letGo(packed);
  start(() => text(pageSize, glueSize), () => all.subarray(pageSize + glueSize));
}

function bytesOf(text) {
  // Some bytes are characters from elsewhere in that set.
  const elsewhere = new TextDecoder("windows-1252").decode(Uint8Array.from({ length: 32 }, (_, i) => 128 + i));
  const bytes = new Uint8Array(text.length);
  for (let i = 0; i < text.length; ++i) {
    const code = text.charCodeAt(i);
    bytes[i] = code < 256 ? code : 128 + elsewhere.indexOf(text[i]);
  }
  return bytes;
}

/// The first `size` bytes of what was packed by LZMA, with the settings of tools/bundle_page.py (lc 3, lp 0, pb 0) and
/// without a header.
function unpacked(packed, size) {
  const out = new Uint8Array(size);
  let at = 5;
  // The coder's range, and the code in it: 32 bits without a sign.
  const coder = Uint32Array.of(0xffffffff, new DataView(packed.buffer, packed.byteOffset).getUint32(1));

  const even = (count) => new Uint16Array(count).fill(1024); // chances of a 0, of 2048
  const widen = () => {
    if (coder[0] >= 0x1000000) return;
    coder[0] <<= 8;
    coder[1] = (coder[1] << 8) | packed[at++];
  };
  const bit = (chances, i) => {
    const chance = chances[i], bound = (coder[0] >>> 11) * chance;
    if (coder[1] < bound) {
      coder[0] = bound;
      chances[i] = chance + ((2048 - chance) >> 5);
      widen();
      return 0;
    }
    coder[0] -= bound;
    coder[1] -= bound;
    chances[i] = chance - (chance >> 5);
    widen();
    return 1;
  };
  const evenBits = (count) => {
    let bits = 0;
    while (count-- > 0) {
      coder[0] >>>= 1;
      const one = coder[1] >= coder[0];
      if (one) coder[1] -= coder[0];
      bits = bits * 2 + (one ? 1 : 0);
      widen();
    }
    return bits;
  };
  const tree = (chances, begin, count) => {
    let node = 1;
    for (let i = 0; i < count; ++i) node = node * 2 + bit(chances, begin + node);
    return node - (1 << count);
  };
  const treeFromLowest = (chances, begin, count) => {
    let node = 1, bits = 0;
    for (let i = 0; i < count; ++i) {
      const one = bit(chances, begin + node);
      node = node * 2 + one;
      bits |= one << i;
    }
    return bits;
  };
  const lengthsOf = () => ({ choice: even(2), low: even(8), middle: even(8), high: even(256) });
  const lengthBy = ({ choice, low, middle, high }) =>
    bit(choice, 0) === 0 ? 2 + tree(low, 0, 3) : bit(choice, 1) === 0 ? 10 + tree(middle, 0, 3) : 18 + tree(high, 0, 8);

  const isMatch = even(12), isRepeated = even(12), isNotLast = even(12), isNotSecond = even(12), isNotThird = even(12);
  const isLong = even(12), literals = even(8 * 0x300), slots = even(4 * 64), near = even(128), aligned = even(16);
  const lengths = lengthsOf(), lengthsRepeated = lengthsOf();
  let state = 0, back = [0, 0, 0, 0]; // distances of the last matches, the latest first

  const literal = (n) => {
    const begin = 0x300 * (n > 0 ? out[n - 1] >> 5 : 0);
    let symbol = 1;
    if (state >= 7) { // behind a match: another byte is likely than the one that would continue it
      let other = out[n - back[0] - 1];
      while (symbol < 0x100) {
        const expected = (other >> 7) & 1;
        other <<= 1;
        const found = bit(literals, begin + ((1 + expected) << 8) + symbol);
        symbol = symbol * 2 + found;
        if (found !== expected) break;
      }
    }
    while (symbol < 0x100) symbol = symbol * 2 + bit(literals, begin + symbol);
    state = state < 4 ? 0 : state < 10 ? state - 3 : state - 6;
    return symbol;
  };
  const distance = (length) => {
    const slot = tree(slots, 64 * Math.min(length - 2, 3), 6);
    if (slot < 4) return slot;
    const count = (slot >> 1) - 1, begin = (2 | (slot & 1)) << count;
    if (slot < 14) return begin + treeFromLowest(near, begin - slot, count);
    return begin + evenBits(count - 4) * 16 + treeFromLowest(aligned, 0, 4);
  };
  /// How many bytes stand at the latest distance; 0 for a literal.
  const match = () => {
    if (bit(isMatch, state) === 0) return 0;
    if (bit(isRepeated, state) === 0) {
      const length = lengthBy(lengths);
      back = [distance(length), back[0], back[1], back[2]];
      state = state < 7 ? 7 : 10;
      return length;
    }
    if (bit(isNotLast, state) === 0) {
      if (bit(isLong, state) === 0) {
        state = state < 7 ? 9 : 11;
        return 1;
      }
    } else {
      const which = bit(isNotSecond, state) === 0 ? 1 : 2 + bit(isNotThird, state);
      back.unshift(...back.splice(which, 1));
    }
    const length = lengthBy(lengthsRepeated);
    state = state < 7 ? 8 : 11;
    return length;
  };

  for (let n = 0; n < size;) {
    const length = match();
    if (length === 0) {
      out[n] = literal(n);
      ++n;
    }
    for (const end = Math.min(n + length, size); n < end; ++n) out[n] = out[n - back[0] - 1];
  }
  return out;
}
