#pragma once

#include "FetchyardLogicalHost/EngineHost.h"
#include "ZellBase/Error.h"
#include "ZellTaskKit/DownloadTypes.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace FetchyardLogical::details {

// What is kept of a task, but for its resume text. See TaskView for the members that it has as well.
struct StoredTask
{
    std::string guid;
    std::string plugin_id;
    std::string name;
    std::string folder;
    std::uint64_t place = 0;  // in the list; no two tasks have the same
    std::uint64_t queue_order = 0;
    RecordKind record_kind = RecordKind::None;
    ZellTaskKit::DownloadState state = ZellTaskKit::Unstarted;
    Zell::Base::Error::ErrorCode error;
    std::string error_text;
    long long handed_over = 0;
    long long started = 0;
    long long ended = 0;
    bool owns_folder = false;    // it held no file when the task came, and nobody else had it
    bool remove_folder = false;  // once state 200 is told and Exec has returned
};

using ResumeTextPtr = std::shared_ptr<const std::string>;

// One change of what is kept.
struct Change
{
    enum class Kind : std::uint8_t {
        Put = 1,     // a new task, or a known one from its beginning
        Update = 2,  // a known task; without effect on one that was removed meanwhile
        Remove = 3,  // only the guid counts
    };
    Kind kind = Kind::Put;
    StoredTask task;
    ResumeTextPtr resume_text;  // null: the one that is kept stays
};

using Changes = std::vector<Change>;

}  // namespace FetchyardLogical::details
