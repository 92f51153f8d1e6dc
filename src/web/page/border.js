// What the module asks of the page (src/web/page_in_browser.cpp). Compiled into the module's own script.
mergeInto(LibraryManager.library, {
  merlane_to_page: function (bytes, size) {
    Module["toPage"](JSON.parse(UTF8ToString(bytes, size)));
  },

  // Leaves the module until the page has something for it. Either the browser keeps the module's stack meanwhile and waits
  // for the promise (start.js), or the module unwinds its stack itself and is called anew.
  merlane_from_page__deps: ["malloc", "$bytesOfWords"],
  merlane_from_page: function (wait) {
    const words = () => Module["fromPage"](wait !== 0).then(bytesOfWords);
#if ASYNCIFY
    return Asyncify.handleAsync(words);
#else
    return words();
#endif
  },

  $bytesOfWords: function (words) {
    if (words === null) return 0;
    const size = lengthBytesUTF8(words) + 1;
    const bytes = _malloc(size);
    stringToUTF8(words, bytes, size);
    return bytes;
  },
});
