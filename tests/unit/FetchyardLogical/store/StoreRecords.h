#pragma once

#include "ZellTaskKit/DownloadTaskParam.h"

#include <functional>
#include <string>
#include <utility>

namespace FetchyardLogical::testing {

// A record that writes out what the test says.
class FakeRecord final : public ZellTaskKit::CDownloadTaskParam
{
public:
    explicit FakeRecord(std::function<std::string()> text) : text_(std::move(text)) {}
    std::string CreateResumeXml() override { return text_(); }

private:
    const std::function<std::string()> text_;
};

// The Base64 text of a record of the kind, with the content in it.
std::string RecordText(int kind, const std::string& content = "");

}  // namespace FetchyardLogical::testing
