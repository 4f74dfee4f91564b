#include "tests/unit/HttpTestServer.h"
#include "ZellNetLinkHost/HttpClient.h"

#include <gtest/gtest.h>

#include <atomic>
#include <future>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace {

using ZellNetLink::HttpClient;
using ZellNetLink::HttpRequest;
using ZellNetLink::HttpResponse;

constexpr int kCurlTimedOut = 28;

HttpResponse Get(const std::string& url)
{
    HttpRequest request;
    request.url = url;
    return HttpClient::Instance().Perform(request);
}

void ExpectError(const HttpResponse& response, int module, int code)
{
    EXPECT_EQ(response.error.iFirstCode, module);
    EXPECT_EQ(response.error.iSecondCode, code);
}

TestReply Echo(const TestRequest& request)
{
    return Answer(200, request.method + " " + request.target + " " + request.body);
}

// Lets handlers wait until the test says so.
class Gate
{
public:
    void Open() { opened_.set_value(); }
    void Wait() { future_.wait(); }

private:
    std::promise<void> opened_;
    std::shared_future<void> future_ = opened_.get_future().share();
};

TEST(HttpClient, ABodyArrivesWithStatusHeadersAndHeadroom)
{
    HttpTestServer server([](const TestRequest&) {
        return Answer(200, "hello", "X-One: a\r\nx-ONE: b\r\nContent-Type: text/plain\r\n");
    });
    const HttpResponse response = Get(server.Url("/"));
    ExpectError(response, 0, 0);
    EXPECT_EQ(response.status, 200);
    EXPECT_EQ(response.body, "hello");
    EXPECT_EQ(response.headers.at("x-one"), "a, b");
    EXPECT_EQ(response.headers.at("content-type"), "text/plain");
    EXPECT_GE(response.body.capacity(), response.body.size() + 64);
}

TEST(HttpClient, MethodBodyAccountAndHeadersAreSent)
{
    HttpTestServer server(Echo);
    HttpRequest request;
    request.method = "POST";
    request.url = server.Url("/api");
    request.body = "{\"a\":1}";
    request.headers = {"Content-Type: application/json"};
    request.user = "kim";
    request.password = "p:w";
    const HttpResponse response = HttpClient::Instance().Perform(request);
    EXPECT_EQ(response.body, "POST /api {\"a\":1}");
    const TestRequest seen = server.Requests().at(0);
    EXPECT_EQ(seen.headers.at("content-type"), "application/json");
    EXPECT_EQ(seen.headers.at("authorization"), "Basic a2ltOnA6dw==");
    EXPECT_EQ(seen.headers.count("accept-encoding"), 0U);
}

TEST(HttpClient, EveryMethodKeepsItsName)
{
    HttpTestServer server(Echo);
    for (const char* method : {"GET", "POST", "PUT", "DELETE", "PATCH"}) {
        for (const char* body : {"", "x"}) {
            HttpRequest request;
            request.method = method;
            request.url = server.Url("/m");
            request.body = body;
            EXPECT_EQ(HttpClient::Instance().Perform(request).body, std::string(method) + " /m " + body);
        }
    }
}

TEST(HttpClient, HeadHasNoBody)
{
    HttpTestServer server([](const TestRequest&) {
        return TestReply{"HTTP/1.1 200 OK\r\nContent-Length: 1000\r\n\r\n", false};
    });
    HttpRequest request;
    request.method = "HEAD";
    request.url = server.Url("/");
    const HttpResponse response = HttpClient::Instance().Perform(request);
    ExpectError(response, 0, 0);
    EXPECT_EQ(response.headers.at("content-length"), "1000");
}

TEST(HttpClient, ConnectionsAreKept)
{
    HttpTestServer server(Echo);
    for (int i = 0; i < 5; ++i)
        ExpectError(Get(server.Url("/")), 0, 0);
    EXPECT_EQ(server.Connections(), 1);
}

TEST(HttpClient, ConnectionsOfSeveralServersAreKept)
{
    HttpTestServer one(Echo);
    HttpTestServer other(Echo);
    for (int i = 0; i < 5; ++i) {
        ExpectError(Get(one.Url("/")), 0, 0);
        ExpectError(Get(other.Url("/")), 0, 0);
    }
    EXPECT_EQ(one.Connections(), 1);
    EXPECT_EQ(other.Connections(), 1);
}

