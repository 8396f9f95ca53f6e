#!/usr/bin/env python3
"""Weather answers that never end, or claim to be huge, or come slowly, on 127.0.0.1.

Runs `trotlet --weather-search` (the search answer is hostile) and `trotlet --weather-dump`
(a good search, then a hostile forecast) from outside, as a user would, and checks that an
endless or oversized answer is cut off and reported as a bad answer (not "You're offline"),
that a slow but valid answer still arrives, and that the harness stays under 60 MB resident
whatever the server sends. Prints the peak resident memory of each run.

Usage: hostile_answers.py <trotlet>
"""
import json
import os
import subprocess
import sys
import tempfile
import threading
import time
import urllib.parse
from http.server import BaseHTTPRequestHandler, ThreadingHTTPServer

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
import fake_open_meteo  # noqa: E402  (the valid answers)

RSS_LIMIT_KB = 60 * 1024
CHUNK = b"[1,2,3,4,5,6,7,8]," * 4096  # 72 KB of something JSON-like

modes = {}  # path -> "valid" | "endless" | "huge" | "slow"
sent = {}  # path -> body bytes the server wrote for the current case


class Handler(BaseHTTPRequestHandler):
    protocol_version = "HTTP/1.1"

    def do_GET(self):
        url = urllib.parse.urlsplit(self.path)
        params = urllib.parse.parse_qs(url.query)
        mode = modes.get(url.path, "valid")
        body = fake_open_meteo.search(params) if url.path == "/v1/search" else fake_open_meteo.forecast(params)
        data = json.dumps(body).encode()
        sent.setdefault(url.path, 0)
        self.send_response(200)
        self.send_header("Content-Type", "application/json")
        if mode == "endless":
            self.send_header("Connection", "close")  # the body ends when the connection does
        else:
            self.send_header("Content-Length", str(10**12 if mode == "huge" else len(data)))
        self.end_headers()
        try:
            if mode in ("endless", "huge"):
                self.wfile.write(b'{"results":[')
                while True:
                    self.wfile.write(CHUNK)
                    sent[url.path] += len(CHUNK)
            step = max(1, len(data) // 20) if mode == "slow" else len(data)
            for at in range(0, len(data), step):
                self.wfile.write(data[at:at + step])
                self.wfile.flush()
                sent[url.path] += len(data[at:at + step])
                if mode == "slow":
                    time.sleep(0.1)
        except (BrokenPipeError, ConnectionResetError):
            pass  # the client gave up, as it should
        self.close_connection = True

    def log_message(self, *args):
        pass


def run(trotlet, args, env):
    """Runs the harness; returns (exit status, stdout, stderr, peak RSS in KB, seconds)."""
    with tempfile.TemporaryFile() as out, tempfile.TemporaryFile() as err:
        start = time.monotonic()
        child = subprocess.Popen([trotlet, *args], stdout=out, stderr=err, env=env)
        _, status, usage = os.wait4(child.pid, 0)
        child.returncode = os.waitstatus_to_exitcode(status)
        elapsed = time.monotonic() - start
        out.seek(0)
        err.seek(0)
        return child.returncode, out.read().decode(), err.read().decode(), usage.ru_maxrss, elapsed


def main():
    trotlet = sys.argv[1]
    server = ThreadingHTTPServer(("127.0.0.1", 0), Handler)
    server.daemon_threads = True
    threading.Thread(target=server.serve_forever, daemon=True).start()
    base = "http://127.0.0.1:%d" % server.server_address[1]
    home = tempfile.TemporaryDirectory()
    env = dict(os.environ, LC_ALL="C.UTF-8", HOME=home.name + "/home", XDG_DATA_HOME=home.name + "/data",
               XDG_CONFIG_HOME=home.name + "/config", TROTLET_OPEN_METEO_GEOCODING=base + "/v1/search",
               TROTLET_OPEN_METEO_FORECAST=base + "/v1/forecast")
    env.pop("TROTLET_WEATHER_CACHE", None)

    bad_search = "trotlet: weather search failed: Unexpected answer from Open-Meteo\n"
    bad_forecast = "trotlet: forecast failed: Unexpected answer from Open-Meteo\n"
    cases = [  # harness, hostile path, mode, expected exit status, expected stderr (None: any)
        ("--weather-search", "/v1/search", "endless", 1, bad_search),
        ("--weather-search", "/v1/search", "huge", 1, bad_search),
        ("--weather-search", "/v1/search", "slow", 0, None),
        ("--weather-dump", "/v1/forecast", "endless", 1, bad_forecast),
        ("--weather-dump", "/v1/forecast", "huge", 1, bad_forecast),
        ("--weather-dump", "/v1/forecast", "slow", 0, None),
    ]
    failures = 0
    for harness, path, mode, expected_status, expected_err in cases:
        modes.clear()
        sent.clear()
        modes[path] = mode
        status, out, err, rss_kb, seconds = run(trotlet, [harness, "Berlin"], env)
        name = "%s, %s %s" % (harness, mode, path)
        print("%-40s exit %d, peak RSS %.1f MB, %.1f s, server wrote %d KB" %
              (name, status, rss_kb / 1024, seconds, sent.get(path, 0) // 1024))
        problems = []
        if status != expected_status:
            problems.append("exit status %d, expected %d" % (status, expected_status))
        if expected_err is not None and err != expected_err:
            problems.append("stderr %r" % err)
        if expected_status == 0 and "Berlin" not in out:
            problems.append("no answer: %r" % out[:300])
        if rss_kb > RSS_LIMIT_KB:
            problems.append("peak RSS %.1f MB over %d MB" % (rss_kb / 1024, RSS_LIMIT_KB // 1024))
        for p in problems:
            print("FAIL: %s: %s" % (name, p))
        failures += len(problems)
    server.shutdown()
    print("hostile answers: " + ("%d failure(s)" % failures if failures else "ok"))
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
