#!/usr/bin/python3
"""A mail server for the tests, on the loopback, until its input ends.

It prints "PORT n", then a line of JSON for each mail that it has taken, as Python's own parser reads it, and, as a server
that follows a script, one for each connection that has ended: what it heard.
"""
import argparse
import asyncio
import base64
import email
import email.policy
import hashlib
import json
import logging
import ssl
import sys
import warnings

from aiosmtpd.smtp import SMTP, AuthResult, LoginPassword

USER, PASSWORD = b"tester@example.org", b"correct horse"


def tell(value):
    print(json.dumps(value), flush=True)


def part_of(part):
    content = part.get_payload(decode=True)
    return {"type": part.get_content_type(), "charset": part.get_content_charset(), "name": part.get_filename(),
            "size": len(content), "sha256": hashlib.sha256(content).hexdigest(),
            "content": base64.b64encode(content).decode() if len(content) < 100_000 else None}


def described(server, session, envelope):
    content = envelope.original_content
    mail = email.message_from_bytes(content, policy=email.policy.default)
    lines = content.split(b"\n")
    return {"from": envelope.mail_from, "recipients": envelope.rcpt_tos, 
            "tls": server.transport.get_extra_info("sslcontext") is not None,
            "greeting": session.host_name,
            "login": session.auth_data.login.decode() if session.authenticated else None,
            "headers": [[name, str(value)] for name, value in mail.items()],
            "parts": [part_of(part) for part in mail.walk() if not part.is_multipart()],
            "longestLine": max(len(line) for line in lines),
            "bareLineEnds": content.replace(b"\r\n", b"").count(b"\n") + content.replace(b"\r\n", b"").count(b"\r")}


class Handler:
    def __init__(self, options):
        self.options = options

    async def handle_RCPT(self, server, session, envelope, address, options):
        if self.options.reject == "recipient":
            return "550 5.1.1 nobody of this name \x1b[31mhere"
        envelope.rcpt_tos.append(address)
        return "250 OK"

    async def handle_MAIL(self, server, session, envelope, address, options):
        if self.options.reject == "sender":
            return "553 5.7.1 not yours"
        envelope.mail_from = address
        return "250 OK"

    async def handle_DATA(self, server, session, envelope):
        if self.options.reject == "content":
            return "554 5.7.1 this looks like spam"
        tell(described(server, session, envelope))
        return "250 OK"


def authenticate(server, session, envelope, mechanism, data):
    right = isinstance(data, LoginPassword) and data.login == USER and data.password == PASSWORD
    # Not "handled": otherwise the client never hears of a wrong password.
    return AuthResult(success=right, handled=False, auth_data=data)


async def serve_mails(options):
    context = None
    if options.tls != "none":
        context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
        context.load_cert_chain(options.certificate)
    starttls = options.tls == "starttls"

    def protocol():
        return SMTP(Handler(options), hostname="mail.test", data_size_limit=options.size,
                    tls_context=context if starttls else None, require_starttls=starttls,
                    authenticator=authenticate, auth_required=options.login,
                    auth_require_tls=starttls, auth_exclude_mechanism=[])
    return await asyncio.get_running_loop().create_server(
        protocol, "127.0.0.1", 0, ssl=context if options.tls == "tls" else None)


class Script:
    """Answers as a server without encryption; at one step it falls silent, breaks off, or stops reading."""

    ANSWERS = {b"EHLO": b"250-mail.test\r\n250 AUTH PLAIN LOGIN\r\n", b"DATA": b"354 go on\r\n", b"AUTH": b"235 OK\r\n",
               b"QUIT": b"221 bye\r\n"}

    def __init__(self, options):
        self.step, self.then = options.at, options.then
        self.answers = dict(self.ANSWERS)
        if options.no_login:
            self.answers[b"EHLO"] = b"250 mail.test\r\n"

    async def serve(self, reader, writer):
        heard = bytearray()
        try:
            await self.talk(reader, writer, heard)
            if self.step != "never" and self.then != "break":
                tell({"reached": self.step})
                if self.then == "silent":
                    while more := await reader.read(65536):
                        heard += more
                else:  # stall: what is sent fills the buffers on the way
                    await asyncio.Event().wait()
        except (ConnectionError, asyncio.IncompleteReadError):
            pass
        finally:
            writer.transport.abort()
            tell({"heard": bytes(heard[:20_000]).decode("latin-1"), "bytes": len(heard)})

    async def talk(self, reader, writer, heard):
        if self.step == "greeting":
            return
        writer.write(b"220 mail.test ESMTP\r\n")
        while line := await reader.readline():
            heard += line
            verb = line[:4].upper()
            if self.step.encode() == verb:
                return
            writer.write(self.answers.get(verb, b"250 OK\r\n"))
            if verb == b"DATA":
                if self.step == "content":
                    heard += await reader.readexactly(100_000)
                    return
                while (line := await reader.readline()) not in (b".\r\n", b""):
                    heard += line
                if self.step == "end":
                    return
                writer.write(b"250 OK\r\n")


async def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--tls", choices=("none", "starttls", "tls"), default="none")
    parser.add_argument("--certificate", help="a file with certificate and key")
    parser.add_argument("--login", action="store_true")
    parser.add_argument("--reject", choices=("sender", "recipient", "content"))
    parser.add_argument("--size", type=int, default=60_000_000)
    parser.add_argument("--no-login", action="store_true", help="a script that offers no login")
    parser.add_argument("--at", help="greeting, a command, content, end, never: follows a script")
    parser.add_argument("--then", choices=("silent", "break", "stall"), default="silent")
    options = parser.parse_args()
    # What it thinks of connections that are broken off, and of logins without encryption, is what the tests are about.
    logging.getLogger("mail.log").setLevel(logging.CRITICAL + 1)
    warnings.simplefilter("ignore")
    if options.at:
        server = await asyncio.start_server(Script(options).serve, "127.0.0.1", 0)
    else:
        server = await serve_mails(options)
    print("PORT", server.sockets[0].getsockname()[1], flush=True)
    await asyncio.get_running_loop().run_in_executor(None, sys.stdin.read)
    server.close()

asyncio.run(main())
