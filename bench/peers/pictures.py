"""pictures.py URL COUNT FOLDER: fetches pictures one after the other over one connection and writes them, the way
a script would do it with the standard library; prints the seconds."""
import http.client
import sys
import time
import urllib.parse

url, count, folder = urllib.parse.urlsplit(sys.argv[1]), int(sys.argv[2]), sys.argv[3]
begin = time.perf_counter()
connection = http.client.HTTPConnection(url.netloc)
for number in range(count):
    connection.request("GET", f"{url.path}{number}-1-0.jpg")
    answer = connection.getresponse()
    body = answer.read()
    if answer.status != 200:
        sys.exit(f"status {answer.status}")
    with open(f"{folder}/{number}.jpg", "wb") as file:
        file.write(body)
print(f"{time.perf_counter() - begin:.4f}")
