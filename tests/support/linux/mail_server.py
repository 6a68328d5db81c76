"""A mail server on the loopback that takes every message, or fails as it is told to.

mail_server.py FOLDER [--tls starttls|smtps] [--refuse STAGE] [--hang STAGE] [--delay SECONDS] [--login USER:PASSWORD]

STAGE: connect, ehlo, rcpt, data, end (behind the message), quit. FOLDER holds key.pem and cert.pem where TLS is asked
for; FOLDER/port is written when the server listens, FOLDER/mail.json when a message is there, FOLDER/hangs before it
hangs.
"""

import argparse
import asyncio
import email
import email.policy
import json
import logging
import os
import ssl

from aiosmtpd.smtp import SMTP, AuthResult

arguments = argparse.ArgumentParser()
arguments.add_argument("folder")
arguments.add_argument("--tls")
arguments.add_argument("--refuse")
arguments.add_argument("--hang")
arguments.add_argument("--delay", type=float, default=0)
arguments.add_argument("--login")
options = arguments.parse_args()
logging.disable(logging.CRITICAL)  # clients that go away are what tests are about


def put(name, text):
    path = os.path.join(options.folder, name)
    with open(path + ".new", "w") as out:
        out.write(text)
    os.rename(path + ".new", path)


async def stage(name):
    if options.hang == name:
        put("hangs", "")
        await asyncio.sleep(3600)
    return options.refuse == name


def part_text(part):
    return {
        "type": part.get_content_type(),
        "name": part.get_filename(),
        "defects": [str(defect) for defect in part.defects],
        "bytes": part.get_payload(decode=True).hex() if not part.is_multipart() else "",
    }


class Handler:
    async def handle_RCPT(self, server, session, envelope, address, rcpt_options):
        if await stage("rcpt"):
            return "550 5.1.1 \x1b[31mNobody\x07 of that name"
        envelope.rcpt_tos.append(address)
        return "250 OK"

    async def handle_DATA(self, server, session, envelope):
        raw = envelope.original_content
        message = email.message_from_bytes(raw, policy=email.policy.default)
        headers = {name: str(value) for name, value in message.items()}
        lines = raw.split(b"\r\n")
        record = {
            "from": envelope.mail_from,
            "to": envelope.rcpt_tos,
            "tls": server.transport.get_extra_info("sslcontext") is not None,
            "user": session.auth_data,
            "headers": headers,
            "date": message["Date"].datetime.timestamp(),
            "longest": max(map(len, lines)),
            "bare": sum(b"\n" in line or b"\r" in line for line in lines),
            "eight_bit": any(byte > 127 for byte in raw),
            "parts": [part_text(part) for part in message.walk() if not part.is_multipart()],
            "defects": [str(defect) for part in message.walk() for defect in part.defects]
            + [str(defect) for value in message.values() for defect in value.defects],
        }
        put("mail.json", json.dumps(record))
        return "554 5.7.1 Not today" if await stage("end") else "250 OK"


class Server(SMTP):
    line_length_limit = 1001

    async def push(self, status):
        await asyncio.sleep(options.delay)
        await super().push(status)

    async def _handle_client(self):
        if await stage("connect"):
            await self.push("554 5.3.2 Closed")
            self.transport.close()
            return
        await super()._handle_client()

    async def smtp_EHLO(self, name):
        if await stage("ehlo"):
            await self.push("554 5.7.1 Not from you")
        else:
            await super().smtp_EHLO(name)

    async def smtp_HELO(self, name):
        if await stage("ehlo"):
            await self.push("554 5.7.1 Not from you")
        else:
            await super().smtp_HELO(name)

    async def smtp_DATA(self, text):
        if await stage("data"):
            await self.push("452 4.3.1 The disk is full")
        else:
            await super().smtp_DATA(text)

    async def smtp_QUIT(self, text):
        await stage("quit")
        await super().smtp_QUIT(text)


def check_login(server, session, envelope, mechanism, data):
    given = data.login.decode() + ":" + data.password.decode()
    return AuthResult(success=given == options.login, handled=False, auth_data=data.login.decode())


async def main():
    context = None
    if options.tls:
        context = ssl.create_default_context(ssl.Purpose.CLIENT_AUTH)
        context.load_cert_chain(*(os.path.join(options.folder, name) for name in ("cert.pem", "key.pem")))
    loop = asyncio.get_running_loop()

    def connected():
        return Server(
            Handler(),
            hostname="localhost",
            loop=loop,
            data_size_limit=2**26,
            tls_context=context if options.tls == "starttls" else None,
            require_starttls=options.tls == "starttls",
            auth_required=bool(options.login),
            auth_require_tls=options.tls == "starttls",
            authenticator=check_login,
        )

    listener = await loop.create_server(connected, "127.0.0.1", 0, ssl=context if options.tls == "smtps" else None)
    put("port", str(listener.sockets[0].getsockname()[1]))
    await listener.serve_forever()


asyncio.run(main())
