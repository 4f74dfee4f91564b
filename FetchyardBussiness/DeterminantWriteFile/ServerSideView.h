#pragma once

#include "FetchyardLogical/ReportData.h"

#include <mutex>
#include <string>

namespace FetchyardBussiness {

// What a stop or a delete needs to know of the page in hand.
struct ServerSide
{
    bool is_rowcolumn_data = true;  // the rows are written here; otherwise the server generates the file
    FetchyardLogical::RequstData operate_request;
    std::string task_id;  // the server's own
};

// That part of a page, for threads that must not look at the page itself while a call fills it.
class ServerSideView
{
public:
    // After each call that has changed the page, by the thread that owns it.
    void Publish(const FetchyardLogical::ExportDataNode& page)
    {
        const FetchyardLogical::ServerGenerateNode& generated = page.server_genareate_node;
        const std::lock_guard<std::mutex> lock(mutex_);
        view_.is_rowcolumn_data = page.is_rowcolumn_data;
        view_.operate_request = generated.operate_request;
        view_.task_id = generated.query_request.task_id;
    }

    // Any thread.
    ServerSide Read() const
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        return view_;
    }

private:
    mutable std::mutex mutex_;
    ServerSide view_;
};

}  // namespace FetchyardBussiness
