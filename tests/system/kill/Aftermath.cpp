#include "Aftermath.h"

#include "FetchyardLogicalHost/EngineHost.h"
#include "ZellBase/Util.h"
#include "ZellNetLink/XmlProto.h"

#include <gtest/gtest.h>
#include <QTemporaryDir>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>

namespace fs = std::filesystem;

namespace SystemTest {

namespace {

void ReadRecord(const std::string& resume_text, KeptTask& task)
{
    std::string document;
    ZellNetLink::CXmlProto xml;
    ASSERT_TRUE(Zell::Base::Encrypt::Base64Decode(document, resume_text) && xml.set_str(document))
        << task.name;
    const std::string root = "/FileExportParams/";
    task.current_page = xml.get_int_v(root + "CurrentPage", -1);
    task.total_page_is_finished = xml.get_int_v(root + "TotalPageIsFinished", -1) != 0;
    task.restart_is_need_download = xml.get_int_v(root + "RestartIsNeedDownload", -1) != 0;
    const std::string pictures = root + "ImageDownloadList/OneImage";
    for (int i = 1; i <= xml.get_cnt(pictures); ++i) {
        const std::string flag = pictures + "[" + std::to_string(i) + "]/IsHasDownload";
        task.missing_pictures += xml.get_int_v(flag, -1) == 0 ? 1 : 0;
    }
}

}  // namespace

std::vector<KeptTask> KeptTasks(const std::string& data_folder)
{
    const QTemporaryDir copy;
    const fs::path target = fs::u8path(copy.path().toStdString());
    for (const fs::directory_entry& entry : fs::directory_iterator(fs::u8path(data_folder))) {
        const std::string name = entry.path().filename().u8string();
        if (name.rfind("tasks.db", 0) == 0)
            fs::copy_file(entry.path(), target / name);
    }
    std::vector<KeptTask> tasks;
    std::string message;
    EXPECT_TRUE(FetchyardLogical::OpenTaskStore((target / "tasks.db").u8string(), message));
    EXPECT_EQ(message, "");
    for (const FetchyardLogical::TaskView& view : FetchyardLogical::ListTasks()) {
        KeptTask task;
        task.guid = view.guid;
        task.name = view.name;
        task.state = view.state;
        task.is_interrupted = view.is_interrupted;
        ReadRecord(FetchyardLogical::ResumeText(view.guid), task);
        tasks.push_back(task);
    }
    EXPECT_TRUE(FetchyardLogical::CloseTaskStore());
    return tasks;
}

Events ReadEvents(const std::string& path)
{
    Events events;
    std::ifstream file(fs::u8path(path));
    for (std::string line; std::getline(file, line);) {
        std::istringstream words(line);
        std::string kind;
        std::string guid;
        int state = 0;
        words >> kind;
        ++events.counts[kind];
        if (words >> guid >> state)
            events.told[guid].push_back(state);
    }
    return events;
}

bool IsEnd(int state)
{
    return (state >= 4 && state <= 6) || (state >= 10 && state <= 12) || state == 200;
}

std::string Bytes(const std::string& path)
{
    std::ifstream file(fs::u8path(path), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

}  // namespace SystemTest
