#include "StoreRecords.h"

#include "ZellBase/Util.h"

namespace FetchyardLogical::testing {

std::string RecordText(int kind, const std::string& content)
{
    std::string text;
    Zell::Base::Encrypt::Base64Encode(text, "<FileExportParams><TaskParamType>" + std::to_string(kind) +
                                                "</TaskParamType><Content>" + content +
                                                "</Content></FileExportParams>");
    return text;
}

}  // namespace FetchyardLogical::testing
