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
    // The numbers of the states that a run reported, as "1 4", with the error of the last.
    static std::string States(const std::string& trace);
    // The lines of a trace that begin with the words, with a line feed in front.
    static std::string Lines(const std::string& trace, const std::string& start);

    std::shared_ptr<FetchyardBussiness::DeterminantDownloadParam> record_;
    std::shared_ptr<FetchyardBussiness::CDeterminantWriteFileTask> task_;
};

}  // namespace contract
