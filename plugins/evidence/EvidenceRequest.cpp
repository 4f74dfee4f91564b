#include "EvidenceRequest.h"

#include "EvidenceFiles.h"
#include "ZellBase/Log.h"
#include "ZellClientHostSettings/ClientSettings.h"
#include "ZellNetLink/RapidJsonProto.h"
#include "ZellNetLink/XmlProto.h"
#include "ZellNetLinkHost/HttpClient.h"

#include <nlohmann/json.hpp>

#include <exception>
#include <utility>

namespace Evidence {

using Zell::Base::Error::ErrorCode;
using ZellNetLink::CRapidJsonProto;

namespace {

constexpr ErrorCode kBadRequest(2, 20, 3);
constexpr ErrorCode kUnknownSite(2, ZellNetLink::kModuleAnswer, ZellNetLink::SiteUnknown);
constexpr ErrorCode kNotUnderstood(2, ZellNetLink::kModuleAnswer, ZellNetLink::AnswerNotUnderstood);

bool IsFailure(const ErrorCode& error)
{
    return error.iFirstCode != 0 || error.iSecondCode != 0;
}

// Sizes go beyond the 32 bits that the record class has.
ErrorCode Describe(CRapidJsonProto& request, nlohmann::json& entry)
{
    for (const char* needed : {"CaseNumber", "Title"}) {
        const std::string text = request.get_v(std::string("/") + needed, std::string());
        if (text.empty())
            return kBadRequest;
        entry[needed] = text;
    }
    const ZellClientHost::ClientSettings settings = ZellClientHost::GetClientSettings();
    entry["Remark"] = request.get_v("/Remark", std::string());
    entry["Client"] = settings.client_guid;
    entry["Files"] = nlohmann::json::array();
    const std::string folder = request.get_v("/Folder", std::string());
    std::vector<FileMark> marks;
    if (folder.empty())
        return ErrorCode();
    const ErrorCode error = MarkFiles(folder, marks);
    for (const FileMark& mark : marks)
        entry["Files"].push_back({{"Name", mark.name}, {"Bytes", mark.bytes}, {"Sha256", mark.sha256}});
    return error;
}

ErrorCode Send(int site, const std::string& body, CRapidJsonProto& answer)
{
    ZellNetLink::HttpRequest call;
    if (!ZellClientHost::GetSiteUrl(static_cast<unsigned int>(site), call.url))
        return kUnknownSite;
    call.method = "POST";
    call.url += "/api/v1/evidence";
    call.body = body;
    call.headers = {"Content-Type: application/json"};
    ZellClientHost::FindAccountOfUrl(call.url, call.user, call.password);
    const ZellNetLink::HttpResponse response = ZellNetLink::HttpClient::Instance().Perform(std::move(call));
    if (IsFailure(response.error))
        return response.error;
    if (!answer.set_str(response.body))
        return kNotUnderstood;
    const ErrorCode error(2, answer.get_int_v("/ErrorModule", 0), answer.get_int_v("/ErrorCode", 0));
    const bool has_id = !answer.get_v("/EvidenceId", std::string()).empty();
    return IsFailure(error) || has_id ? error : kNotUnderstood;
}

std::string SearchXml(CRapidJsonProto& answer)
{
    using ZellNetLink::XmlNode;
    XmlNode root("Evidence", "");
    for (const char* name : {"EvidenceId", "RegisteredAt"})
        root.AddSub(std::make_shared<XmlNode>(name, answer.get_v(std::string("/") + name, std::string())));
    return root.ToString(false);
}

std::string Answer(const ErrorCode& error, const std::string& search_xml)
{
    CRapidJsonProto answer;
    answer.set_v("/Response/ErrorModule", error.iFirstCode);
    answer.set_v("/Response/ErrorCode", error.iSecondCode);
    answer.set_v("/Response/SearchXml", search_xml);
    return answer.get_str(0);
}

}  // namespace

std::string Register(const std::string& text)
{
    CRapidJsonProto request;
    nlohmann::json entry;
    CRapidJsonProto answer;
    ErrorCode error = kBadRequest;
    try {
        if (request.set_str(text))
            error = Describe(request, entry);
        if (!IsFailure(error))
            error = Send(request.get_int_v("/SiteId", 0), entry.dump(), answer);
    } catch (const std::exception& problem) {
        Zell::Base::details::IOXTFormatLog(Zell::Base::details::kLogError, "evidence", "[%s]%s[%s(%d)]",
                                           "Evidence::Register", problem.what(), __FILE__, __LINE__);
        error = kBadRequest;
    }
    return Answer(error, IsFailure(error) ? std::string() : SearchXml(answer));
}

}  // namespace Evidence
