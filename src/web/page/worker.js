// Keeps the pieces of the page, so that it opens without the net; those of another version take their place as a whole.
"use strict";

const kept = "merlane @VERSION@";
const pieces = @PIECES@;

self.addEventListener("install", (event) => event.waitUntil(
  caches.open(kept).then((cache) => cache.addAll(pieces)).then(() => self.skipWaiting())));
self.addEventListener("activate", (event) => event.waitUntil(
  caches.keys().then((names) => Promise.all(names.filter((name) => name !== kept).map((name) => caches.delete(name))))
    .then(() => self.clients.claim())));
self.addEventListener("fetch", (event) => event.respondWith(
  caches.match(event.request, { ignoreSearch: true }).then((found) => found || fetch(event.request))));
