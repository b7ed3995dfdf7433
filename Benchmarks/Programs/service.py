"""How many requests a second the score service answers on one core, beside a bare handler of the same
library that sends the same bytes. By the processor time that each server takes, so that the clients
on the other cores don't count. Argument: the folder of the built programs."""
import http.client
import statistics
import subprocess
import time
from urllib.parse import urlparse

from measuring import BIN, cpu

ROUNDS = 5
SECONDS = 1.0
PATH = "/api/matches"


def start(command, text=b""):
    process = subprocess.Popen(command, stdin=subprocess.PIPE, stdout=subprocess.PIPE)
    process.stdin.write(text)
    process.stdin.close()
    url = urlparse(process.stdout.readline().decode().split()[-1])
    return process, http.client.HTTPConnection(url.hostname, url.port)


def get(connection):
    connection.request("GET", PATH)
    return connection.getresponse().read()


def rate(process, connection):
    count, before, end = 0, cpu(process.pid), time.monotonic() + SECONDS
    while time.monotonic() < end:
        get(connection)
        count += 1
    connection.close()  # it would not be kept while the other has its turn
    return count / (cpu(process.pid) - before)


def main():
    service, asking = start([BIN / "kestrow-score-service", "--port", "0"])
    body = get(asking)
    bare, asking_bare = start([BIN / "bare-service"], body)
    try:
        assert get(asking_bare) == body
        asking.close()
        asking_bare.close()
        pairs = [(rate(service, asking), rate(bare, asking_bare)) for _ in range(ROUNDS)]
    finally:
        for process in (service, bare):
            process.terminate()
            process.wait()
    ours, other = (statistics.median(values) for values in zip(*pairs))
    shares = [a / b for a, b in pairs]
    print(f"- the score service answers {ours:,.0f} requests a second on one core, a bare handler "
          f"{other:,.0f}: {statistics.median(shares):.2f} ({min(shares):.2f}–{max(shares):.2f}) of it, "
          f"with a list of {len(body):,} bytes")


main()
