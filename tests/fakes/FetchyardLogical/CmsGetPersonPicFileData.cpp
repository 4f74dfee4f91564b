#include "FetchyardLogical/CmsGetPersonPicFileData.h"

#include "fakes/Journal.h"
#include "fakes/Script.h"

#include <utility>

namespace FetchyardLogical {
namespace {

constexpr Zell::Base::Error::ErrorCode kNoAnswerLeft(99, 99);

fakes::PersonPageAnswer NextAnswer()
{
    std::deque<fakes::PersonPageAnswer>& pages = fakes::TheScript().person_pages;
    fakes::PersonPageAnswer answer;
    if (pages.empty()) {
        fakes::Append("no person page left");
        answer.ok = false;
        answer.error = kNoAnswerLeft;
        return answer;
    }
    answer = std::move(pages.front());
    pages.pop_front();
    return answer;
}

}  // namespace

bool CmsGetPersonPicFileData::GetExportPicDataList(CmsGetPersonPicFileData& data)
{
    std::string left_over;
    for (const PersonPicture& picture : data.picture_list)
        left_over += " left over: " + picture.file_stem;
    const bool succeeds = fakes::Call(
        "GetExportPicDataList", data.str_method + " " + data.str_quern + " " + data.str_request + left_over);
    fakes::PersonPageAnswer answer = NextAnswer();
    if (!succeeds || !answer.ok) {
        data.error_code = answer.error;
        data.remaining_login_count = answer.remaining_login_count;
        data.remaining_login_type = answer.remaining_login_type;
        return false;
    }
    data.error_code = {};
    data.picture_list = std::move(answer.pictures);
    data.is_all_finished = answer.is_last;
    return true;
}

}  // namespace FetchyardLogical
