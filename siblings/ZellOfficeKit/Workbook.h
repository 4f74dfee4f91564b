#pragma once

#include "CellFormats.h"
#include "LogicalSheet.h"
#include "SheetNames.h"
#include "WorkbookCheck.h"

#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

namespace ZellOfficeKit {

// One open workbook. It grows in the work folder and comes to its path when it is closed and whole; one that
// is destroyed before leaves nothing.
class CWorkbook final : public CPhysicalSheetSource
{
public:
    // Null, with a line at level 5, if the path or the work folder can't be written.
    static std::unique_ptr<CWorkbook> Create(const std::string& file_path);
    CWorkbook(const CWorkbook&) = delete;
    CWorkbook& operator=(const CWorkbook&) = delete;
    ~CWorkbook() override;

    const std::string& file_path() const { return file_path_; }
    bool HasSheet(const std::string& name) const { return sheets_.count(name) > 0; }
    // The sheet of that name, made if there is none yet; null if it can't be made.
    CLogicalSheet* SheetNamed(const std::string& name);
    CCellFormats& formats() { return formats_; }
    // Finishes the file and puts it at its path, or sets it aside with a line at level 5. The last call.
    void Close();

    std::unique_ptr<CPhysicalSheet> MakeSheet(const std::string& name, int number) override;

private:
    CWorkbook(lxw_workbook* library, std::string file_path, std::string scratch_path,
              std::string work_folder);

    // Each returns why the workbook is not whole; empty if all is well.
    std::string Pack();
    std::string LookAtStreams(std::vector<ExpectedSheet>& expected) const;
    std::string LookForSpace(const std::vector<ExpectedSheet>& expected) const;
    void Discard();
    void SetAside(const std::string& reason) const;

    lxw_workbook* library_;
    std::string file_path_;
    std::string scratch_path_;
    std::string work_folder_;
    OfficeLimits limits_;
    CCellFormats formats_;
    CSheetNames names_;
    std::unordered_map<std::string, std::string> first_names_;  // logical name to the first worksheet's
    std::unordered_map<std::string, std::unique_ptr<CLogicalSheet>> sheets_;
    std::vector<lxw_worksheet*> worksheets_;  // in the order of the workbook
};

}  // namespace ZellOfficeKit
