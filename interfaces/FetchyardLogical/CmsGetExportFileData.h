#pragma once

#include "FetchyardLogical/Export.h"
#include "FetchyardLogical/ReportData.h"
#include "ZellBase/Error.h"

namespace FetchyardLogical {

// A report page, and the server calls of an export. Each call blocks the calling thread and is made for one
// record by one thread at a time.
struct FETCHYARDLOGICAL_API CmsGetExportFileData
{
    Zell::Base::Error::ErrorCode error_code;  // reason of the last failed call
    ExportDataNode export_data_node;

    // Sends the request and fills the node with one page: is_rowcolumn_data, file_total_page_is_finished and
    // vec_sheets, or for a report that the server generates itself the four requests of
    // server_genareate_node. False on failure, with the reason in error_code; the sheets that were there stay
    // without rows and with a page_index that is not 1, so that a closing write starts nothing anew (none at
    // all if page 1 itself failed). Picture cells with cacheable addresses are fetched ahead from here on.
    static bool GetExportFileDataList(CmsGetExportFileData& data, const RequstData& request);

    // Tells the server, which generates a report itself, to stop or to delete it: str_request is JSON with
    // "OperateType" (1 stop, 2 delete) and "TaskId". True if the server took it. Any thread.
    static bool TakeOperateActionToServer(const RequstData& request);
};

}  // namespace FetchyardLogical
