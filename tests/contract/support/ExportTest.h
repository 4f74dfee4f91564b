#pragma once

#include "FetchyardBussiness/DeterminantWriteFile/DeterminantWriteFileTask.h"
#include "support/ContractTest.h"
#include "support/Pages.h"

#include <memory>
#include <string>
#include <vector>

namespace contract {

// One composite export: the report "Alarm" as CSV in "<tmp>/Alarm/", whose folder is there.
class ExportTest : public ContractTest
{
protected:
    ExportTest();

    FetchyardBussiness::VsFileParam& Settings() { return record_->vs_file_param_; }
    // A picture of the export, in its folder.
    void AddPicture(const std::string& name, const std::string& address);
    // Gives the record to the task and lets it run once, with a clear last error; the trace of the run alone.
    std::string Run();

    std::shared_ptr<FetchyardBussiness::DeterminantDownloadParam> record_;
    std::shared_ptr<FetchyardBussiness::CDeterminantWriteFileTask> task_;
};

}  // namespace contract
