// What a person does, on its way to the program: deeds stand in a queue until the program waits or gives a turn.
"use strict";

const deeds = {
  queue: [],
  wake: null, // of the program that waits
  between: "\x1f",

  /// Hands over what was done, as src/web/deeds.cpp reads it.
  put(...words) {
    deeds.queue.push(words.map((word) => String(word).replaceAll(deeds.between, "")).join(deeds.between));
    if (deeds.wake) deeds.wake();
  },

  /// The next deed for the program, when there is one; without waiting, null after the browser had a moment for itself.
  async next(wait) {
    if (wait && deeds.queue.length === 0) {
      windows.keepKeys();
      await new Promise((resolve) => (deeds.wake = resolve));
      deeds.wake = null;
    } else if (!wait) {
      await deeds.moment();
    }
    return deeds.queue.length > 0 ? deeds.queue.shift() : null;
  },

  /// Lets the browser paint and take what was pressed: a timer would be slowed down where the page is in the background.
  moment() {
    return new Promise((resolve) => {
      const channel = new MessageChannel();
      channel.port1.onmessage = () => {
        channel.port1.close();
        resolve();
      };
      channel.port2.postMessage(0);
    });
  },
};
