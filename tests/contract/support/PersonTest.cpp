#include "support/PersonTest.h"

#include "ZellBase/Error.h"

#include <filesystem>
#include <fstream>
#include <utility>

namespace contract {

using FetchyardBussiness::DownloadPersonPicTaskParam;

PersonTest::PersonTest()
    : record_(std::make_shared<DownloadPersonPicTaskParam>()), task_(std::make_shared<DeletablePersonTask>())
{
    std::filesystem::create_directory(Folder() + "Persons");
    std::filesystem::create_directory(Folder() + "save");
    fakes::TheScript().public_data_path = Folder() + "save/";
    record_->SetVal_str_name("Persons");
    record_->SetVal_str_file_path(Folder() + "Persons/");
    Settings().str_request_method = "POST";
    Settings().str_request_api = "/persons";
    Settings().str_request_condition = R"({"PageIndex":1,"PageSize":2})";
    Settings().str_zip_encoding_password = "secret";
    Settings().str_zip_name = "Anna";
    Settings().str_save_path = Folder() + "Persons/";
}

void PersonTest::AddPage(const std::vector<std::string>& stems, bool is_last)
{
    fakes::PersonPageAnswer page;
    page.is_last = is_last;
    for (const std::string& stem : stems)
        page.pictures.push_back({stem, "/pictures/" + stem + ".jpg"});
    fakes::TheScript().person_pages.push_back(std::move(page));
}

void PersonTest::ArchiverWorks()
{
    fakes::OnCall("LaunchApp", 1, [this] { std::ofstream(Folder() + "save/guid-1.zip") << "zip"; });
}

std::string PersonTest::Run()
{
    task_->SetDownloadTaskParam(record_, false);
    Zell::Base::Error::SetLastError({});
    fakes::Take();
    task_->Exec();
    return Trace();
}

std::string PersonTest::From(const std::string& trace, const std::string& start)
{
    const auto at = trace.find("\n" + start);
    return at == std::string::npos ? "no such line in: " + trace : trace.substr(at);
}

}  // namespace contract
