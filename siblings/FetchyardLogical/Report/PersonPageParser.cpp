#include "Report/PersonPageParser.h"

#include "Report/JsonReading.h"
#include "ZellNetLinkHost/HttpClient.h"

#include <utility>
#include <vector>

using Zell::Base::Error::ErrorCode;

namespace FetchyardLogical::details {

namespace {

bool IsFileStem(const std::string& title)
{
    return !title.empty() && title.find_first_of(std::string_view("/\\\0", 3)) == std::string::npos;
}

bool ReadTextOrNumber(od::value& value, std::string& out)
{
    std::int64_t number = 0;
    if (value.get_int64().get(number) != simdjson::SUCCESS)
        return ReadText(value, out);
    out = std::to_string(number);
    return true;
}

class PersonPageReader
{
public:
    bool Read(od::object& answer)
    {
        return ForEachMember(
            answer, [this](od::raw_json_string name, od::value& member) { return ReadMember(name, member); });
    }

    bool IsComplete() const { return has_persons_ && has_last_; }

    ErrorCode failure;
    bool is_last = false;
    std::string remaining_number;
    std::string remaining_type;
    std::vector<PersonPicture> pictures;

private:
    bool ReadMember(od::raw_json_string name, od::value& member)
    {
        if (name == "ErrorModule")
            return ReadNumber(member, failure.iFirstCode);
        if (name == "ErrorCode")
            return ReadNumber(member, failure.iSecondCode);
        if (name == "RemainingLoginNumber")
            return ReadTextOrNumber(member, remaining_number);
        if (name == "RemainingLoginType")
            return ReadTextOrNumber(member, remaining_type);
        if (name == "TotalPageIsFinished") {
            has_last_ = !IsNull(member);
            return ReadFlag(member, is_last);
        }
        if (name == "Persons") {
            has_persons_ = !IsNull(member);
            return ReadList(member, [this](od::value& person) { return ReadPerson(person); });
        }
        return true;
    }

    bool ReadPerson(od::value& value)
    {
        return ReadObject(value, [this](od::raw_json_string name, od::value& member) {
            return name != "Pictures" ||
                   ReadList(member, [this](od::value& picture) { return ReadPicture(picture); });
        });
    }

    bool ReadPicture(od::value& value)
    {
        PersonPicture& picture = pictures.emplace_back();
        const bool read = ReadObject(value, [&picture](od::raw_json_string name, od::value& member) {
            if (name == "Title")
                return ReadText(member, picture.file_stem);
            if (name == "Address")
                return ReadText(member, picture.url);
            return true;
        });
        return read && IsFileStem(picture.file_stem) && !picture.url.empty();
    }

    bool has_persons_ = false;
    bool has_last_ = false;
};

}  // namespace

bool ParsePersonPage(std::string& body, CmsGetPersonPicFileData& data)
{
    PersonPageReader page;
    const bool read = ReadJson(body, [&page](od::object& answer) { return page.Read(answer); });
    const bool is_failure = read && (page.failure.iFirstCode != 0 || page.failure.iSecondCode != 0);
    data.error_code = is_failure ? page.failure : ErrorCode();
    data.remaining_login_count = is_failure ? page.remaining_number : std::string();
    data.remaining_login_type = is_failure ? page.remaining_type : std::string();
    data.picture_list.clear();
    if (is_failure)
        return false;
    if (!read || !page.IsComplete()) {
        data.error_code = ErrorCode(2, ZellNetLink::kModuleAnswer, ZellNetLink::AnswerNotUnderstood);
        return false;
    }
    data.picture_list = std::move(page.pictures);
    data.is_all_finished = page.is_last;
    return true;
}

}  // namespace FetchyardLogical::details
