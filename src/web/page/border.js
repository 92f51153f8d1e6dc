// What the module asks of the page (src/web/page.cpp). Compiled into the module's own script.
mergeInto(LibraryManager.library, {
  merlane_to_page: function (bytes, size) {
    Module["toPage"](JSON.parse(UTF8ToString(bytes, size)));
  },

  // Leaves the module until the page has something for it; the promise is waited for by the browser, which keeps the
  // module's stack meanwhile (start.js).
  merlane_from_page__deps: ["malloc"],
  merlane_from_page: function (wait) {
    return Module["fromPage"](wait !== 0).then(function (words) {
      if (words === null) return 0;
      const size = lengthBytesUTF8(words) + 1;
      const bytes = _malloc(size);
      stringToUTF8(words, bytes, size);
      return bytes;
    });
  },
});
