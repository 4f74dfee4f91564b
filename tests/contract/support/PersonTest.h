#pragma once

#include "FetchyardBussiness/DeterminantWriteFile/DownloadPersonPicTask.h"
#include "support/ContractTest.h"

#include <memory>
#include <string>
#include <vector>

namespace contract {

// A task whose delete flag a test can raise, which no code of the class does.
class DeletablePersonTask : public FetchyardBussiness::CDownloadPersonPicTask
{
public:
    void RaiseDelete() { b_delete_ = true; }
};

// One export of person pictures: the archive "Anna" with the password "secret" in "<tmp>/Persons/", whose
// folder is there. The client's save path, where the pictures gather, is "<tmp>/save/".
class PersonTest : public ContractTest
{
protected:
    PersonTest();

    FetchyardBussiness::PersonVsFileParam& Settings() { return record_->vs_file_param_; }
    void SetCondition(const std::string& text) { Settings().str_request_condition = text; }
    // Answers of the server: a page of pictures with these stems and the addresses "/pictures/<stem>.jpg".
    static void AddPage(const std::vector<std::string>& stems, bool is_last);
    // The archiver leaves an archive, as the real one does.
    void ArchiverWorks();
    // Gives the record to the task and lets it run once, with a clear last error; the trace of the run alone.
    std::string Run();
    // The part of a trace from the first line that begins with the words, a line feed in front.
    static std::string From(const std::string& trace, const std::string& start);

    std::shared_ptr<FetchyardBussiness::DownloadPersonPicTaskParam> record_;
    std::shared_ptr<DeletablePersonTask> task_;
};

}  // namespace contract
