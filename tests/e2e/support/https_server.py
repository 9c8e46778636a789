#!/usr/bin/env python3
# The https server of the download tests (LocalHttpsServer), on 127.0.0.1 at a free port,
# written to PORT_FILE once it listens. Every request is answered with FILE, or in the mode
# "redirect" with a redirect to REDIRECT + the request's path. It stops by itself when
# STOP_FILE appears or after SECONDS, whichever comes first.
#   https_server.py CERT KEY FILE MODE REDIRECT PORT_FILE STOP_FILE SECONDS
import http.server
import os
import ssl
import sys
import time

cert, key, served, mode, redirect, port_file, stop_file, seconds = sys.argv[1:9]


class Handler(http.server.BaseHTTPRequestHandler):
    def do_GET(self):
        if mode == "redirect":
            self.send_response(302)
            self.send_header("Location", redirect + self.path.lstrip("/"))
            self.send_header("Content-Length", "0")
            self.end_headers()
            return
        with open(served, "rb") as f:
            body = f.read()
        self.send_response(200)
        self.send_header("Content-Length", str(len(body)))
        self.end_headers()
        self.wfile.write(body)

    def log_message(self, *args):
        pass


server = http.server.HTTPServer(("127.0.0.1", 0), Handler)
context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
context.load_cert_chain(cert, key)
server.socket = context.wrap_socket(server.socket, server_side=True)
server.timeout = 0.2
with open(port_file + ".part", "w") as f:
    f.write(str(server.server_address[1]))
os.replace(port_file + ".part", port_file)
end = time.monotonic() + float(seconds)
while time.monotonic() < end and not os.path.exists(stop_file):
    try:
        server.handle_request()
    except (ssl.SSLError, OSError):
        pass  # a client that refused our certificate