TEST(HttpClient, BlanksAndForeignLettersOfAUrlAreEncoded)
{
    HttpTestServer server(Echo);
    EXPECT_EQ(Get(server.Url("/a b/\xC3\xA9?q=%20<x>")).body, "GET /a%20b/%C3%A9?q=%20%3Cx%3E ");
}

TEST(HttpClient, AStatusThatIsNoSuccessIsAnErrorOfModule21WithTheServersText)
{
    HttpTestServer server([](const TestRequest&) { return Answer(404, "not here"); });
    const HttpResponse response = Get(server.Url("/"));
    ExpectError(response, 21, 404);
    EXPECT_EQ(response.body, "not here");
    HttpTestServer unchanged([](const TestRequest&) { return Answer(304, ""); });
    ExpectError(Get(unchanged.Url("/")), 21, 304);
}

TEST(HttpClient, ASinkSeesNoBodyOfAFailure)
{
    HttpTestServer server([](const TestRequest&) { return Answer(500, "trouble"); });
    HttpRequest request;
    request.url = server.Url("/");
    bool called = false;
    request.sink = [&called](std::int64_t, const char*, std::size_t) { return called = true; };
    ExpectError(HttpClient::Instance().Perform(request), 21, 500);
    EXPECT_FALSE(called);
}

TEST(HttpClient, WhatCannotBeReachedIsAnErrorOfModule22)
{
    std::string url;
    {
        const HttpTestServer server(Echo);
        url = server.Url("/");
    }
    ExpectError(Get(url), 22, 7);
    ExpectError(Get("http://"), 22, 3);
    ExpectError(Get("ftp://127.0.0.1/"), 22, 1);
    ExpectError(Get("file:///etc/passwd"), 22, 1);
    ExpectError(Get(""), 22, 3);
}

TEST(HttpClient, AMethodOrHeaderThatWouldSplitTheRequestIsRefused)
{
    HttpTestServer server(Echo);
    HttpRequest request;
    request.url = server.Url("/");
    request.method = "GET / HTTP/1.1\r\nX: y";
    ExpectError(HttpClient::Instance().Perform(request), 22, 43);
    request.method = "GET";
    request.headers = {"A: b\r\nC: d"};
    ExpectError(HttpClient::Instance().Perform(request), 22, 43);
    EXPECT_TRUE(server.Requests().empty());
}

TEST(HttpClient, ACutBodyIsNotWhole)
{
    HttpTestServer server([](const TestRequest&) {
        return TestReply{"HTTP/1.1 200 OK\r\nContent-Length: 100\r\n\r\nonly this", true};
    });
    ExpectError(Get(server.Url("/")), 22, 18);
    HttpTestServer chunked([](const TestRequest&) {
        return TestReply{"HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n5\r\nhello\r\n", true};
    });
    const HttpResponse response = Get(chunked.Url("/"));
    EXPECT_EQ(response.error.iFirstCode, 22);
}

TEST(HttpClient, GarbageIsNoAnswer)
{
    HttpTestServer server([](const TestRequest&) {
        return TestReply{std::string("\x16\x03garbage\r\n\r\n", 13), true};
    });
    EXPECT_EQ(Get(server.Url("/")).error.iFirstCode, 22);
    HttpTestServer silent([](const TestRequest&) { return TestReply{"", true}; });
    ExpectError(Get(silent.Url("/")), 22, 52);
}

TEST(HttpClient, AHeadWithoutEndIsRefused)
{
    HttpTestServer server([](const TestRequest&) {
        std::string head = "HTTP/1.1 200 OK\r\n";
        for (int i = 0; i < 1000; ++i)
            head += "X-" + std::to_string(i) + ": " + std::string(300, 'x') + "\r\n";
        return TestReply{head + "\r\n", true};
    });
    ExpectError(Get(server.Url("/")), 23, ZellNetLink::AnswerTooLarge);
}

