#include "FetchyardLogical/CmsGetPersonPicFileData.h"

#include "Engine/Engine.h"
#include "FetchyardLogical/RequestData.h"
#include "Log.h"
#include "Report/PageCall.h"
#include "Report/PersonPageParser.h"
#include "Report/PictureKeys.h"
#include "Report/ServerCall.h"
#include "ZellPictureLoaderHost/WarmUp.h"

#include <exception>

using Zell::Base::Error::ErrorCode;

namespace FetchyardLogical {

namespace {

// A page that can't be held in memory fails like one that can't be read; it must not end the task in between.
bool FetchPage(const RequstData& request, CmsGetPersonPicFileData& data)
{
    try {
        ZellNetLink::HttpResponse answer = details::CallForPage(request);
        if (!details::IsFailure(answer.error))
            return details::ParsePersonPage(answer.body, data);
        data.error_code = answer.error;
    } catch (const std::exception& error) {
        FETCHYARD_LOGICAL_LOG(5, "FetchyardLogical::FetchPage", "exception: %s", error.what());
        data.error_code = ErrorCode(2, ZellNetLink::kModuleAnswer, ZellNetLink::AnswerNotUnderstood);
    }
    data.picture_list.clear();
    data.remaining_login_count.clear();
    data.remaining_login_type.clear();
    return false;
}

}  // namespace

bool CmsGetPersonPicFileData::GetExportPicDataList(CmsGetPersonPicFileData& data)
{
    RequstData request;
    request.str_method = data.str_method;
    request.str_quern = data.str_quern;
    request.str_request = data.str_request;
    if (!FetchPage(request, data)) {
        FETCHYARD_LOGICAL_LOG(4, "FetchyardLogical::CmsGetPersonPicFileData::GetExportPicDataList",
                              "%s failed with %d/%d", request.str_quern.c_str(), data.error_code.iFirstCode,
                              data.error_code.iSecondCode);
        return false;
    }
    if (!data.is_all_finished)
        details::FetchNextPageAhead(request);
    details::Engine::CountPage();
    const auto keys = details::PictureKeys(data.picture_list);
    if (!keys.empty())
        ZellPictureLoader::WarmPictures(keys);
    return true;
}

}  // namespace FetchyardLogical
