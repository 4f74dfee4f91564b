#include "tests/unit/HttpTestServer.h"
#include "tests/unit/ZellTaskKit/ClientInUse.h"
#include "ZellBase/Error.h"
#include "ZellTaskKit/FileDownloader.h"

#include <sys/resource.h>

#include <atomic>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <future>
#include <iterator>

namespace {

namespace fs = std::filesystem;
using Zell::Base::Error::ErrorCode;
using Zell::Base::Error::GetLastError;
using Zell::Base::Error::SetLastError;
using ZellTaskKit::CDownloadResultParam;
using ZellTaskKit::CFileDownloader;

TestReply Serve(const TestRequest& request)
{
    if (request.target == "/cut")
        return {"HTTP/1.1 200 OK\r\nContent-Length: 1000\r\n\r\nhalf of it", true};
    if (request.target == "/empty")
        return Answer(200, "");
    if (request.target == "/big")
        return Answer(200, std::string(5U << 20, 'b'));
    return request.target == "/missing" ? Answer(404, "no") : Answer(200, request.target);
}

std::string ReadAll(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

class FileDownloader : public ClientInUse
{
protected:
    FileDownloader()
    {
        settings_.sites[0] = server_.Url("");
        Use();
        SetLastError(ErrorCode());
        fs::create_directories(folder_.Path() / "out");
    }

    std::string Target() const { return folder_.File("out/file.bin"); }

    bool Fetch(const std::string& url) { return downloader_.DownloadFile(url, Target(), {}, nullptr, 0); }

    static void ExpectLastError(int module, int code)
    {
        EXPECT_EQ(GetLastError().iFirstCode, module);
        EXPECT_EQ(GetLastError().iSecondCode, code);
    }

    // What is left under temporary names.
    std::ptrdiff_t Leftovers() const
    {
        const auto entries = fs::directory_iterator(folder_.Path() / "data/Downloads");
        return std::distance(begin(entries), end(entries));
    }

    HttpTestServer server_{Serve};
    CFileDownloader downloader_;
};

TEST_F(FileDownloader, AFileIsOnDiskWhenTheCallReturns)
{
    ASSERT_TRUE(Fetch("/some/file"));
    EXPECT_EQ(ReadAll(Target()), "/some/file");
    EXPECT_EQ(Leftovers(), 0);
    ExpectLastError(0, 0);
}

TEST_F(FileDownloader, ABigFileAndAnEmptyOneArriveWhole)
{
    ASSERT_TRUE(Fetch("/big"));
    EXPECT_EQ(ReadAll(Target()), std::string(5U << 20, 'b'));
    ASSERT_TRUE(Fetch("/empty"));
    EXPECT_TRUE(fs::exists(Target()));
    EXPECT_EQ(ReadAll(Target()), "");
}

TEST_F(FileDownloader, AnAbsoluteUrlIsFetchedAsItStands)
{
    HttpTestServer other(Serve);
    ASSERT_TRUE(Fetch(other.Url("/storage/x?y=1")));
    EXPECT_EQ(ReadAll(Target()), "/storage/x?y=1");
}

TEST_F(FileDownloader, AStorePathGetsKindAndPlace)
{
    ASSERT_TRUE(downloader_.DownloadFile("/storage/a", Target(), {}, nullptr, 1));
    EXPECT_EQ(ReadAll(Target()), "/storage/a?kind=file&place=1");
    ASSERT_TRUE(downloader_.DownloadFileByPic("/storage/a?id=5", Target(), {}, nullptr, -1));
    EXPECT_EQ(ReadAll(Target()), "/storage/a?id=5&kind=picture&place=-1");
    ASSERT_TRUE(downloader_.DownloadFileByPicInOXT("/storage/a", Target(), {}, nullptr));
    EXPECT_EQ(ReadAll(Target()), "/storage/a?kind=platform_picture");
    ASSERT_TRUE(downloader_.DownloadFileByPic("/pictures/a.jpg", Target(), {}, nullptr, 0));
    EXPECT_EQ(ReadAll(Target()), "/pictures/a.jpg");
}

TEST_F(FileDownloader, AFailedFetchLeavesWhatWasThere)
{
    std::ofstream(Target()) << "before";
    EXPECT_FALSE(Fetch("/cut"));
    ExpectLastError(22, 18);
    EXPECT_FALSE(Fetch("/missing"));
    ExpectLastError(21, 404);
    EXPECT_EQ(ReadAll(Target()), "before");
    EXPECT_EQ(Leftovers(), 0);
    EXPECT_TRUE(Fetch("/good"));
    EXPECT_EQ(ReadAll(Target()), "/good");
}

TEST_F(FileDownloader, AFailedFetchLeavesNoFile)
{
    EXPECT_FALSE(Fetch("/cut"));
    EXPECT_TRUE(fs::is_empty(folder_.Path() / "out"));
}

// A server whose body of ten letters breaks off after some, and which then goes on as a test wants.
class CutServer
{
public:
    CutServer(std::string tag, std::string second_answer)
        : server_([this, tag = std::move(tag), second_answer = std::move(second_answer)](const TestRequest&) {
              if (++requests_ > 1)
                  return TestReply{second_answer, true};
              return TestReply{"HTTP/1.1 200 OK\r\nContent-Length: 10\r\n" + tag + "\r\nabcd", true};
          })
    {
    }

    std::string Url() const { return server_.Url("/x"); }
    std::vector<TestRequest> Requests() { return server_.Requests(); }

private:
    std::atomic<int> requests_{0};
    HttpTestServer server_;
};

constexpr char kTag[] = "ETag: \"v1\"\r\n";

std::string Part(const std::string& range, const std::string& body)
{
    return "HTTP/1.1 206 Partial Content\r\nContent-Range: bytes " + range +
           "\r\nContent-Length: " + std::to_string(body.size()) + "\r\nETag: \"v1\"\r\n\r\n" + body;
}

TEST_F(FileDownloader, ACutBodyGoesOnWhereItBroke)
{
    CutServer server(kTag, Part("4-9/10", "efghij"));
    ASSERT_TRUE(Fetch(server.Url()));
    EXPECT_EQ(ReadAll(Target()), "abcdefghij");
    ASSERT_EQ(server.Requests().size(), 2u);
    EXPECT_EQ(server.Requests()[0].headers.count("range"), 0u);
    EXPECT_EQ(server.Requests()[1].headers["range"], "bytes=4-");
    EXPECT_EQ(server.Requests()[1].headers["if-range"], "\"v1\"");
}

TEST_F(FileDownloader, AnotherVersionStartsTheFileOver)
{
    CutServer server(kTag, Answer(200, "new").bytes);
    ASSERT_TRUE(Fetch(server.Url()));
    EXPECT_EQ(ReadAll(Target()), "new");
}

TEST_F(FileDownloader, APartThatIsAnotherThanTheOneAskedForEndsTheFetch)
{
    CutServer server(kTag, Part("5-9/10", "fghij"));
    EXPECT_FALSE(Fetch(server.Url()));
    ExpectLastError(23, 1);
    EXPECT_FALSE(fs::exists(Target()));
    EXPECT_EQ(Leftovers(), 0);
}

TEST_F(FileDownloader, AnotherVersionThatIsEmptyLeavesAnEmptyFile)
{
    CutServer server(kTag, Answer(200, "", "ETag: \"v2\"\r\n").bytes);
    ASSERT_TRUE(Fetch(server.Url()));
    EXPECT_TRUE(fs::exists(Target()));
    EXPECT_EQ(ReadAll(Target()), "");
}

TEST_F(FileDownloader, VersionsAreNotMixed)
{
    for (const char* tag : {"\"v2\"", "W/\"v1\""}) {
        CutServer server(
            kTag,
            Answer(206, "efghij", "Content-Range: bytes 4-9/10\r\nETag: " + std::string(tag) + "\r\n").bytes);
        EXPECT_FALSE(Fetch(server.Url()));
        ExpectLastError(23, 1);
        EXPECT_FALSE(fs::exists(Target()));
        EXPECT_EQ(Leftovers(), 0);
    }
}

TEST_F(FileDownloader, APartThatEndsEarlyIsNotTheRest)
{
    CutServer server(kTag, Answer(206, "ef", "Content-Range: bytes 4-9/10\r\nETag: \"v1\"\r\n").bytes);
    EXPECT_FALSE(Fetch(server.Url()));
    ExpectLastError(23, 1);
    EXPECT_FALSE(fs::exists(Target()));
}

TEST_F(FileDownloader, ACutBodyWithoutAVersionIsNotAskedForAgain)
{
    for (const char* tag : {"", "ETag: W/\"v1\"\r\n"}) {
        CutServer server(tag, Part("4-9/10", "efghij"));
        EXPECT_FALSE(Fetch(server.Url()));
        ExpectLastError(22, 18);
        EXPECT_EQ(server.Requests().size(), 1u);
    }
}

TEST_F(FileDownloader, ARequestThatBringsNothingIsTheLast)
{
    CutServer server(kTag,
                     "HTTP/1.1 206 Partial Content\r\nContent-Range: bytes 4-9/10\r\nContent-Length: 6\r\n"
                     "ETag: \"v1\"\r\n\r\n");
    EXPECT_FALSE(Fetch(server.Url()));
    ExpectLastError(22, 18);
    EXPECT_EQ(server.Requests().size(), 2u);
}

TEST_F(FileDownloader, ABodyThatIsCutAgainAndAgainIsGivenUp)
{
    std::atomic<int> requests{0};
    HttpTestServer server([&requests](const TestRequest&) {
        const std::string first = std::to_string(requests++);
        return TestReply{
            (first == "0" ? "HTTP/1.1 200 OK\r\n"
                          : "HTTP/1.1 206 Partial Content\r\nContent-Range: bytes " + first + "-99/100\r\n") +
                "Content-Length: " + std::to_string(100 - std::stoi(first)) + "\r\nETag: \"v1\"\r\n\r\nx",
            true};
    });
    EXPECT_FALSE(Fetch(server.Url("/x")));
    ExpectLastError(22, 18);
    EXPECT_EQ(server.Requests().size(), 10u);
    EXPECT_FALSE(fs::exists(Target()));
}

TEST_F(FileDownloader, AMissingFolderIsToldBeforeAnythingIsFetched)
{
    EXPECT_FALSE(downloader_.DownloadFile("/a", folder_.File("none/a"), {}, nullptr, 0));
    ExpectLastError(0, ENOENT);
    EXPECT_TRUE(server_.Requests().empty());
}

TEST_F(FileDownloader, ATargetThatIsAFolderIsAnError)
{
    EXPECT_FALSE(downloader_.DownloadFile("/a", folder_.File("out"), {}, nullptr, 0));
    EXPECT_EQ(GetLastError().iFirstCode, 0);
    EXPECT_NE(GetLastError().iSecondCode, 0);
    EXPECT_EQ(Leftovers(), 0);
}

TEST_F(FileDownloader, ADataFolderThatCannotBeMadeIsAnError)
{
    std::ofstream(folder_.File("file")) << "x";
    settings_.data_path = folder_.File("file/data");
    Use();
    EXPECT_FALSE(Fetch("/a"));
    EXPECT_EQ(GetLastError().iFirstCode, 0);
    EXPECT_NE(GetLastError().iSecondCode, 0);
}

// A limit of the process on the size of files, for the life of the object, stands in for a full disk.
class FileSizeLimit
{
public:
    explicit FileSizeLimit(rlim_t bytes)
    {
        ::signal(SIGXFSZ, SIG_IGN);
        ::getrlimit(RLIMIT_FSIZE, &former_);
        const rlimit limit = {bytes, former_.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &limit);
    }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;
    ~FileSizeLimit() { ::setrlimit(RLIMIT_FSIZE, &former_); }

private:
    rlimit former_ = {};
};

TEST_F(FileDownloader, AWriteThatFailsIsAnErrorOfTheSystemAndLeavesNothing)
{
    {
        const FileSizeLimit limit(1U << 20);
        EXPECT_FALSE(Fetch("/big"));
    }
    ExpectLastError(0, EFBIG);
    EXPECT_FALSE(fs::exists(Target()));
    EXPECT_EQ(Leftovers(), 0);
}

TEST_F(FileDownloader, EmptyArgumentsAndAnUnknownSiteAreErrors)
{
    EXPECT_FALSE(Fetch(""));
    ExpectLastError(20, 3);
    EXPECT_FALSE(downloader_.DownloadFile("/a", "", {}, nullptr, 0));
    ExpectLastError(20, 3);
    settings_.sites.clear();
    Use();
    EXPECT_FALSE(Fetch("/a"));
    ExpectLastError(23, 4);
}

TEST_F(FileDownloader, WhatAKilledProcessLeftBehindGoesAfterADayAndNothingElse)
{
    const fs::path downloads = folder_.Path() / "data/Downloads";
    fs::create_directories(downloads);
    const fs::path old = downloads / "0123abcd-0123-4567-89ab-0123456789ab.part";
    const fs::path young = downloads / "ffffffff-0123-4567-89ab-0123456789ab.part";
    const fs::path others = downloads / "a letter that somebody keeps here.part";
    const fs::path kept = downloads / "0123abcd-0123-4567-89ab-0123456789ab.docx";
    const auto yesterday = fs::file_time_type::clock::now() - std::chrono::hours(25);
    for (const fs::path& path : {old, young, others, kept}) {
        std::ofstream(path) << "x";
        if (path != young)
            fs::last_write_time(path, yesterday);
    }
    ASSERT_TRUE(Fetch("/a"));
    EXPECT_FALSE(fs::exists(old));
    for (const fs::path& path : {young, others, kept})
        EXPECT_TRUE(fs::exists(path)) << path;
}

TEST_F(FileDownloader, WithACallbackTheOutcomeComesLater)
{
    int user = 0;
    for (const bool good : {true, false}) {
        std::promise<std::pair<CDownloadResultParam, ErrorCode>> told;
        const std::string url = good ? "/good" : "/missing";
        EXPECT_TRUE(downloader_.DownloadFile(
            url, Target(),
            [&told](const std::shared_ptr<CDownloadResultParam>& result) {
                told.set_value({*result, GetLastError()});
            },
            &user, 0));
        const auto [result, error] = told.get_future().get();
        EXPECT_EQ(result.success, good);
        EXPECT_EQ(result.url, url);
        EXPECT_EQ(result.save_path, Target());
        EXPECT_EQ(result.user, &user);
        EXPECT_EQ(error.iSecondCode, good ? 0 : 404);
        EXPECT_EQ(ReadAll(Target()), "/good");
    }
    ExpectLastError(0, 0);
}

TEST_F(FileDownloader, ManyCallbacksAreEachCalledOnce)
{
    constexpr int kFiles = 50;
    std::atomic<int> told{0};
    std::promise<void> all;
    for (int i = 0; i < kFiles; ++i)
        EXPECT_TRUE(downloader_.DownloadFile(
            "/" + std::to_string(i), folder_.File("out/" + std::to_string(i)),
            [&](const std::shared_ptr<CDownloadResultParam>& result) {
                EXPECT_TRUE(result->success);
                if (++told == kFiles)
                    all.set_value();
            },
            nullptr, 0));
    all.get_future().wait();
    for (int i = 0; i < kFiles; ++i)
        EXPECT_EQ(ReadAll(folder_.File("out/" + std::to_string(i))), "/" + std::to_string(i));
}

TEST_F(FileDownloader, ADownloaderThatIsGoneCallsNobody)
{
    std::promise<void> release;
    const auto released = release.get_future().share();
    HttpTestServer slow([released](const TestRequest& request) {
        released.wait();
        return Serve(request);
    });
    std::atomic<bool> called{false};
    {
        CFileDownloader gone;
        gone.DownloadFile(
            slow.Url("/a"), Target(), [&called](const auto&) { called = true; }, nullptr, 0);
        slow.WaitForRequests(1);
    }
    release.set_value();
    std::promise<void> later;
    downloader_.DownloadFile(
        "/b", folder_.File("out/b"), [&later](const auto&) { later.set_value(); }, nullptr, 0);
    later.get_future().wait();
    EXPECT_FALSE(called);
}

}  // namespace