TEST(HttpClient, AnAnswerThatIsTooLargeEndsTheTransfer)
{
    HttpTestServer server([](const TestRequest& request) {
        if (request.target == "/announced")
            return Answer(200, std::string(101, 'x'));
        return TestReply{"HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n65\r\n" +
                             std::string(101, 'x') + "\r\n0\r\n\r\n",
                         false};
    });
    HttpRequest request;
    request.max_body = 100;
    for (const char* target : {"/announced", "/chunked"}) {
        request.url = server.Url(target);
        ExpectError(HttpClient::Instance().Perform(request), 23, ZellNetLink::AnswerTooLarge);
    }
    request.max_body = 101;
    ExpectError(HttpClient::Instance().Perform(request), 0, 0);
}

TEST(HttpClient, ALengthThatLiesReservesNoMemory)
{
    HttpTestServer server([](const TestRequest&) {
        return TestReply{"HTTP/1.1 200 OK\r\nContent-Length: 1073741824\r\n\r\nsmall", true};
    });
    const HttpResponse response = Get(server.Url("/"));
    ExpectError(response, 22, 18);
    EXPECT_LE(response.body.capacity(), 65U << 20);
}

TEST(HttpClient, ASlowAnswerEndsWithTheTimeout)
{
    Gate gate;
    HttpTestServer server([&gate](const TestRequest&) {
        gate.Wait();
        return Answer(200, "late");
    });
    HttpRequest request;
    request.url = server.Url("/");
    request.timeout_ms = 50;
    ExpectError(HttpClient::Instance().Perform(request), 22, kCurlTimedOut);
    gate.Open();
}

TEST(HttpClient, RedirectsAreFollowedFiveTimesAtMost)
{
    HttpTestServer server([](const TestRequest& request) {
        const int left = std::stoi(request.target.substr(1));
        if (left == 0)
            return Answer(200, "there");
        return Answer(302, "ignored", "Location: /" + std::to_string(left - 1) + "\r\n");
    });
    EXPECT_EQ(Get(server.Url("/5")).body, "there");
    ExpectError(Get(server.Url("/6")), 22, 47);
}

TEST(HttpClient, ARedirectLeavesHttpNowhere)
{
    HttpTestServer server(
        [](const TestRequest&) { return Answer(302, "", "Location: file:///etc/passwd\r\n"); });
    const HttpResponse response = Get(server.Url("/"));
    ExpectError(response, 22, 1);
    EXPECT_EQ(response.body, "");
}

TEST(HttpClient, ARedirectTakesTheAccountToNoOtherHost)
{
    HttpTestServer other(Echo);
    HttpTestServer server(
        [&other](const TestRequest&) { return Answer(302, "", "Location: " + other.Url("/x") + "\r\n"); });
    HttpRequest request;
    request.url = server.Url("/");
    request.user = "kim";
    request.password = "secret";
    ExpectError(HttpClient::Instance().Perform(request), 0, 0);
    EXPECT_EQ(server.Requests().at(0).headers.count("authorization"), 1U);
    EXPECT_EQ(other.Requests().at(0).headers.count("authorization"), 0U);
}

struct Received
{
    std::int64_t start = -1;
    std::string bytes;
};

HttpResponse GetFrom(const std::string& url, std::int64_t from, Received& received)
{
    HttpRequest request;
    request.url = url;
    request.range_from = from;
    request.sink = [&received](std::int64_t start, const char* data, std::size_t size) {
        received.start = start;
        received.bytes.append(data, size);
        return true;
    };
    return HttpClient::Instance().Perform(request);
}

TEST(HttpRange, APartIsTrustedByItsContentRange)
{
    HttpTestServer server(
        [](const TestRequest&) { return Answer(206, "3456789", "Content-Range: bytes 3-9/10\r\n"); });
    Received received;
    ExpectError(GetFrom(server.Url("/"), 3, received), 0, 0);
    EXPECT_EQ(server.Requests().at(0).headers.at("range"), "bytes=3-");
    EXPECT_EQ(received.start, 3);
    EXPECT_EQ(received.bytes, "3456789");
}

TEST(HttpRange, AWholeAnswerStartsOver)
{
    HttpTestServer server([](const TestRequest&) { return Answer(200, "0123456789"); });
    Received received;
    ExpectError(GetFrom(server.Url("/"), 3, received), 0, 0);
    EXPECT_EQ(received.start, 0);
    EXPECT_EQ(received.bytes, "0123456789");
}

