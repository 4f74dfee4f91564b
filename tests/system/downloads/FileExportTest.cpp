#include "DownloadFixture.h"
#include "FetchyardBussiness/DownloadBussinessManager.h"
#include "FetchyardBussiness/FileDownload/FileExportParam.h"
#include "tests/system/StationProcess.h"

#include <future>
#include <memory>
#include <string>
#include <vector>

using namespace SystemTest;
using FetchyardBussiness::CDownloadBussinessManager;
using FetchyardBussiness::FileExportItem;
using FetchyardBussiness::FileExportParam;
using Zell::Base::Error::ErrorCode;

namespace {

constexpr char kFirmware[] = "/files/firmware-2.4.1.bin";

struct EndObserver final : FetchyardBussiness::CDownloadBussinessManagerObserver
{
    void UpdateDownloadBussinessManagerState(const Param& report) override
    {
        if (report.state == ZellTaskKit::Downloading)
            return;
        error = report.error_code;
        end.set_value(report.state);
    }

    ErrorCode error;
    std::promise<int> end;
};

// Files fetched by a task of the business layer, through the engine.
class StationFileExport : public DownloadFixture
{
protected:
    StationFileExport() { UseSite(station_.Address()); }

    FileExportItem Item(const std::string& name, const std::string& url) const
    {
        FileExportItem item;
        item.file_name = name;
        item.save_path = settings_.save_path;
        item.request_url = url;
        return item;
    }

    // The state that the task ends in.
    int Run(const std::vector<FileExportItem>& items)
    {
        auto record = std::make_shared<FileExportParam>();
        record->SetVal_file_type(ZellTaskKit::ServerFile);
        record->file_items = items;
        auto& manager = CDownloadBussinessManager::Instance();
        EndObserver observer;
        std::vector<std::string> guids;
        EXPECT_TRUE(manager.Init());
        manager.RegisterObserver(&observer);
        const std::vector<std::shared_ptr<ZellTaskKit::CDownloadTaskParam>> records = {record};
        EXPECT_TRUE(manager.AddFileDownloadTask(guids, records));
        const int state = observer.end.get_future().get();
        manager.SyncUnregisterObserver(&observer);
        manager.Unit();
        error_ = observer.error;
        return state;
    }

    StationProcess station_;
    ErrorCode error_;
};

}  // namespace

TEST_F(StationFileExport, ThreeFilesFinishTheTask)
{
    FileExportItem page = Item("page.json", "/api/v1/events/report");
    page.request_method = "POST";
    page.send_data = R"({"PageIndex":1,"PageSize":3})";
    EXPECT_EQ(Run({Item("firmware.bin", kFirmware), page, Item("small.bin", "/synthetic/files/1000.bin")}),
              4);
    EXPECT_TRUE(Content(Target("firmware.bin")) == Content(station_.DataFolder() + kFirmware));
    EXPECT_TRUE(nlohmann::json::accept(Content(Target("page.json"))));
    EXPECT_EQ(Content(Target("small.bin")).size(), 1000u);
}

TEST_F(StationFileExport, FolderThatIsNotThereIsMade)
{
    FileExportItem item = Item("small.bin", "/synthetic/files/1000.bin");
    item.save_path += "below/it/";
    EXPECT_EQ(Run({item}), 4);
    EXPECT_EQ(Content(Target("below/it/small.bin")).size(), 1000u);
}

TEST_F(StationFileExport, CutFileFailsTheTaskAndTheSecondTrySucceeds)
{
    station_.SetFault({{"Path", kFirmware}, {"Kind", "cut"}, {"CutAt", 1000000}, {"Count", 1}});
    const std::vector<FileExportItem> items = {Item("small.bin", "/synthetic/files/1000.bin"),
                                               Item("firmware.bin", kFirmware)};
    EXPECT_EQ(Run(items), 5);
    EXPECT_EQ(error_.iFirstCode, 22);
    EXPECT_EQ(error_.iSecondCode, 18);
    EXPECT_EQ(FilesLeft(), std::vector<std::string>{"small.bin"});
    EXPECT_EQ(Run({items[1]}), 4);
    EXPECT_TRUE(Content(Target("firmware.bin")) == Content(station_.DataFolder() + kFirmware));
}

TEST_F(StationFileExport, MissingFileFailsTheTaskWithTheStatus)
{
    EXPECT_EQ(Run({Item("none.bin", "/files/none.bin")}), 5);
    EXPECT_EQ(error_.iFirstCode, 21);
    EXPECT_EQ(error_.iSecondCode, 404);
    EXPECT_EQ(FilesLeft(), std::vector<std::string>{});
}
