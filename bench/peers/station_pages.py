"""Fetches the pages of a station's report one after the other over one connection and drops them.

station_pages.py URL CONDITION: prints the seconds it took.
"""
import http.client
import json
import sys
import time
import urllib.parse


def main():
    url, condition = urllib.parse.urlsplit(sys.argv[1]), json.loads(sys.argv[2])
    connection = http.client.HTTPConnection(url.netloc)
    begin = time.monotonic()
    for page in range(1, condition["Rows"] // condition["PageSize"] + 1):
        connection.request("POST", url.path, json.dumps({**condition, "PageIndex": page}),
                           {"Content-Type": "application/json"})
        answer = connection.getresponse()
        body = answer.read()
        if answer.status != 200 or not body:
            sys.exit(f"page {page} answers {answer.status}")
    print(f"{time.monotonic() - begin:.4f}")


if __name__ == "__main__":
    main()