TEST(HttpRange, APartThatWasNotAskedForIsNoAnswer)
{
    for (const char* header : {"", "Content-Range: bytes 4-9/10\r\n", "Content-Range: bytes 3-8/10\r\n",
                               "Content-Range: bytes 3-9/9\r\n", "Content-Range: bytes x-9/10\r\n",
                               "Content-Range: lines 3-9/10\r\n", "Content-Range: bytes 9-3/10\r\n",
                               "Content-Range: bytes */10\r\n"}) {
        HttpTestServer server([header](const TestRequest&) { return Answer(206, "3456789", header); });
        Received received;
        ExpectError(GetFrom(server.Url("/"), 3, received), 23, ZellNetLink::AnswerNotUnderstood);
        EXPECT_EQ(received.bytes, "") << header;
    }
}

TEST(HttpRange, AnUnaskedPartOfTheMiddleIsNotWhole)
{
    HttpTestServer server(
        [](const TestRequest&) { return Answer(206, "012", "Content-Range: bytes 0-2/10\r\n"); });
    ExpectError(Get(server.Url("/")), 23, ZellNetLink::AnswerNotUnderstood);
}

TEST(HttpRange, APartThatIsShorterOrLongerThanItsContentRangeIsNoAnswer)
{
    for (const char* body : {"", "3456", "3456789ab"}) {
        HttpTestServer server(
            [body](const TestRequest&) { return Answer(206, body, "Content-Range: bytes 3-9/10\r\n"); });
        Received received;
        ExpectError(GetFrom(server.Url("/"), 3, received), 23, ZellNetLink::AnswerNotUnderstood);
    }
}

TEST(HttpRange, AnUnknownTotalIsTaken)
{
    HttpTestServer server(
        [](const TestRequest&) { return Answer(206, "345", "Content-Range: Bytes 3-5/*\r\n"); });
    Received received;
    ExpectError(GetFrom(server.Url("/"), 3, received), 0, 0);
    EXPECT_EQ(received.bytes, "345");
}

TEST(HttpSink, ARefusalEndsTheTransfer)
{
    HttpTestServer server(Echo);
    HttpRequest request;
    request.url = server.Url("/");
    request.sink = [](std::int64_t, const char*, std::size_t) { return false; };
    ExpectError(HttpClient::Instance().Perform(request), 23, ZellNetLink::AnswerRefusedBySink);
}

TEST(HttpSink, AnExceptionIsARefusal)
{
    HttpTestServer server(Echo);
    HttpRequest request;
    request.url = server.Url("/");
    request.sink = [](std::int64_t, const char*, std::size_t) -> bool { throw std::runtime_error("sink"); };
    ExpectError(HttpClient::Instance().Perform(request), 23, ZellNetLink::AnswerRefusedBySink);
}

TEST(HttpStart, DoneIsCalledOnceForEach)
{
    HttpTestServer server(Echo);
    constexpr int kTransfers = 100;
    std::atomic<int> good{0};
    std::atomic<int> done{0};
    std::promise<void> all;
    for (int i = 0; i < kTransfers; ++i) {
        HttpRequest request;
        request.url = server.Url("/" + std::to_string(i));
        HttpClient::Instance().Start(request, [&, i](HttpResponse&& response) {
            good += response.body == "GET /" + std::to_string(i) + " " ? 1 : 0;
            if (++done == kTransfers)
                all.set_value();
        });
    }
    all.get_future().wait();
    EXPECT_EQ(good, kTransfers);
    EXPECT_LE(server.Connections(), 16);
}

TEST(HttpStart, ALongListHoldsUpNobodyWhoWaits)
{
    Gate gate;
    HttpTestServer server([&gate](const TestRequest& request) {
        if (request.target != "/urgent")
            gate.Wait();
        return Answer(200, "x");
    });
    constexpr int kTransfers = 40;
    std::atomic<int> done{0};
    std::promise<void> all;
    for (int i = 0; i < kTransfers; ++i) {
        HttpRequest request;
        request.url = server.Url("/slow");
        HttpClient::Instance().Start(request, [&](HttpResponse&&) {
            if (++done == kTransfers)
                all.set_value();
        });
    }
    server.WaitForRequests(16);
    ExpectError(Get(server.Url("/urgent")), 0, 0);
    EXPECT_EQ(done, 0);
    EXPECT_EQ(server.Connections(), 17);
    gate.Open();
    all.get_future().wait();
}

