#pragma once

#include "RecordingsFixture.h"
#include "ZellClientHostSettings/ClientSettings.h"
#include "ZellClientHostSettings/Plugins.h"
#include "ZellNetLinkHost/HttpClient.h"

#include <QLibrary>

#include <cstdint>
#include <filesystem>
#include <mutex>
#include <string>

namespace SystemTest {

inline constexpr char kPluginId[] = "clipvault.c";

// The plug-in in a client without a program: loaded by the host, its functions found by their names.
class ClipvaultFixture : public RecordingsFixture
{
protected:
    ClipvaultFixture()
    {
        settings_.data_path = folder_.File("data/");
        settings_.public_data_path = folder_.File("public/");
        settings_.save_path = folder_.File("out/");
        settings_.sites[0] = station_.Address();
        ZellClientHost::SetClientSettings(settings_);
        std::string reason;
        if (!ZellClientHost::LoadPlugin(kPluginId, CLIPVAULT_MODULE, reason))
            throw std::runtime_error(reason);
    }
    ~ClipvaultFixture() override
    {
        ZellClientHost::StopPlugin(kPluginId);
        ZellClientHost::SetClientSettings(former_);
    }

    template <typename Function>
    static Function Find(const char* name)
    {
        return reinterpret_cast<Function>(Address(name));
    }
    // One library and one at a time for all threads: Qt loses one that a thread gives back while another
    // takes it, and its own lock is one that the search for races does not see.
    static QFunctionPointer Address(const char* name)
    {
        static auto* const one_at_a_time = new std::mutex;
        const std::lock_guard<std::mutex> lock(*one_at_a_time);
        static auto* const module = new QLibrary(CLIPVAULT_MODULE);
        EXPECT_TRUE(module->load());
        const QFunctionPointer address = module->resolve(name);
        EXPECT_NE(address, nullptr) << name;
        return address;
    }

    bool Start(const nlohmann::json& request) { return StartText(request.dump()); }
    bool StartText(const std::string& request)
    {
        std::string text;
        const auto start =
            Find<bool (*)(const std::string&, const std::string&, std::string&)>("StartDownloadVideoFile");
        const bool is_good = start("", request, text);
        response_ = nlohmann::json::parse(text)["Response"];
        return is_good;
    }
    static std::int64_t Size(const std::string& guid)
    {
        return Find<std::int64_t (*)(const std::string&)>("GetVideoDownloadedSize")(guid);
    }
    static void Stop(const std::string& guid)
    {
        Find<void (*)(const std::string&)>("StopDownloadVideoFile")(guid);
    }
    static void Remove(const std::string& guid)
    {
        Find<void (*)(const std::string&)>("RemoveDownloader")(guid);
    }

    // As an export asks for one video: camera 1, mp4, ten seconds from 23:59:11 on.
    nlohmann::json Request(const std::string& name = "gate") const
    {
        return {{"DownloadVideoFileRequest",
                 {{"GUID", "guid-" + name},
                  {"DownloadParam",
                   {{"DownloadType", 0}, {"VideoFormat", 2}, {"CustomFilePath", Out()}, {"IsSnap", false}}},
                  {"ResourceParam",
                   {{{"ResourceID", "1"},
                     {"ResourceType", 1001},
                     {"SiteID", "0"},
                     {"IsCameraNO", false},
                     {"DownloadTime", {{{"StartTime", kMinute + 11}, {"EndTime", kMinute + 21}}}},
                     {"CustomFileName", name}}}}}}};
    }
    static nlohmann::json& Param(nlohmann::json& request)
    {
        return request["DownloadVideoFileRequest"]["DownloadParam"];
    }
    static nlohmann::json& Resource(nlohmann::json& request)
    {
        return request["DownloadVideoFileRequest"]["ResourceParam"][0];
    }

    std::string Out() const { return settings_.save_path; }
    std::string Target(const std::string& name) const { return Out() + name; }
    // Of what is being fetched.
    std::string Scratch() const { return settings_.data_path + "Downloads"; }
    // Nothing but these lies where videos are delivered to and fetched in.
    void ExpectFiles(const std::vector<std::string>& names) const
    {
        EXPECT_EQ(NamesIn(Out()), names);
        EXPECT_EQ(NamesIn(Scratch()), std::vector<std::string>{});
    }
    void ExpectFailure(int module, int code) const
    {
        EXPECT_EQ(response_["TaskDownloadState"], 3);
        EXPECT_EQ(response_["ErrorModule"], module) << response_;
        EXPECT_EQ(response_["ErrorCode"], code) << response_;
    }

    const ZellClientHost::ClientSettings former_ = ZellClientHost::GetClientSettings();
    ZellClientHost::ClientSettings settings_;
    nlohmann::json response_;
};

}  // namespace SystemTest
