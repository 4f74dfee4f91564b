#include "support/ContractTest.h"

#include "ZellBase/Error.h"

#include <filesystem>

namespace contract {

ContractTest::ContractTest() : folder_(directory_.path().toStdString() + "/")
{
    fakes::Reset();
    Zell::Base::Error::SetLastError({});
    fakes::Reset();
    fakes::SetAlias(directory_.path().toStdString(), "<tmp>");
}

ContractTest::~ContractTest()
{
    fakes::Reset();
}

std::string ContractTest::InFolder(std::string text) const
{
    const std::string mark = "<tmp>/";
    for (auto at = text.find(mark); at != std::string::npos; at = text.find(mark, at + folder_.size()))
        text.replace(at, mark.size(), folder_);
    return text;
}

std::string ContractTest::Trace()
{
    return "\n" + fakes::TakeText();
}

bool ContractTest::Exists(const std::string& path_in_folder) const
{
    return std::filesystem::exists(folder_ + path_in_folder);
}

}  // namespace contract