TEST(HttpStart, ACancelledTransferIsToldSo)
{
    Gate gate;
    HttpTestServer server([&gate](const TestRequest&) {
        gate.Wait();
        return Answer(200, "x");
    });
    std::vector<std::uint64_t> ids;
    std::vector<std::future<HttpResponse>> answers;
    for (int i = 0; i < 20; ++i) {  // some of them run, some wait for their turn
        auto answer = std::make_shared<std::promise<HttpResponse>>();
        answers.push_back(answer->get_future());
        HttpRequest request;
        request.url = server.Url("/");
        ids.push_back(HttpClient::Instance().Start(
            request, [answer](HttpResponse&& response) { answer->set_value(std::move(response)); }));
    }
    server.WaitForRequests(16);
    for (const std::uint64_t id : ids) {
        HttpClient::Instance().Cancel(id);
        HttpClient::Instance().Cancel(id);
    }
    for (auto& answer : answers)
        ExpectError(answer.get(), 23, ZellNetLink::Cancelled);
    HttpClient::Instance().Cancel(ids.back() + 1000000);
    gate.Open();
}

TEST(HttpClient, WhoWaitsEndsATransferOfWhichNothingComes)
{
    Gate gate;
    HttpTestServer server([&gate](const TestRequest& asked) {
        if (asked.target == "/silent")
            gate.Wait();
        return Answer(200, "x");
    });
    HttpRequest request;
    request.url = server.Url("/silent");
    int asked = 0;
    request.is_cancelled = [&asked] { return ++asked == 3; };
    ExpectError(HttpClient::Instance().Perform(request), 23, ZellNetLink::Cancelled);
    EXPECT_EQ(asked, 3);
    gate.Open();
    EXPECT_EQ(Get(server.Url("/other")).body, "x");
}

TEST(HttpClient, TransferThatMayBeCancelledButIsNotArrives)
{
    HttpTestServer server(Echo);
    HttpRequest request;
    request.url = server.Url("/a");
    request.is_cancelled = [] { return false; };
    EXPECT_EQ(HttpClient::Instance().Perform(request).body, "GET /a ");
}

TEST(HttpStart, FailuresToBeginAreToldAndLetOthersBegin)
{
    HttpTestServer server(Echo);
    std::atomic<int> failed{0};
    std::promise<void> last;
    HttpRequest wrong;
    wrong.url = server.Url("/");
    wrong.method = "NO GOOD";
    for (int i = 0; i < 100; ++i)
        HttpClient::Instance().Start(wrong, [&failed](HttpResponse&& response) {
            failed += response.error.iSecondCode == 43 ? 1 : 0;
        });
    HttpRequest good;
    good.url = server.Url("/");
    HttpClient::Instance().Start(good, [&last](HttpResponse&&) { last.set_value(); });
    last.get_future().wait();
    EXPECT_EQ(failed, 100);
}

TEST(HttpStart, AWaitOnTheClientsOwnThreadIsRefused)
{
    HttpTestServer server(Echo);
    std::promise<HttpResponse> inner;
    HttpRequest request;
    request.url = server.Url("/");
    HttpClient::Instance().Start(
        request, [&](HttpResponse&&) { inner.set_value(HttpClient::Instance().Perform(request)); });
    ExpectError(inner.get_future().get(), 23, ZellNetLink::NotStarted);
}

TEST(HttpStart, AnExceptionOfTheReceiverStaysInside)
{
    HttpTestServer server(Echo);
    HttpRequest request;
    request.url = server.Url("/");
    HttpClient::Instance().Start(request, [](HttpResponse&&) { throw std::runtime_error("receiver"); });
    server.WaitForRequests(1);
    ExpectError(Get(server.Url("/")), 0, 0);
}

TEST(HttpClient, ManyThreadsMayWaitAtOnce)
{
    HttpTestServer server(Echo);
    std::atomic<int> good{0};
    std::vector<std::thread> threads;
    for (int i = 0; i < 24; ++i)
        threads.emplace_back([&, i] {
            for (int n = 0; n < 10; ++n) {
                const std::string target = "/" + std::to_string(i) + "-" + std::to_string(n);
                good += Get(server.Url(target)).body == "GET " + target + " " ? 1 : 0;
            }
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(good, 240);
}

}  // namespace
