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
    // Inside a task of the engine the page behind this one is on its way from here on, too, unless this is
    // the last: its request is this one with the number behind "PageIndex": raised by one. It is used by the
    // next call if that asks for just this, and dropped otherwise and when the task's Exec returns. The
    // addresses of server_genareate_node are whole ones, which need no site.
    static bool GetExportFileDataList(CmsGetExportFileData& data, const RequstData& request);

    // Asks the server to gather its logs: file_guid is then the number of the gathering. It stays empty on
    // failure, with the reason in error_code; the result says the same.
    static bool GetAllForceLog(CmsGetExportFileData& data, const RequstData& request);

    // Asks once whether the logs with the node's file_guid are gathered: true when they are, and
    // file_url_list then holds their addresses, each whole. failed is set when asking again is pointless; the
    // reason is then the calling thread's last error. A server that can't be reached, or has trouble of its
    // own, may be asked again. An answer is waited for 10 seconds at most. The request is that of
    // GetAllForceLog.
    static bool CircleGetFileState(CmsGetExportFileData& data, const RequstData& request, bool& failed);

    // Asks once whether a report that the server generates itself is there: true when it is, and download and
    // delete_cache are then filled; failed as above. Of query only method, address and text are looked at.
    static bool GetServerFileGenerateState(const RequstData& query, RequstData& download,
                                           RequstData& delete_cache, bool& failed);

    // Tells the server to drop a report that it has generated; of the request only method, address and text
    // are looked at. True if the server took it.
    static bool NotifyServerDeleteCacheFile(const RequstData& request);

    // Tells the server, which generates a report itself, to stop or to delete it: str_request is JSON with
    // "OperateType" (1 stop, 2 delete) and "TaskId". True if the server took it. Any thread.
    static bool TakeOperateActionToServer(const RequstData& request);
};

}  // namespace FetchyardLogical
