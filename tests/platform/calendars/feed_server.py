#!/usr/bin/env python3
"""A calendar feed server on loopback for the subscription tests.

Prints its port on the first line, then serves until stdin closes. Every path answers with a
behaviour the test sets through /control/<path>?mode=...&body=...:

  ok        200 with the body, an ETag and Last-Modified; a matching If-None-Match or
            If-Modified-Since gets 304
  html      200 with an HTML error page
  status    the status code given in &code=
  slow      waits longer than any test timeout before answering
  big       sends &size= bytes (announced with Content-Length unless &announce=0)
  redirect  302 to &to=

/log/<path> answers with the request headers seen for that path, as JSON lines.
"""
import json
import sys
import threading
import time
from http.server import BaseHTTPRequestHandler, ThreadingHTTPServer
from urllib.parse import parse_qs, urlparse

modes = {}
log = {}
lock = threading.Lock()


class Handler(BaseHTTPRequestHandler):
    protocol_version = "HTTP/1.1"

    def log_message(self, *args):
        pass

    def answer(self, code, body=b"", headers=()):
        self.send_response(code)
        for name, value in headers:
            self.send_header(name, value)
        if code != 304:
            self.send_header("Content-Length", str(len(body)))
        self.end_headers()
        if code != 304:
            self.wfile.write(body)

    def do_GET(self):
        url = urlparse(self.path)
        query = {k: v[0] for k, v in parse_qs(url.query).items()}
        if url.path.startswith("/control/"):
            with lock:
                modes["/" + url.path[len("/control/"):]] = query
            return self.answer(200, b"ok")
        if url.path.startswith("/log/"):
            with lock:
                lines = log.get("/" + url.path[len("/log/"):], [])
            return self.answer(200, "\n".join(json.dumps(l) for l in lines).encode())
        with lock:
            mode = dict(modes.get(url.path, {"mode": "status", "code": "404"}))
            log.setdefault(url.path, []).append(dict(self.headers.items()))
        kind = mode.get("mode")
        if kind == "ok":
            body = mode.get("body", "").encode()
            etag = '"%d"' % (hash(body) & 0xFFFFFF)
            modified = "Mon, 02 Mar 2026 10:00:00 GMT"
            if self.headers.get("If-None-Match") == etag or (
                not self.headers.get("If-None-Match")
                and self.headers.get("If-Modified-Since") == modified
            ):
                return self.answer(304, headers=[("ETag", etag)])
            return self.answer(200, body, [("Content-Type", "text/calendar"), ("ETag", etag),
                                           ("Last-Modified", modified)])
        if kind == "html":
            return self.answer(200, b"<html><body>Sign in first</body></html>",
                               [("Content-Type", "text/html")])
        if kind == "status":
            return self.answer(int(mode.get("code", "500")), b"no")
        if kind == "slow":
            time.sleep(float(mode.get("seconds", "10")))
            return self.answer(200, b"late")
        if kind == "big":
            size = int(mode.get("size", "0"))
            self.send_response(200)
            if mode.get("announce", "1") == "1":
                self.send_header("Content-Length", str(size))
            else:
                self.send_header("Connection", "close")
            self.end_headers()
            chunk = b"X" * 65536
            try:
                while size > 0:
                    self.wfile.write(chunk[: min(size, len(chunk))])
                    size -= len(chunk)
            except (BrokenPipeError, ConnectionResetError):
                pass
            return
        if kind == "redirect":
            return self.answer(302, b"", [("Location", mode.get("to", "/"))])
        return self.answer(400, b"unknown mode")


def main():
    server = ThreadingHTTPServer(("127.0.0.1", 0), Handler)
    server.daemon_threads = True
    print(server.server_address[1], flush=True)
    threading.Thread(target=server.serve_forever, daemon=True).start()
    sys.stdin.read()  # the test closes stdin (or ends) to stop the server
    server.shutdown()


if __name__ == "__main__":
    main()
