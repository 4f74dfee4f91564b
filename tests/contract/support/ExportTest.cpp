#include "support/ExportTest.h"

#include "ZellBase/Error.h"

#include <filesystem>

namespace contract {

using FetchyardBussiness::CDeterminantWriteFileTask;
using FetchyardBussiness::DeterminantDownloadParam;

ExportTest::ExportTest()
    : record_(std::make_shared<DeterminantDownloadParam>()),
      task_(std::make_shared<CDeterminantWriteFileTask>())
{
    std::filesystem::create_directory(Folder() + "Alarm");
    record_->SetVal_str_name("Alarm");
    record_->SetVal_str_file_path(Folder() + "Alarm/");
    Settings().str_request_method = "POST";
    Settings().str_request_api = "/api";
    Settings().str_request_condition = R"({"PageIndex":1,"PageSize":2})";
    Settings().str_export_file_name = "Alarm";
    Settings().str_export_file_path = Folder() + "Alarm/";
    Settings().export_file_type = FetchyardBussiness::kCsvReport;
}

void ExportTest::AddPicture(const std::string& name, const std::string& address)
{
    FetchyardBussiness::ImageDownloadEntry entry;
    entry.image.SetVal_str_name(name);
    entry.image.SetVal_str_file_path(Folder() + "Alarm/");
    entry.image.image_items.resize(1);
    entry.image.image_items[0].image_url = address;
    Settings().vec_image_download.push_back(entry);
}

std::string ExportTest::Run()
{
    task_->SetDownloadTaskParam(record_, false);
    Zell::Base::Error::SetLastError({});
    fakes::Take();
    task_->Exec();
    return Trace();
}

}  // namespace contract
